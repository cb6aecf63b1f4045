#pragma once
#include <string>

#include "common/catalogue.h"

// Readers of the two manifest formats. The binary one is documented in docs/manifest-format.md.

/// Reads "Manifest.mbdb". Skips directories and entries without a domain or a path; computes the identifiers.
/// @param pPath   path in UTF-16; null fails.
/// @param entries the entries are appended to it.
/// @return 0, or 87 when the file can't be opened or doesn't begin with the magic. A truncated file gives 0
///         and its complete entries.
int process_mbdb_file(const char16_t* pPath, orvandel::Catalogue& entries);

/// Reads "Manifest.db". Every row with an identifier is an entry, including directories.
/// @param entries is cleared first.
/// @return 0 always: a store that can't be read gives no entries.
int process_db_file(const char16_t* pPath, orvandel::Catalogue& entries);

/// Reads a string of the binary manifest: 16-bit big-endian length, then the bytes; length FFFF is the empty
/// string.
/// @param pData   the data; null gives an empty string.
/// @param pOffset where to read; moved past the string. Null gives an empty string.
/// @param nSize   size of the data in bytes. An incomplete string gives an empty string and moves to nSize +
/// 1.
std::string getstring(const unsigned char* pData, long long* pOffset, long long nSize);

namespace orvandel {

/// Reads the data hash of an entry: each byte as "%x", without padding. Otherwise like getstring.
std::string gethash(const unsigned char* pData, long long* pOffset, long long nSize);

}  // namespace orvandel
