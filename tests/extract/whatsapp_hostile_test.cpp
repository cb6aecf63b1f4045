#include <gmock/gmock.h>

#include <chrono>
#include <limits>

#include "extract/whatsapp_chats.h"
#include "tests/extract/whatsapp_store.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::Each;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// Stores as no phone writes them.
class HostileWhatsApp : public testing::Test {
 protected:
  HostileWhatsApp() : m_store(FromNarrow(m_folder.Path("a.db"))) {}

  WhatsAppMap& Read() {
    m_store.close();
    WhatsAppChatReader().Read(m_folder.Path("a.db"), m_chats);
    return m_chats;
  }

  TemporaryFolder m_folder;
  WhatsAppTestStore m_store;
  WhatsAppMap m_chats;
};

}  // namespace

TEST_F(HostileWhatsApp, DatesBeyondAnyYearAreEmptyAndSorted) {
  const qint64 nChat = m_store.AddPerson("1@s.whatsapp.net", "Anna");
  for (const double dDate : {1e300, -1e300, 3e11, -1e12, 0.0, std::numeric_limits<double>::infinity()})
    m_store.AddMessage(nChat, dDate, QString::number(dDate));
  m_store.AddMessage(nChat, "yesterday", "text");

  const WhatsAppMap& chats = Read();

  ASSERT_THAT(chats.at(1), SizeIs(7));
  EXPECT_EQ("inf", chats.at(1)[0].strContent);
  EXPECT_EQ("1e+300", chats.at(1)[1].strContent);
  EXPECT_EQ("", chats.at(1)[1].strDate);
  EXPECT_EQ("-1e+300", chats.at(1)[6].strContent);
}

TEST_F(HostileWhatsApp, SessionNumbersOfMoreThan32BitsStaySeparateChats) {
  for (const qint64 nSession : {qint64{1}, (qint64{1} << 32) + 1, qint64{-1}, qint64{4294967295}}) {
    m_store.run("INSERT INTO ZWACHATSESSION (Z_PK, ZPARTNERNAME) VALUES (?, ?)",
                {nSession, QString::number(nSession)});
    m_store.AddMessage(nSession, 1, QString::number(nSession));
  }

  const WhatsAppMap& chats = Read();

  ASSERT_THAT(chats, SizeIs(4));
  for (const auto& [nKey, messages] : chats) {
    ASSERT_THAT(messages, SizeIs(1));
    EXPECT_EQ(messages[0].strContent, messages[0].strChatTitle);
    EXPECT_EQ(nKey, messages[0].nChatId);
  }
  EXPECT_EQ("1", chats.at(1)[0].strContent);
}

TEST_F(HostileWhatsApp, HundredThousandMembersAreListedOnce) {
  const qint64 nGroup = m_store.AddGroup("1-2@g.us", "Everybody");
  m_store.run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) "
      "INSERT INTO ZWAGROUPMEMBER (ZCHATSESSION, ZMEMBERJID, ZCONTACTNAME) "
      "SELECT ?, i || '@s.whatsapp.net', 'Person ' || i FROM n",
      {nGroup});
  for (int i = 0; i < 100; ++i) m_store.AddMessage(nGroup, i, "hello");

  const std::vector<__WHATSAPP_MESSAGE__>& messages = Read().at(1);

  EXPECT_EQ(0u, messages[0].strChatName.find("Person 1, Person 2, "));
  EXPECT_NE(std::string::npos, messages[0].strChatName.find(", Person 100000"));
  const std::vector<__WHATSAPP_MESSAGE__> others(messages.begin() + 1, messages.end());
  EXPECT_THAT(others, Each(Field(&__WHATSAPP_MESSAGE__::strChatName, IsEmpty())));
}

TEST_F(HostileWhatsApp, TablesThatReferToEachOtherInCirclesEnd) {
  const qint64 nGroup = m_store.AddGroup("1-2@g.us", "Group");
  m_store.run("UPDATE ZWACHATSESSION SET ZGROUPINFO = Z_PK");
  m_store.AddMember(nGroup, "1-2@g.us", "Group");
  m_store.run("UPDATE ZWAGROUPMEMBER SET ZCHATSESSION = Z_PK");
  const qint64 nMessage = m_store.AddMemberMessage(nGroup, 1, 1, QString());
  m_store.AddMedia(nMessage, "a.jpg");
  m_store.run("UPDATE ZWAMESSAGE SET ZFROMJID = '1-2@g.us'");

  const WhatsAppMap& chats = Read();

  EXPECT_EQ("Group", chats.at(1)[0].strChatName);
  EXPECT_EQ("Group", chats.at(1)[0].strName);
}

