#include "tests/sample/written_sample.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace orvandel {

namespace {

std::string DataOf(plist_t pNode) {
  uint64_t nLength = 0;
  const char* pBytes = plist_get_data_ptr(pNode, &nLength);
  return std::string(pBytes, nLength);
}

}  // namespace

PlistPtr ParseBinaryList(const std::string& strBytes) {
  plist_t pList = nullptr;
  EXPECT_EQ("bplist00", strBytes.substr(0, 8));
  plist_from_bin(strBytes.data(), static_cast<uint32_t>(strBytes.size()), &pList);
  EXPECT_NE(nullptr, pList);
  return PlistPtr(pList);
}

PlistPtr ParseXmlList(const std::string& strBytes) {
  plist_t pList = nullptr;
  EXPECT_EQ("<?xml", strBytes.substr(0, 5));
  plist_from_xml(strBytes.data(), static_cast<uint32_t>(strBytes.size()), &pList);
  EXPECT_NE(nullptr, pList);
  return PlistPtr(pList);
}

std::string Value(plist_t pDictionary, const char* pszKey) {
  const plist_t pNode = pDictionary ? plist_dict_get_item(pDictionary, pszKey) : nullptr;
  if (!pNode) return "(missing)";
  switch (plist_get_node_type(pNode)) {
    case PLIST_STRING: {
      uint64_t nLength = 0;
      const char* pszText = plist_get_string_ptr(pNode, &nLength);
      return std::string(pszText, nLength);
    }
    case PLIST_UINT: {
      uint64_t nValue = 0;
      plist_get_uint_val(pNode, &nValue);
      return std::to_string(nValue);
    }
    case PLIST_BOOLEAN: {
      uint8_t nValue = 0;
      plist_get_bool_val(pNode, &nValue);
      return nValue ? "true" : "false";
    }
    case PLIST_DATE: {
      int32_t nSeconds = 0, nMicroseconds = 0;
      plist_get_date_val(pNode, &nSeconds, &nMicroseconds);
      return std::to_string(nSeconds);
    }
    case PLIST_DATA:
      return DataOf(pNode);
    default:
      return "(other)";
  }
}

Rows RowsOf(const std::string& strStore, const std::string& strStatement) {
  Rows rows;
  sqlite3* pStore = nullptr;
  sqlite3_stmt* pStatement = nullptr;
  EXPECT_TRUE(Exists(strStore)) << strStore;
  EXPECT_EQ(SQLITE_OK, sqlite3_open_v2(("file:" + strStore + "?immutable=1").c_str(), &pStore,
                                       SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr));
  EXPECT_EQ(SQLITE_OK, sqlite3_prepare_v2(pStore, strStatement.c_str(), -1, &pStatement, nullptr))
      << strStatement << ": " << sqlite3_errmsg(pStore);
  while (pStatement && sqlite3_step(pStatement) == SQLITE_ROW) {
    rows.emplace_back();
    for (int i = 0; i < sqlite3_column_count(pStatement); ++i) {
      const bool bNull = sqlite3_column_type(pStatement, i) == SQLITE_NULL;
      const void* pBytes = sqlite3_column_blob(pStatement, i);
      const auto nSize = static_cast<size_t>(sqlite3_column_bytes(pStatement, i));
      rows.back().push_back(bNull ? "(null)" : std::string(static_cast<const char*>(pBytes), nSize));
    }
  }
  sqlite3_finalize(pStatement);
  sqlite3_close(pStore);
  return rows;
}

DemoOptions OptionsOf(int nIos) {
  DemoOptions options;
  if (nIos) options.setIos(nIos);
  options.photos = 12;
  options.messages = 200;
  return options;
}

WrittenSample::WrittenSample(int nIos) : WrittenSample(OptionsOf(nIos)) {}

WrittenSample::WrittenSample(const DemoOptions& options)
    : m_options(options), m_summary(writeDemoBackup(QString::fromStdString(Path()), options)) {}

std::string WrittenSample::Path(const std::string& strName) const {
  return m_folder.Path("backup") + (strName.empty() ? "" : "/" + strName);
}

std::string WrittenSample::FileOf(const std::string& strDomain, const std::string& strPath) const {
  const BackupBuilder backup(QString::fromStdString(Path()), m_options.layout);
  const QString qstrId =
      BackupBuilder::fileId(QString::fromStdString(strDomain), QString::fromStdString(strPath));
  return backup.filePath(qstrId).toStdString();
}

std::string WrittenSample::StoreOf(const StorePlace& place) const {
  return FileOf(place.domain.toStdString(), place.relativePath.toStdString());
}

Rows WrittenSample::Messages(const std::string& strStatement) const {
  return RowsOf(StoreOf(store_places::messages()), strStatement);
}

}  // namespace orvandel
