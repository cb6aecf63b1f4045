#include <gmock/gmock.h>
#include <filesystem>
#include <memory>

#include "backup/categories.h"
#include "sample/demo_backup.h"
#include "sample/stores.h"
#include "tests/backup/tree_state.h"
#include "tests/export/recovery_fixture.h"
#include "tests/scan_support.h"

using namespace orvandel;
using testing::Each;
using testing::IsEmpty;
using testing::StartsWith;
using Layout = BackupBuilder::Layout;

namespace {

/// A recovery of all documents of the demo backup.
class WholeRecovery : public RecoveryTest, public testing::WithParamInterface<Layout> {
 protected:
  WholeRecovery() : m_records(m_session.GetMessageMap()) {
    DemoOptions options;
    options.layout = GetParam();
    options.photos = 4;
    writeDemoBackup(FromNarrow(Backup()), options);
  }

  std::string Backup() const { return m_folder.Path("backup"); }

  void Scan() {
    const __BACK_FILE_INFO__ info = InfoOf(Backup());
    m_session.Init(&info);
    const std::unique_ptr<IPhoneRecoveryParse> pParser(
        CIphoneRecoveryFactory::getInstance()->CreateRecoveryParse(&m_session, RECOVERY_TYPE_LOCAL_BACKUP));
    pParser->Scan(QString());
    WalkCategories(*pParser, m_records, nullptr);
    // There is no reader for chats yet.
    m_records.m_mapWhatsApp = {{kHandle, {ChatMessage(kReceived, "hello"), ChatMessage(kSent, "hi")}}};
  }

  void Recover() {
    Begin();
    for (const auto& [nKey, messages] : m_records.m_mapMessage) {
      if (!messages.empty()) m_recovery.RecoveryMsg(&messages.front(), m_records.m_mapMessage);
    }
    m_recovery.SaveMessage();
    for (const __PERSON_CONTENT__& person : m_records.m_vecContact) m_recovery.RecoveryContacts(&person);
    m_recovery.SaveContactsCsv();
    m_recovery.SaveContacts();
    for (const __CALLHISTORY__& call : m_records.m_vecCall) m_recovery.RecoveryCallHistory(&call);
    m_recovery.SaveCallHistory();
    for (const __NOTES__& note : m_records.m_vecNote) m_recovery.RecoveryNotes(&note);
    m_recovery.SaveNotes();
    for (const auto& [nKey, messages] : m_records.m_mapWhatsApp)
      m_recovery.RecoveryWhatsAppMsg(&messages.front(), m_records.m_mapWhatsApp);
  }

  std::string StoreBytes(const StorePlace& place) const {
    const QString qstrId = BackupBuilder::fileId(place.domain, place.relativePath);
    return ReadFile(ToNarrow(BackupBuilder(FromNarrow(Backup()), GetParam()).filePath(qstrId)));
  }

  static size_t Count(const std::string& strText, const std::string& strPart) {
    size_t nCount = 0;
    for (size_t nHit = strText.find(strPart); nHit != std::string::npos;
         nHit = strText.find(strPart, nHit + 1))
      ++nCount;
    return nCount;
  }

  BackupRecords m_records;
};

}  // namespace

TEST_P(WholeRecovery, LeavesTheBackupUnchanged) {
  Scan();
  const auto before = TreeState(Backup());

  Recover();

  EXPECT_FALSE(Written().empty());
  EXPECT_EQ(before, TreeState(Backup()));
}

TEST_P(WholeRecovery, WritesOrReportsTwoDocumentsForEachConversationAndOneOfEachOtherKind) {
  Scan();

  Recover();

  EXPECT_GE(m_records.m_mapMessage.size(), 30u);
  // Plus two stores, three table pages, three documents of the chat.
  EXPECT_EQ(2 * m_records.m_mapMessage.size() + 2 + 3 + 3, m_told.size());
  EXPECT_THAT(Failed(), IsEmpty());
  EXPECT_THAT(Written(), Each(StartsWith(Out() + "/")));
  for (const std::string& strPath : Written()) EXPECT_TRUE(Exists(strPath)) << strPath;
  size_t nFiles = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(Out()))
    nFiles += entry.is_regular_file();
  EXPECT_EQ(Written().size(), nFiles);
}

TEST_P(WholeRecovery, WritesEveryRecordOnce) {
  Scan();

  Recover();

  size_t nInPages = 0, nInTexts = 0, nMessages = 2;  // of the chat
  for (const auto& [nKey, messages] : m_records.m_mapMessage) nMessages += messages.size();
  for (const std::string& strPath : Written()) {
    if (strPath.find("/Message/") == std::string::npos &&
        strPath.find("/WhatsApp Message/") == std::string::npos)
      continue;
    const std::string strBytes = strPath.find("/sms.db") == std::string::npos ? ReadFile(strPath) : "";
    nInPages += Count(strBytes, "<div class=\"date\">Date: ");
    nInTexts += Count(strBytes, "\n      Data: ");
  }
  EXPECT_EQ(nMessages, nInPages);
  EXPECT_EQ(nMessages, nInTexts);
  EXPECT_EQ(m_records.m_vecContact.size(),
            Count(ReadFile(Out() + "/Contacts/" + Stamp() + "/Contacts.html"), "\t<tr>"));
  EXPECT_EQ(m_records.m_vecCall.size(),
            Count(ReadFile(Out() + "/CallHistory/CallHistory_" + Stamp() + ".html"), "\t<tr>"));
  EXPECT_EQ(m_records.m_vecNote.size(),
            Count(ReadFile(Out() + "/Notes/Notes_" + Stamp() + ".html"), "\t<tr>"));
}

TEST_P(WholeRecovery, CopiesTheStoresWhole) {
  Scan();

  Recover();

  EXPECT_TRUE(StoreBytes(store_places::messages()) == ReadFile(Out() + "/Message/sms.db"));
  EXPECT_TRUE(StoreBytes(store_places::contacts()) ==
              ReadFile(Out() + "/Contacts/" + Stamp() + "/Contacts.db"));
}

INSTANTIATE_TEST_SUITE_P(Layouts, WholeRecovery, testing::Values(Layout::Mbdb, Layout::Db),
                         [](const auto& info) { return info.param == Layout::Db ? "TwoLevel" : "Flat"; });
