#pragma once
#include <functional>
#include <string>

#include "decrypt/file_job.h"
#include "decrypt/keybag.h"

namespace orvandel {

/// True when "Manifest.plist" marks the backup as encrypted; false when it can't be read.
bool IsMarkedEncrypted(const std::string& strBackup);

/// The files of an encrypted backup listed in its manifest, without directories and links.
class BackupFiles {
 public:
  /// Reads "Manifest.plist". Throws std::runtime_error if the folder isn't an encrypted backup.
  explicit BackupFiles(const std::string& strBackup);

  /// The locked keybag of the backup.
  const Bytes& KeybagData() const { return m_keybag; }

  /// Makes the manifest readable. A "Manifest.db", encrypted or not, is written as "Manifest.db-decypted", so
  /// that one of an earlier run isn't read instead.
  /// @param keybag         unlocked.
  /// @param strFolder      folder of that file.
  /// @param strOtherFolder used when it can't be written there, for example on a read-only disk.
  /// @return why strOtherFolder was used; empty when it wasn't. Throws std::runtime_error when the manifest
  /// can't be read.
  std::string OpenManifest(const Keybag& keybag, const std::string& strFolder,
                           const std::string& strOtherFolder);

  /// Number of files. Call OpenManifest first.
  uint64_t Count() const;

  /// Calls visit for each file, in manifest order. Call OpenManifest first. Throws std::runtime_error when
  /// the manifest can't be read completely.
  void Visit(const std::function<void(FileJob&& job)>& visit) const;

 private:
  void VisitDatabase(const std::function<void(FileJob&& job)>& visit) const;
  void VisitBinary(const std::function<void(FileJob&& job)>& visit) const;

  std::string m_strBackup;
  bool m_bHasManifestDb = false;
  Bytes m_keybag;
  Bytes m_manifestKey;  // empty when the manifest isn't encrypted
  std::string m_strManifest;
};

}  // namespace orvandel
