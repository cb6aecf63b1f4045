#pragma once
#include <QByteArray>
#include <QString>
#include <vector>

#include "cli/options.h"
#include "cli/progress_bar.h"

namespace orvandel {

/// Decrypts a backup into this process's private work folder with the decrypt tool. Must live as long as the
/// decrypted files are used. The backup's own folder isn't changed.
class DecryptRun {
 public:
  /// A file that the tool failed to read, decrypt or write.
  struct Failure {
    QString qstrFile;  ///< its path in the backup; empty when the tool reported none
    QString qstrReason;
  };

  DecryptRun();

  /// Gets the password and runs the tool.
  /// @return 0 when there are decrypted files, of which some may be missing (see Failures); else the exit
  /// status of the process, with a line printed on standard error.
  int Run(const BackupOptions& options, ProgressBar& bar);

  /// The folder of the decrypted files.
  const QString& Folder() const { return m_qstrFolder; }
  /// The failures reported by the tool, in order.
  const std::vector<Failure>& Failures() const { return m_failures; }

 private:
  /// Checks that there is enough disk space in the work folder. @return as Run.
  int CheckRoom(const BackupOptions& options) const;
  void AddFailure(const BackupOptions& options, const QString& qstrLine);

  QString m_qstrFolder;
  std::vector<Failure> m_failures;
};

}  // namespace orvandel
