#pragma once
#include "backup/records.h"
#include "backup/session.h"
#include "cli/decrypt_run.h"
#include "cli/options.h"
#include "cli/progress_bar.h"

/// A backup that the command line has opened and read.
struct OpenBackup {
  explicit OpenBackup(const Options& options)
      : qstrPath(options.qstrBackup), decryptRun(options.qstrBackup), records(session.GetMessageMap()) {}
  QString qstrPath;  ///< the backup's own folder
  DecryptRun decryptRun;
  CIphoneBackupFile session;
  BackupRecords records;
  int nManifestStatus = 0;
};

/// Opens the backup of the options and reads all of it.
/// @return what the process shall end with: 0 when it is read, else with a line on standard error printed.
int ReadBackup(const Options& options, ProgressBar& bar, OpenBackup& backup);

/// Ends a command that a signal stopped. @return the exit status for it.
int Interrupted();
