#pragma once
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

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

/// An identifier in its compact form.
using IdentifierBytes = std::array<unsigned char, 20>;
/// Parses an identifier. @return false for any other text.
bool ParseIdentifier(std::string_view strId, IdentifierBytes& id);

constexpr int64_t kEndOfYears = 253402300800;  // 10000-01-01, in seconds since 1970

/// The modification time to give a copy of an entry's file, in seconds since 1970; -1 for none, as for a time
/// after the year 9999.
inline int64_t TimeOfCopy(const ManifestEntry& entry) {
  return entry.nModified < kEndOfYears ? std::max<int64_t>(entry.nModified, -1) : -1;
}

/// The kind of an entry by the type in its mode.
ManifestEntry::Kind KindOfMode(uint32_t nMode);

}  // namespace orvandel
