#include "extract/whatsapp_chats.h"

#include <gmock/gmock.h>

#include "tests/extract/whatsapp_store.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const QString kAnna = "4915112345678@s.whatsapp.net";
const QString kBen = "447700900123@s.whatsapp.net";
const QString kCarla = "33140000000@s.whatsapp.net";
const QString kFamily = "4915112345678-1400000000@g.us";

class WhatsAppChats : public testing::Test {
 protected:
  WhatsAppTestStore& Store() {
    if (!m_pStore) m_pStore = std::make_unique<WhatsAppTestStore>(FromNarrow(Path()));
    return *m_pStore;
  }

  void Read() {
    Store().close();
    WhatsAppChatReader().Read(Path(), m_chats);
  }

  std::vector<std::string> Texts(unsigned int nChat) {
    return Column(m_chats[nChat], &__WHATSAPP_MESSAGE__::strContent);
  }
  std::vector<std::string> Names(unsigned int nChat) {
    return Column(m_chats[nChat], &__WHATSAPP_MESSAGE__::strName);
  }
  std::vector<unsigned int> Keys() const {
    std::vector<unsigned int> keys;
    for (const auto& [nKey, messages] : m_chats) keys.push_back(nKey);
    return keys;
  }
  std::string Path() const { return m_folder.Path("ChatStorage.sqlite"); }

  TemporaryFolder m_folder;
  std::unique_ptr<WhatsAppTestStore> m_pStore;
  WhatsAppMap m_chats;
};

}  // namespace

TEST_F(WhatsAppChats, ReceivedMessageHasTheValuesOfItsPartner) {
  const qint64 nChat = Store().AddPerson(kAnna, "Anna Berger");
  Store().AddMessage(nChat, double(kNewYear2014), "hello");

  Read();

  ASSERT_THAT(Keys(), ElementsAre(1));
  ASSERT_THAT(m_chats[1], SizeIs(1));
  const __WHATSAPP_MESSAGE__& message = m_chats[1][0];
  EXPECT_EQ(0, message.nDeleted);
  EXPECT_EQ(0, message.nIsFromMe);
  EXPECT_EQ(1u, message.nChatId);
  EXPECT_EQ(kNewYear2014Text, message.strDate);
  EXPECT_EQ("Anna Berger", message.strName);
  EXPECT_EQ("4915112345678", message.strPhone);
  EXPECT_EQ("hello", message.strContent);
  EXPECT_EQ("Anna Berger", message.strChatName);
  EXPECT_EQ("4915112345678", message.strChatPhone);
  EXPECT_EQ("Anna Berger", message.strChatTitle);
}

TEST_F(WhatsAppChats, SentMessageHasTheValuesOfTheChat) {
  Store().AddMessage(Store().AddPerson(kAnna, "Anna Berger"), 1.0, "to Anna", true);
  Store().AddMessage(Store().AddGroup(kFamily, "Family"), 1.0, "to all", true);

  Read();

  EXPECT_EQ(1, m_chats[1][0].nIsFromMe);
  EXPECT_EQ("Anna Berger", m_chats[1][0].strName);
  EXPECT_EQ("4915112345678", m_chats[1][0].strPhone);
  EXPECT_EQ(1, m_chats[2][0].nIsFromMe);
  EXPECT_EQ("Family", m_chats[2][0].strName);
  EXPECT_EQ("", m_chats[2][0].strPhone);
}

TEST_F(WhatsAppChats, NewestComesFirstAndOfOneDateTheLatestRow) {
  const qint64 nChat = Store().AddPerson(kAnna, "Anna");
  Store().AddMessage(nChat, 200.25, "third");
  Store().AddMessage(nChat, 200.5, "second");
  Store().AddMessage(nChat, 100, "fifth");
  Store().AddMessage(nChat, QVariant(), "without a date");
  Store().AddMessage(nChat, 300, "first");
  Store().AddMessage(nChat, 100, "fourth");

  Read();

  EXPECT_THAT(Texts(1), ElementsAre("first", "second", "third", "fourth", "fifth", "without a date"));
}