TEST_F(HostileWhatsApp, EndlessNameIsCutBetweenTwoCharacters) {
  const qint64 nChat = m_store.AddPerson("1@s.whatsapp.net", QString(100000, QChar(0x4EAC)));
  m_store.AddMessage(nChat, 1, "hello");

  const __WHATSAPP_MESSAGE__ message = Read().at(1)[0];

  EXPECT_EQ(399u, message.strName.size());  // 133 characters of three bytes
}

TEST_F(HostileWhatsApp, EndlessSubjectIsNotRepeatedInEachMessage) {
  const qint64 nGroup = m_store.AddGroup("1-2@g.us", QString(100000, 'x'));
  m_store.AddMessage(nGroup, 1, "hello", true);

  const __WHATSAPP_MESSAGE__ message = Read().at(1)[0];

  EXPECT_EQ(400u, message.strName.size());
  EXPECT_EQ(400u, message.strChatTitle.size());
}

TEST_F(HostileWhatsApp, ItemOfManyMessagesIsShownOnce) {
  m_store.run("DROP TABLE ZWAMESSAGE");
  m_store.run(
      "CREATE TABLE ZWAMESSAGE (Z_PK INTEGER, ZCHATSESSION INTEGER, ZISFROMME INTEGER, ZMESSAGEDATE "
      "TIMESTAMP, ZTEXT VARCHAR, ZMESSAGETYPE INTEGER)");
  m_store.AddMedia(7, "a.jpg", QString(100000, 'x'));
  for (int i = 0; i < 3; ++i) m_store.run("INSERT INTO ZWAMESSAGE VALUES (7, 1, 0, 0, NULL, 1)");

  const std::vector<__WHATSAPP_MESSAGE__>& messages = Read().at(1);

  ASSERT_THAT(messages, SizeIs(3));
  size_t nWithItem = 0;
  for (const __WHATSAPP_MESSAGE__& message : messages) nWithItem += message.strContent.size() > 100 ? 1 : 0;
  EXPECT_EQ(1u, nWithItem);
}

TEST_F(HostileWhatsApp, NumbersThatCollideInAHashTableTakeNoLonger) {
  // Multiples of the table sizes of the standard library at this number of elements.
  m_store.run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 60000) "
      "INSERT INTO ZWAMEDIAITEM (ZMESSAGE, ZMEDIALOCALPATH) SELECT i * 85229 * 42043, 'a' FROM n");
  m_store.AddMessage(1, 1, "hello");
  const auto start = std::chrono::steady_clock::now();

  Read();

  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));  // 68 s with collisions
}

TEST_F(HostileWhatsApp, ValuesOfOtherStorageClassesAreRead) {
  m_store.run("INSERT INTO ZWACHATSESSION VALUES ('1', 12, x'416E6E61', 'x')");
  m_store.run("INSERT INTO ZWAMESSAGE VALUES (1, '1', 'yes', '12', 5, 'x', 'y', 'z', 7, 2.5)");

  const WhatsAppMap& chats = Read();

  ASSERT_THAT(chats, SizeIs(1));
  EXPECT_EQ("5", chats.at(1)[0].strContent);
  EXPECT_EQ("Anna", chats.at(1)[0].strChatTitle);
}

TEST_F(HostileWhatsApp, ViewInPlaceOfTheMessagesIsReported) {
  m_store.run("ALTER TABLE ZWAMESSAGE RENAME TO other");
  m_store.run("CREATE VIEW ZWAMESSAGE AS SELECT * FROM other");
  const ProblemRecorder recorder;

  EXPECT_THAT(Read(), IsEmpty());
  EXPECT_THAT(recorder.Problems(), SizeIs(1));
}

TEST_F(HostileWhatsApp, RowsBeforeADamagedPageAreKept) {
  const qint64 nChat = m_store.AddPerson("1@s.whatsapp.net", "Anna");
  for (int i = 0; i < 2000; ++i) m_store.AddMessage(nChat, i, QString(100, 'x'));
  m_store.close();
  std::string strBytes = ReadFile(m_folder.Path("a.db"));
  strBytes.replace(strBytes.size() - 40000, 8192, 8192, '\xFF');
  WriteFile(m_folder.Path("a.db"), strBytes);
  const ProblemRecorder recorder;

  WhatsAppChatReader().Read(m_folder.Path("a.db"), m_chats);

  EXPECT_GT(m_chats[1].size(), 100u);
  EXPECT_LT(m_chats[1].size(), 2000u);
  EXPECT_FALSE(recorder.Problems().empty());
}
