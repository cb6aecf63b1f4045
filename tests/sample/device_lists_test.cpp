// The property lists, the keybag and the records of samples, as other readers of backups find them.
#include <gmock/gmock.h>

#include <set>

#include "tests/sample/written_sample.h"

using namespace orvandel;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

DemoOptions Encrypted(int nIos) {
  DemoOptions options = OptionsOf(nIos);
  options.password = "secret";
  options.rounds = 20;
  return options;
}

struct KeybagItem {
  std::string strTag, strValue;
};

uint32_t BigEndian(const std::string& strBytes) {
  uint32_t nNumber = 0;
  for (const char ch : strBytes) nNumber = nNumber << 8 | static_cast<unsigned char>(ch);
  return nNumber;
}

std::vector<KeybagItem> ItemsOf(const std::string& strBag) {
  std::vector<KeybagItem> items;
  for (size_t n = 0; n + 8 <= strBag.size();) {
    const uint32_t nLength = BigEndian(strBag.substr(n + 4, 4));
    items.push_back({strBag.substr(n, 4), strBag.substr(n + 8, nLength)});
    n += 8 + nLength;
  }
  return items;
}

/// Values of a tag in order.
std::vector<uint32_t> Numbers(const std::vector<KeybagItem>& items, const char* pszTag) {
  std::vector<uint32_t> numbers;
  for (const KeybagItem& item : items)
    if (item.strTag == pszTag) numbers.push_back(BigEndian(item.strValue));
  return numbers;
}

std::string KeybagOf(const WrittenSample& sample) {
  return Value(ParseBinaryList(ReadFile(sample.Path("Manifest.plist"))).get(), "BackupKeyBag");
}

/// A record of "Manifest.db", with its references resolved.
class Record {
 public:
  explicit Record(const std::string& strBytes) : m_list(ParseBinaryList(strBytes)) {}

  plist_t File() const { return Object(plist_dict_get_item(Top(), "root")); }
  std::string Of(const char* pszKey) const { return Value(File(), pszKey); }
  std::string TextOf(const char* pszKey) const {
    const plist_t pText = Object(plist_dict_get_item(File(), pszKey));
    return pText ? plist_get_string_ptr(pText, nullptr) : "(missing)";
  }
  std::string ClassOf(plist_t pObject) const {
    return Value(Object(plist_dict_get_item(pObject, "$class")), "$classname");
  }
  plist_t Object(plist_t pReference) const {
    if (!pReference || plist_get_node_type(pReference) != PLIST_UID) return nullptr;
    uint64_t nPlace = 0;
    plist_get_uid_val(pReference, &nPlace);
    return plist_array_get_item(plist_dict_get_item(m_list.get(), "$objects"), static_cast<uint32_t>(nPlace));
  }

 private:
  plist_t Top() const { return plist_dict_get_item(m_list.get(), "$top"); }
  PlistPtr m_list;
};

class DeviceLists : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Versions, DeviceLists,
                         testing::Values(5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18));

}  // namespace

TEST_P(DeviceLists, ManifestListDescribesTheDevice) {
  const WrittenSample sample(GetParam());
  const PlistPtr info = ParseXmlList(ReadFile(sample.Path("Info.plist")));

  const PlistPtr list = ParseBinaryList(ReadFile(sample.Path("Manifest.plist")));

  const plist_t pLockdown = plist_dict_get_item(list.get(), "Lockdown");
  const std::pair<const char*, const char*> pairs[] = {
      {"BuildVersion", "Build Version"}, {"DeviceName", "Device Name"},
      {"ProductType", "Product Type"},   {"ProductVersion", "Product Version"},
      {"SerialNumber", "Serial Number"}, {"UniqueDeviceID", "Target Identifier"}};
  for (const auto& [pszKey, pszInfoKey] : pairs) {
    EXPECT_NE("(missing)", Value(pLockdown, pszKey)) << pszKey;
    EXPECT_EQ(Value(info.get(), pszInfoKey), Value(pLockdown, pszKey)) << pszKey;
  }
  EXPECT_EQ(std::to_string(GetParam()) + ".",
            Value(pLockdown, "ProductVersion").substr(0, std::to_string(GetParam()).size() + 1));
  EXPECT_EQ("false", Value(list.get(), "IsEncrypted"));
  EXPECT_EQ("true", Value(list.get(), "WasPasscodeSet"));
  EXPECT_EQ(GetParam() < 10 ? "9.1" : "10.0", Value(list.get(), "Version"));
  EXPECT_EQ(Value(info.get(), "Last Backup Date"), Value(list.get(), "Date"));
  EXPECT_NE("(missing)", Value(list.get(), "SystemDomainsVersion"));
  EXPECT_EQ("(missing)", Value(list.get(), "ManifestKey"));
  const plist_t pApp =
      plist_dict_get_item(plist_dict_get_item(list.get(), "Applications"), "com.example.Snap");
  EXPECT_EQ("com.example.Snap", Value(pApp, "CFBundleIdentifier"));
  for (const char* pszKey : {"GUID", "IMEI", "Unique Identifier", "Product Type", "Build Version"})
    EXPECT_NE("(missing)", Value(info.get(), pszKey)) << pszKey;
}

TEST_P(DeviceLists, StatusListIsThatOfAFinishedBackup) {
  const WrittenSample sample(GetParam());

  const PlistPtr list = ParseBinaryList(ReadFile(sample.Path("Status.plist")));

  EXPECT_EQ("new", Value(list.get(), "BackupState"));
  EXPECT_EQ("finished", Value(list.get(), "SnapshotState"));
  EXPECT_EQ("true", Value(list.get(), "IsFullBackup"));
  EXPECT_EQ(36u, Value(list.get(), "UUID").size());
  for (const char* pszKey : {"Date", "Version"}) EXPECT_NE("(missing)", Value(list.get(), pszKey)) << pszKey;
}

