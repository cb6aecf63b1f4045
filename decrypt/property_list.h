#pragma once
#include <plist/plist.h>

#include <memory>
#include <string>

#include "decrypt/crypto.h"

namespace orvandel {

/// A parsed property list, binary or XML. Empty for invalid input.
class PropertyList {
 public:
  PropertyList(const void* pData, size_t nSize);
  ~PropertyList();
  PropertyList(const PropertyList&) = delete;
  PropertyList& operator=(const PropertyList&) = delete;

  /// The root node; null for invalid input. Nodes are owned by this object.
  plist_t Root() const { return m_pRoot; }

 private:
  plist_t m_pRoot = nullptr;
};

// The value of a node. All accept null and nodes of another type, and return nothing then.

plist_t Member(plist_t pDictionary, const char* pszKey);
bool BooleanOf(plist_t pNode);
Bytes DataOf(plist_t pNode);
/// @param nValue unchanged when the node isn't a number.
void NumberOf(plist_t pNode, uint64_t& nValue);

}  // namespace orvandel
