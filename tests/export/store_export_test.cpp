#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "sample/stores.h"
#include "tests/backup/tree_state.h"
#include "tests/export/recovery_fixture.h"
#include "tests/scan_support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Layout = BackupBuilder::Layout;

namespace {

unsigned int ModeOf(const std::string& strPath) {
  struct stat attributes = {};
  EXPECT_EQ(0, stat(strPath.c_str(), &attributes)) << strPath;
  return attributes.st_mode & 07777;
}

/// One of the two stores that a recovery copies.
struct StoreKind {
  const char* pszName;
  const char* pszId;
  StorePlace (*pfnPlace)();
  int (*pfnCopy)(const std::string& strSource, const std::string& strDestination);
  int (CIphoneBackupFile::*pfnRecover)(const char* pszDestination);
};

void PrintTo(const StoreKind& kind, std::ostream* pStream) {
  *pStream << kind.pszName;
}

class StoreExport : public RecoveryTest, public testing::WithParamInterface<StoreKind> {
 protected:
  std::string Target() const { return m_folder.Path("copy.db"); }
};

/// Stores in a recovery.
class StoresOfRecovery : public RecoveryTest {
 protected:
  void MakeStores() const {
    m_folder.Write(std::string("backup/") + kMessageStore, "message store");
    m_folder.Write(std::string("backup/") + kContactsStore, "contacts store");
  }
  void RecoverConversation() {
    const MessageMap messages = {{kHandle, {Message(kReceived, "hello")}}};
    m_recovery.RecoveryMsg(&messages.at(kHandle).front(), messages);
    m_told.clear();
  }
  std::string MessagePath() const { return Out() + "/Message/sms.db"; }
  std::string ContactsPath() const { return Out() + "/Contacts/" + Stamp() + "/Contacts.db"; }
};

}  // namespace

TEST_P(StoreExport, CopyIsEqualAndOpenToAllAndTheSourceStays) {
  const std::string strSource = m_folder.Write("backup/store", std::string("SQL\0ite", 7));
  chmod(strSource.c_str(), 0400);
  const auto before = TreeState(m_folder.Path("backup"));

  const int nStatus = GetParam().pfnCopy(strSource, Target());

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(std::string("SQL\0ite", 7), ReadFile(Target()));
  EXPECT_EQ(0777u, ModeOf(Target()));
  EXPECT_EQ(before, TreeState(m_folder.Path("backup")));
}

TEST_P(StoreExport, FileThatIsThereKeepsItsBytesAndItsRights) {
  const std::string strSource = m_folder.Write("store", "new");
  m_folder.Write("copy.db", "old");
  chmod(Target().c_str(), 0600);
  ProblemRecorder recorder;

  const int nStatus = GetParam().pfnCopy(strSource, Target());

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("old", ReadFile(Target()));
  EXPECT_EQ(0600u, ModeOf(Target()));
}

TEST_P(StoreExport, MissingSourceGivesNoCopyAndNoError) {
  const int nStatus = GetParam().pfnCopy(m_folder.Path("missing"), Target());

  EXPECT_EQ(0, nStatus);
  EXPECT_FALSE(Exists(Target()));
}

TEST_P(StoreExport, MissingFolderGivesNoCopyAndNoError) {
  const std::string strSource = m_folder.Write("store", "new");

  const int nStatus = GetParam().pfnCopy(strSource, m_folder.Path("missing/copy.db"));

  EXPECT_EQ(0, nStatus);
  EXPECT_FALSE(Exists(m_folder.Path("missing")));
}

