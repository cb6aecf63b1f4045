// The store of messages of each version, and the typed streams in it.
#include <gmock/gmock.h>

#include <set>

#include "sample/typed_stream_writer.h"
#include "tests/sample/typed_stream_reader.h"
#include "tests/sample/written_sample.h"

using namespace orvandel;
using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;

namespace {

const char kFile[] = "\xEF\xBF\xBC";  // U+FFFC

std::set<std::string> ColumnsOf(const WrittenSample& sample, const std::string& strTable) {
  std::set<std::string> columns;
  for (const auto& row : sample.Messages("select name from pragma_table_info('" + strTable + "')"))
    columns.insert(row[0]);
  return columns;
}

MessageBody BodyOf(const QString& text, bool bMutable, const QStringList& attachments = {}) {
  return ReadMessageBody(attributedBody(text, bMutable, attachments).toStdString());
}

int64_t TotalLength(const MessageBody& body) {
  int64_t nTotal = 0;
  for (const BodyRun& run : body.runs) nTotal += run.nLength;
  return nTotal;
}

std::string Scalar(const WrittenSample& sample, const std::string& strStatement) {
  const Rows rows = sample.Messages(strStatement);
  return rows.empty() ? "(no row)" : rows[0][0];
}

}  // namespace

TEST(TypedStream, IsThatOfDevices) {
  // A short text as devices write it.
  const QByteArray expected = QByteArray::fromHex(
      "040b73747265616d747970656481e803840140848484124e5341747472696275746564537472696e67008484084e534f626a65"
      "637400859284848408"
      "4e53537472696e67019484012b0548656c6c6f868402694901059284848"
      "40c4e5344696374696f6e617279009484016901928496961d5f5f6b494d4d657373616765506172744174747269627574654e6"
      "1"
      "6d658692848484084e534e756d626572008484074e5356616c7565009484012a84999900868686");

  EXPECT_EQ(expected.toHex(), attributedBody("Hello", false).toHex());
}

TEST(TypedStream, HasTheClassesOfMutableTexts) {
  EXPECT_THAT(BodyOf("a", false).classes, ElementsAre("NSAttributedString", "NSString"));
  EXPECT_THAT(BodyOf("a", true).classes, ElementsAre("NSMutableAttributedString", "NSMutableString"));
}

TEST(TypedStream, HasLengthsOfAllSizes) {
  struct Case {
    int nLength;
    size_t nBytes;
  };
  for (const Case& c :
       {Case{0, 1}, {1, 1}, {127, 1}, {128, 3}, {255, 3}, {32767, 3}, {32768, 5}, {100000, 5}}) {
    for (const bool bMutable : {false, true}) {
      const QString text(c.nLength, 'x');

      const MessageBody body = BodyOf(text, bMutable);

      EXPECT_EQ(text.toStdString(), body.strText) << c.nLength;
      EXPECT_EQ(c.nBytes, body.nLengthBytes) << c.nLength;
      EXPECT_EQ(c.nLength, TotalLength(body));
      EXPECT_THAT(body.runs, SizeIs(c.nLength ? 1 : 0));
    }
  }
}

TEST(TypedStream, CountsRunsInUtf16Units) {
  const QString text = QString::fromUtf8("a😀𝔊é");

  const MessageBody body = BodyOf(text, false);

  EXPECT_EQ(text.toStdString(), body.strText);
  ASSERT_THAT(body.runs, SizeIs(1));
  EXPECT_EQ(6, body.runs[0].nLength);
  EXPECT_EQ(0, body.runs[0].nPart);
}

TEST(TypedStream, GivesEachAttachmentItsPart) {
  const QChar file(QChar::ObjectReplacementCharacter);

  const MessageBody body = BodyOf(QString("ab") + file + file + "c" + file, true, {"ONE", "TWO"});

  ASSERT_THAT(body.runs, SizeIs(5));
  const char* const kGuids[] = {"", "ONE", "TWO", "", ""};
  const int kLengths[] = {2, 1, 1, 1, 1};
  for (size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(static_cast<int64_t>(i), body.runs[i].nPart);
    EXPECT_EQ(kGuids[i], body.runs[i].strAttachment);
    EXPECT_EQ(kLengths[i], body.runs[i].nLength);
  }
}

