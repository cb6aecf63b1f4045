#pragma once
#include <cstdint>
#include <string>

#include "decrypt/crypto.h"

namespace orvandel {

/// One file of a backup to write.
struct FileJob {
  std::string strId;            ///< its name in the backup and in the output folder
  std::string strSource;        ///< path in the backup
  Bytes wrappedKey;             ///< 44 bytes; empty for an unencrypted file
  uint64_t nSize = UINT64_MAX;  ///< its decrypted size in bytes; UINT64_MAX if unknown
  bool bDamaged = false;        ///< its record in the manifest can't be read
};

/// Decrypts a file and truncates it to its size; an empty key makes a plain copy. The target is created
/// completely or not at all, readable only by its owner. Uses constant memory.
/// @param nSize in bytes; UINT64_MAX removes the padding instead. Throws std::runtime_error with the reason,
/// kMissingSource for a missing source.
void WriteDecrypted(const std::string& strSource, const std::string& strTarget, const Secret& key,
                    uint64_t nSize);

}  // namespace orvandel
