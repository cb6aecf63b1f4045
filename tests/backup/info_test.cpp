#include "backup/info.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "backup/discovery.h"
#include "tests/support.h"

using namespace orvandel;

using namespace std::string_literals;

namespace {

const char kProbe[] = "31bb7ba8914766d4ba40d6dfb6113c8b614be442";

std::string Pair(const std::string& strKey, const std::string& strValue) {
  return "\t<key>" + strKey + "</key>\n\t" + strValue + "\n";
}

std::string Text(const std::string& strText) {
  return "<string>" + strText + "</string>";
}

class BackupFacts : public testing::Test {
 protected:
  int Read(const std::string& strPlist) {
    m_folder.Write("Info.plist", strPlist);
    return ReadBackupInfo(m_folder.Path(), m_info).nCode;
  }

  TemporaryFolder m_folder;
  __BACK_FILE_INFO__ m_info;
};

struct ValueCase {
  const char* pszName;
  std::string strValue;
  std::string strExpected;
};

void PrintTo(const ValueCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class BackupDate : public BackupFacts, public testing::WithParamInterface<ValueCase> {};

struct VersionCase {
  const char* pszName;
  const char* pszVersion;
  bool bAbove11;
};

void PrintTo(const VersionCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class ProductVersion : public BackupFacts, public testing::WithParamInterface<VersionCase> {};

}  // namespace

TEST(BackupRecord, NewOneIsEmpty) {
  const __BACK_FILE_INFO__ info;

  EXPECT_FALSE(info.bEncrypted);
  EXPECT_FALSE(info.bProductVersionAbove11);
  EXPECT_EQ("", info.strLastBackupDate + info.strPhoneNumber + info.strSerialNumber + info.strBackupPath +
                    info.strDisplayName);
}

TEST_F(BackupFacts, AllFiveKeysAreRead) {
  m_folder.Write(kProbe, "cipher text");

  const int nStatus =
      Read("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n" +
           Pair("Build Version", Text("13E238")) + Pair("Device Name", Text("other")) +
           Pair("Display Name", Text("Anna's phone")) +
           Pair("Last Backup Date", "<date>2016-05-01T09:12:33Z</date>") +
           Pair("Phone Number", Text("+49 30 901820")) + Pair("Product Type", Text("phone8,1")) +
           Pair("Product Version", Text("12.1")) + Pair("Serial Number", Text("F2LSAMPLE001")) +
           Pair("Target Type", Text("Device")) + "</dict>\n</plist>\n");

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("Anna's phone", m_info.strDisplayName);
  EXPECT_EQ("2016-05-01 09:12:33", m_info.strLastBackupDate);
  EXPECT_EQ("+49 30 901820", m_info.strPhoneNumber);
  EXPECT_TRUE(m_info.bProductVersionAbove11);
  EXPECT_EQ("F2LSAMPLE001", m_info.strSerialNumber);
  EXPECT_EQ(m_folder.Path(), m_info.strBackupPath);
  EXPECT_TRUE(m_info.bEncrypted);
}

TEST_F(BackupFacts, ModelIsReadAsWritten) {
  m_folder.Write("Info.plist", Pair("Product Type", Text("phone8,1")) +
                                   Pair("Product Version", Text("12.1")) +
                                   Pair("Product Type", Text("of another")));

  const DeviceModel model = ReadDeviceModel(m_folder.Path());

  EXPECT_EQ("phone8,1", model.strProductType);
  EXPECT_EQ("12.1", model.strProductVersion);
}

TEST_F(BackupFacts, MissingFileHasNoModel) {
  const DeviceModel model = ReadDeviceModel(m_folder.Path());

  EXPECT_EQ("", model.strProductType + model.strProductVersion);
}

TEST_F(BackupFacts, MissingFileFailsAndLeavesTheRecordAlone) {
  m_info.strBackupPath = "old";
  m_info.strDisplayName = "old";
  m_info.bEncrypted = true;

  const Problem problem = ReadBackupInfo(m_folder.Path(), m_info);

  EXPECT_EQ(ENOENT, problem.nCode);
  EXPECT_EQ(m_folder.Path("Info.plist"), problem.strFile);
  EXPECT_EQ("old", m_info.strBackupPath);
  EXPECT_EQ("old", m_info.strDisplayName);
  EXPECT_TRUE(m_info.bEncrypted);
}

TEST_F(BackupFacts, PathIsStoredAsGiven) {
  m_folder.Write("Info.plist", "");

  const Problem problem = ReadBackupInfo(m_folder.Path() + "/", m_info);

  EXPECT_FALSE(problem);
  EXPECT_EQ(m_folder.Path() + "/", m_info.strBackupPath);
}

TEST_F(BackupFacts, MissingValuesAreLeftUnchanged) {
  m_info.strDisplayName = "name";
  m_info.strLastBackupDate = "date";
  m_info.strPhoneNumber = "number";
  m_info.strSerialNumber = "serial";
  m_info.bProductVersionAbove11 = true;

  const int nStatus = Read("<plist>\n</plist>\n");

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("name", m_info.strDisplayName);
  EXPECT_EQ("date", m_info.strLastBackupDate);
  EXPECT_EQ("number", m_info.strPhoneNumber);
  EXPECT_EQ("serial", m_info.strSerialNumber);
  EXPECT_TRUE(m_info.bProductVersionAbove11);
}

TEST_F(BackupFacts, EncryptionIsDeterminedForEachBackup) {
  m_info.bEncrypted = true;

  Read("");

  EXPECT_FALSE(m_info.bEncrypted);
}

TEST_F(BackupFacts, BinaryFileYieldsOnlyPathAndEncryption) {
  m_folder.Write(kProbe, "");

  const int nStatus = Read("bplist00\xD1\x01\x02\\Display Name_\x10\x03Phone Number\0\0\n\x08"s);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("", m_info.strDisplayName + m_info.strPhoneNumber);
  EXPECT_EQ(m_folder.Path(), m_info.strBackupPath);
  EXPECT_TRUE(m_info.bEncrypted);
}

TEST_P(BackupDate, HasASpaceAndNoTimeZone) {
  Read(Pair("Last Backup Date", GetParam().strValue));

  EXPECT_EQ(GetParam().strExpected, m_info.strLastBackupDate);
}

INSTANTIATE_TEST_SUITE_P(
    Discovery, BackupDate,
    testing::Values(ValueCase{"WellFormed", "<date>2016-05-01T09:12:33Z</date>", "2016-05-01 09:12:33"},
                    ValueCase{"Midnight", "<date>2016-12-31T00:00:00Z</date>", "2016-12-31 00:00:00"},
                    ValueCase{"LateHour", "<date>2016-12-31T23:59:59Z</date>", "2016-12-31 23:59:59"},
                    ValueCase{"NoZone", "<date>2016-05-01T09:12:33</date>", "2016-05-01 09:12:33"},
                    ValueCase{"NoTimeKeepsTheZone", "<date>2016-05-01Z</date>", "2016-05-01Z"},
                    ValueCase{"EndsAtTheFirstZone", "<date>2016-05-01T09:12:33Z and Z</date>",
                              "2016-05-01 09:12:33"},
                    ValueCase{"HourOfOneDigitIsWrittenOverTwoPlaces", "<date>2016-05-01T9:12:33Z</date>",
                              "2016-05-01 0912:33"},
                    ValueCase{"NoTagAtAll", "2016-05-01T09:12:33Z", ""}),
    [](const testing::TestParamInfo<ValueCase>& info) { return info.param.pszName; });

TEST_P(ProductVersion, IsJudgedByItsWholeNumber) {
  m_info.bProductVersionAbove11 = !GetParam().bAbove11;

  Read(Pair("Product Version", Text(GetParam().pszVersion)));

  EXPECT_EQ(GetParam().bAbove11, m_info.bProductVersionAbove11) << GetParam().pszVersion;
}

INSTANTIATE_TEST_SUITE_P(
    Discovery, ProductVersion,
    testing::Values(VersionCase{"Twelve", "12.0", true}, VersionCase{"TwelveAlone", "12", true},
                    VersionCase{"Thirteen", "13.1.2", true}, VersionCase{"Eleven", "11.0", false},
                    VersionCase{"LateEleven", "11.4.1", false}, VersionCase{"Nine", "9.3.1", false},
                    VersionCase{"Empty", "", false}, VersionCase{"Words", "twelve", false}),
    [](const testing::TestParamInfo<VersionCase>& info) { return info.param.pszName; });

TEST_F(BackupFacts, ReadingEndsAtTheSerialNumber) {
  Read(Pair("Serial Number", Text("F2L")) + Pair("Display Name", Text("too late")) +
       Pair("Serial Number", Text("second")));

  EXPECT_EQ("F2L", m_info.strSerialNumber);
  EXPECT_EQ("", m_info.strDisplayName);
}

TEST_F(BackupFacts, ReadingEndsAtASerialNumberWithoutATagToo) {
  Read(Pair("Serial Number", "<data>F2L</data>") + Pair("Display Name", Text("too late")));

  EXPECT_EQ("", m_info.strSerialNumber);
  EXPECT_EQ("", m_info.strDisplayName);
}

TEST_F(BackupFacts, LaterValueOfAKeyReplacesTheEarlierOne) {
  Read(Pair("Phone Number", Text("1")) + Pair("Phone Number", Text("2")));

  EXPECT_EQ("2", m_info.strPhoneNumber);
}

TEST_F(BackupFacts, ValueLineIsNotTestedForKeys) {
  Read("<key>Display Name</key>\n<key>Phone Number</key>\n<string>123</string>\n");

  EXPECT_EQ("", m_info.strDisplayName);
  EXPECT_EQ("", m_info.strPhoneNumber);
}

TEST_F(BackupFacts, KeyEarlierInTheAlphabetDecidesALineOfTwo) {
  Read("<key>Phone Number</key><key>Display Name</key>\n<string>123</string>\n");

  EXPECT_EQ("123", m_info.strDisplayName);
  EXPECT_EQ("", m_info.strPhoneNumber);
}

TEST_F(BackupFacts, KeyOnTheLastLineHasNoValue) {
  const int nStatus = Read("<key>Display Name</key>");

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("", m_info.strDisplayName);
}

TEST_F(BackupFacts, WindowsLineEndsAreAccepted) {
  Read(
      "<key>Display Name</key>\r\n<string>Anna</string>\r\n<key>Phone "
      "Number</key>\r\n<string>1</string>\r\n");

  EXPECT_EQ("Anna", m_info.strDisplayName);
  EXPECT_EQ("1", m_info.strPhoneNumber);
}

TEST_F(BackupFacts, ValueWithoutTheOpeningTagLeavesTheFieldUnchanged) {
  m_info.strDisplayName = "name";
  m_info.strPhoneNumber = "number";
  m_info.strLastBackupDate = "date";

  Read(Pair("Display Name", "Anna</string>") + Pair("Phone Number", "<integer>1</integer>") +
       Pair("Last Backup Date", Text("2016-05-01T09:12:33Z")));

  EXPECT_EQ("name", m_info.strDisplayName);
  EXPECT_EQ("number", m_info.strPhoneNumber);
  EXPECT_EQ("date", m_info.strLastBackupDate);
}

TEST_F(BackupFacts, ValueOfTwoLinesEndsWithItsFirst) {
  Read("<key>Display Name</key>\n<string>Anna's\nphone</string>\n");

  EXPECT_EQ("Anna's\n", m_info.strDisplayName);
}

TEST_F(BackupFacts, ValueIsCutWhereALineOf2047BytesEnds) {
  Read("<key>Phone Number</key>\n<string>" + std::string(3000, '7') + "</string>\n" +
       Pair("Serial Number", Text("F2L")));

  EXPECT_EQ(std::string(2039, '7'), m_info.strPhoneNumber);
  EXPECT_EQ("F2L", m_info.strSerialNumber);
}

TEST_F(BackupFacts, EntitiesAreNotDecoded) {
  Read(Pair("Display Name", Text("Tom &amp; Anna")));

  EXPECT_EQ("Tom &amp; Anna", m_info.strDisplayName);
}

TEST_F(BackupFacts, OnlyTheDisplayNameIsConvertedToTheLocale) {
  LocaleCodec codec("ISO-8859-1");

  Read(Pair("Display Name", Text("caf\xC3\xA9")) +
       Pair("Phone Number", Text("1\xC2\xA0"
                                 "2")) +
       Pair("Serial Number", Text("\xC3\xA9")));

  EXPECT_EQ("caf\xE9", m_info.strDisplayName);
  EXPECT_EQ(
      "1\xC2\xA0"
      "2",
      m_info.strPhoneNumber);
  EXPECT_EQ("\xC3\xA9", m_info.strSerialNumber);
}

TEST_F(BackupFacts, DisplayNameBeyondAsciiStaysInAUtf8Locale) {
  Read(Pair("Display Name", Text("T\xC3\xA9l\xC3\xA9phone \xF0\x9F\x90\xB3")));

  EXPECT_EQ("T\xC3\xA9l\xC3\xA9phone \xF0\x9F\x90\xB3", m_info.strDisplayName);
}
