#pragma once
#include <functional>
#include <vector>

#include "backup/records.h"
#include "backup/session.h"
#include "cli/encrypted_backup.h"
#include "cli/left_out.h"
#include "cli/options.h"
#include "cli/progress_bar.h"
#include "export/written_file.h"

namespace orvandel {

/// A backup opened and read by the command line.
struct OpenBackup {
  explicit OpenBackup(const BackupOptions& options)
      : qstrPath(options.qstrBackup), records(session.GetMessageMap(), session.GetWhatsAppMap()) {}
  QString qstrPath;  ///< the backup's own folder
  CIphoneBackupFile session;
  EncryptedBackup encrypted;  ///< opened if it is; refers to the session's catalogue
  BackupRecords records;
  int nManifestStatus = 0;
  std::vector<WrittenFile> notDecrypted;  ///< with their names on the device, if in the manifest
  LeftOut leftOut;                        ///< by the wanted categories
};

/// Prints why a folder isn't a backup. @param problem the result of ReadBackupInfo. @return the exit status.
int NotABackup(const QString& qstrFolder, const Problem& problem);

/// Sets whether a backup is encrypted from "Manifest.plist", if that can be read.
void CompleteEncryption(__BACK_FILE_INFO__& info);

/// Opens and reads the backup given by the options.
/// @param isWanted categories for which it returns false may stay empty; nothing is decrypted for them.
/// @return 0, or the exit status of the process on failure, with a line printed on standard error.
int ReadBackup(const BackupOptions& options, const WantedCategory& isWanted, ProgressBar& bar,
               OpenBackup& backup);

/// The files that could not be read, with their names on the device, if in the manifest.
/// @param isWanted called with a file's identifier (its file name in the backup); false skips it.
std::vector<WrittenFile> LostFiles(const OpenBackup& backup,
                                   const std::function<bool(const std::string& strFileId)>& isWanted);

/// All files that could not be read or decrypted.
std::vector<WrittenFile> AllLosses(const OpenBackup& backup);

/// Reports that a signal stopped the command. @return the exit status for it.
int Interrupted();

}  // namespace orvandel
