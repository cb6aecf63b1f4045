#pragma once
#include <string>

#include "common/catalogue.h"

// Readers of the two forms of manifest. docs/manifest-format.md tells the binary one byte by byte.

/// Reads "Manifest.mbdb". Directories and entries without a domain or a path are left out; the identifiers
/// are computed.
/// @param pPath   path in UTF-16; null fails.
/// @param entries receives the entries, behind those that it holds already.
/// @return 0, or 87 when the file can't be opened or doesn't begin with the magic.
///         A file cut short gives 0 and the entries that are whole.
int process_mbdb_file(const char16_t* pPath, Catalogue& entries);

/// Reads "Manifest.db". Every row with an identifier becomes an entry, directories too.
/// @param entries is emptied first.
/// @return 0 always: a store that can't be read gives no entries.
int process_db_file(const char16_t* pPath, Catalogue& entries);

/// Reads a string of the binary manifest: 16-bit big-endian length, then bytes; FFFF is the empty string.
/// @param pData   the data; null gives an empty text.
/// @param pOffset where to read; moved behind the string. Null gives an empty text.
/// @param nSize   bytes of data there are. A string that isn't whole gives an empty text and moves to nSize
/// + 1.
std::string getstring(const unsigned char* pData, long long* pOffset, long long nSize);

/// The data hash of an entry as the reader holds it: each byte by "%x", with no padding. Same rules as
/// getstring.
std::string gethash(const unsigned char* pData, long long* pOffset, long long nSize);
