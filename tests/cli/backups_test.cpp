#include <gmock/gmock.h>

#include "sample/stores.h"
#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class BackupsCommand : public testing::Test {
 protected:
  void WriteInfo(const std::string& strName, const BackupBuilder::Info& info) {
    BackupBuilder backup(QString::fromStdString(Path(strName)), BackupBuilder::Layout::Db);
    backup.writeInfo(info);
  }

  std::string Root() const { return m_folder.Path("backups"); }
  std::string Path(const std::string& strName) const { return m_folder.Path("backups/" + strName); }

  TemporaryFolder m_folder;
};

BackupBuilder::Info InfoOf(const char* pszName, const char* pszSerial) {
  BackupBuilder::Info info;
  info.displayName = QString::fromUtf8(pszName);
  info.serialNumber = pszSerial;
  return info;
}

}  // namespace

TEST_F(BackupsCommand, GivesALineForEachBackupByFolderNameIgnoringCase) {
  WriteInfo("b", InfoOf("Lena’s iPhone", "F2"));
  WriteInfo("C", InfoOf("third", "F3"));
  WriteInfo("A", InfoOf("first", "F1"));
  m_folder.MakeFolder("backups/no backup");
  m_folder.Write("backups/file", "");

  const CommandResult result = RunCommand({"backups", Root()});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.Lines(),
              ElementsAre("first\t2016-05-01 09:12:33\tF1\tnot encrypted\t" + Path("A"),
                          "Lena’s iPhone\t2016-05-01 09:12:33\tF2\tnot encrypted\t" + Path("b"),
                          "third\t2016-05-01 09:12:33\tF3\tnot encrypted\t" + Path("C")));
  EXPECT_THAT(result.strErr, IsEmpty());
}

TEST_F(BackupsCommand, SaysWhichBackupIsEncrypted) {
  WriteInfo("a", InfoOf("plain", "F1"));
  WriteInfo("b", InfoOf("locked", "F2"));
  WriteFile(StorePathIn(Path("b"), BackupBuilder::Layout::Mbdb, store_places::contacts()), "cipher text");

  const CommandResult result = RunCommand({"backups", Root()});

  EXPECT_THAT(result.Lines(), ElementsAre("plain\t2016-05-01 09:12:33\tF1\tnot encrypted\t" + Path("a"),
                                          "locked\t2016-05-01 09:12:33\tF2\tencrypted\t" + Path("b")));
}

TEST_F(BackupsCommand, MissingFieldIsTakenFromTheNextBackup) {
  BackupBuilder::Info bare = InfoOf("upper", "F1");
  bare.lastBackupDate = QString();
  bare.serialNumber = QString();
  WriteInfo("a", bare);
  BackupBuilder::Info lower = InfoOf("lower", "F2");
  lower.lastBackupDate = "2017-01-02T03:04:05Z";
  WriteInfo("b", lower);

  const CommandResult result = RunCommand({"backups", Root()});

  EXPECT_THAT(result.Lines(), ElementsAre("upper\t2017-01-02 03:04:05\tF2\tnot encrypted\t" + Path("a"),
                                          "lower\t2017-01-02 03:04:05\tF2\tnot encrypted\t" + Path("b")));
}

TEST_F(BackupsCommand, LastBackupOfTheListInheritsNothing) {
  WriteInfo("a", InfoOf("upper", "F1"));
  BackupBuilder::Info bare = InfoOf("lower", "");
  bare.serialNumber = QString();
  WriteInfo("b", bare);

  const CommandResult result = RunCommand({"backups", Root()});

  EXPECT_THAT(result.Lines(), ElementsAre("upper\t2016-05-01 09:12:33\tF1\tnot encrypted\t" + Path("a"),
                                          "lower\t2016-05-01 09:12:33\t\tnot encrypted\t" + Path("b")));
}

TEST_F(BackupsCommand, JsonIsAnArrayInTheSameOrder) {
  WriteInfo("B", InfoOf("second", "F2"));
  WriteInfo("a", InfoOf("Lena’s iPhone", "F1"));

  const CommandResult result = RunCommand({"backups", Root(), "--json"});

  EXPECT_EQ(0, result.nExitStatus);
  const QJsonArray array = result.Array();
  ASSERT_EQ(2, array.size());
  EXPECT_EQ(
      R"({"displayName":"Lena’s iPhone","encrypted":false,"lastBackupDate":"2016-05-01 09:12:33","path":")" +
          Path("a") + R"(","phoneNumber":"+49 30 901820","serialNumber":"F1"})",
      JsonText(array[0]));
  EXPECT_EQ("second", array[1].toObject()["displayName"].toString().toStdString());
}

TEST_F(BackupsCommand, JsonWithoutBackupsIsAnEmptyArray) {
  m_folder.MakeFolder("backups");

  const CommandResult result = RunCommand({"backups", Root(), "--json"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ("[]\n", result.strOut);
  EXPECT_THAT(result.strErr, HasSubstr("no backups below " + Root()));
}

TEST_F(BackupsCommand, FolderThatIsABackupIsReported) {
  WriteInfo("a", InfoOf("name", "F1"));

  const CommandResult result = RunCommand({"backups", Path("a")});

  EXPECT_THAT(result.strOut, IsEmpty());
  EXPECT_THAT(result.strErr, HasSubstr(Path("a") + " is a backup itself"));
}

TEST_F(BackupsCommand, MissingFolderExitsWithTwo) {
  const CommandResult result = RunCommand({"backups", m_folder.Path("missing")});

  EXPECT_EQ(2, result.nExitStatus);
  EXPECT_THAT(result.strOut, IsEmpty());
  EXPECT_THAT(result.strErr, HasSubstr(m_folder.Path("missing") + ": no such folder"));
}

TEST_F(BackupsCommand, FolderIsTheFixedPlaceWithoutArgument) {
  const std::string strPlace = "/Library/Application Support/MobileSync/Backup/";
  if (Exists(strPlace)) GTEST_SKIP() << "there are backups of this machine in " << strPlace;

  const CommandResult result = RunCommand({"backups"});

  EXPECT_THAT(result.strOut, IsEmpty());
  EXPECT_THAT(result.strErr, HasSubstr(strPlace));
}

TEST_F(BackupsCommand, FolderThatHoldsAFolderNamedInfoPlistIsNoBackup) {
  m_folder.MakeFolder("backups/a/Info.plist");
  WriteInfo("b", InfoOf("name", "F1"));

  const CommandResult result = RunCommand({"backups", Root()});

  EXPECT_THAT(result.Lines(), ElementsAre("name\t2016-05-01 09:12:33\tF1\tnot encrypted\t" + Path("b")));
}
