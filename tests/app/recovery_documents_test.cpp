// The documents that a recovery writes for ticked rows.
#include <QDateTime>
#include <algorithm>
#include <regex>

#include "tests/app/recovery_fixture.h"
#include "tests/cli/small_backup.h"

using namespace orvandel;

namespace {

using Names = std::vector<std::string>;

class RecoveryDocuments : public RecoveryTest {
 protected:
  /// First cells of all rows of a page.
  static Names RowsOf(const std::string& strPage) {
    static const std::regex row("\n\t<tr><td>([^<]*)</td>");
    Names rows;
    for (std::sregex_iterator it(strPage.begin(), strPage.end(), row), end; it != end; ++it)
      rows.push_back((*it)[1]);
    return rows;
  }
  /// The text files of conversations or chats.
  Names Texts() const {
    Names texts;
    for (const std::string& strFile : Written()) {
      if (strFile.size() > 4 && strFile.substr(strFile.size() - 4) == ".txt") texts.push_back(strFile);
    }
    return texts;
  }
};

TEST_F(RecoveryDocuments, AllTickedAreWrittenUnderTheirOwnNames) {
  AddDocuments();

  Recover();

  // Deliberate: chats are selected by the row numbers of ticked conversations.
  EXPECT_EQ(
      Names({"/CallHistory/CallHistory_STAMP.html", "/Contacts/STAMP/Contacts.html",
             "/Message/Ann-STAMP/Ann(3).html", "/Message/Ann-STAMP/Ann(3).txt",
             "/Message/Bob-STAMP/Bob(8).html", "/Message/Bob-STAMP/Bob(8).txt", "/Notes/Notes_STAMP.html",
             "/WhatsApp Message/Chris(4)-STAMP/Chris(4).csv",
             "/WhatsApp Message/Chris(4)-STAMP/Chris(4).html",
             "/WhatsApp Message/Chris(4)-STAMP/Chris(4).txt", "/WhatsApp Message/Dora(6)-STAMP/Dora(6).csv",
             "/WhatsApp Message/Dora(6)-STAMP/Dora(6).html", "/WhatsApp Message/Dora(6)-STAMP/Dora(6).txt"}),
      Written());
  for (const char* pszFolder : {"/CallHistory/", "/Contacts/", "/Notes/"})
    EXPECT_EQ(Names({"Ann", "Bob"}), RowsOf(PageIn(pszFolder))) << pszFolder;
}

TEST_F(RecoveryDocuments, ConversationsAreThoseOfTheTickedRows) {
  for (const auto& [nKey, pszName] : {std::pair(3u, "Ann"), {5u, "Bob"}, {8u, "Cem"}, {9u, "Dan"}})
    AddConversation(nKey, pszName);
  Records().m_mapMessage[5][0].nDeleted = 1;  // comes first in the table: Bob, Ann, Cem, Dan
  TickNode(4);
  Selection(4) = {{0, 0}, {2, 2}};

  Recover();

  EXPECT_EQ(Names({"/Message/Bob-STAMP/Bob(5).txt", "/Message/Cem-STAMP/Cem(8).txt"}), Texts());
}

TEST_F(RecoveryDocuments, ARowBeyondTheTableKeepsTheKeyOfTheRowBefore) {
  AddConversation(3, "Ann");
  AddConversation(5, "Bob");
  TickNode(4);
  Selection(4) = {{0, 0}, {17, 17}};

  Recover();

  EXPECT_EQ(Names({"/Message/Ann-STAMP/Ann(3)(1).txt", "/Message/Ann-STAMP/Ann(3).txt"}), Texts());
}

TEST_F(RecoveryDocuments, ABlankRowKeepsTheKeyOfTheRowBefore) {
  AddConversation(3, "Ann");
  Records().m_mapMessage[5];  // no record, so no cells
  AddConversation(8, "Cem");
  TickNode(4);
  Selection(4) = {{0, 0}, {1, 1}, {2, 2}};
  ASSERT_EQ(nullptr, Table("m_pMessageTable")->item(1, 0));

  Recover();

  EXPECT_EQ(Names({"/Message/Ann-STAMP/Ann(3)(1).txt", "/Message/Ann-STAMP/Ann(3).txt",
                   "/Message/Cem-STAMP/Cem(8).txt"}),
            Texts());
}

TEST_F(RecoveryDocuments, ConversationsThatAreGoneAreStillReported) {
  AddConversation(3, "Ann");
  AddConversation(5, "Bob");
  TickNode(4);
  Records().m_mapMessage.erase(3);
  Records().m_mapMessage[5].clear();
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(Names(), NamesIn(Out()));
  EXPECT_EQ(Reports({{9100, 1, 0, Out() + "/Message/sms.csv"}}), recorder.Named());
}

TEST_F(RecoveryDocuments, ChatsTickedWithoutMessagesAreNotWritten) {
  AddDocuments();
  for (const int nCategory : {4, 6, 7, 8}) Selection(nCategory).clear();
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(Names(), NamesIn(Out()));
  EXPECT_EQ(WholeRecovery({}), recorder.All());
}

TEST_F(RecoveryDocuments, MessagesTickedWithoutChatsBringNone) {
  AddDocuments();
  for (const int nCategory : {6, 7, 8, 9}) Selection(nCategory).clear();

  Recover();

  EXPECT_EQ(Names({"Message"}), NamesIn(Out()));
}

TEST_F(RecoveryDocuments, ChatsGoByTheRowsOfTheTickedMessages) {
  for (const auto& [nKey, pszName] : {std::pair(3u, "Ann"), {5u, "Bob"}, {8u, "Cem"}})
    AddConversation(nKey, pszName);
  for (const auto& [nKey, pszName] : {std::pair(1u, "Chris"), {2u, "Dora"}, {4u, "Emil"}})
    AddChat(nKey, pszName);
  TickNode(4);
  TickNode(9);
  Selection(4) = {{0, 0}, {2, 2}};
  Selection(9) = {{1, 1}};

  Recover();

  EXPECT_EQ(
      Names({"/Message/Ann-STAMP/Ann(3).txt", "/Message/Cem-STAMP/Cem(8).txt",
             "/WhatsApp Message/Chris(1)-STAMP/Chris(1).txt", "/WhatsApp Message/Emil(4)-STAMP/Emil(4).txt"}),
      Texts());
}

TEST_F(RecoveryDocuments, AMessageRowBeyondTheChatsKeepsTheChatBefore) {
  for (const auto& [nKey, pszName] : {std::pair(3u, "Ann"), {5u, "Bob"}, {8u, "Cem"}})
    AddConversation(nKey, pszName);
  AddChat(1, "Chris");
  TickNode(4);
  TickNode(9);
  Selection(4) = {{0, 0}, {2, 2}};

  Recover();

  EXPECT_EQ(Names({"/Message/Ann-STAMP/Ann(3).txt", "/Message/Cem-STAMP/Cem(8).txt",
                   "/WhatsApp Message/Chris(1)-STAMP/Chris(1)(1).txt",
                   "/WhatsApp Message/Chris(1)-STAMP/Chris(1).txt"}),
            Texts());
}

TEST_F(RecoveryDocuments, ChatsThatAreGoneAreSkipped) {
  AddDocuments();
  Records().m_mapWhatsApp.erase(4);
  Records().m_mapWhatsApp[6].clear();

  Recover();

  EXPECT_FALSE(Exists(Out() + "/WhatsApp Message"));
}

/// A kind of documents that makes one page.
struct PageCase {
  int nCategory;
  const char* pszName;
  const char* pszTable;
  const char* pszFolder;
  Report end;
};
void PrintTo(const PageCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class RecoveryPages : public RecoveryDocuments, public testing::WithParamInterface<PageCase> {
 protected:
  RecoveryPages() {
    AddRecords();
    TickNode(GetParam().nCategory);
  }
  void AddRecords() {
    BackupRecords& records = Records();
    for (const char* pszName : {"Ann", "Bob", "Cem", "Dan"}) {
      records.m_vecContact.emplace_back().strName = pszName;
      records.m_vecCall.emplace_back().strName = pszName;
      records.m_vecNote.emplace_back().strTitle = pszName;
    }
  }
  SelectionMap& Ticked() { return Selection(GetParam().nCategory); }
  Names Rows() const { return RowsOf(PageIn(GetParam().pszFolder)); }
  Reports Expected() const {
    Report end = GetParam().end;
    end.strName = Out() + end.strName;
    return WholeRecovery({}, {end});
  }
};

TEST_P(RecoveryPages, HoldTheTickedRowsInTheirOrder) {
  Ticked() = {{3, 3}, {1, 1}};
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(Names({"Bob", "Dan"}), Rows());
  EXPECT_EQ(Expected(), recorder.All());
}

TEST_P(RecoveryPages, DeletedRecordsComeFirstAsInTheTable) {
  OpenDataScreen();  // its tables are empty
  AddRecords();
  Records().m_vecContact[2].nDeleted = 1;
  Records().m_vecCall[2].nDeleted = 1;
  Records().m_vecNote[2].nDeleted = 1;
  TickNode(GetParam().nCategory);

  Recover();

  EXPECT_EQ(Names({"Cem", "Ann", "Bob", "Dan"}), Rows());
}

TEST_P(RecoveryPages, RowsWithoutACellAreSkipped) {
  delete Table(GetParam().pszTable)->takeItem(2, 0);
  Ticked() = {{0, 0}, {2, 2}, {3, 3}, {4, 4}, {1000, 1000}};

  Recover();

  EXPECT_EQ(Names({"Ann", "Dan"}), Rows());
}

TEST_P(RecoveryPages, RowsWithoutAnyCellGiveAPageWithoutRows) {
  Ticked() = {{50, 50}};
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_NE("", PageIn(GetParam().pszFolder));
  EXPECT_EQ(Names(), Rows());
  EXPECT_EQ(Expected(), recorder.All());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, RecoveryPages,
    testing::Values(
        PageCase{6, "Contacts", "m_pContactsTable", "/Contacts/", {9200, 1, 0, "/Contacts/Contacts.html"}},
        PageCase{7,
                 "CallHistory",
                 "m_pCallHistoryTable",
                 "/CallHistory/",
                 {9300, 1, 0, "/CallHistory/CallHistory.html"}},
        PageCase{8, "Notes", "m_pNotesTable", "/Notes/", {9500, 1, 0, "/Notes/Notes.html"}}),
    NameOf<PageCase>);

TEST_F(RecoveryDocuments, ASecondRecoveryWritesDocumentsUnderALaterStamp) {
  AddDocuments();
  Recover();
  const std::vector<std::string> first = FilesBelow(Out());
  const auto second = [] { return QDateTime::currentDateTime().toString("yyyyMMddhhmmss"); };
  const QString qstrStart = second();
  ASSERT_TRUE(WaitFor([&] { return second() != qstrStart; }));

  Recover();

  const std::vector<std::string> both = FilesBelow(Out());
  EXPECT_EQ(2 * first.size(), both.size());
  EXPECT_TRUE(std::includes(both.begin(), both.end(), first.begin(), first.end()));
}

/// Recoveries of a real backup.
class RecoveryStores : public RecoveryDocuments {
 protected:
  RecoveryStores() {
    WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
    Open();
    ScanBackup();
    m_strMessages =
        ReadFile(StorePathIn(BackupPath("one"), BackupBuilder::Layout::Db, store_places::messages()));
    m_strContacts =
        ReadFile(StorePathIn(BackupPath("one"), BackupBuilder::Layout::Db, store_places::contacts()));
  }
  void ClearTicks() {
    for (const int nCategory : {0, 1, 4, 5, 6, 7, 8, 9, 10}) Selection(nCategory).clear();
    for (const int nCategory : {2, 3}) AppSelection(nCategory).clear();
  }

  std::string m_strMessages;
  std::string m_strContacts;
};

TEST_F(RecoveryStores, CopiesOfTheStoresAreBesideTheDocuments) {
  Recover();

  const Names written = Written();
  EXPECT_EQ(1, std::count(written.begin(), written.end(), "/Contacts/STAMP/Contacts.db"));
  EXPECT_TRUE(m_strMessages == ReadFile(Out() + "/Message/sms.db"));
  for (const std::string& strFile : FilesBelow(Out())) {
    if (strFile.find("Contacts.db") != std::string::npos) {
      EXPECT_TRUE(m_strContacts == ReadFile(Out() + "/" + strFile));
    }
  }
}

TEST_F(RecoveryStores, TheMessageStoreIsCopiedWithoutATickWhereItsFolderIs) {
  ClearTicks();
  WriteFile(Out() + "/Message/sms.db", "of an earlier recovery");

  Recover();

  EXPECT_EQ(Names({"Message/sms.db"}), FilesBelow(Out()));
  EXPECT_TRUE(m_strMessages == ReadFile(Out() + "/Message/sms.db"));
}

TEST_F(RecoveryStores, WithoutTheFolderOfMessagesTheStoreIsNotCopied) {
  ClearTicks();

  Recover();

  EXPECT_EQ(Names(), NamesIn(Out()));
}

TEST_F(RecoveryStores, TheMessageStoreIsReplacedAndNotNumbered) {
  Recover();
  WriteFile(Out() + "/Message/sms.db", "changed");

  Recover();

  EXPECT_TRUE(m_strMessages == ReadFile(Out() + "/Message/sms.db"));
  EXPECT_FALSE(Exists(Out() + "/Message/sms(1).db"));
}

}  // namespace
