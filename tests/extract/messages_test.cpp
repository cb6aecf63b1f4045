#include "extract/messages.h"

#include <gmock/gmock.h>

#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace {

constexpr qint64 kNano = 1000000000;

class Messages : public testing::Test {
 protected:
  MessageStore& Store() {
    if (!m_pStore) m_pStore = std::make_unique<MessageStore>(FromNarrow(Path()));
    return *m_pStore;
  }

  /// Adds a message of a handle to a chat of its own.
  qint64 Add(qint64 nHandle, const QString& qstrText, qint64 nDate = kNewYear2014) {
    return Store().addMessage(nHandle, qstrText, nDate, false, {Store().addChat("chat")});
  }

  void WriteContacts(const std::vector<ContactsStore::Person>& people) {
    ContactsStore store(FromNarrow(ContactsPath()), true);
    for (const ContactsStore::Person& person : people) store.add(person);
    store.close();
  }

  int Read() {
    m_pStore.reset();
    CIPhoneMessage reader;
    reader.bNewContactsLayout = true;
    reader.InitCallback(m_bReport ? ProgressLog::Receive : nullptr, &m_log, 34, 11);
    return reader.GetSMSInfo(Path(), ContactsPath(), m_messages, m_nMaxId);
  }

  std::vector<std::string> Texts(unsigned int nHandle) {
    return Column(m_messages[nHandle], &__MESSAGE_INFO__::strText);
  }
  std::string Path() const { return m_folder.Path("sms.db"); }
  std::string ContactsPath() const { return m_folder.Path("contacts.db"); }

  TemporaryFolder m_folder;
  std::unique_ptr<MessageStore> m_pStore;
  MessageMap m_messages;
  uint64_t m_nMaxId = 20000;
  ProgressLog m_log;
  bool m_bReport = false;
};

struct DateCase {
  const char* pszName;
  const char* pszRaw;  // as stored
  const char* pszDate;
};