TEST(TypedStream, NumbersReferencesFrom92On) {
  // The numbers are signed: what follows FF is 00.
  for (const auto& [nObject, hex] : std::vector<std::pair<int, QByteArray>>{
           {0, "92"}, {109, "ff"}, {110, "00"}, {237, "7f"}, {238, "818000"}}) {
    TypedStreamWriter stream;
    for (int i = 0; i <= nObject; ++i) stream.begin({{"NSObject", 0}});
    const int nSize = stream.stream().size();

    stream.reference(nObject);

    EXPECT_EQ(hex, stream.stream().mid(nSize).toHex()) << nObject;
  }
}

TEST(MessageSample, HasTheColumnsOfItsVersion) {
  const std::vector<std::string> assoc = {"associated_message_guid", "associated_message_type",
                                          "associated_message_range_location",
                                          "associated_message_range_length"};
  const WrittenSample old(9), middle(13), current(17);

  for (const std::string& strColumn : assoc) {
    EXPECT_THAT(ColumnsOf(old, "message"), Not(Contains(strColumn)));
    EXPECT_THAT(ColumnsOf(middle, "message"), Contains(strColumn));
    EXPECT_THAT(ColumnsOf(current, "message"), Contains(strColumn));
  }
  EXPECT_THAT(ColumnsOf(old, "message"), Not(Contains("attributedBody")));
  EXPECT_THAT(ColumnsOf(middle, "message"), Contains("attributedBody"));
  EXPECT_THAT(ColumnsOf(middle, "message"), Not(Contains("date_edited")));
  EXPECT_THAT(ColumnsOf(current, "message"),
              IsSupersetOf({"attributedBody", "thread_originator_guid", "thread_originator_part",
                            "date_edited", "date_retracted", "part_count"}));
  EXPECT_THAT(ColumnsOf(old, "handle"), Not(Contains("person_centric_id")));
  EXPECT_THAT(ColumnsOf(current, "handle"), Contains("person_centric_id"));
  EXPECT_THAT(ColumnsOf(current, "chat"),
              IsSupersetOf({"original_group_id", "is_blackholed", "is_recovered"}));
  EXPECT_THAT(ColumnsOf(current, "attachment"),
              IsSupersetOf({"is_sticker", "hide_attachment", "ck_sync_state", "original_guid"}));
  EXPECT_THAT(ColumnsOf(current, "chat_recoverable_message_join"), SizeIs(4));
}

TEST(MessageSample, MostTextsOfTodayAreOnlyInTheirBody) {
  for (const int nIos : {14, 17, 18}) {
    const WrittenSample sample(nIos);
    const Rows rows =
        sample.Messages("select text, attributedBody from message where attributedBody is not null");
    size_t nWithText = 0;
    std::set<std::string> classes;
    std::set<size_t> lengths;
    bool bBeyondBmp = false;

    for (const auto& row : rows) {
      const MessageBody body = ReadMessageBody(row[1]);
      EXPECT_FALSE(body.strText.empty());
      EXPECT_EQ(QString::fromStdString(body.strText).size(), TotalLength(body));
      if (row[0] != "(null)") {
        ++nWithText;
        EXPECT_EQ(row[0], body.strText);
      }
      classes.insert(body.classes.begin(), body.classes.end());
      lengths.insert(body.nLengthBytes);
      bBeyondBmp = bBeyondBmp || body.strText.find("\xF0\x9D\x94\x8A") != std::string::npos;
    }

    EXPECT_GT(rows.size(), 200u);
    EXPECT_GT(nWithText, 10u);
    EXPECT_LT(nWithText, rows.size() / 4);
    EXPECT_THAT(classes, SizeIs(4));
    EXPECT_THAT(lengths, ElementsAre(1, 3, 5));
    EXPECT_TRUE(bBeyondBmp);
  }
}

