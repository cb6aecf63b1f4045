#pragma once
#include <plist/plist.h>

#include <memory>
#include <string>

#include "decrypt/crypto.h"

/// A property list in memory, binary or XML. Empty when the bytes are none.
class PropertyList {
 public:
  PropertyList(const void* pData, size_t nSize);
  ~PropertyList();
  PropertyList(const PropertyList&) = delete;
  PropertyList& operator=(const PropertyList&) = delete;

  /// Null for bytes that are no property list. The nodes belong to this object.
  plist_t Root() const { return m_pRoot; }

 private:
  plist_t m_pRoot = nullptr;
};

// What a node holds. All of them take null and nodes of another kind, and answer with nothing.

plist_t Member(plist_t pDictionary, const char* pszKey);
bool BooleanOf(plist_t pNode);
Bytes DataOf(plist_t pNode);
/// @param nValue left alone when the node is no number.
void NumberOf(plist_t pNode, uint64_t& nValue);

/// What the manifest's archived record of a file tells of its decryption.
struct ArchivedFile {
  Bytes wrappedKey;             ///< class number and wrapped key, 44 bytes; empty for a file stored in plain
  uint64_t nSize = UINT64_MAX;  ///< in bytes; UINT64_MAX when the record doesn't tell
  bool bWhole = false;          ///< false when these bytes are no record, or name a key that isn't there
};

/// Reads a record of the keyed archiver. Anything else gives an empty one.
ArchivedFile ReadArchivedFile(const void* pData, size_t nSize);
