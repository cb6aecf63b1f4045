#include "sample/file_record.h"

#include <plist/plist.h>

#include <initializer_list>
#include <stdexcept>

namespace orvandel {

namespace {

/// The object table of a keyed archive.
class Archive {
 public:
  Archive() : m_objects(plist_new_array()) { add(plist_new_string("$null")); }

  /// @return the number of the new object.
  uint64_t add(plist_t object) {
    plist_array_append_item(m_objects, object);
    return plist_array_get_size(m_objects) - 1;
  }

  /// @param chain the class, then its base classes.
  uint64_t addClass(std::initializer_list<const char*> chain) {
    const plist_t names = plist_new_array();
    for (const char* name : chain) plist_array_append_item(names, plist_new_string(name));
    const plist_t object = plist_new_dict();
    plist_dict_set_item(object, "$classes", names);
    plist_dict_set_item(object, "$classname", plist_new_string(*chain.begin()));
    return add(object);
  }

  /// Ends the archive. @return it as a binary property list.
  QByteArray finish(uint64_t rootObject) {
    const plist_t top = plist_new_dict();
    plist_dict_set_item(top, "root", plist_new_uid(rootObject));
    const plist_t root = plist_new_dict();
    plist_dict_set_item(root, "$archiver", plist_new_string("NSKeyedArchiver"));
    plist_dict_set_item(root, "$objects", m_objects);
    plist_dict_set_item(root, "$top", top);
    plist_dict_set_item(root, "$version", plist_new_uint(100000));
    char* binary = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &binary, &length);
    plist_free(root);
    if (!binary) throw std::runtime_error("libplist can't write a file's record");
    const QByteArray out(binary, int(length));
    plist_to_bin_free(binary);
    return out;
  }

 private:
  plist_t m_objects;
};

void setNumbers(plist_t file, const FileRecord& record) {
  const auto set = [&](const char* key, uint64_t value) {
    plist_dict_set_item(file, key, plist_new_uint(value));
  };
  if (record.modified >= 0) {
    for (const char* key : {"LastModified", "LastStatusChange", "Birth"}) set(key, uint64_t(record.modified));
  }
  set("Mode", record.mode);
  set("Size", record.size);
  set("UserID", record.owner);
  set("GroupID", record.owner);
  set("InodeNumber", record.inode);
  set("ProtectionClass", record.protectionClass);
  set("Flags", 0);
}

}  // namespace

QByteArray archivedRecord(const FileRecord& record) {
  Archive archive;
  const plist_t file = plist_new_dict();
  setNumbers(file, record);
  const uint64_t fileObject = archive.add(file);
  const auto refer = [](plist_t object, const char* key, uint64_t to) {
    plist_dict_set_item(object, key, plist_new_uid(to));
  };
  refer(file, "$class", archive.addClass({"MBFile", "NSObject"}));
  if (!record.wrappedKey.isEmpty()) {
    const plist_t data = plist_new_dict();
    const plist_t bytes = plist_new_data(record.wrappedKey.constData(), uint64_t(record.wrappedKey.size()));
    refer(file, "EncryptionKey", archive.add(data));
    refer(data, "$class", archive.addClass({"NSMutableData", "NSData", "NSObject"}));
    if (record.nestedKey) {
      refer(data, "NS.data", archive.add(bytes));
    } else {
      plist_dict_set_item(data, "NS.data", bytes);
    }
  }
  if (!record.relativePath.isNull()) {
    const QByteArray path = record.relativePath.toUtf8();
    refer(file, "RelativePath", archive.add(plist_new_string(path.constData())));
  }
  if (!record.target.isEmpty())
    refer(file, "Target", archive.add(plist_new_string(record.target.constData())));
  return archive.finish(fileObject);
}

}  // namespace orvandel
