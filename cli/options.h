#pragma once
#include <QCommandLineParser>
#include <QString>

#include "cli/commands.h"

namespace orvandel {

/// Options of every command.
struct Options {
  bool bJson = false;
  bool bQuiet = false;
};

/// Options of every command that opens a backup.
struct BackupOptions : Options {
  QString qstrBackup;        ///< absolute path
  QString qstrPasswordFile;  ///< empty for none
  bool bPasswordStdin = false;
  bool bForce = false;  ///< decrypts even if disk space seems too low
};

/// The positional argument of every command that opens a backup.
constexpr Command::Argument kBackupArgument = {
    "BACKUP", "The folder of one backup, the one that holds \"Info.plist\"."};

/// Adds the options of every command.
void AddOptions(QCommandLineParser& parser);
void ReadOptions(const QCommandLineParser& parser, Options& options);

/// Adds the options of every command that opens a backup.
void AddBackupOptions(QCommandLineParser& parser);
/// Reads the options of every command that opens a backup.
/// @param qstrBackup the folder as given by the user.
void ReadBackupOptions(const QCommandLineParser& parser, const QString& qstrBackup, BackupOptions& options);

/// Converts a path of the command line to an absolute one.
QString AbsolutePath(const QString& qstrPath);

/// Reports an error of the command line on standard error. @return the exit status for it.
int WrongUsage(QString qstrReason);

}  // namespace orvandel
