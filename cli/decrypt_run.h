#pragma once
#include <QString>

#include "backup/info.h"
#include "cli/options.h"
#include "cli/progress_bar.h"

/// Decrypts a backup into this process's private work folder by the tool beside the program. Lives as long as
/// the decrypted files are needed; what the tool leaves in the backup's own folder goes with it.
class DecryptRun {
 public:
  explicit DecryptRun(const QString& qstrBackup);
  ~DecryptRun();
  DecryptRun(const DecryptRun&) = delete;
  DecryptRun& operator=(const DecryptRun&) = delete;

  /// Asks for the password and runs the tool.
  /// @return what the process shall end with: 0 when the files are there, else with a line on standard error
  /// printed.
  int Run(const Options& options, ProgressBar& bar);

  /// The folder with the decrypted files.
  const QString& Folder() const { return m_qstrFolder; }

 private:
  QString m_qstrFolder;
  QString m_qstrDecryptedManifest;
  bool m_bHadManifest;
};
