#pragma once
#include <QCommandLineParser>
#include <QString>

#include "cli/commands.h"

/// What every command takes.
struct Options {
  bool bJson = false;
  bool bQuiet = false;
};

/// What every command that opens a backup takes.
struct BackupOptions : Options {
  QString qstrBackup;        ///< absolute path
  QString qstrPasswordFile;  ///< empty for none
  bool bPasswordStdin = false;
  bool bForce = false;  ///< decrypts although the room may not do
};

/// The argument of every command that opens a backup.
constexpr Command::Argument kBackupArgument = {
    "BACKUP", "The folder of one backup, the one that holds \"Info.plist\"."};

/// Adds the options that every command has.
void AddOptions(QCommandLineParser& parser);
void ReadOptions(const QCommandLineParser& parser, Options& options);

/// Adds the options that every command has that opens a backup.
void AddBackupOptions(QCommandLineParser& parser);
/// Reads these and those of every command.
/// @param qstrBackup the folder as it was given.
void ReadBackupOptions(const QCommandLineParser& parser, const QString& qstrBackup, BackupOptions& options);

/// A path of the command line made absolute.
QString AbsolutePath(const QString& qstrPath);

/// Complains about the command line on standard error. @return the exit status for it.
int WrongUsage(QString qstrReason);
