#pragma once
#include <cstdint>
#include <string>

#include "decrypt/crypto.h"

namespace orvandel {

/// The fields of a file's archived record in "Manifest.db".
struct ArchivedFile {
  Bytes wrappedKey;             ///< class number and wrapped key, 44 bytes; empty for an unencrypted file
  uint64_t nSize = UINT64_MAX;  ///< in bytes; UINT64_MAX if unknown
  int64_t nModified = -1;       ///< seconds since 1970; -1 if unknown
  uint32_t nMode = 0;           ///< type and permissions as in stat; 0 if unknown
  std::string strTarget;        ///< of a link; UTF-8
  bool bWhole = false;          ///< false for an invalid record, or a missing key
};

/// Reads a record of the keyed archiver, a binary or XML property list. Of a binary one it reads only the
/// objects that are needed, at most a few for each field, whatever the others refer to.
/// @return an empty record for anything else.
ArchivedFile ReadArchivedFile(const void* pData, size_t nSize);

}  // namespace orvandel