TEST_F(WhatsAppChats, SessionWithoutAMessageIsNoChat) {
  Store().AddPerson(kBen, "Ben");
  Store().AddMessage(Store().AddPerson(kAnna, "Anna"), 1, "hello");

  Read();

  EXPECT_THAT(Keys(), ElementsAre(2));
}

TEST_F(WhatsAppChats, StatusUpdatesAreLeftOut) {
  Store().AddMessage(Store().AddPerson("status@broadcast", "Status"), 1, "on holiday");

  Read();

  EXPECT_THAT(m_chats, IsEmpty());
}

TEST_F(WhatsAppChats, PartnerWithoutANameHasThePushNameOrTheNumber) {
  const qint64 nBen = Store().AddPerson(kBen, QString());
  const qint64 nCarla = Store().AddPerson(kCarla, "");
  Store().AddPushName(kBen, "Benny");
  for (const qint64 nChat : {nBen, nCarla}) Store().AddMessage(nChat, 1, "hello");

  Read();

  EXPECT_EQ("Benny", m_chats[1][0].strChatTitle);
  EXPECT_EQ("Benny", m_chats[1][0].strName);
  EXPECT_EQ("447700900123", m_chats[1][0].strChatPhone);
  EXPECT_EQ("33140000000", m_chats[2][0].strChatTitle);
  EXPECT_EQ("33140000000", m_chats[2][0].strName);
}

TEST_F(WhatsAppChats, WriterInAGroupHasTheFirstOfFourNames) {
  const qint64 nGroup = Store().AddGroup(kFamily, "Family");
  const qint64 members[] = {Store().AddMember(nGroup, kAnna, "Anna Berger", "Anna"),
                            Store().AddMember(nGroup, kBen, {}, "Ben"), Store().AddMember(nGroup, kCarla),
                            Store().AddMember(nGroup, "12025550107@s.whatsapp.net")};
  for (const QString& jid : {kAnna, kBen, kCarla}) Store().AddPushName(jid, "push");
  int nDate = 9;
  for (const qint64 nMember : members) Store().AddMemberMessage(nGroup, nMember, nDate--, "hello");

  Read();

  EXPECT_THAT(Names(1), ElementsAre("Anna Berger", "Ben", "push", "12025550107"));
  EXPECT_THAT(Column(m_chats[1], &__WHATSAPP_MESSAGE__::strPhone),
              ElementsAre("4915112345678", "447700900123", "33140000000", "12025550107"));
}

TEST_F(WhatsAppChats, NameOfAGroupIsTheListOfItsMembers) {
  const qint64 nGroup = Store().AddGroup(kFamily, "Family");
  Store().AddMember(nGroup, kAnna, "Anna Berger");
  Store().AddMember(nGroup, kBen, {}, "Ben");
  Store().AddMember(Store().AddGroup("1-2@g.us", "Others"), kCarla, "Carla");
  Store().AddMessage(nGroup, 1, "hello", true);

  Read();

  EXPECT_EQ("Anna Berger, Ben", m_chats[1][0].strChatName);
  EXPECT_EQ("Family", m_chats[1][0].strChatTitle);
  EXPECT_EQ("", m_chats[1][0].strChatPhone);
}

TEST_F(WhatsAppChats, GroupWithoutMembersHasItsSubjectAsName) {
  Store().AddMessage(Store().AddGroup(kFamily, "Family"), 1, "hello", true);

  Read();

  EXPECT_EQ("Family", m_chats[1][0].strChatName);
}

TEST_F(WhatsAppChats, WriterWhoIsNoMemberIsFoundByTheAddressInTheMessage) {
  const qint64 nGroup = Store().AddGroup(kFamily, "Family");
  Store().AddPushName(kBen, "Ben");
  Store().AddMessage(nGroup, 3, "known");
  Store().run("UPDATE ZWAMESSAGE SET ZFROMJID = ?", {kBen});
  Store().AddMemberMessage(nGroup, 77, 2, "unknown");
  Store().AddMessage(nGroup, 1, "from the group itself");
  Store().run("UPDATE ZWAMESSAGE SET ZFROMJID = ? WHERE Z_PK = 3", {kFamily});

  Read();

  EXPECT_THAT(Names(1), ElementsAre("Ben", "", ""));
}