TEST(MessageSample, TextsOfEarlierVersionsAreInBothColumns) {
  const WrittenSample sample(12);
  const Rows rows = sample.Messages("select text, attributedBody from message where text <> ''");

  EXPECT_GT(rows.size(), 200u);
  for (const auto& row : rows) EXPECT_EQ(row[0], ReadMessageBody(row[1]).strText);
}

TEST(MessageSample, GroupHasANameAndOwnMessagesWithoutHandle) {
  for (const int nIos : {6, 9, 13, 17}) {
    const WrittenSample sample(nIos);
    const std::string strOfGroup =
        " from message join chat_message_join on message_id = message.ROWID join chat on chat.ROWID = "
        "chat_id "
        "where display_name = 'Wanderfreunde \xF0\x9F\x8F\x94'";

    EXPECT_EQ("3", Scalar(sample,
                          "select count(*) from chat_handle_join join chat on chat.ROWID = chat_id "
                          "where display_name is not null and display_name <> ''"));
    EXPECT_EQ("43", Scalar(sample, "select style from chat where display_name <> ''"));
    EXPECT_EQ("0", Scalar(sample, "select count(*)" + strOfGroup + " and is_from_me and handle_id <> 0"));
    EXPECT_NE("0", Scalar(sample, "select count(*)" + strOfGroup + " and is_from_me and handle_id = 0"));
    EXPECT_EQ("0", Scalar(sample, "select count(*)" + strOfGroup + " and not is_from_me and handle_id = 0"));
  }
}

TEST(MessageSample, TapbacksReferToMessages) {
  const WrittenSample sample(17);

  EXPECT_EQ("6", Scalar(sample,
                        "select count(distinct associated_message_type) from message where "
                        "associated_message_type between 2000 and 2005"));
  EXPECT_EQ("1", Scalar(sample, "select count(*) from message where associated_message_type = 3000"));
  EXPECT_EQ("0", Scalar(sample,
                        "select count(*) from message t where associated_message_type <> 0 and not exists "
                        "(select 1 from message m where 'p:0/' || m.guid = t.associated_message_guid)"));
  EXPECT_EQ("2", Scalar(sample,
                        "select count(*) from message t join message m on t.thread_originator_guid = "
                        "m.guid"));
  EXPECT_EQ("1", Scalar(sample, "select count(*) from message where date_edited > date"));
  EXPECT_EQ("1", Scalar(sample,
                        "select count(*) from message where date_retracted > date and text is null "
                        "and attributedBody is null"));
}

TEST(MessageSample, AttachmentsHaveTheirCharacters) {
  const WrittenSample sample(17);
  const Rows rows = sample.Messages(
      "select message.attributedBody, group_concat(attachment.guid, ' ') from message_attachment_join "
      "join message on message.ROWID = message_id join attachment on attachment.ROWID = attachment_id "
      "group by message.ROWID order by attachment.ROWID");
  size_t nMost = 0;

  EXPECT_THAT(rows, SizeIs(11));
  for (const auto& row : rows) {
    const MessageBody body = ReadMessageBody(row[0]);
    std::string strGuids;
    size_t nFiles = 0;
    for (size_t n = 0; (n = body.strText.find(kFile, n)) != std::string::npos; ++n) ++nFiles;
    for (const BodyRun& run : body.runs)
      if (!run.strAttachment.empty()) strGuids += (strGuids.empty() ? "" : " ") + run.strAttachment;
    EXPECT_EQ(row[1], strGuids);
    nMost = std::max(nMost, nFiles);
  }
  EXPECT_EQ(2u, nMost);
}

TEST(MessageSample, DatesHaveTheUnitOfTheVersion) {
  EXPECT_EQ("9", Scalar(WrittenSample(10), "select length(min(date)) from message"));
  EXPECT_EQ("18", Scalar(WrittenSample(11), "select length(min(date)) from message"));
}
