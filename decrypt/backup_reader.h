#pragma once
#include <functional>
#include <optional>
#include <string>

#include "decrypt/content_stream.h"
#include "decrypt/keybag.h"
#include "decrypt/manifest_entry.h"

namespace orvandel {

/// True when "Manifest.plist" marks the backup as encrypted; false when it doesn't; nullopt when it can't be
/// read.
std::optional<bool> EncryptionMark(const std::string& strBackup);

/// An opened backup of any age, encrypted or not: lists its files and reads their content.
///
/// The identifiers are those of the manifest; for the binary manifest the standard SHA-1 of domain, "-" and
/// path. Nothing is written into the backup unless OpenManifest gets its folder. After OpenManifest all
/// functions are thread-safe.
class BackupReader {
 public:
  /// Reads "Manifest.plist". @param strBackup the backup's folder, narrow, without a trailing "/".
  explicit BackupReader(const std::string& strBackup);

  bool IsEncrypted() const { return m_bEncrypted; }
  /// Throws std::runtime_error with file and reason unless it is an encrypted backup with a keybag.
  void RequireEncrypted() const;

  /// Unlocks the keys of an encrypted backup. Takes seconds.
  /// @return false when the password is wrong in all its forms, or empty. Throws std::runtime_error with file
  /// and reason.
  bool Unlock(const Secret& password);

  /// Makes the manifest readable. Call Unlock first if the backup is encrypted. The "Manifest.db" of an
  /// encrypted backup, itself encrypted or not, is written as "Manifest.db-decypted", so that one of an
  /// earlier run isn't read instead.
  /// @param strFolder      folder of that file.
  /// @param strOtherFolder used when it can't be written there, for example on a read-only disk.
  /// @return why strOtherFolder was used; empty when it wasn't. Throws std::runtime_error with file and
  /// reason.
  std::string OpenManifest(const std::string& strFolder, const std::string& strOtherFolder);

  /// What Visit reads of each entry.
  enum class Detail {
    Names,    ///< without the fields of the record
    Keys,     ///< without domain and path
    Records,  ///< everything
  };

  /// Number of entries that may be files.
  uint64_t CountFiles() const;
  /// Calls visit for each entry, in manifest order; false ends it. Throws std::runtime_error with file and
  /// reason when the manifest can't be read completely.
  void Visit(Detail detail, const std::function<bool(ManifestEntry&& entry)>& visit) const;

  const std::string& Folder() const { return m_strBackup; }
  /// Path of the readable manifest. Call OpenManifest first.
  const std::string& ManifestPath() const { return m_strManifest; }
  bool IsSharded() const { return m_bHasManifestDb; }
  /// True for an entry that is a file. One whose flags and mode tell no kind is a file if there is one of its
  /// identifier.
  bool IsFile(const ManifestEntry& entry) const;
  /// Path of a file in the backup. @param strId a valid identifier.
  std::string PathOf(const std::string& strId) const;

  /// Opens the content of a file. Throws ContentError. @param entry with its record.
  ContentStream Open(const ManifestEntry& entry) const;
  /// Same as above for a file that the caller has opened.
  ContentStream Open(const ManifestEntry& entry, Result<OpenedFile> file) const;

 private:
  using Visitor = std::function<bool(ManifestEntry&& entry)>;
  void VisitDatabase(Detail detail, const Visitor& visit) const;
  void VisitBinary(const Visitor& visit) const;

  std::string m_strBackup;
  bool m_bHasManifestDb = false;
  bool m_bEncrypted = false;
  std::string m_strRefusal;  // why it isn't an encrypted backup; empty if it is
  Bytes m_keybagData;
  Bytes m_manifestKey;  // empty when the manifest isn't encrypted
  std::optional<Keybag> m_keybag;
  std::string m_strManifest;
};

}  // namespace orvandel
