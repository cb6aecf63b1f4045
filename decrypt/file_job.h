#pragma once
#include <cstdint>
#include <string>

#include "decrypt/crypto.h"

/// One file of a backup that is to be written.
struct FileJob {
  std::string strId;            ///< its name in the backup and in the output folder
  std::string strSource;        ///< path in the backup
  Bytes wrappedKey;             ///< 44 bytes; empty for a file stored in plain
  uint64_t nSize = UINT64_MAX;  ///< its plain size in bytes; UINT64_MAX when the manifest doesn't tell
  bool bDamaged = false;        ///< the manifest's record of it can't be read
};

/// Writes a file decrypted under a key and cut to its size; with an empty key, a plain copy.
/// It appears whole or not at all, readable by its owner alone. Memory is the same for every size.
/// @param nSize UINT64_MAX takes the padding off instead. Throws std::runtime_error with the
/// reason, kMissingSource where there is no source.
void WriteDecrypted(const std::string& strSource, const std::string& strTarget, const Secret& key,
                    uint64_t nSize);
