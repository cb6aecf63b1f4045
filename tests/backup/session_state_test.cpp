// State that the session keeps between steps and scans.

#include <gmock/gmock.h>

#include "backup/session.h"
#include "sample/pictures.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Layout = BackupBuilder::Layout;

namespace {

constexpr char kWhatsAppDomain[] = "AppDomain-net.whatsapp.WhatsApp";

class SessionState : public testing::Test {
 protected:
  void Open(const BackupBuilder& backup) {
    const __BACK_FILE_INFO__ info = InfoOf(ToNarrow(backup.folder()));
    m_session.Init(&info);
    m_session.Scan(QString());
  }

  QString Folder(const std::string& strName) const { return FromNarrow(m_folder.Path(strName)); }

  /// A backup with one message and one contact.
  void MakeStores(BackupBuilder& backup, int nMessages) {
    MessageStore messages(Reserve(backup, store_places::messages()));
    const qint64 nHandle = messages.addHandle("+49301");
    const qint64 nChat = messages.addChat("+49301");
    for (int i = 0; i < nMessages; ++i) messages.addMessage(nHandle, "hello", kNewYear2014, false, {nChat});
    messages.close();
    ContactsStore contacts(Reserve(backup, store_places::contacts()), backup.layout() == Layout::Db);
    for (int i = 0; i < nMessages; ++i) contacts.add({"Ann", {}, {}, "+49301", {}, {}, {}});
    contacts.close();
    backup.finish();
  }

  void ReadStores() {
    MessageMap messages;
    std::vector<__PERSON_CONTENT__> people;
    m_session.GetBackupFileMessageInfo(messages);
    m_session.GetBackupFilePersonContent(people);
  }