void PrintTo(const DateCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class MessageDate : public Messages, public testing::WithParamInterface<DateCase> {};

struct MatchCase {
  const char* pszName;
  const char* pszSender;
  const char* pszPhone;
  const char* pszExpected;
};

void PrintTo(const MatchCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class MessageName : public Messages, public testing::WithParamInterface<MatchCase> {};

}  // namespace

TEST_F(Messages, MessageHasTheStoredValues) {
  const qint64 nHandle = Store().addHandle("+49301");
  Store().addMessage(nHandle, "hello", kNewYear2014 * kNano, true, {Store().addChat("+49301")});

  const int nStatus = Read();

  EXPECT_EQ(0, nStatus);
  ASSERT_THAT(m_messages, SizeIs(1));
  ASSERT_THAT(m_messages[1], SizeIs(1));
  const __MESSAGE_INFO__& message = m_messages[1][0];
  EXPECT_EQ(0, message.nDeleted);
  EXPECT_EQ(1, message.nIsFromMe);
  EXPECT_EQ(1, message.nRowId);
  EXPECT_EQ(1u, message.nHandleId);
  EXPECT_EQ(kNewYear2014Text, message.strDate);
  EXPECT_EQ("+49301", message.strSender);
  EXPECT_EQ("", message.strContactName);
  EXPECT_EQ("hello", message.strText);
  EXPECT_EQ("", message.strReserved);
}

TEST_F(Messages, ConversationsAreThoseOfTheHandles) {
  const qint64 nAnn = Store().addHandle("ann");
  const qint64 nBo = Store().addHandle("bo");
  Add(nBo, "from bo");
  Add(nAnn, "from ann");

  Read();

  ASSERT_THAT(m_messages, SizeIs(2));
  EXPECT_THAT(Texts(1), ElementsAre("from ann"));
  EXPECT_THAT(Texts(2), ElementsAre("from bo"));
}

TEST_F(Messages, NewestOfAConversationComesFirstWhateverItsRow) {
  const qint64 nAnn = Store().addHandle("ann");
  Add(nAnn, "middle", 2000);
  Add(nAnn, "new", 3000);
  Add(nAnn, "old", 1000);

  Read();

  EXPECT_THAT(Texts(1), ElementsAre("new", "middle", "old"));
}

TEST_F(Messages, OneStoreMayHoldBothFormsOfDate) {
  const qint64 nAnn = Store().addHandle("ann");
  Add(nAnn, "seconds", kNewYear2014);
  Add(nAnn, "nanoseconds", (kNewYear2014 + 60) * kNano);

  Read();

  EXPECT_THAT(Texts(1), ElementsAre("nanoseconds", "seconds"));
  EXPECT_THAT(Column(m_messages[1], &__MESSAGE_INFO__::strDate),
              ElementsAre("2014-01-01 00:01:00", kNewYear2014Text));
}

TEST_F(Messages, MessageWithoutTextIsSkippedButCountsForTheHighestId) {
  const qint64 nAnn = Store().addHandle("ann");
  Add(nAnn, "hello");
  Add(nAnn, "");
  Add(nAnn, QString());

  Read();

  EXPECT_THAT(Texts(1), ElementsAre("hello"));
  EXPECT_EQ(3u, m_nMaxId);
}

TEST_F(Messages, EmptyMessagesGiveNoConversation) {
  Add(Store().addHandle("ann"), "");

  Read();

  EXPECT_THAT(m_messages, IsEmpty());
}

TEST_F(Messages, MessageWithoutAChatIsSkippedAndNotCounted) {
  const qint64 nAnn = Store().addHandle("ann");
  Add(nAnn, "in a chat");
  Store().addMessage(nAnn, "in none", kNewYear2014, false, {});

  Read();

  EXPECT_THAT(Texts(1), ElementsAre("in a chat"));
  EXPECT_EQ(1u, m_nMaxId);
}

TEST_F(Messages, MessageWithoutAHandleIsSkipped) {
  Add(Store().addHandle("ann"), "known");
  Add(0, "own");
  Add(77, "unknown");

  Read();

  ASSERT_THAT(m_messages, SizeIs(1));
  EXPECT_THAT(Texts(1), ElementsAre("known"));
}

TEST_F(Messages, MessageOfTwoChatsComesTwice) {
  const qint64 nAnn = Store().addHandle("ann");
  Store().addMessage(nAnn, "hello", kNewYear2014, false, {Store().addChat("ann"), Store().addChat("chat1")});

  Read();

  EXPECT_THAT(Texts(1), ElementsAre("hello", "hello"));
}

TEST_F(Messages, MessagesAreAddedToTheCallersMap) {
  Add(Store().addHandle("ann"), "hello");
  m_messages[1].resize(1);
  m_messages[5].resize(1);

  Read();

  EXPECT_THAT(Texts(1), ElementsAre("", "hello"));
  EXPECT_THAT(m_messages[5], SizeIs(1));
}

TEST_P(MessageDate, DependsOnTheLengthOfItsText) {
  {
    SampleStore store(FromNarrow(Path()), false);
    store.run(
        "create table message (ROWID INTEGER PRIMARY KEY, text TEXT, is_from_me INTEGER, date TEXT, "
        "handle_id)");
    store.run("create table handle (ROWID INTEGER PRIMARY KEY, id TEXT)");
    store.run("create table chat_message_join (chat_id INTEGER, message_id INTEGER)");
    store.run("insert into handle values (1, 'ann')");
    store.run("insert into chat_message_join values (1, 1)");
    store.run("insert into message values (1, 'hello', 0, ?, 1)", {QString(GetParam().pszRaw)});
    store.close();
  }

  Read();

  EXPECT_THAT(Column(m_messages[1], &__MESSAGE_INFO__::strDate), ElementsAre(GetParam().pszDate));
}

// A count of seconds has fewer than 15 characters.
INSTANTIATE_TEST_SUITE_P(Dates, MessageDate,
                         testing::Values(DateCase{"Zero", "0", "2001-01-01 00:00:00"},
                                         DateCase{"Digits8", "86400000", "2003-09-28 00:00:00"},
                                         DateCase{"Digits9", "410227200", kNewYear2014Text},
                                         DateCase{"Characters14", "00000410227200", kNewYear2014Text},
                                         DateCase{"Characters15", "000000410227200", "2001-01-01 00:00:00"},
                                         DateCase{"Digits15", "100000000000000", "2001-01-02 03:46:40"},
                                         DateCase{"Digits18", "410227200999999999", kNewYear2014Text}),
                         [](const testing::TestParamInfo<DateCase>& info) { return info.param.pszName; });

TEST_P(MessageName, ComesFromAPhoneTextThatHoldsTheSender) {
  Add(Store().addHandle(GetParam().pszSender), "hello");
  WriteContacts({{"Ann", "Lee", {}, GetParam().pszPhone, {}, {}, {}}});

  Read();

  EXPECT_THAT(Column(m_messages[1], &__MESSAGE_INFO__::strContactName), ElementsAre(GetParam().pszExpected));
}

INSTANTIATE_TEST_SUITE_P(Senders, MessageName,
                         testing::Values(MatchCase{"Whole", "+493012345", "+493012345", "AnnLee"},
                                         MatchCase{"SecondOfTheText", "+4930", "+49177\n+4930", "AnnLee"},
                                         MatchCase{"InsideALongerOne", "3012", "+493012345", "AnnLee"},
                                         MatchCase{"OneDigit", "7", "+4917", "AnnLee"},
                                         MatchCase{"Empty", "", "+4917", ""},
                                         MatchCase{"BlanksAreNotSkipped", "+493012", "+49 3012", ""},
                                         MatchCase{"CountryIsNotTranslated", "+493012", "03012", ""},
                                         MatchCase{"StoredOneIsShorter", "+493012345", "3012", ""},
                                         MatchCase{"PersonWithoutPhone", "+4930", "", ""}),
                         [](const testing::TestParamInfo<MatchCase>& info) { return info.param.pszName; });

TEST_F(Messages, FirstMatchingPersonOfTheStoreGivesTheName) {
  Add(Store().addHandle("+49301"), "hello");
  WriteContacts({{"Zoe", {}, {}, "1+493012", {}, {}, {}}, {"Ann", {}, {}, "+49301", {}, {}, {}}});

  Read();

  EXPECT_EQ("Zoe", m_messages[1][0].strContactName);
}

TEST_F(Messages, NamelessPersonWhoMatchesFirstLeavesTheNameEmpty) {
  Add(Store().addHandle("+49301"), "hello");
  WriteContacts({{{}, {}, "Acme", "+49301", {}, {}, {}}, {"Ann", {}, {}, "+49301", {}, {}, {}}});

  Read();

  EXPECT_EQ("", m_messages[1][0].strContactName);
}

TEST_F(Messages, MailAddressOfAContactGivesNoName) {
  Add(Store().addHandle("ann@example.org"), "hello");
  WriteContacts({{"Ann", {}, {}, "+49301", "ann@example.org", {}, {}}});

  Read();

  EXPECT_EQ("", m_messages[1][0].strContactName);
}

TEST_F(Messages, ContactsAreReadFromTheRequestedColumns) {
  Add(Store().addHandle("+49301"), "hello");
  m_pStore.reset();
  ContactsStore contacts(FromNarrow(ContactsPath()), false);
  contacts.add({"Ann", {}, {}, "+49301", {}, {}, {}});
  contacts.close();
  CIPhoneMessage oldReader, newReader;
  newReader.bNewContactsLayout = true;
  MessageMap withNew;

  oldReader.GetSMSInfo(Path(), ContactsPath(), m_messages, m_nMaxId);
  newReader.GetSMSInfo(Path(), ContactsPath(), withNew, m_nMaxId);

  EXPECT_EQ("Ann", m_messages[1][0].strContactName);
  EXPECT_EQ("", withNew[1][0].strContactName);
}

TEST_F(Messages, ProgressComesAtAFifthAQuarterAndTheEnd) {
  Add(Store().addHandle("ann"), "hello");
  m_bReport = true;

  const int nAnswer = Read();

  EXPECT_EQ(0, nAnswer);
  EXPECT_THAT(m_log.values, ElementsAre(36, 36, 45));
}

TEST_F(Messages, FirstAnswerDiscardsTheMessagesAndTheLastIsTheResult) {
  Add(Store().addHandle("ann"), "hello");
  m_messages[5].resize(1);
  m_bReport = true;
  m_log.answer = [](size_t nCall, int) { return nCall == 0 ? 3 : 8; };

  const int nAnswer = Read();

  EXPECT_EQ(8, nAnswer);
  EXPECT_THAT(m_log.values, ElementsAre(36, 45));
  EXPECT_THAT(m_messages, ElementsAre(testing::Key(5)));
  EXPECT_EQ(1u, m_nMaxId);
}

TEST_F(Messages, FirstAnswerIsForgottenWhenTheLastIsZero) {
  Add(Store().addHandle("ann"), "hello");
  m_bReport = true;
  m_log.answer = [](size_t nCall, int) { return nCall == 0 ? 1 : 0; };

  const int nAnswer = Read();

  EXPECT_EQ(0, nAnswer);
  EXPECT_THAT(m_messages, IsEmpty());
}

TEST_F(Messages, LaterAnswersKeepTheMessages) {
  Add(Store().addHandle("ann"), "hello");
  m_bReport = true;
  m_log.CancelFrom(1);

  const int nAnswer = Read();

  EXPECT_EQ(1, nAnswer);
  EXPECT_THAT(m_log.values, ElementsAre(36, 36, 45));
  EXPECT_THAT(Texts(1), ElementsAre("hello"));
}

TEST_F(Messages, MissingStoresGiveTheWholeProgress) {
  m_bReport = true;

  const int nAnswer = Read();

  EXPECT_EQ(0, nAnswer);
  EXPECT_THAT(m_log.values, ElementsAre(36, 36, 45));
}

TEST(MessageOrder, IsNewestFirst) {
  __MESSAGE_INFO__ older, newer;
  older.strDate = "2013-12-31 23:59:59";
  newer.strDate = kNewYear2014Text;

  EXPECT_TRUE(VectorCmp(newer, older));
  EXPECT_FALSE(VectorCmp(older, newer));
  EXPECT_FALSE(VectorCmp(newer, newer));
}
