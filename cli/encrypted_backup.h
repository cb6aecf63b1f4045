#pragma once
#include <QString>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "cli/options.h"
#include "cli/progress_bar.h"
#include "cli/wanted_stores.h"
#include "decrypt/encrypted_source.h"

namespace orvandel {

/// An encrypted backup that is read where it lies. Must live as long as its files are read.
///
/// Manifest and stores are decrypted into this process's private work folder, since they are read at random
/// places. All other files are decrypted as they are read (common/file_source.h): their heads for a scan,
/// their content straight to the destination. The backup's own folder isn't changed.
class EncryptedBackup {
 public:
  /// A file that could not be read or decrypted.
  struct Failure {
    std::string strFile;  ///< its path in the backup, narrow; empty for the backup itself
    std::string strReason;
  };

  EncryptedBackup();
  ~EncryptedBackup();
  EncryptedBackup(const EncryptedBackup&) = delete;
  EncryptedBackup& operator=(const EncryptedBackup&) = delete;

  /// Gets the password and opens the manifest.
  /// @param isWanted decides which stores are decrypted.
  /// @return 0, or the exit status of the process, with a line printed on standard error.
  int Open(const BackupOptions& options, const WantedCategory& isWanted);

  /// Decrypts the wanted stores and makes the other files readable. Call it after the session has read the
  /// manifest, which happens beside this class's own reading.
  /// @return as above, where 0 includes that some stores are missing (see Failures).
  int OpenFiles(const WantedCategory& isWanted);

  /// The folder in which the session finds manifest, stores and, through a source, all other files.
  const QString& Folder() const { return m_qstrFolder; }
  const std::vector<Failure>& Failures() const { return m_failures; }
  /// Its reader, with the manifest open; null before Open.
  const BackupReader* Reader() const { return m_pReader.get(); }

 private:
  void DecryptStores(const WantedCategory& isWanted);
  /// Reports why the backup can't be decrypted at all. @return the exit status for it.
  int Refuse(const std::exception& error) const;

  QString m_qstrBackup;
  QString m_qstrFolder;
  std::unique_ptr<BackupReader> m_pReader;
  std::shared_ptr<EncryptedSource> m_pSource;
  std::vector<Failure> m_failures;
};

/// Gets the password of an encrypted backup and unlocks it.
/// @return 0, or the exit status of the process, with a line printed on standard error.
int Unlock(const BackupOptions& options, BackupReader& reader);

/// Checks that the work folder has room for some files of a backup, unless --force was given.
/// @param files paths; those that don't exist need no room. @return as above.
int CheckRoom(const BackupOptions& options, const std::vector<std::string>& files);

}  // namespace orvandel
