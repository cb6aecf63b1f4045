#include <gmock/gmock.h>
#include <plist/plist.h>

#include "decrypt/archived_file.h"
#include "decrypt/property_list.h"
#include "sample/encryption.h"
#include "tests/decrypt/cryptography.h"

using namespace orvandel;

namespace {

const std::string kKey(44, 'k');

/// A record with modified objects. The objects of a complete one are: 0 "$null", 1 the file, 2 its class, 3
/// the key's object, 4 that one's class.
class Record {
 public:
  Record() {
    const QByteArray bytes = BackupKeys::record(0x81A4, 77, QByteArray(kKey.data(), 44), false);
    plist_from_bin(bytes.constData(), static_cast<uint32_t>(bytes.size()), &m_root);
  }
  ~Record() { plist_free(m_root); }
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

  plist_t Root() const { return m_root; }
  plist_t Objects() const { return plist_dict_get_item(m_root, "$objects"); }
  plist_t Object(uint32_t nPlace) const { return plist_array_get_item(Objects(), nPlace); }

  ArchivedFile Read() const {
    char* pBytes = nullptr;
    uint32_t nSize = 0;
    plist_to_bin(m_root, &pBytes, &nSize);
    const ArchivedFile file = ReadArchivedFile(pBytes, nSize);
    plist_to_bin_free(pBytes);
    return file;
  }

 private:
  plist_t m_root = nullptr;
};

std::string KeyOf(const ArchivedFile& file) {
  return std::string(file.wrappedKey.begin(), file.wrappedKey.end());
}

ArchivedFile ReadBytes(const QByteArray& bytes) {
  return ReadArchivedFile(bytes.constData(), static_cast<size_t>(bytes.size()));
}

}  // namespace

TEST(ArchivedFile, ReturnsSizeAndKey) {
  const ArchivedFile file = Record().Read();

  EXPECT_EQ(kKey, KeyOf(file));
  EXPECT_EQ(77u, file.nSize);
  EXPECT_TRUE(file.bWhole);
}

