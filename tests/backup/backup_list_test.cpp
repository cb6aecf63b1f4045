#include <gmock/gmock.h>

#include "backup/session.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string Pair(const std::string& strKey, const std::string& strText) {
  return "<key>" + strKey + "</key>\n<string>" + strText + "</string>\n";
}

class BackupList : public testing::Test {
 protected:
  void SetUp() override { SetPlaces(m_folder.MakeFolder("backups"), m_folder.Path("work")); }

  void WriteInfo(const std::string& strBackup, const std::string& strPlist) {
    m_folder.Write("backups/" + strBackup + "/Info.plist", strPlist);
  }

  std::string Path(const std::string& strBackup) const { return m_folder.Path("backups/" + strBackup); }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_F(BackupList, FoldersAreInReverseOrderOfTheListing) {
  m_folder.MakeFolder("backups/b");
  m_folder.MakeFolder("backups/A");
  m_folder.Write("backups/file", "");

  CIphoneBackupFile session;

  EXPECT_THAT(session.GetBackupDirs(), ElementsAre(Path("b"), Path("A")));
}

TEST_F(BackupList, MissingRootGivesNoBackups) {
  SetPlaces(m_folder.Path("missing"), m_folder.Path("work"));
  CIphoneBackupFile session;
  std::vector<__BACK_FILE_INFO__> backups;

  const int nStatus = session.GetBackFileInfo(backups);

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(session.GetBackupDirs(), IsEmpty());
  EXPECT_THAT(backups, IsEmpty());
  EXPECT_FALSE(Exists(m_folder.Path("missing")));
}

TEST_F(BackupList, EachReadableBackupAppendsARecord) {
  WriteInfo("b", Pair("Display Name", "second"));
  WriteInfo("A", Pair("Display Name", "first"));
  m_folder.MakeFolder("backups/without");
  CIphoneBackupFile session;
  std::vector<__BACK_FILE_INFO__> backups(1);
  backups[0].strDisplayName = "old";

  const int nStatus = session.GetBackFileInfo(backups);

  EXPECT_EQ(0, nStatus);
  ASSERT_EQ(3u, backups.size());
  EXPECT_EQ("old", backups[0].strDisplayName);
  EXPECT_EQ("second", backups[1].strDisplayName);
  EXPECT_EQ(Path("b"), backups[1].strBackupPath);
  EXPECT_EQ("first", backups[2].strDisplayName);
  EXPECT_EQ(Path("A"), backups[2].strBackupPath);
}

// Required for output compatibility: the record isn't reset between two backups.
TEST_F(BackupList, RecordInheritsWhatItsFileLacksFromTheOneBefore) {
  WriteInfo("c", Pair("Display Name", "c"));
  WriteInfo("b",
            Pair("Display Name", "b") + "<key>Last Backup Date</key>\n<date>2016-05-01T09:12:33Z</date>\n" +
                Pair("Phone Number", "123") + Pair("Product Version", "12.0") + Pair("Serial Number", "F2L"));
  m_folder.MakeFolder("backups/aa");
  WriteInfo("a", Pair("Product Version", "9.0"));
  CIphoneBackupFile session;
  std::vector<__BACK_FILE_INFO__> backups;

  session.GetBackFileInfo(backups);

  ASSERT_EQ(3u, backups.size());
  EXPECT_EQ("", backups[0].strPhoneNumber);
  EXPECT_FALSE(backups[0].bProductVersionAbove11);
  EXPECT_EQ("b", backups[2].strDisplayName);
  EXPECT_EQ("2016-05-01 09:12:33", backups[2].strLastBackupDate);
  EXPECT_EQ("123", backups[2].strPhoneNumber);
  EXPECT_EQ("F2L", backups[2].strSerialNumber);
  EXPECT_FALSE(backups[2].bProductVersionAbove11);
  EXPECT_EQ(Path("a"), backups[2].strBackupPath);
}

TEST_F(BackupList, ProductVersionIsInheritedToo) {
  WriteInfo("b", Pair("Product Version", "12.0"));
  WriteInfo("a", Pair("Display Name", "a"));
  CIphoneBackupFile session;
  std::vector<__BACK_FILE_INFO__> backups;

  session.GetBackFileInfo(backups);

  ASSERT_EQ(2u, backups.size());
  EXPECT_TRUE(backups[1].bProductVersionAbove11);
}

TEST_F(BackupList, EncryptionIsNotInherited) {
  WriteInfo("b", "");
  m_folder.Write("backups/b/31bb7ba8914766d4ba40d6dfb6113c8b614be442", "cipher text");
  WriteInfo("a", "");
  CIphoneBackupFile session;
  std::vector<__BACK_FILE_INFO__> backups;

  session.GetBackFileInfo(backups);

  ASSERT_EQ(2u, backups.size());
  EXPECT_TRUE(backups[0].bEncrypted);
  EXPECT_FALSE(backups[1].bEncrypted);
}

TEST_F(BackupList, EachRunBeginsWithAnEmptyRecord) {
  WriteInfo("b", Pair("Display Name", "b"));
  WriteInfo("a", Pair("Phone Number", "123"));
  CIphoneBackupFile session;
  std::vector<__BACK_FILE_INFO__> first, second;

  session.GetBackFileInfo(first);
  session.GetBackFileInfo(second);

  ASSERT_EQ(2u, second.size());
  EXPECT_EQ("", second[0].strPhoneNumber);
}

TEST_F(BackupList, PickedFolderFillsTheCallersRecord) {
  const std::string strPicked = m_folder.MakeFolder("picked");
  m_folder.Write("picked/Info.plist", Pair("Display Name", "Anna"));
  CIphoneBackupFile session;
  __BACK_FILE_INFO__ info;

  const int nStatus = session.GetBackFileInfo(strPicked.c_str(), &info);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("Anna", info.strDisplayName);
  EXPECT_EQ(strPicked, info.strBackupPath);
}

TEST_F(BackupList, PickedFolderWithoutInfoFails) {
  const std::string strPicked = m_folder.MakeFolder("picked");
  CIphoneBackupFile session;
  __BACK_FILE_INFO__ info;

  const int nStatus = session.GetBackFileInfo(strPicked.c_str(), &info);

  EXPECT_EQ(87, nStatus);
  EXPECT_EQ("", info.strBackupPath);
}
