#include "backup/parser.h"

#include <gmock/gmock.h>

#include <type_traits>

#include "sample/pictures.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Layout = BackupBuilder::Layout;

namespace {

class Parser : public testing::Test {
 protected:
  Parser()
      : m_pParser(CIphoneRecoveryFactory::getInstance()->CreateRecoveryParse(&m_session,
                                                                             RECOVERY_TYPE_LOCAL_BACKUP)) {}

  /// A backup with one of everything.
  void MakeBackup() {
    BackupBuilder backup(FromNarrow(m_folder.Path("backup")), Layout::Db);
    const QByteArray picture = sample_media::jpeg(1, 64, 48);
    backup.addFile("CameraRollDomain", "Media/DCIM/100APPLE/roll.JPG", picture);
    backup.addFile("MediaDomain", "Media/PhotoStreamsData/1/stream.JPG", picture);
    backup.addFile("MediaDomain", "Library/SMS/Attachments/00/attached.JPG", picture);
    backup.addFile("AppDomain-com.example.Snap", "Documents/app.jpg", picture);
    backup.addFile("AppDomain-net.whatsapp.WhatsApp", "Library/chat.jpg", picture);
    backup.addEntry("AppDomain-com.tencent.mqq", "Documents/10001/QQ.db");

    MessageStore messages(Reserve(backup, store_places::messages()));
    messages.addMessage(messages.addHandle("+49301"), "hello", kNewYear2014, false,
                        {messages.addChat("+49301")});
    messages.close();
    ContactsStore contacts(Reserve(backup, store_places::contacts()), true);
    contacts.add({"Ann", {}, {}, "+49301", {}, {}, {}});
    contacts.close();
    CallStore calls(Reserve(backup, store_places::calls()));
    calls.add(1, 60, "+49302", double(kNewYear2014));
    calls.close();
    NotesStore notes(Reserve(backup, store_places::notes()));
    notes.add(kNewYear2014, "note", QString());
    notes.close();
    backup.finish();
  }

  /// Opens it through the parser.
  void Open() {
    MakeBackup();
    const __BACK_FILE_INFO__ info = InfoOf(m_folder.Path("backup"));
    m_session.Init(&info);
    m_pParser->Scan(QString());
  }

  TemporaryFolder m_folder;
  CIphoneBackupFile m_session;
  std::unique_ptr<IPhoneRecoveryParse> m_pParser;
};

}  // namespace

TEST_F(Parser, IsMadeForALocalBackup) {
  EXPECT_NE(nullptr, dynamic_cast<CLocalBuckupRecovery*>(m_pParser.get()));
  EXPECT_EQ(1, RECOVERY_TYPE_LOCAL_BACKUP);
  EXPECT_TRUE(std::has_virtual_destructor<IPhoneRecoveryParse>::value);
}

TEST_F(Parser, IsNotCreatedForAnyOtherKind) {
  const std::unique_ptr<IPhoneRecoveryParse> pParser(
      CIphoneRecoveryFactory::getInstance()->CreateRecoveryParse(&m_session, static_cast<RECOVERY_TYPE>(0)));

  EXPECT_EQ(nullptr, pParser);
}

TEST_F(Parser, FactoryIsASingletonAndCreatesNewParsers) {
  const std::unique_ptr<IPhoneRecoveryParse> pOther(
      CIphoneRecoveryFactory::getInstance()->CreateRecoveryParse(&m_session, RECOVERY_TYPE_LOCAL_BACKUP));

  EXPECT_NE(m_pParser, pOther);
  EXPECT_EQ(CIphoneRecoveryFactory::getInstance(), CIphoneRecoveryFactory::getInstance());
}

TEST_F(Parser, IsEncryptLeavesItsArgumentUnchanged) {
  const __BACK_FILE_INFO__ info = InfoOf(m_folder.Path("backup"), true);
  m_session.Init(&info);
  bool bYes = true;
  bool bNo = false;

  EXPECT_EQ(0, m_pParser->IsEncrypt(bYes));
  EXPECT_EQ(0, m_pParser->IsEncrypt(bNo));
  EXPECT_TRUE(bYes);
  EXPECT_FALSE(bNo);
}

TEST_F(Parser, AcceptsAnyPassword) {
  char szPassword[] = "wrong";

  EXPECT_EQ(1, m_pParser->CheckPassword(szPassword));
  EXPECT_EQ(1, m_pParser->CheckPassword(nullptr));
}

TEST_F(Parser, InitTakesAnotherSession) {
  CIphoneBackupFile other;
  m_folder.MakeFolder("empty");
  const __BACK_FILE_INFO__ info = InfoOf(m_folder.Path("empty"));
  other.Init(&info);

  const int nInit = m_pParser->Init(&other);
  const int nScan = m_pParser->Scan(QString());

  EXPECT_EQ(0, nInit);
  EXPECT_EQ(87, nScan);
  EXPECT_EQ(12, other.GetProgress());
  EXPECT_EQ(0, m_session.GetProgress());
}

TEST_F(Parser, ScanReadsTheManifestAndReportsToTheCallback) {
  MakeBackup();
  const __BACK_FILE_INFO__ info = InfoOf(m_folder.Path("backup"));
  m_session.Init(&info);
  ProgressLog log;

  const int nCallback = m_pParser->InitCallback(ProgressLog::Receive, &log);
  const int nScan = m_pParser->Scan(QString());

  EXPECT_EQ(0, nCallback);
  EXPECT_EQ(0, nScan);
  EXPECT_THAT(log.values, ElementsAre(1, 12));
  EXPECT_THAT(m_session.GetManifest(), SizeIs(10));
}

