#pragma once
#include <QByteArray>
#include <QString>
#include <vector>

#include "cli/options.h"
#include "cli/progress_bar.h"

/// Decrypts a backup into this process's private work folder with the tool beside the program. Lives as long
/// as the decrypted files are needed. Nothing in the backup's own folder changes.
class DecryptRun {
 public:
  /// A file that the tool could not read, decrypt or write.
  struct Failure {
    QString qstrFile;  ///< its path in the backup; empty when the tool's line names none
    QString qstrReason;
  };

  DecryptRun();

  /// Asks for the password and runs the tool.
  /// @return the exit status of the process when it can't go on, with a line on standard error printed;
  ///         0 when there are decrypted files. Some may be missing then: see Failures.
  int Run(const BackupOptions& options, ProgressBar& bar);

  /// The folder with the decrypted files.
  const QString& Folder() const { return m_qstrFolder; }
  /// What the tool reported, in its order.
  const std::vector<Failure>& Failures() const { return m_failures; }

 private:
  /// Compares the room in the work folder with the backup's size. @return as Run.
  int CheckRoom(const BackupOptions& options) const;
  void AddFailure(const BackupOptions& options, const QString& qstrLine);

  QString m_qstrFolder;
  std::vector<Failure> m_failures;
};
