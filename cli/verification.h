#pragma once
#include <functional>
#include <string>
#include <vector>

#include "common/backup_folder.h"
#include "decrypt/backup_reader.h"

namespace orvandel {

/// The state of a file of a backup.
struct FileState {
  enum class Kind { Sound, Missing, Damaged };
  Kind kind = Kind::Sound;
  std::string strReason;  ///< what is damaged, narrow
};

/// Compares files of a backup with what its manifest records. One object per thread.
class FileVerifier {
 public:
  /// All must outlive this object. @param advance called with a number of bytes after each piece of a file
  /// that is read; may be called by all threads.
  FileVerifier(const BackupReader& reader, const BackupFolder& folder,
               std::function<void(uint64_t nBytes)> advance);

  /// Checks a file: that it is there and a regular file, its size, key and padding, and, if the manifest
  /// records one, its SHA-1. Only for this its content is read.
  /// @param entry with its record. @param state receives the result.
  /// @return false when a signal stopped it; then there is no result.
  bool Verify(const ManifestEntry& entry, FileState& state);

 private:
  bool Hash(ContentStream& content, std::string& strHash);
  bool VerifyHash(const ManifestEntry& entry, ContentStream& content, FileState& state);

  const BackupReader& m_reader;
  const BackupFolder& m_folder;
  std::function<void(uint64_t nBytes)> m_advance;
  std::vector<unsigned char> m_buffer;
};

}  // namespace orvandel