TEST_F(WhatsAppChats, PushNameOfAMessageNamesItsWriterUnlessItIsEncoded) {
  const char* const kNames[][2] = {{"Carla", "Carla"},    {"Jean Luc", "Jean Luc"}, {"Élise99", "Élise99"},
                                   {"Anna2", "Anna2"},    {"Max1990", "Max1990"},   {"CgVDYXJsYQ==", nullptr},
                                   {"Q2FybGE3", nullptr}, {"\x01\x02", nullptr},    {"", nullptr}};
  int nPhone = 100;
  for (const auto& name : kNames) {
    Store().AddMessage(Store().AddPerson(QString("%1@s.whatsapp.net").arg(nPhone++), {}), 1, "hello");
    Store().run("UPDATE ZWAMESSAGE SET ZPUSHNAME = ? WHERE Z_PK = (SELECT max(Z_PK) FROM ZWAMESSAGE)",
                {QString::fromUtf8(name[0])});
  }

  Read();

  unsigned int nChat = 0;
  for (const auto& name : kNames) {
    const std::string strExpected = name[1] ? name[1] : std::to_string(100 + nChat);
    EXPECT_EQ(strExpected, m_chats[++nChat][0].strName) << name[0];
  }
}

TEST_F(WhatsAppChats, PushNameOfTheOwnersMessageDoesNotNameThePartner) {
  Store().AddMessage(Store().AddPerson(kCarla, {}), 1, "hello", true);
  Store().run("UPDATE ZWAMESSAGE SET ZPUSHNAME = 'Me myself'");

  Read();

  EXPECT_EQ("33140000000", m_chats[1][0].strName);
}

TEST_F(WhatsAppChats, MessagesOfAnUnknownSessionFormAChat) {
  Store().AddMessage(5, 1, "orphan");
  Store().run("UPDATE ZWAMESSAGE SET ZFROMJID = ?", {kBen});

  Read();

  EXPECT_THAT(Texts(5), ElementsAre("orphan"));
  EXPECT_EQ("447700900123", m_chats[5][0].strChatTitle);
}

TEST_F(WhatsAppChats, MessagesWithoutASessionHaveTheirOwnWriters) {
  for (const QString& jid : {QString("status@broadcast"), kAnna, kBen, kFamily}) {
    const qint64 nMessage = Store().AddMessage(0, 0, jid);
    Store().run(
        "UPDATE ZWAMESSAGE SET ZCHATSESSION = NULL, ZFROMJID = ?, ZMESSAGEDATE = -Z_PK WHERE Z_PK = ?",
        {jid, nMessage});
  }

  Read();

  EXPECT_THAT(Names(0), ElementsAre("4915112345678", "447700900123", ""));
  EXPECT_EQ("", m_chats[0][0].strChatTitle);
}

TEST_F(WhatsAppChats, MemberOfAGroupIsNamedWithoutItsSession) {
  const qint64 nMember = Store().AddMember(5, kAnna, "Anna");
  Store().AddMemberMessage(5, nMember, 1, "hello");
  Store().run("UPDATE ZWAMESSAGE SET ZFROMJID = ?", {kFamily});

  Read();

  EXPECT_THAT(Names(5), ElementsAre("Anna"));
  EXPECT_EQ("", m_chats[5][0].strChatTitle);
}

TEST_F(WhatsAppChats, StatusOfAnUnknownSessionIsLeftOutAlone) {
  Store().AddMessage(5, 2, "status");
  Store().run("UPDATE ZWAMESSAGE SET ZFROMJID = 'status@broadcast'");
  Store().AddMessage(5, 1, "message");

  Read();

  EXPECT_THAT(Texts(5), ElementsAre("message"));
}

