#pragma once
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <string>
#include <vector>

// Runs the real orvandel-cli, which is built beside the tests.

/// How a run ended.
struct CommandResult {
  int nExitStatus = -1;  ///< -1 when the process was ended by a signal or didn't end in time
  std::string strOut;
  std::string strErr;

  /// Lines of the standard output without their ends.
  std::vector<std::string> Lines() const;
  /// One of them, counted from 0, or the last one; empty when there is none.
  std::string Line(size_t nLine) const;
  std::string LastLine() const;
  /// The standard output as one JSON value; fails the test when it is none.
  QJsonObject Object() const;
  QJsonArray Array() const;
};

/// Path of the executable.
QString CommandPath();

/// Takes paths as they are in the tests.
QStringList Arguments(const std::vector<std::string>& arguments);

/// Arguments that recover the categories of files alone, without the documents.
std::vector<std::string> RecoverFiles(const std::string& strBackup, const std::string& strDestination,
                                      const std::vector<std::string>& more = {});

/// Runs it to its end.
/// @param environment "NAME=VALUE"; without any the locale is C.UTF-8.
CommandResult RunCommand(const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment = {});

/// Prepares a process with the executable and its environment.
void PrepareCommand(QProcess& process, const std::vector<std::string>& arguments,
                    const std::vector<std::string>& environment = {});

/// Waits for the end of a started process and takes what it printed.
CommandResult FinishCommand(QProcess& process);

/// A value as compact JSON, its keys in alphabetical order.
std::string JsonText(const QJsonValue& value);
