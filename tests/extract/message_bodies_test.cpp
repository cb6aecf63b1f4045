#include <gmock/gmock.h>

#include "extract/messages.h"
#include "tests/extract/attributed_bytes.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using attributed_bytes::Immutable;
using attributed_bytes::Mutable;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A message store in which the text of messages is in attributedBody.
class MessageBodies : public testing::Test {
 protected:
  MessageBodies() : m_store(FromNarrow(m_folder.Path("sms.db"))) { m_nHandle = m_store.addHandle("+49301"); }

  /// @param qstrText null for NULL.
  void Add(const QString& qstrText, const std::string& strBody) {
    const qint64 nMessage =
        m_store.addMessage(m_nHandle, qstrText, kNewYear2014 - m_nMessages++, false, {m_store.addChat("a")});
    m_store.run("UPDATE message SET attributedBody = ? WHERE ROWID = ?",
                {QByteArray(strBody.data(), static_cast<int>(strBody.size())), nMessage});
  }

  std::vector<std::string> Texts() {
    m_store.close();
    MessageMap messages;
    CIPhoneMessage().GetSMSInfo(m_folder.Path("sms.db"), m_folder.Path("none"), messages, m_nMaxId);
    return Column(messages[1], &__MESSAGE_INFO__::strText);
  }

  TemporaryFolder m_folder;
  MessageStore m_store;
  qint64 m_nHandle = 0;
  int m_nMessages = 0;
  uint64_t m_nMaxId = 0;
};

}  // namespace

TEST_F(MessageBodies, BodyIsTheTextOfAMessageWithoutOne) {
  Add(QString(), Immutable("from the body"));
  Add("", Mutable("from the other body"));

  EXPECT_THAT(Texts(), ElementsAre("from the body", "from the other body"));
}

TEST_F(MessageBodies, TextIsPreferredToTheBody) {
  Add("from the text", Immutable("from the body"));
  Add(QString(QChar::ObjectReplacementCharacter), Immutable("from the body"));

  EXPECT_THAT(Texts(), ElementsAre("from the text", "\xEF\xBF\xBC"));
}

TEST_F(MessageBodies, MessageWithoutEitherIsLeftOutAndCountsForTheHighestRow) {
  Add("kept", {});
  Add(QString(), Immutable(""));
  Add(QString(), "no archive");
  Add(QString(), {});

  EXPECT_THAT(Texts(), ElementsAre("kept"));
  EXPECT_EQ(4u, m_nMaxId);
}

TEST_F(MessageBodies, BytesThatAreNotUtf8AreReplaced) {
  Add(QString(), Immutable("a\xFFz"));

  EXPECT_THAT(Texts(), ElementsAre("a\xEF\xBF\xBDz"));
}

TEST_F(MessageBodies, BodyIsConvertedToTheEncodingOfTheLocale) {
  const LocaleCodec latin1("ISO-8859-1");
  Add(QString(), Immutable("Gr\xC3\xBC\xC3\x9F"
                           "e"));

  EXPECT_THAT(Texts(), ElementsAre("Gr\xFC\xDF"
                                   "e"));
}

TEST_F(MessageBodies, BodyOfAnotherStorageClassIsEmpty) {
  Add(QString(), {});
  m_store.run("UPDATE message SET attributedBody = 'streamtyped'");
  Add(QString(), {});
  m_store.run("UPDATE message SET attributedBody = 2.5 WHERE ROWID = 2");

  EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(MessageBodies, OrderAndDatesAreThoseOfTheRows) {
  Add(QString(), Immutable("newest"));
  Add("middle", {});
  Add(QString(), Immutable("oldest"));

  EXPECT_THAT(Texts(), ElementsAre("newest", "middle", "oldest"));
}

TEST_F(MessageBodies, StoreWithoutTheColumnIsReadByItsTexts) {
  Add("text", {});
  m_store.run("ALTER TABLE message DROP COLUMN attributedBody");

  EXPECT_THAT(Texts(), ElementsAre("text"));
}
