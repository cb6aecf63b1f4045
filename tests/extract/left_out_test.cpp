#include "extract/left_out.h"

#include <gtest/gtest.h>

#include "sample/stores.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

constexpr qint64 kDate = 483786753;  // 2016-05-01T09:12:33Z, in seconds from 2001-01-01
constexpr qint64 kNobody = 0;        // handle of one's own messages in groups

class LeftOutTest : public testing::Test {
 protected:
  std::string Path() const { return m_folder.Path("store"); }
  QString StorePath() const { return QString::fromStdString(Path()); }

  TemporaryFolder m_folder;
};

class LeftOutMessages : public LeftOutTest {
 protected:
  LeftOutMessages() {
    m_nHandle = m_store.addHandle("+493023125001");
    m_nChat = m_store.addChat("chat1");
    m_store.addMessage(m_nHandle, "read", kDate, false, {m_nChat});
  }

  uint64_t Count() {
    m_store.close();
    return CountMessagesWithoutSender(Path());
  }

  MessageStore m_store{StorePath()};
  qint64 m_nHandle = 0;
  qint64 m_nChat = 0;
};

class LeftOutNotes : public LeftOutTest {
 protected:
  /// Adds a note. @param body null for none.
  void Add(const char* pszTitle, const char* pszSnippet, const QByteArray& body) {
    m_store.add(kDate, pszTitle, pszSnippet);
    m_store.run("update ZICNOTEDATA set ZDATA = ? where Z_PK = (select max(Z_PK) from ZICNOTEDATA)",
                {body.isNull() ? QVariant() : QVariant(body)});
  }
  uint64_t Count() {
    m_store.close();
    return CountNotesWithSnippetOnly(Path());
  }

  NotesCloudStore m_store{StorePath()};
};

}  // namespace

TEST_F(LeftOutMessages, AreNoneIfAllAreRead) {
  m_store.addMessage(m_nHandle, "read too", kDate, true, {m_nChat});

  EXPECT_EQ(0u, Count());
}

TEST_F(LeftOutMessages, AreThoseWhoseSenderIsNotInTheStore) {
  m_store.addMessage(kNobody, "mine", kDate, true, {m_nChat});
  m_store.addMessage(77, "of a deleted sender", kDate, false, {m_nChat});
  m_store.addMessage(m_nHandle, "of nobody", kDate, false, {m_nChat});
  m_store.run("update message set handle_id = null where text = 'of nobody'");

  EXPECT_EQ(3u, Count());
}

TEST_F(LeftOutMessages, AreThoseInNoChat) {
  m_store.addMessage(m_nHandle, "alone", kDate, false, {});
  m_store.run("insert into chat_message_join (chat_id, message_id) values (1, null)");

  EXPECT_EQ(1u, Count());
}

TEST_F(LeftOutMessages, CountOnceInTwoChatsOrWithTwoReasons) {
  m_store.addMessage(kNobody, "in two chats", kDate, true, {m_nChat, m_store.addChat("chat2")});
  m_store.addMessage(kNobody, "in none", kDate, true, {});

  EXPECT_EQ(2u, Count());
}

TEST_F(LeftOutMessages, CountWithATextABodyOrAnAttachmentAlone) {
  m_store.addMessage(kNobody, QString(), kDate, true, {m_nChat});
  m_store.addMessage(kNobody, "", kDate, true, {m_nChat});
  const qint64 nAttached = m_store.addMessage(kNobody, QString(), kDate, true, {m_nChat});
  m_store.addAttachment(nAttached, "~/Library/SMS/Attachments/0a/10/laugh.gif", "image/gif", 10);
  const qint64 nBody = m_store.addMessage(kNobody, QString(), kDate, true, {m_nChat});
  m_store.run("update message set attributedBody = ? where ROWID = ?", {QByteArray("body"), nBody});

  EXPECT_EQ(2u, Count());
}

TEST_F(LeftOutMessages, AreNotReactions) {
  m_store.run("alter table message add column associated_message_type integer");
  for (const int nType : {0, 1999, 2000, 2005, 3007, 3008}) {
    const qint64 nMessage = m_store.addMessage(kNobody, "Loved", kDate, true, {m_nChat});
    m_store.run("update message set associated_message_type = ? where ROWID = ?", {nType, nMessage});
  }
  m_store.addMessage(kNobody, "without a type", kDate, true, {m_nChat});

  EXPECT_EQ(4u, Count());
}

TEST_F(LeftOutMessages, OfAStoreWithTheOldestColumnsAreCounted) {
  m_store.addMessage(kNobody, "mine", kDate, true, {m_nChat});
  m_store.run("drop index message_idx_handle");
  m_store.run("alter table message drop column attributedBody");
  m_store.run("alter table message drop column cache_has_attachments");

  EXPECT_EQ(1u, Count());
}

TEST_F(LeftOutMessages, OfAStoreWithoutTheTablesAreNone) {
  const ProblemRecorder recorder;
  m_store.addMessage(kNobody, "mine", kDate, true, {m_nChat});
  m_store.run("alter table handle rename to other");

  EXPECT_EQ(0u, Count());
  EXPECT_EQ(0u, CountMessagesWithoutSender(m_folder.Path("missing")));
  m_folder.Write("garbage", std::string(5000, 'g'));
  EXPECT_EQ(0u, CountMessagesWithoutSender(m_folder.Path("garbage")));
  EXPECT_TRUE(recorder.Problems().empty());
}

TEST_F(LeftOutMessages, OfAnIndexedStoreAreTheSame) {
  m_store.addMessage(kNobody, "mine", kDate, true, {m_nChat});
  m_store.addMessage(m_nHandle, "alone", kDate, false, {});
  m_store.run("create index by_message on chat_message_join (message_id)");

  EXPECT_EQ(2u, Count());
}

TEST_F(LeftOutNotes, AreThoseWithABodyThatAreListed) {
  Add("Shopping", "Milk", "body");
  Add("", "Milk", "body");
  Add("Title alone", "", "body");
  Add("Without a body", "Milk", {});
  Add("", "", "body");
  m_store.addFolder("Notes");

  EXPECT_EQ(3u, Count());
}

TEST_F(LeftOutNotes, OfAStoreWithoutTheTablesAreNone) {
  const ProblemRecorder recorder;
  Add("Shopping", "Milk", "body");
  m_store.run("alter table ZICNOTEDATA rename to other");

  EXPECT_EQ(0u, Count());
  EXPECT_EQ(0u, CountNotesWithSnippetOnly(m_folder.Path("missing")));
  EXPECT_TRUE(recorder.Problems().empty());
}