TEST_P(StoreExport, SessionFindsTheStoreOfEitherLayout) {
  for (const Layout layout : {Layout::Mbdb, Layout::Db}) {
    const std::string strBackup = m_folder.Path(layout == Layout::Db ? "two-level" : "flat");
    BackupBuilder builder(FromNarrow(strBackup), layout);
    const QString qstrPath = Reserve(builder, GetParam().pfnPlace());
    WriteFile(ToNarrow(qstrPath), "store of " + strBackup);
    builder.finish();
    UseBackup(strBackup);
    m_session.Scan(QString());
    std::filesystem::remove(Target());

    const int nStatus = (m_session.*GetParam().pfnRecover)(Target().c_str());

    EXPECT_EQ(0, nStatus);
    EXPECT_THAT(ToNarrow(qstrPath), testing::EndsWith(GetParam().pszId));
    EXPECT_EQ("store of " + strBackup, ReadFile(Target()));
    EXPECT_EQ(0777u, ModeOf(Target()));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Stores, StoreExport,
    testing::Values(StoreKind{"Messages", "3d0d7e5fb2ce288813306e4d4636395e047a3d28", &store_places::messages,
                              [](const std::string& strSource, const std::string& strDestination) {
                                return CIPhoneMessage().SaveSMSCsvFile(strSource, strDestination, 20000);
                              },
                              &CIphoneBackupFile::RecoverySMSMessage},
                    StoreKind{"Contacts", "31bb7ba8914766d4ba40d6dfb6113c8b614be442", &store_places::contacts,
                              [](const std::string& strSource, const std::string& strDestination) {
                                return CIPhoneContacts().SaveContactsCsvFile(strSource, strDestination, 0);
                              },
                              &CIphoneBackupFile::RecoveryPersonContacts}),
    [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(StoresOfRecovery, AreBesideTheirDocumentsUnderTheirOwnNames) {
  MakeStores();
  Begin();
  const auto before = TreeState(m_folder.Path("backup"));
  RecoverConversation();

  m_recovery.SaveMessage();
  const int nStatus = m_recovery.SaveContactsCsv();

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ("message store", ReadFile(MessagePath()));
  EXPECT_EQ("contacts store", ReadFile(ContactsPath()));
  EXPECT_EQ(0777u, ModeOf(MessagePath()));
  EXPECT_EQ(0777u, ModeOf(ContactsPath()));
  EXPECT_THAT(Written(), ElementsAre(MessagePath(), ContactsPath()));
  EXPECT_EQ(before, TreeState(m_folder.Path("backup")));
}

TEST_F(StoresOfRecovery, MessageStoreOfAnEarlierRunIsReplaced) {
  MakeStores();
  m_folder.Write("out/Message/sms.db", "a longer text of an earlier run");
  Begin();

  m_recovery.SaveMessage();

  EXPECT_EQ("message store", ReadFile(MessagePath()));
  EXPECT_THAT(Written(), ElementsAre(MessagePath()));
}

TEST_F(StoresOfRecovery, ContactsStoreOfARunInTheSameSecondIsReplaced) {
  MakeStores();
  Begin();
  m_folder.Write("out/Contacts/" + Stamp() + "/Contacts.db", "a longer text of an earlier run");

  m_recovery.SaveContactsCsv();

  EXPECT_EQ("contacts store", ReadFile(ContactsPath()));
}

TEST_F(StoresOfRecovery, MessageStoreIsNotCopiedWithoutAFolderOfMessages) {
  MakeStores();
  Begin();

  m_recovery.SaveMessage();

  EXPECT_FALSE(Exists(Out()));
  EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(StoresOfRecovery, OldMessageStoreStaysWhenTheNewOneCanNotBeRead) {
  m_folder.MakeFolder(std::string("backup/") + kMessageStore);
  WriteFile(MessagePath(), "of an earlier run");
  Begin();

  m_recovery.SaveMessage();

  EXPECT_EQ("of an earlier run", ReadFile(MessagePath()));
  EXPECT_THAT(Failed(), ElementsAre(MessagePath()));
  EXPECT_THAT(NamesIn(Out() + "/Message"), ElementsAre("sms.db"));
}

TEST_F(StoresOfRecovery, OldMessageStoreIsRemovedEvenIfTheBackupHasNone) {
  m_folder.Write("out/Message/sms.db", "of another backup");
  Begin();

  m_recovery.SaveMessage();

  EXPECT_FALSE(Exists(MessagePath()));
  EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(StoresOfRecovery, LinkInPlaceOfTheCopyIsReplacedAndNotFollowed) {
  MakeStores();
  m_folder.MakeFolder("out/Message");
  const auto before = TreeState(m_folder.Path("backup"));
  std::filesystem::create_symlink(m_folder.Path("backup/") + kMessageStore, MessagePath());
  Begin();

  m_recovery.SaveMessage();

  EXPECT_FALSE(std::filesystem::is_symlink(MessagePath()));
  EXPECT_EQ("message store", ReadFile(MessagePath()));
  EXPECT_EQ(before, TreeState(m_folder.Path("backup")));
}

TEST_F(StoresOfRecovery, FolderInPlaceOfTheMessageStoreIsReportedAsAFailure) {
  MakeStores();
  m_folder.MakeFolder("out/Message/sms.db");
  Begin();
  const ProblemRecorder recorder;

  m_recovery.SaveMessage();

  EXPECT_THAT(Written(), IsEmpty());
  EXPECT_THAT(Failed(), ElementsAre(MessagePath()));
}

TEST_F(StoresOfRecovery, FolderInPlaceOfTheContactsStoreIsReportedAsAFailure) {
  MakeStores();
  Begin();
  m_folder.MakeFolder("out/Contacts/" + Stamp() + "/Contacts.db");
  const ProblemRecorder recorder;

  m_recovery.SaveContactsCsv();

  EXPECT_THAT(Written(), IsEmpty());
  EXPECT_THAT(Failed(), ElementsAre(ContactsPath()));
}

TEST_F(StoresOfRecovery, StoreRemovedAfterItWasReadIsReportedAsAFailure) {
  Begin();
  RecoverConversation();
  const __PERSON_CONTENT__ person;
  m_recovery.RecoveryContacts(&person);

  m_recovery.SaveMessage();
  m_recovery.SaveContactsCsv();

  EXPECT_THAT(Failed(), testing::ElementsAre(MessagePath(), ContactsPath()));
}

TEST_F(StoresOfRecovery, MissingContactsStoreLeavesAnEmptyFolder) {
  Begin();

  const int nStatus = m_recovery.SaveContactsCsv();

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(NamesIn(Out() + "/Contacts/" + Stamp()), IsEmpty());
  EXPECT_THAT(Written(), IsEmpty());
}

TEST_F(StoresOfRecovery, ConversationFoldersOfEarlierRunsStay) {
  MakeStores();
  const std::string strOld = m_folder.Write("out/Message/Ann-20130101000000/Ann.txt", "old");
  Begin();

  RecoverConversation();
  m_recovery.SaveMessage();

  EXPECT_EQ("old", ReadFile(strOld));
  EXPECT_THAT(NamesIn(Out() + "/Message"), SizeIs(3));
}
