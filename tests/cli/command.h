#pragma once
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <string>
#include <vector>

// Runs the real orvandel-cli, which is built beside the tests.

namespace orvandel {

/// How a run ended.
struct CommandResult {
  int nExitStatus = -1;  ///< -1 if the process was ended by a signal or timed out
  std::string strOut;
  std::string strErr;

  /// Lines of standard output without line ends.
  std::vector<std::string> Lines() const;
  /// A line, counted from 0, or the last one; empty if there is none.
  std::string Line(size_t nLine) const;
  std::string LastLine() const;
  /// Standard output as one JSON value; fails the test if it isn't JSON.
  QJsonObject Object() const;
  QJsonArray Array() const;
};

/// Path of the executable.
QString CommandPath();

/// Converts paths of the tests.
QStringList Arguments(const std::vector<std::string>& arguments);

/// Arguments that recover only the categories of files, without documents and front page.
std::vector<std::string> RecoverFiles(const std::string& strBackup, const std::string& strDestination,
                                      const std::vector<std::string>& more = {});

/// Runs it to its end.
/// @param environment "NAME=VALUE"; without any the locale is C.UTF-8.
CommandResult RunCommand(const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment = {});

/// Prepares a process with the executable and its environment.
void PrepareCommand(QProcess& process, const std::vector<std::string>& arguments,
                    const std::vector<std::string>& environment = {});

/// Waits for the end of a started process and reads its output.
CommandResult FinishCommand(QProcess& process);

/// A value as compact JSON, its keys in alphabetical order.
std::string JsonText(const QJsonValue& value);

}  // namespace orvandel
