#include "backup/session.h"

#include <gmock/gmock.h>

#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using Layout = BackupBuilder::Layout;

namespace {

class Session : public testing::Test {
 protected:
  Session() { SetPlaces(m_folder.MakeFolder("backups"), m_folder.MakeFolder("work")); }

  /// Writes a backup with one entry that has no file.
  void MakeBackup(const std::string& strName, Layout layout, const QString& qstrEntry) {
    BackupBuilder backup(FromNarrow(m_folder.Path(strName)), layout);
    backup.addEntry("HomeDomain", qstrEntry);
    backup.finish();
  }

  /// Opens a backup of the temporary folder and scans it.
  int Open(CIphoneBackupFile& session, const std::string& strName, bool bEncrypted = false,
           const std::string& strDecrypted = "") {
    const __BACK_FILE_INFO__ info = InfoOf(m_folder.Path(strName), bEncrypted);
    session.Init(&info);
    return session.Scan(FromNarrow(strDecrypted));
  }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_F(Session, NewOneHasNothingOpen) {
  const CIphoneBackupFile session;

  EXPECT_EQ(20000u, session.GetMaxMessageId());
  EXPECT_EQ(20000u, session.GetMaxContactId());
  EXPECT_THAT(session.GetManifest(), IsEmpty());
  EXPECT_FALSE(session.GetLayout().bEncrypted);
}

TEST_F(Session, NewOneHasFoundTheBackups) {
  const std::string strFirst = m_folder.MakeFolder("backups/0123");
  const std::string strSecond = m_folder.MakeFolder("backups/4567");

  const CIphoneBackupFile session;

  EXPECT_THAT(session.GetBackupDirs(), UnorderedElementsAre(strFirst, strSecond));
}

TEST_F(Session, InitTakesEveryFieldOfTheRecord) {
  CIphoneBackupFile session;
  __BACK_FILE_INFO__ info = InfoOf("/b", true);
  info.bProductVersionAbove11 = true;
  info.strLastBackupDate = "2016-05-01 09:12:33";
  info.strPhoneNumber = "+49 30 901820";
  info.strSerialNumber = "F2LSAMPLE001";
  info.strDisplayName = "Sample Phone";

  const int nStatus = session.Init(&info);

  const __BACK_FILE_INFO__& kept = *session.GetSelectBackUpFileInfo();
  EXPECT_EQ(0, nStatus);
  EXPECT_TRUE(kept.bEncrypted);
  EXPECT_TRUE(kept.bProductVersionAbove11);
  EXPECT_EQ("2016-05-01 09:12:33", kept.strLastBackupDate);
  EXPECT_EQ("+49 30 901820", kept.strPhoneNumber);
  EXPECT_EQ("F2LSAMPLE001", kept.strSerialNumber);
  EXPECT_EQ("/b", kept.strBackupPath);
  EXPECT_EQ("Sample Phone", kept.strDisplayName);
}

TEST_F(Session, InitCopiesTheRecord) {
  CIphoneBackupFile session;
  __BACK_FILE_INFO__ info = InfoOf("/b");
  session.Init(&info);

  info.strBackupPath = "/elsewhere";

  EXPECT_EQ("/b", session.GetSelectBackUpFileInfo()->strBackupPath);
  EXPECT_EQ("/b", session.GetLayout().qstrRoot);
}

TEST_F(Session, InitCallbackSucceedsAndCallsNobody) {
  CIphoneBackupFile session;
  ProgressLog log;

  const int nStatus = session.InitCallback(ProgressLog::Receive, &log);

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(log.values, IsEmpty());
}

TEST_F(Session, ScanOfTheBinaryManifestFindsAFlatBackup) {
  MakeBackup("backup", Layout::Mbdb, "a");
  CIphoneBackupFile session;

  const int nStatus = Open(session, "backup");

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(FileNames(session.GetManifest()), ElementsAre("HomeDomain-a"));
  EXPECT_FALSE(session.GetLayout().bHasManifestDb);
}

TEST_F(Session, ScanOfTheDatabaseManifestFindsATwoLevelBackup) {
  MakeBackup("backup", Layout::Db, "a");
  CIphoneBackupFile session;

  const int nStatus = Open(session, "backup");

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(FileNames(session.GetManifest()), ElementsAre("HomeDomain-a"));
  EXPECT_TRUE(session.GetLayout().bHasManifestDb);
}

TEST_F(Session, DatabaseManifestWinsOverTheBinaryOne) {
  MakeBackup("backup", Layout::Mbdb, "binary");
  MakeBackup("backup", Layout::Db, "database");
  CIphoneBackupFile session;

  Open(session, "backup");

  EXPECT_THAT(FileNames(session.GetManifest()), ElementsAre("HomeDomain-database"));
}

TEST_F(Session, UnreadableDatabaseManifestWinsToo) {
  MakeBackup("backup", Layout::Mbdb, "binary");
  m_folder.Write("backup/Manifest.db", "this is no database");
  CIphoneBackupFile session;

  const int nStatus = Open(session, "backup");

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(session.GetManifest(), IsEmpty());
  EXPECT_TRUE(session.GetLayout().bHasManifestDb);
}

TEST_F(Session, MissingManifestGives87AndAnEmptyCatalogue) {
  m_folder.MakeFolder("backup");
  CIphoneBackupFile session;

  const int nStatus = Open(session, "backup");

  EXPECT_EQ(87, nStatus);
  EXPECT_THAT(session.GetManifest(), IsEmpty());
  EXPECT_THAT(NamesIn(m_folder.Path("backup")), IsEmpty());
}

TEST_F(Session, BinaryManifestThatIsNoneGives87) {
  m_folder.Write("backup/Manifest.mbdb", "this is no manifest");
  CIphoneBackupFile session;

  const int nStatus = Open(session, "backup");

  EXPECT_EQ(87, nStatus);
  EXPECT_THAT(session.GetManifest(), IsEmpty());
}

TEST_F(Session, MissingBackupFolderGives87AndIsNotCreated) {
  CIphoneBackupFile session;

  const int nStatus = Open(session, "missing");

  EXPECT_EQ(87, nStatus);
  EXPECT_FALSE(Exists(m_folder.Path("missing")));
}

TEST_F(Session, DecryptedManifestBesideAnEncryptedOneIsRead) {
  MakeBackup("other", Layout::Db, "readable");
  m_folder.Write("backup/Manifest.db", "encrypted");
  m_folder.Write("backup/Manifest.db-decypted", ReadFile(m_folder.Path("other/Manifest.db")));
  CIphoneBackupFile session;

  const int nStatus = Open(session, "backup", true, m_folder.MakeFolder("decrypted"));

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(FileNames(session.GetManifest()), ElementsAre("HomeDomain-readable"));
}

TEST_F(Session, DecryptedManifestIsReadInPlaceOfAReadableOne) {
  MakeBackup("other", Layout::Db, "decrypted");
  MakeBackup("backup", Layout::Db, "plain");
  m_folder.Write("backup/Manifest.db-decypted", ReadFile(m_folder.Path("other/Manifest.db")));
  CIphoneBackupFile session;

  Open(session, "backup");

  EXPECT_THAT(FileNames(session.GetManifest()), ElementsAre("HomeDomain-decrypted"));
}

TEST_F(Session, DecryptedManifestAloneIsNotLookedFor) {
  MakeBackup("other", Layout::Db, "decrypted");
  m_folder.Write("backup/Manifest.db-decypted", ReadFile(m_folder.Path("other/Manifest.db")));
  CIphoneBackupFile session;

  const int nStatus = Open(session, "backup");

  EXPECT_EQ(87, nStatus);
  EXPECT_THAT(session.GetManifest(), IsEmpty());
}

TEST_F(Session, ManifestOfAnEncryptedBackupComesFromItsOwnFolder) {
  MakeBackup("backup", Layout::Mbdb, "own");
  MakeBackup("decrypted", Layout::Mbdb, "decrypted");
  CIphoneBackupFile session;

  Open(session, "backup", true, m_folder.Path("decrypted"));

  EXPECT_THAT(FileNames(session.GetManifest()), ElementsAre("HomeDomain-own"));
}

TEST_F(Session, DecryptedFolderBecomesTheRoot) {
  MakeBackup("backup", Layout::Db, "a");
  CIphoneBackupFile session;

  Open(session, "backup", true, m_folder.MakeFolder("decrypted"));

  EXPECT_EQ(FromNarrow(m_folder.Path("decrypted")), session.GetLayout().qstrRoot);
  EXPECT_EQ(m_folder.Path("decrypted"), session.GetSelectBackUpFileInfo()->strBackupPath);
  EXPECT_TRUE(session.GetLayout().bEncrypted);
}

TEST_F(Session, EncryptedBackupWithoutADecryptedFolderKeepsItsRoot) {
  MakeBackup("backup", Layout::Db, "a");
  CIphoneBackupFile session;

  Open(session, "backup", true);

  EXPECT_EQ(FromNarrow(m_folder.Path("backup")), session.GetLayout().qstrRoot);
  EXPECT_EQ(m_folder.Path("backup"), session.GetSelectBackUpFileInfo()->strBackupPath);
}

TEST_F(Session, DecryptedFolderOfAPlainBackupBecomesTheRootAsWell) {
  MakeBackup("backup", Layout::Db, "a");
  CIphoneBackupFile session;

  Open(session, "backup", false, m_folder.MakeFolder("elsewhere"));

  EXPECT_EQ(FromNarrow(m_folder.Path("elsewhere")), session.GetLayout().qstrRoot);
  EXPECT_EQ(m_folder.Path("elsewhere"), session.GetSelectBackUpFileInfo()->strBackupPath);
}

TEST_F(Session, ScanForgetsTheListOfBackups) {
  m_folder.MakeFolder("backups/0123");
  CIphoneBackupFile session;
  ASSERT_THAT(session.GetBackupDirs(), SizeIs(1));

  Open(session, "backups/0123");

  EXPECT_THAT(session.GetBackupDirs(), IsEmpty());
}

TEST_F(Session, SecondScanReadsTheOtherBackupAlone) {
  MakeBackup("first", Layout::Db, "one");
  MakeBackup("second", Layout::Mbdb, "two");
  CIphoneBackupFile session;
  Open(session, "first");

  Open(session, "second");

  EXPECT_THAT(FileNames(session.GetManifest()), ElementsAre("HomeDomain-two"));
  EXPECT_FALSE(session.GetLayout().bHasManifestDb);
  EXPECT_EQ(FromNarrow(m_folder.Path("second")), session.GetLayout().qstrRoot);
}

TEST_F(Session, SecondScanOfTheSameBackupReadsItOnceMore) {
  MakeBackup("backup", Layout::Mbdb, "one");
  CIphoneBackupFile session;
  Open(session, "backup");

  const int nStatus = Open(session, "backup");

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(FileNames(session.GetManifest()), ElementsAre("HomeDomain-one"));
}

TEST_F(Session, SecondScanWithoutAManifestLeavesNoEntriesOfTheFirst) {
  MakeBackup("first", Layout::Db, "one");
  m_folder.MakeFolder("second");
  CIphoneBackupFile session;
  Open(session, "first");

  const int nStatus = Open(session, "second");

  EXPECT_EQ(87, nStatus);
  EXPECT_THAT(session.GetManifest(), IsEmpty());
  EXPECT_FALSE(session.GetLayout().bHasManifestDb);
}

TEST_F(Session, PlainScanAfterAnEncryptedOneLooksIntoTheBackup) {
  MakeBackup("first", Layout::Db, "one");
  MakeBackup("second", Layout::Db, "two");
  CIphoneBackupFile session;
  Open(session, "first", true, m_folder.MakeFolder("decrypted"));

  Open(session, "second");

  EXPECT_EQ(FromNarrow(m_folder.Path("second")), session.GetLayout().qstrRoot);
  EXPECT_FALSE(session.GetLayout().bEncrypted);
  EXPECT_EQ(12, session.GetProgress());
}

TEST_F(Session, OperationsWithoutWorkSucceed) {
  CIphoneBackupFile session;
  WeiXinMap weiXin = {{u"account", {}}};
  std::string strResult = "as it was";

  EXPECT_EQ(0, session.DecryptBackupFile("secret", u"/folder", strResult));
  EXPECT_EQ(0, session.PreView(u"a", u"b", nullptr, nullptr));
  EXPECT_EQ(0, session.Recovery(u"a", u"b", nullptr, nullptr));
  EXPECT_EQ(0, session.GetWeiXinMessageInfo(weiXin));
  EXPECT_EQ(0, session.RecoveryQQMessage(u"a", u"b", u"c", nullptr, nullptr));
  EXPECT_EQ(0, session.RecoveryWeiXinMessage(u"a", u"b", u"c", nullptr, nullptr));
  EXPECT_THAT(weiXin, SizeIs(1));
}
