#include "decrypt/property_list.h"

#include <cstring>

namespace orvandel {

PropertyList::PropertyList(const void* pData, size_t nSize) {
  const auto* pBytes = static_cast<const char*>(pData);
  if (nSize < 8 || nSize > UINT32_MAX) return;
  if (memcmp(pBytes, "bplist", 6) == 0)
    plist_from_bin(pBytes, static_cast<uint32_t>(nSize), &m_pRoot);
  else
    plist_from_xml(pBytes, static_cast<uint32_t>(nSize), &m_pRoot);
}

PropertyList::~PropertyList() {
  if (m_pRoot) plist_free(m_pRoot);
}

plist_t Member(plist_t pDictionary, const char* pszKey) {
  if (!pDictionary || plist_get_node_type(pDictionary) != PLIST_DICT) return nullptr;
  return plist_dict_get_item(pDictionary, pszKey);
}

bool BooleanOf(plist_t pNode) {
  uint8_t nValue = 0;
  if (pNode && plist_get_node_type(pNode) == PLIST_BOOLEAN) plist_get_bool_val(pNode, &nValue);
  return nValue != 0;
}

Bytes DataOf(plist_t pNode) {
  if (!pNode || plist_get_node_type(pNode) != PLIST_DATA) return {};
  uint64_t nLength = 0;
  const char* pData = plist_get_data_ptr(pNode, &nLength);
  return pData ? Bytes(pData, pData + nLength) : Bytes();
}

void NumberOf(plist_t pNode, uint64_t& nValue) {
  if (pNode && plist_get_node_type(pNode) == PLIST_UINT) plist_get_uint_val(pNode, &nValue);
}

}  // namespace orvandel
