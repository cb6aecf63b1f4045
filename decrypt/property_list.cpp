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

namespace {

/// The object that a node refers to, or the node itself when it isn't a reference.
plist_t Resolve(plist_t pObjects, plist_t pNode) {
  if (!pNode || plist_get_node_type(pNode) != PLIST_UID) return pNode;
  uint64_t nPlace = 0;
  plist_get_uid_val(pNode, &nPlace);
  if (nPlace >= plist_array_get_size(pObjects)) return nullptr;
  return plist_array_get_item(pObjects, static_cast<uint32_t>(nPlace));
}

/// True for the archiver's null object.
bool IsNull(plist_t pNode) {
  if (!pNode || plist_get_node_type(pNode) != PLIST_STRING) return false;
  uint64_t nLength = 0;
  const char* pszText = plist_get_string_ptr(pNode, &nLength);
  return pszText && strcmp(pszText, "$null") == 0;
}

}  // namespace

ArchivedFile ReadArchivedFile(const void* pData, size_t nSize) {
  ArchivedFile file;
  const PropertyList archive(pData, nSize);
  plist_t pObjects = Member(archive.Root(), "$objects");
  if (!pObjects || plist_get_node_type(pObjects) != PLIST_ARRAY) return file;
  plist_t pRecord = Resolve(pObjects, Member(Member(archive.Root(), "$top"), "root"));
  NumberOf(Resolve(pObjects, Member(pRecord, "Size")), file.nSize);
  plist_t pReference = Member(pRecord, "EncryptionKey");
  plist_t pKey = Resolve(pObjects, pReference);
  if (!pReference || IsNull(pKey)) {
    file.bWhole = pRecord && plist_get_node_type(pRecord) == PLIST_DICT;
    return file;
  }
  if (pKey && plist_get_node_type(pKey) == PLIST_DICT) pKey = Resolve(pObjects, Member(pKey, "NS.data"));
  file.wrappedKey = DataOf(pKey);
  file.bWhole = !file.wrappedKey.empty();
  return file;
}

}  // namespace orvandel
