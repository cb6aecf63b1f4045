#pragma once
#include <functional>
#include <vector>

#include "backup/records.h"
#include "backup/session.h"
#include "cli/decrypt_run.h"
#include "cli/options.h"
#include "cli/progress_bar.h"
#include "export/written_file.h"

/// A backup that the command line has opened and read.
struct OpenBackup {
  explicit OpenBackup(const BackupOptions& options)
      : qstrPath(options.qstrBackup), records(session.GetMessageMap()) {}
  QString qstrPath;  ///< the backup's own folder
  DecryptRun decryptRun;
  CIphoneBackupFile session;
  BackupRecords records;
  int nManifestStatus = 0;
  std::vector<WrittenFile> notDecrypted;  ///< by their names on the device, where the manifest has them
};

/// The contacts store tells whether a backup is encrypted. Where there is none that can be opened, the
/// backup's "Manifest.plist" decides.
void CompleteEncryption(__BACK_FILE_INFO__& info);

/// Opens the backup of the options and reads all of it.
/// @return the exit status of the process when it can't go on, with a line on standard error printed; else 0.
int ReadBackup(const BackupOptions& options, ProgressBar& bar, OpenBackup& backup);

/// The files that could not be read, by their names on the device, where the manifest has them.
/// @param isWanted whether a file counts: its identifier, which is its file name in the backup.
std::vector<WrittenFile> LostFiles(const OpenBackup& backup,
                                   const std::function<bool(const std::string& strFileId)>& isWanted);

/// The same of all files, and those that could not be decrypted.
std::vector<WrittenFile> AllLosses(const OpenBackup& backup);

/// Ends a command that a signal stopped. @return the exit status for it.
int Interrupted();