TEST_P(DeviceLists, KeybagHasTheClassesOfDevices) {
  for (const bool bEncrypted : {false, true}) {
    const WrittenSample sample(bEncrypted ? Encrypted(GetParam()) : OptionsOf(GetParam()));

    const std::vector<KeybagItem> items = ItemsOf(KeybagOf(sample));

    ASSERT_EQ("VERS", items[0].strTag);
    EXPECT_EQ(GetParam() < 10 ? 3u : 5u, BigEndian(items[0].strValue));
    EXPECT_THAT(Numbers(items, "TYPE"), ElementsAre(1u));
    EXPECT_THAT(Numbers(items, "CLAS"), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
    EXPECT_THAT(Numbers(items, "WRAP"), ElementsAre(0, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3));
    EXPECT_THAT(Numbers(items, "KTYP"), Each(0u));
    EXPECT_THAT(Numbers(items, "ITER"), SizeIs(1));
    EXPECT_THAT(Numbers(items, "DPIC"), SizeIs(GetParam() < 10 ? 0 : 1));
    for (const KeybagItem& item : items) {
      if (item.strTag == "UUID") {
        EXPECT_EQ(16u, item.strValue.size());
      }
      if (item.strTag == "WPKY" || item.strTag == "HMCK") {
        EXPECT_EQ(40u, item.strValue.size());
      }
    }
  }
}

TEST(SampleRecord, DescribesEachFile) {
  const WrittenSample sample(17);
  const Rows rows = RowsOf(sample.Path("Manifest.db"), "select file, relativePath, flags, fileID from Files");
  std::set<std::string> inodes;

  ASSERT_GT(rows.size(), 100u);
  for (const auto& row : rows) {
    const Record record(row[0]);
    const bool bFolder = row[2] == "2", bLink = row[2] == "4";
    EXPECT_EQ("MBFile", record.ClassOf(record.File()));
    EXPECT_EQ(row[1], record.TextOf("RelativePath"));
    EXPECT_EQ(bFolder ? "16877" : bLink ? "41453" : "33188", record.Of("Mode"));
    for (const char* pszKey : {"LastModified", "LastStatusChange", "Birth"})
      EXPECT_GT(record.Of(pszKey), "1388000000") << pszKey;
    EXPECT_EQ("501", record.Of("UserID"));
    EXPECT_EQ("501", record.Of("GroupID"));
    EXPECT_EQ("0", record.Of("Flags"));
    EXPECT_EQ(bFolder, record.Of("ProtectionClass") == "0");
    EXPECT_EQ(bLink, record.TextOf("Target") != "(missing)");
    EXPECT_EQ("(missing)", record.Of("EncryptionKey"));
    inodes.insert(record.Of("InodeNumber"));
    const std::string strFile = sample.Path(row[3].substr(0, 2) + "/" + row[3]);
    if (!bFolder && Exists(strFile)) {
      EXPECT_EQ(std::to_string(ReadFile(strFile).size()), record.Of("Size"));
    }
  }
  EXPECT_EQ(rows.size(), inodes.size());
}

TEST(SampleRecord, HasTheKeyInBothForms) {
  DemoOptions options = Encrypted(10);
  options.age = Encryption::Age::Ios10;  // its manifest is in plain
  const WrittenSample sample(options);
  size_t nInline = 0, nReferred = 0;
  std::set<std::string> classes;

  for (const auto& row : RowsOf(sample.Path("Manifest.db"), "select file from Files where flags = 1")) {
    const Record record(row[0]);
    const plist_t pKey = record.Object(plist_dict_get_item(record.File(), "EncryptionKey"));
    ASSERT_NE(nullptr, pKey);
    EXPECT_EQ("NSMutableData", record.ClassOf(pKey));
    std::string strKey = Value(pKey, "NS.data");
    if (const plist_t pBytes = record.Object(plist_dict_get_item(pKey, "NS.data"))) {
      ++nReferred;
      uint64_t nLength = 0;
      const char* pData = plist_get_data_ptr(pBytes, &nLength);
      strKey.assign(pData, nLength);
    } else {
      ++nInline;
    }
    ASSERT_EQ(44u, strKey.size());
    EXPECT_EQ(std::to_string(static_cast<int>(strKey[0])), record.Of("ProtectionClass"));
    classes.insert(record.Of("ProtectionClass"));
  }

  EXPECT_GT(nInline, 20u);
  EXPECT_GT(nReferred, 20u);
  EXPECT_THAT(classes, ElementsAre("1", "2", "3", "4"));
}

TEST(SampleRecord, BinaryManifestHasPropertiesWithBinaryValues) {
  const WrittenSample sample(9);
  const std::string strManifest = ReadFile(sample.Path("Manifest.mbdb"));

  const std::string strName = "com.apple.assetsd.UUID", strHidden = "com.apple.assetsd.hidden";
  const size_t nName = strManifest.find(strName);
  ASSERT_NE(std::string::npos, nName);
  EXPECT_EQ(3, strManifest[nName - 3]) << "number of properties";
  EXPECT_EQ(std::string("\0\x10", 2), strManifest.substr(nName + strName.size(), 2));
  const size_t nHidden = strManifest.find(strHidden, nName);
  ASSERT_NE(std::string::npos, nHidden);
  EXPECT_EQ(std::string("\0\x01\0", 3), strManifest.substr(nHidden + strHidden.size(), 3));
}
