#include "decrypt/archived_file.h"

#include <cstring>

#include "decrypt/binary_list.h"
#include "decrypt/property_list.h"

namespace orvandel {

namespace {

// Both forms of a property list offer the same operations, so that the record is read by one routine.

/// A binary property list.
class BinaryArchive {
 public:
  using Node = BinaryList::Object;
  explicit BinaryArchive(const BinaryList& list) : m_list(list) {}

  Node Root() const { return m_list.Root(); }
  Node Member(const Node& node, const char* pszKey) const { return m_list.Member(node, pszKey); }
  Node Element(const Node& node, uint64_t nPlace) const { return m_list.Element(node, nPlace); }
  bool Has(const Node& node, const char* pszKey) const { return m_list.HasMember(node, pszKey); }
  bool IsDictionary(const Node& node) const { return node.type == BinaryList::Type::Dictionary; }
  bool IsReference(const Node& node, uint64_t& nPlace) const {
    nPlace = node.nValue;
    return node.type == BinaryList::Type::Reference;
  }
  bool IsNumber(const Node& node, uint64_t& nValue) const {
    if (node.type == BinaryList::Type::Number) nValue = node.nValue;
    return node.type == BinaryList::Type::Number;
  }
  Bytes Data(const Node& node) const { return m_list.DataOf(node); }
  std::string Text(const Node& node) const { return m_list.TextOf(node); }

 private:
  const BinaryList& m_list;
};

/// A property list in XML, which some programs write in place of binary ones.
class XmlArchive {
 public:
  using Node = plist_t;
  explicit XmlArchive(const PropertyList& list) : m_list(list) {}

  Node Root() const { return m_list.Root(); }
  Node Member(Node pNode, const char* pszKey) const { return orvandel::Member(pNode, pszKey); }
  Node Element(Node pNode, uint64_t nPlace) const {
    if (!pNode || plist_get_node_type(pNode) != PLIST_ARRAY || nPlace >= plist_array_get_size(pNode))
      return nullptr;
    return plist_array_get_item(pNode, static_cast<uint32_t>(nPlace));
  }
  bool Has(Node pNode, const char* pszKey) const { return Member(pNode, pszKey) != nullptr; }
  bool IsDictionary(Node pNode) const { return pNode && plist_get_node_type(pNode) == PLIST_DICT; }
  /// In XML a reference is a dictionary with the key "CF$UID".
  bool IsReference(Node pNode, uint64_t& nPlace) const {
    if (pNode && plist_get_node_type(pNode) == PLIST_UID) {
      plist_get_uid_val(pNode, &nPlace);
      return true;
    }
    return IsNumber(Member(pNode, "CF$UID"), nPlace);
  }
  bool IsNumber(Node pNode, uint64_t& nValue) const {
    if (!pNode || plist_get_node_type(pNode) != PLIST_UINT) return false;
    plist_get_uint_val(pNode, &nValue);
    return true;
  }
  Bytes Data(Node pNode) const { return orvandel::DataOf(pNode); }
  std::string Text(Node pNode) const {
    if (!pNode || plist_get_node_type(pNode) != PLIST_STRING) return {};
    uint64_t nLength = 0;
    const char* pszText = plist_get_string_ptr(pNode, &nLength);
    return pszText ? std::string(pszText, nLength) : std::string();
  }

 private:
  const PropertyList& m_list;
};

template <typename Archive>
class RecordReader {
 public:
  explicit RecordReader(const Archive& archive)
      : m_archive(archive), m_objects(archive.Member(archive.Root(), "$objects")) {}

  ArchivedFile Read() const {
    ArchivedFile file;
    const Node record = Resolve(m_archive.Member(m_archive.Member(m_archive.Root(), "$top"), "root"));
    if (!m_archive.IsDictionary(record)) return file;
    uint64_t nNumber = 0;
    if (IsNumber(record, "Size", nNumber)) file.nSize = nNumber;
    if (IsNumber(record, "LastModified", nNumber)) file.nModified = static_cast<int64_t>(nNumber);
    if (IsNumber(record, "Mode", nNumber)) file.nMode = static_cast<uint32_t>(nNumber);
    file.strTarget = m_archive.Text(Resolve(m_archive.Member(record, "Target")));
    file.bWhole = ReadKey(record, file.wrappedKey);
    return file;
  }

 private:
  using Node = typename Archive::Node;

  /// The object that a node refers to, or the node itself when it isn't a reference.
  Node Resolve(const Node& node) const {
    uint64_t nPlace = 0;
    return m_archive.IsReference(node, nPlace) ? m_archive.Element(m_objects, nPlace) : node;
  }

  bool IsNumber(const Node& record, const char* pszKey, uint64_t& nNumber) const {
    return m_archive.IsNumber(Resolve(m_archive.Member(record, pszKey)), nNumber);
  }

  /// @return false when there is an entry for the key, but no key.
  bool ReadKey(const Node& record, Bytes& wrappedKey) const {
    const Node reference = m_archive.Member(record, "EncryptionKey");
    Node key = Resolve(reference);
    if (!m_archive.Has(record, "EncryptionKey") || m_archive.Text(key) == "$null") return true;
    if (m_archive.IsDictionary(key)) key = Resolve(m_archive.Member(key, "NS.data"));
    wrappedKey = m_archive.Data(key);
    return !wrappedKey.empty();
  }

  const Archive& m_archive;
  Node m_objects;
};

}  // namespace

ArchivedFile ReadArchivedFile(const void* pData, size_t nSize) {
  if (const auto list = BinaryList::Open(pData, nSize)) return RecordReader(BinaryArchive(*list)).Read();
  static constexpr char kBinary[] = "bplist";
  if (nSize < sizeof kBinary - 1 || memcmp(pData, kBinary, sizeof kBinary - 1) == 0) return {};
  const PropertyList list(pData, nSize);
  return RecordReader(XmlArchive(list)).Read();
}

}  // namespace orvandel
