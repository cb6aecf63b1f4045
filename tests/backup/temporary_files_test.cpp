#include <gmock/gmock.h>

#include "backup/session.h"
#include "common/places.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TemporaryFiles : public testing::Test {
 protected:
  TemporaryFiles() { SetPlaces(m_folder.MakeFolder("backups"), m_folder.MakeFolder("work")); }

  /// Scans a backup as encrypted, with a folder of decrypted files.
  void ScanEncrypted(CIphoneBackupFile& session, const std::string& strDecrypted) {
    const __BACK_FILE_INFO__ info = InfoOf(m_folder.MakeFolder("backup"), true);
    session.Init(&info);
    session.Scan(FromNarrow(strDecrypted));
  }

  TemporaryFolder m_folder;
  const std::string m_strDecrypted = std::string("work/") + kDecryptFolderName;
};

class TemporaryFileName : public TemporaryFiles, public testing::WithParamInterface<const char*> {};

}  // namespace

TEST_F(TemporaryFiles, DecryptedFilesOfAnEarlierRunAreRemovedByANewSession) {
  m_folder.Write(m_strDecrypted + "/31bb7ba8914766d4ba40d6dfb6113c8b614be442", "secret");
  m_folder.Write(m_strDecrypted + "/J\xC3\xBCrgen", "secret");

  CIphoneBackupFile session;

  EXPECT_THAT(NamesIn(m_folder.Path(m_strDecrypted)), IsEmpty());
}

// The listing skips hidden files; the decrypt tool writes none.
TEST_F(TemporaryFiles, HiddenFilesAmongTheDecryptedOnesStay) {
  m_folder.Write(m_strDecrypted + "/.hidden", "not from the tool");

  CIphoneBackupFile session;

  EXPECT_THAT(NamesIn(m_folder.Path(m_strDecrypted)), ElementsAre(".hidden"));
}

TEST_F(TemporaryFiles, FoldersAmongTheDecryptedFilesStayWithWhatTheyHold) {
  m_folder.Write(m_strDecrypted + "/31/31bb", "deeper");

  CIphoneBackupFile session;

  EXPECT_EQ("deeper", ReadFile(m_folder.Path(m_strDecrypted + "/31/31bb")));
}

TEST_P(TemporaryFileName, IsRemovedFromTheWorkFolder) {
  m_folder.Write(std::string("work/") + GetParam(), "left over");

  CIphoneBackupFile session;

  EXPECT_THAT(NamesIn(m_folder.Path("work")), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Names, TemporaryFileName, testing::Values("tmp.jpg", "tmp.avi", "tmp.wav"),
                         [](const auto& info) { return std::string(info.param).substr(4); });

TEST_F(TemporaryFiles, OtherFilesOfTheWorkFolderStay) {
  for (const char* pszName : {"tmp.png", "tmp.jpg.bak", "TMP.JPG", "notes.txt"})
    m_folder.Write(std::string("work/") + pszName, "mine");

  CIphoneBackupFile session;

  EXPECT_THAT(NamesIn(m_folder.Path("work")), testing::SizeIs(4));
}

TEST_F(TemporaryFiles, MissingWorkFolderIsIgnoredAndNotCreated) {
  SetPlaces(m_folder.Path("backups"), m_folder.Path("missing"));
  CIphoneBackupFile session;

  const int nStatus = session.ClearTempDir();

  EXPECT_EQ(0, nStatus);
  EXPECT_FALSE(Exists(m_folder.Path("missing")));
}

TEST_F(TemporaryFiles, StepThatFailsDoesNotStopTheNext) {
  CIphoneBackupFile session;
  m_folder.Write("work/tmp.jpg/inside", "a folder where a file was thought of");
  m_folder.Write("work/tmp.wav", "left over");

  const int nStatus = session.ClearTempDir();

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(NamesIn(m_folder.Path("work")), ElementsAre("tmp.jpg"));
}

TEST_F(TemporaryFiles, FilesOfAnotherDecryptedFolderAreRemovedAfterItsScan) {
  CIphoneBackupFile session;
  m_folder.Write("elsewhere/31bb", "secret");
  ScanEncrypted(session, m_folder.Path("elsewhere"));

  session.ClearTempDir();

  EXPECT_THAT(NamesIn(m_folder.Path("elsewhere")), IsEmpty());
}

TEST_F(TemporaryFiles, ListOfDecryptedFilesIsForgottenOnceTheyAreRemoved) {
  CIphoneBackupFile session;
  m_folder.Write("elsewhere/31bb", "secret");
  ScanEncrypted(session, m_folder.Path("elsewhere"));
  session.ClearTempDir();
  m_folder.Write("elsewhere/31bb", "somebody else's");

  session.ClearTempDir();

  EXPECT_THAT(NamesIn(m_folder.Path("elsewhere")), ElementsAre("31bb"));
}

TEST_F(TemporaryFiles, PlainScanForgetsTheListOfDecryptedFiles) {
  CIphoneBackupFile session;
  m_folder.Write("elsewhere/31bb", "secret");
  ScanEncrypted(session, m_folder.Path("elsewhere"));
  const __BACK_FILE_INFO__ plain = InfoOf(m_folder.Path("backup"));
  session.Init(&plain);
  session.Scan(QString());

  session.ClearTempDir();

  EXPECT_THAT(NamesIn(m_folder.Path("elsewhere")), ElementsAre("31bb"));
}

TEST_F(TemporaryFiles, PlainScanListsNoFiles) {
  CIphoneBackupFile session;
  m_folder.Write("backup/31bb", "mine");
  const __BACK_FILE_INFO__ plain = InfoOf(m_folder.Path("backup"));
  session.Init(&plain);
  session.Scan(FromNarrow(m_folder.Path("backup")));

  session.ClearTempDir();

  EXPECT_EQ("mine", ReadFile(m_folder.Path("backup/31bb")));
}

TEST_F(TemporaryFiles, EndOfASessionRemovesNothing) {
  {
    CIphoneBackupFile session;
    m_folder.Write(m_strDecrypted + "/31bb", "secret");
    m_folder.Write("work/tmp.jpg", "preview");
    ScanEncrypted(session, m_folder.Path(m_strDecrypted));
  }

  EXPECT_THAT(NamesIn(m_folder.Path(m_strDecrypted)), ElementsAre("31bb"));
  EXPECT_TRUE(Exists(m_folder.Path("work/tmp.jpg")));
}
