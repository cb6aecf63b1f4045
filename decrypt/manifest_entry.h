#pragma once
#include <cstdint>
#include <string>

#include "decrypt/crypto.h"

namespace orvandel {

/// One entry of a manifest, with what its record says. Texts are narrow.
struct ManifestEntry {
  enum class Kind { Unknown, File, Folder, Link };

  std::string strId;  ///< its name in the backup; any text
  std::string strDomain;
  std::string strPath;  ///< relative to the domain; empty for the domain's own folder
  Kind kind = Kind::Unknown;

  // The fields of the record, set only when it was asked for.
  Bytes wrappedKey;             ///< 44 bytes; empty for an unencrypted file
  uint64_t nSize = UINT64_MAX;  ///< decrypted, in bytes; UINT64_MAX if unknown
  int64_t nModified = -1;       ///< seconds since 1970; -1 if unknown
  uint32_t nMode = 0;           ///< type and permissions as in stat; 0 if unknown
  std::string strTarget;        ///< of a link
  std::string strDataHash;      ///< of the binary manifest: see fileinfo
  bool bDamaged = false;        ///< the record can't be read
};

/// True for 40 lower-case hexadecimal digits. Others are never used as names of files.
bool IsIdentifier(const std::string& strId);

/// The kind of an entry by the type in its mode.
ManifestEntry::Kind KindOfMode(uint32_t nMode);

}  // namespace orvandel
