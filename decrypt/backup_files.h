#pragma once
#include <functional>
#include <string>

#include "decrypt/file_job.h"
#include "decrypt/keybag.h"

/// True when the "Manifest.plist" of a backup says that it is encrypted; false without a readable one.
bool IsMarkedEncrypted(const std::string& strBackup);

/// The files of an encrypted backup, as its manifest lists them. Directories and links are passed over.
class BackupFiles {
 public:
  /// Reads "Manifest.plist". Throws std::runtime_error, with the reason, for a folder that isn't an
  /// encrypted backup.
  explicit BackupFiles(const std::string& strBackup);

  /// The keybag of the backup, still locked.
  const Bytes& KeybagData() const { return m_keybag; }

  /// Makes the manifest readable, once the keybag is unlocked. A "Manifest.db", encrypted or not, comes out
  /// as "Manifest.db-decypted": it replaces one of an earlier run, which would be read in its stead.
  /// @param strFolder      where that file goes.
  /// @param strOtherFolder where it goes when it can't be written there: the backup's disk may be read-only.
  /// @return why it had to; empty when it hadn't. Throws std::runtime_error when the manifest can't be read.
  std::string OpenManifest(const Keybag& keybag, const std::string& strFolder,
                           const std::string& strOtherFolder);

  /// Number of files. After OpenManifest.
  uint64_t Count() const;

  /// Calls visit for each file, in the manifest's order. After OpenManifest. Throws std::runtime_error when
  /// the manifest can't be read to its end.
  void Visit(const std::function<void(FileJob&& job)>& visit) const;

 private:
  void VisitDatabase(const std::function<void(FileJob&& job)>& visit) const;
  void VisitBinary(const std::function<void(FileJob&& job)>& visit) const;

  std::string m_strBackup;
  bool m_bHasManifestDb = false;
  Bytes m_keybag;
  Bytes m_manifestKey;  // empty where the manifest isn't encrypted
  std::string m_strManifest;
};