TEST(ArchivedFile, ReturnsAKeyWhoseDataIsAReference) {
  const ArchivedFile file =
      ReadBytes(BackupKeys::record(0x81A4, 5'000'000'000, QByteArray(kKey.data(), 44), true));

  EXPECT_EQ(kKey, KeyOf(file));
  EXPECT_EQ(5'000'000'000u, file.nSize);
}

TEST(ArchivedFile, ReturnsAKeyStoredInline) {
  const Record record;
  plist_dict_set_item(record.Object(1), "EncryptionKey", plist_new_data(kKey.data(), kKey.size()));

  EXPECT_EQ(kKey, KeyOf(record.Read()));
}

TEST(ArchivedFile, WithoutAKeyIsNotEncrypted) {
  const ArchivedFile file = ReadBytes(BackupKeys::record(0x81A4, 77, {}, false));

  EXPECT_EQ("", KeyOf(file));
  EXPECT_EQ(77u, file.nSize);
  EXPECT_TRUE(file.bWhole);
}

TEST(ArchivedFile, WithANullKeyIsNotEncrypted) {
  const Record record;
  plist_dict_set_item(record.Object(1), "EncryptionKey", plist_new_uid(0));

  const ArchivedFile file = record.Read();

  EXPECT_EQ("", KeyOf(file));
  EXPECT_TRUE(file.bWhole);
}

TEST(ArchivedFile, ReturnsNothingForInvalidRecords) {
  const std::vector<QByteArray> inputs = {
      "",
      "b",
      "bplist00",
      "bplist00\xFF\xFF\xFF\xFF",
      QByteArray("bplist00") + QByteArray(32, '\0'),
      QByteArray("bplist00") + QByteArray(40, '\xFF'),
      "<plist/>",
      "<plist version=\"1.0\"><array/></plist>",
      "<plist version=\"1.0\"><dict><key>$objects</key><dict/></dict></plist>",
      "<plist version=\"1.0\"><dict><key>$objects</key><array/><key>$top</key><string>root</string></dict>"
      "</plist>",
      QByteArray(64, '\0'),
  };
  for (const QByteArray& input : inputs) {
    const ArchivedFile file = ReadBytes(input);

    EXPECT_EQ("", KeyOf(file)) << input.toStdString();
    EXPECT_FALSE(file.bWhole) << input.toStdString();
    EXPECT_EQ(UINT64_MAX, file.nSize) << input.toStdString();
  }
  EXPECT_EQ("", KeyOf(ReadArchivedFile(nullptr, 0)));
}

TEST(ArchivedFile, SurvivesTruncationAnywhere) {
  const QByteArray whole = BackupKeys::record(0x81A4, 77, QByteArray(kKey.data(), 44), true);
  for (int nSize = 0; nSize < whole.size(); ++nSize) {
    // A copy of the exact length, so that sanitizers detect reads beyond the end.
    const std::vector<char> cut(whole.begin(), whole.begin() + nSize);

    EXPECT_FALSE(ReadArchivedFile(cut.data(), cut.size()).bWhole) << nSize;
  }
}

TEST(ArchivedFile, SurvivesDanglingReferences) {
  for (const uint64_t nPlace : {uint64_t{5}, uint64_t{0xFFFFFFFF}}) {
    const Record record;
    plist_dict_set_item(record.Object(1), "EncryptionKey", plist_new_uid(nPlace));

    const ArchivedFile file = record.Read();

    EXPECT_EQ("", KeyOf(file)) << nPlace;
    EXPECT_EQ(77u, file.nSize) << nPlace;
    EXPECT_FALSE(file.bWhole) << nPlace;
  }
}

TEST(ArchivedFile, SurvivesCyclicReferences) {
  const Record record;
  plist_dict_set_item(record.Object(3), "NS.data", plist_new_uid(3));
  EXPECT_EQ("", KeyOf(record.Read()));

  plist_dict_set_item(record.Object(1), "EncryptionKey", plist_new_uid(1));
  EXPECT_EQ("", KeyOf(record.Read()));

  plist_dict_set_item(plist_dict_get_item(record.Root(), "$top"), "root", plist_new_uid(0));
  EXPECT_EQ(UINT64_MAX, record.Read().nSize);
}

TEST(ArchivedFile, SurvivesValuesOfTheWrongType) {
  for (const char* pszKind : {"string", "number", "array"}) {
    const auto value = [&] {
      if (std::string(pszKind) == "string") return plist_new_string("text");
      return std::string(pszKind) == "number" ? plist_new_uint(44) : plist_new_array();
    };
    const Record key, data, top, root;
    plist_dict_set_item(key.Object(1), "EncryptionKey", value());
    plist_dict_set_item(data.Object(3), "NS.data", value());
    plist_dict_set_item(top.Root(), "$top", value());
    plist_dict_set_item(root.Root(), "$objects", value());

    for (const Record* pRecord : {&key, &data, &top, &root}) EXPECT_EQ("", KeyOf(pRecord->Read())) << pszKind;
  }
}

TEST(ArchivedFile, HasNoSizeIfItIsNotANumber) {
  const Record record;
  plist_dict_set_item(record.Object(1), "Size", plist_new_string("77"));

  EXPECT_EQ(UINT64_MAX, record.Read().nSize);
  EXPECT_EQ(kKey, KeyOf(record.Read()));
}

TEST(PropertyListText, GivesAManifestsValues) {
  const std::string strXml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict><key>IsEncrypted</key><true/>"
      "<key>BackupKeyBag</key><data>a2V5YmFn</data></dict></plist>";
  const PropertyList list(strXml.data(), strXml.size());

  EXPECT_TRUE(BooleanOf(Member(list.Root(), "IsEncrypted")));
  EXPECT_EQ(ToBytes("keybag"), DataOf(Member(list.Root(), "BackupKeyBag")));
  EXPECT_TRUE(DataOf(Member(list.Root(), "ManifestKey")).empty());
  EXPECT_FALSE(BooleanOf(Member(list.Root(), "BackupKeyBag")));
}