TEST_F(WhatsAppChats, WriterInAGroupWhoIsUnknownHasThePushNameOfTheMessage) {
  const qint64 nGroup = Store().AddGroup(kFamily, "Family");
  Store().AddMessage(nGroup, 1, "hello");
  Store().run("UPDATE ZWAMESSAGE SET ZPUSHNAME = 'Dora', ZFROMJID = ?", {kFamily});

  Read();

  EXPECT_THAT(Names(1), ElementsAre("Dora"));
}

TEST_F(WhatsAppChats, PushNameOfAMessageIsThatOfAllWithTheAddress) {
  const qint64 nGroup = Store().AddGroup(kFamily, "Family");
  Store().AddMemberMessage(nGroup, Store().AddMember(nGroup, kCarla), 2, "hello");
  Store().run("UPDATE ZWAMESSAGE SET ZPUSHNAME = 'Carla'");
  Store().AddMessage(Store().AddPerson(kCarla, {}), 1, "hello");

  Read();

  EXPECT_THAT(Names(2), ElementsAre("Carla"));
  EXPECT_EQ("Carla", m_chats[2][0].strChatTitle);
}

TEST_F(WhatsAppChats, StoreWithTheNeededColumnsAloneIsRead) {
  SampleStore store(FromNarrow(Path()), false);
  store.run(
      "CREATE TABLE ZWACHATSESSION (Z_PK INTEGER PRIMARY KEY, ZCONTACTJID VARCHAR, ZPARTNERNAME VARCHAR)");
  store.run(
      "CREATE TABLE ZWAMESSAGE (Z_PK INTEGER PRIMARY KEY, ZCHATSESSION INTEGER, ZISFROMME INTEGER, "
      "ZMESSAGEDATE TIMESTAMP, ZTEXT VARCHAR)");
  store.run("INSERT INTO ZWACHATSESSION VALUES (3, ?, 'Anna'), (4, ?, 'Family')", {kAnna, kFamily});
  store.run("INSERT INTO ZWAMESSAGE VALUES (1, 3, 0, 410227200, 'hello'), (2, 4, 0, 1, NULL)");
  store.close();

  WhatsAppChatReader().Read(Path(), m_chats);

  EXPECT_THAT(Texts(3), ElementsAre("hello"));
  EXPECT_THAT(Names(3), ElementsAre("Anna"));
  EXPECT_THAT(Texts(4), ElementsAre("[Message]"));
}

TEST_F(WhatsAppChats, MessagesAreReadWithoutAnyOtherTable) {
  SampleStore store(FromNarrow(Path()), false);
  store.run(
      "CREATE TABLE ZWAMESSAGE (Z_PK INTEGER PRIMARY KEY, ZCHATSESSION INTEGER, ZISFROMME INTEGER, "
      "ZMESSAGEDATE TIMESTAMP, ZTEXT VARCHAR)");
  store.run("INSERT INTO ZWAMESSAGE VALUES (1, 3, 0, 410227200, 'hello')");
  store.close();

  WhatsAppChatReader().Read(Path(), m_chats);

  EXPECT_THAT(Texts(3), ElementsAre("hello"));
  EXPECT_EQ("", m_chats[3][0].strChatTitle);
}

TEST_F(WhatsAppChats, MissingOrEmptyStoreAddsNothingAndIsNotReported) {
  const ProblemRecorder recorder;

  WhatsAppChatReader().Read(m_folder.Path("missing"), m_chats);

  EXPECT_THAT(m_chats, IsEmpty());
  EXPECT_THAT(recorder.Problems(), IsEmpty());
}

TEST_F(WhatsAppChats, FileThatIsNoStoreIsReported) {
  const ProblemRecorder recorder;

  WhatsAppChatReader().Read(m_folder.Write("a.db", std::string(5000, 'x')), m_chats);

  EXPECT_THAT(m_chats, IsEmpty());
  EXPECT_THAT(recorder.Problems(), SizeIs(1));
}