TEST_F(Parser, MissingManifestGives87) {
  const __BACK_FILE_INFO__ info = InfoOf(m_folder.MakeFolder("empty"));
  m_session.Init(&info);

  const int nScan = m_pParser->Scan(QString());

  EXPECT_EQ(87, nScan);
}

TEST_F(Parser, DecryptedFolderReachesTheSession) {
  const __BACK_FILE_INFO__ info = InfoOf(m_folder.MakeFolder("empty"), true);
  m_session.Init(&info);

  m_pParser->Scan("/decrypted");

  EXPECT_EQ("/decrypted", m_session.GetLayout().qstrRoot);
}

TEST_F(Parser, MediaComeFromTheSession) {
  Open();
  std::vector<_IPHONE_CAMERA_INFO_> camera, stream;
  std::vector<_IPHONE_ATTACHMENTS_> attachments;
  std::vector<_IPHONE_APP_FILE_INFO_> files;
  std::vector<_WHATSAPP_ATTACHMENTS_> whatsApp;

  EXPECT_EQ(0, m_pParser->GetCameraFilePath(camera, stream));
  EXPECT_EQ(0, m_pParser->GetAttachmentsFilePath(attachments));
  EXPECT_EQ(0, m_pParser->GetAppFilePath(files));
  EXPECT_EQ(0, m_pParser->GetWhatsAppAttachment(whatsApp));

  EXPECT_THAT(FileNames(camera), ElementsAre("roll.JPG"));
  EXPECT_THAT(FileNames(stream), ElementsAre("stream.JPG"));
  EXPECT_THAT(FileNames(attachments), ElementsAre("attached.JPG"));
  EXPECT_THAT(FileNames(files), ElementsAre("app.JPG"));
  EXPECT_THAT(FileNames(whatsApp), ElementsAre("chat.JPG"));
}

TEST_F(Parser, StoresComeFromTheSession) {
  Open();
  MessageMap messages;
  std::vector<__PERSON_CONTENT__> people;
  std::vector<__CALLHISTORY__> calls;
  std::vector<__NOTES__> notes;

  EXPECT_EQ(0, m_pParser->GetIPhoneMessageInfo(messages));
  EXPECT_EQ(0, m_pParser->GetIPhonePersonContent(people));
  EXPECT_EQ(0, m_pParser->GetIPhoneHistoryCallInfo(calls));
  EXPECT_EQ(0, m_pParser->GetIPhoneNotes(notes));

  EXPECT_THAT(Column(messages[1], &__MESSAGE_INFO__::strText), ElementsAre("hello"));
  EXPECT_THAT(Column(people, &__PERSON_CONTENT__::strName), ElementsAre("Ann"));
  EXPECT_THAT(Column(calls, &__CALLHISTORY__::strAddress), ElementsAre("+49302"));
  EXPECT_THAT(Column(notes, &__NOTES__::strTitle), ElementsAre("note"));
}

TEST_F(Parser, ChatsGoThroughToTheSession) {
  Open();
  WhatsAppMap chats = {{7, {}}};
  QQMap accounts;
  WeiXinMap weiXin;

  EXPECT_EQ(0, m_pParser->GetWhatsappMessageInfo(chats));
  EXPECT_EQ(0, m_pParser->GetQQMessageInfo(accounts));
  EXPECT_EQ(0, m_pParser->GetWeiXinMessageInfo(weiXin));

  EXPECT_THAT(m_session.GetWhatsAppMap(), SizeIs(1));
  EXPECT_THAT(accounts, ElementsAre(testing::Pair("10001", IsEmpty())));
  EXPECT_THAT(weiXin, IsEmpty());
}

TEST_F(Parser, CopiesOfStoresComeFromTheSession) {
  Open();
  std::string strMessages = m_folder.MakeFolder("out") + "/sms.db";
  std::string strContacts = m_folder.Path("out/Contacts.db");

  const int nMessages = m_pParser->RecoverySMSMessage(strMessages.data());
  const int nContacts = m_pParser->RecoveryPersonContacts(strContacts.data());

  EXPECT_EQ(0, nMessages);
  EXPECT_EQ(0, nContacts);
  EXPECT_THAT(NamesIn(m_folder.Path("out")), ElementsAre("Contacts.db", "sms.db"));
}

TEST_F(Parser, OperationsWithoutWorkSucceed) {
  char16_t wszText[] = u"text";

  EXPECT_EQ(0, m_pParser->PreView(wszText, wszText, nullptr, nullptr));
  EXPECT_EQ(0, m_pParser->Recovery(wszText, wszText, nullptr, nullptr));
  EXPECT_EQ(0, m_pParser->RecoveryQQMessage(wszText, wszText, wszText, nullptr, nullptr));
  EXPECT_EQ(0, m_pParser->RecoveryWeiXinMessage(wszText, wszText, wszText, nullptr, nullptr));
}

TEST_F(Parser, EndOfAParserLeavesTheSessionAlone) {
  Open();

  m_pParser.reset();

  EXPECT_THAT(m_session.GetManifest(), SizeIs(10));
}