  TemporaryFolder m_folder;
  CIphoneBackupFile m_session;
};

struct AccountCase {
  const char* pszName;
  const char* pszDomain;
  const char* pszPath;
  const char* pszAccount;
};

void PrintTo(const AccountCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class QQAccount : public SessionState, public testing::WithParamInterface<AccountCase> {};

}  // namespace

TEST_F(SessionState, HighestIdsOutliveTheNextScan) {
  BackupBuilder first(Folder("first"), Layout::Db);
  MakeStores(first, 3);
  BackupBuilder second(Folder("second"), Layout::Mbdb);
  second.finish();
  Open(first);
  ReadStores();

  Open(second);

  EXPECT_EQ(3u, m_session.GetMaxMessageId());
  EXPECT_EQ(3u, m_session.GetMaxContactId());
}

TEST_F(SessionState, HighestIdsFallToZeroWithABackupWithoutStores) {
  BackupBuilder empty(Folder("empty"), Layout::Mbdb);
  empty.finish();
  Open(empty);

  ReadStores();

  EXPECT_EQ(0u, m_session.GetMaxMessageId());
  EXPECT_EQ(0u, m_session.GetMaxContactId());
}

TEST_F(SessionState, ScanForgetsTheMessagesOfTheLastOne) {
  BackupBuilder first(Folder("first"), Layout::Db);
  MakeStores(first, 1);
  BackupBuilder second(Folder("second"), Layout::Mbdb);
  second.finish();
  Open(first);
  ReadStores();
  ASSERT_THAT(m_session.GetMessageMap(), SizeIs(1));

  Open(second);

  EXPECT_THAT(m_session.GetMessageMap(), IsEmpty());
}

TEST_F(SessionState, SecondScanOfABackupGivesItsMessagesOnce) {
  BackupBuilder backup(Folder("backup"), Layout::Db);
  MakeStores(backup, 2);
  Open(backup);
  ReadStores();

  Open(backup);
  ReadStores();

  EXPECT_THAT(m_session.GetMessageMap()[1], SizeIs(2));
}

// Only a scan clears the session's map.
TEST_F(SessionState, SecondReadingInOneScanAddsTheMessagesAgain) {
  BackupBuilder backup(Folder("backup"), Layout::Db);
  MakeStores(backup, 2);
  Open(backup);
  ReadStores();

  ReadStores();

  EXPECT_THAT(m_session.GetMessageMap()[1], SizeIs(4));
}

TEST_F(SessionState, ChatsGoFromTheCallerIntoTheSession) {
  WhatsAppMap chats;
  chats[7].resize(2);
  chats[7][0].strContent = "hello";

  const int nAnswer = m_session.GetWhatsappMessageInfo(chats);

  EXPECT_EQ(0, nAnswer);
  ASSERT_THAT(m_session.GetWhatsAppMap(), SizeIs(1));
  EXPECT_EQ("hello", m_session.GetWhatsAppMap().at(7)[0].strContent);
  EXPECT_THAT(chats[7], SizeIs(2));
}

TEST_F(SessionState, EmptyChatsEmptyTheSessions) {
  WhatsAppMap chats;
  chats[7].resize(2);
  m_session.GetWhatsappMessageInfo(chats);
  WhatsAppMap none;

  m_session.GetWhatsappMessageInfo(none);

  EXPECT_THAT(m_session.GetWhatsAppMap(), IsEmpty());
}

TEST_F(SessionState, ChatsOfABackupWithTheAppsDataStayEmptyWhileItsFilesAreListed) {
  BackupBuilder backup(Folder("backup"), Layout::Db);
  backup.addFile(kWhatsAppDomain, "Documents/ChatStorage.sqlite", "chats");
  backup.addFile(kWhatsAppDomain, "Library/Media/a.jpg", sample_media::jpeg(1, 64, 48));
  backup.finish();
  Open(backup);
  std::vector<_IPHONE_APP_FILE_INFO_> files;
  std::vector<_WHATSAPP_ATTACHMENTS_> attachments;
  WhatsAppMap chats;

  m_session.GetAppFileInfo(files);
  m_session.GetWhatsappMessageInfo(chats);
  m_session.GetWhatsAppAttachment(attachments);

  EXPECT_THAT(chats, IsEmpty());
  EXPECT_THAT(m_session.GetWhatsAppMap(), IsEmpty());
  EXPECT_THAT(files, IsEmpty());
  EXPECT_THAT(FileNames(attachments), ElementsAre("a.JPG"));
}

TEST_F(SessionState, AttachmentsReplaceTheCallersList) {
  std::vector<_WHATSAPP_ATTACHMENTS_> attachments(3);

  const int nAnswer = m_session.GetWhatsAppAttachment(attachments);

  EXPECT_EQ(0, nAnswer);
  EXPECT_THAT(attachments, IsEmpty());
}

TEST_F(SessionState, AttachmentsOfTheLastAppWalkAreStillThereInTheNextScan) {
  BackupBuilder backup(Folder("backup"), Layout::Db);
  backup.addFile(kWhatsAppDomain, "Library/Media/a.jpg", sample_media::jpeg(1, 64, 48));
  backup.finish();
  Open(backup);
  std::vector<_IPHONE_APP_FILE_INFO_> files;
  m_session.GetAppFileInfo(files);
  BackupBuilder other(Folder("other"), Layout::Mbdb);
  other.finish();
  Open(other);
  std::vector<_WHATSAPP_ATTACHMENTS_> attachments;

  m_session.GetWhatsAppAttachment(attachments);

  EXPECT_THAT(FileNames(attachments), ElementsAre("a.JPG"));
}

TEST_F(SessionState, AppWalkForgetsTheAttachmentsOfTheLastOne) {
  BackupBuilder backup(Folder("backup"), Layout::Db);
  backup.addFile(kWhatsAppDomain, "Library/Media/a.jpg", sample_media::jpeg(1, 64, 48));
  backup.finish();
  Open(backup);
  std::vector<_IPHONE_APP_FILE_INFO_> files;
  m_session.GetAppFileInfo(files);

  m_session.GetAppFileInfo(files);
  std::vector<_WHATSAPP_ATTACHMENTS_> attachments;
  m_session.GetWhatsAppAttachment(attachments);

  EXPECT_THAT(attachments, SizeIs(1));
}

TEST_P(QQAccount, IsTheFolderOfItsStore) {
  BackupBuilder backup(Folder("backup"), Layout::Mbdb);
  backup.addEntry(GetParam().pszDomain, GetParam().pszPath);
  backup.addEntry("HomeDomain", "Library/other");
  backup.finish();
  Open(backup);
  QQMap accounts;

  const int nAnswer = m_session.GetQQMessageInfo(accounts);

  EXPECT_EQ(0, nAnswer);
  ASSERT_THAT(accounts, SizeIs(1));
  EXPECT_EQ(GetParam().pszAccount, accounts.begin()->first);
  EXPECT_THAT(accounts.begin()->second, IsEmpty());
  EXPECT_EQ(accounts.begin()->first, m_session.GetQQMap().begin()->first);
}

INSTANTIATE_TEST_SUITE_P(Names, QQAccount,
                         testing::Values(AccountCase{"Number", "AppDomain-com.tencent.mqq",
                                                     "Documents/contents/10001/QQ.db", "10001"},
                                         AccountCase{"LongerName", "AppDomain-com.tencent.mqq",
                                                     "Documents/10001/QQ.db-journal", "10001"},
                                         AccountCase{"NoFolder", "HomeDomain", "QQ/QQ.db", "HomeDomain-QQ"},
                                         AccountCase{"EmptySegment", "HomeDomain", "a//QQ.db", ""}),
                         [](const testing::TestParamInfo<AccountCase>& info) { return info.param.pszName; });

TEST_F(SessionState, QQProgressCountsTheAccountsAndTakesAStep) {
  BackupBuilder backup(Folder("backup"), Layout::Mbdb);
  for (const char* pszPath : {"1/QQ.db", "other", "2/QQ.db"}) backup.addEntry("HomeDomain", pszPath);
  backup.finish();
  Open(backup);
  ProgressLog log;
  m_session.InitCallback(ProgressLog::Receive, &log);
  QQMap accounts;

  m_session.GetQQMessageInfo(accounts);

  EXPECT_THAT(log.values, ElementsAre(13, 14, 23));
  EXPECT_THAT(accounts, SizeIs(2));
}

TEST_F(SessionState, CancelEndsTheQQWalkAndKeepsTheAccountsSoFar) {
  BackupBuilder backup(Folder("backup"), Layout::Mbdb);
  for (const char* pszPath : {"x/1/QQ.db", "x/2/QQ.db"}) backup.addEntry("HomeDomain", pszPath);
  backup.finish();
  Open(backup);
  ProgressLog log;
  log.CancelFrom(0);
  m_session.InitCallback(ProgressLog::Receive, &log);
  QQMap accounts;

  const int nAnswer = m_session.GetQQMessageInfo(accounts);

  EXPECT_EQ(1, nAnswer);
  EXPECT_THAT(log.values, ElementsAre(13, 23));
  EXPECT_THAT(accounts, ElementsAre(testing::Pair("1", IsEmpty())));
}

TEST_F(SessionState, QQAccountsOfTheCallerGoIntoTheSessionAsWell) {
  BackupBuilder backup(Folder("backup"), Layout::Mbdb);
  backup.addEntry("HomeDomain", "x/1/QQ.db");
  backup.finish();
  Open(backup);
  QQMap accounts = {{"earlier", {}}};

  m_session.GetQQMessageInfo(accounts);

  EXPECT_THAT(accounts, SizeIs(2));
  EXPECT_THAT(m_session.GetQQMap(), SizeIs(2));
}
