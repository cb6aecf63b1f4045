#pragma once
#include <QString>
#include <QStringList>
#include <vector>

#include "backup/categories.h"

/// The command line, understood.
struct Options {
  enum class Command { Backups, Scan, Recover };
  Command command = Command::Scan;
  QString qstrFolder;                ///< of backups; empty for the fixed root
  QString qstrBackup;                ///< absolute path
  QString qstrDestination;           ///< absolute path
  std::vector<CategoryNumber> only;  ///< what to recover; everything unless named
  QString qstrPasswordFile;          ///< empty for none
  bool bPasswordStdin = false;
  bool bJson = false;
  bool bManifest = false;
  bool bQuiet = false;
  bool bForce = false;  ///< decrypts although the room may not do
};

/// Reads the command line. Prints help and version itself.
/// @param nExitStatus what the process shall end with when the answer is false.
/// @return true when there is a command to run.
bool ReadOptions(const QStringList& arguments, Options& options, int& nExitStatus);
