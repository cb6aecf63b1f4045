#include "extract/whatsapp_text.h"

#include <gmock/gmock.h>

#include "tests/extract/whatsapp_store.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

struct TextCase {
  const char* pszText;
  std::optional<int> type;
  std::optional<int> event;
  WhatsAppMedia media;
  const char* pszExpected;
};

void PrintTo(const TextCase& one, std::ostream* pStream) {
  *pStream << one.pszExpected;
}

class WhatsAppMessageText : public testing::TestWithParam<TextCase> {};

class WhatsAppMediaOf : public testing::Test {
 protected:
  WhatsAppMediaItems Read() {
    m_store.close();
    return WhatsAppMediaItems(m_folder.Path("a.db"));
  }

  TemporaryFolder m_folder;
  WhatsAppTestStore m_store{FromNarrow(m_folder.Path("a.db"))};
};

}  // namespace

TEST_P(WhatsAppMessageText, IsTheTextOrWhatTheMessageIs) {
  const TextCase& one = GetParam();
  EXPECT_EQ(one.pszExpected, WhatsAppText(one.pszText, one.type, one.event, one.media));
}

INSTANTIATE_TEST_SUITE_P(
    All, WhatsAppMessageText,
    testing::Values(
        TextCase{"hello", 0, {}, {}, "hello"}, TextCase{"Look!", 1, {}, {"a.jpg", "caption", ""}, "Look!"},
        TextCase{"", 1, {}, {"a.jpg", "", ""}, "[Photo] a.jpg"},
        TextCase{"", 1, {}, {"a.jpg", "At the lake", ""}, "[Photo] a.jpg At the lake"},
        TextCase{"", 1, {}, {}, "[Photo]"}, TextCase{"", 2, {}, {"b.mp4", "", "video/mp4"}, "[Video] b.mp4"},
        TextCase{"", 3, {}, {"c.opus", "", ""}, "[Voice message]"},
        TextCase{"", 4, {}, {"", "", "Ben"}, "[Contact] Ben"},
        TextCase{"", 4, {}, {"", "Ben", "Ben"}, "[Contact] Ben"},
        TextCase{"", 5, {}, {"d.thumb", "Town hall", ""}, "[Location] Town hall"},
        TextCase{"", 7, {}, {"", "A page", ""}, "[Link] A page"},
        TextCase{"", 8, {}, {"0a1b.pdf", "Bill.pdf", ""}, "[Document] 0a1b.pdf Bill.pdf"},
        TextCase{"", 14, {}, {}, "[Deleted message]"}, TextCase{"", 15, {}, {"e.webp", "", ""}, "[Sticker]"},
        TextCase{"Family", 6, 1, {}, "[Group] Family"}, TextCase{"", 6, 2, {}, "[Group] event 2"},
        TextCase{"", 6, {}, {}, "[Group] event"}, TextCase{"", 0, {}, {}, "[Message of type 0]"},
        TextCase{"", 59, {}, {}, "[Message of type 59]"},
        TextCase{"", -1, {}, {"f.bin", "g", ""}, "[Message of type -1] f.bin g"},
        TextCase{"", {}, {}, {"f.jpg", "", ""}, "[Message] f.jpg"}));

TEST_F(WhatsAppMediaOf, FileIsTheLastPartOfItsPath) {
  m_store.AddMedia(1, "Media/4915112345678@s.whatsapp.net/a/b/ab01.jpg", "caption");
  m_store.AddMedia(2, "ab02.jpg");
  WhatsAppMediaItems items = Read();

  const WhatsAppMedia first = items.Take(1);
  EXPECT_EQ("ab01.jpg", first.strFile);
  EXPECT_EQ("caption", first.strCaption);
  EXPECT_EQ("", items.Take(1).strFile);
  EXPECT_EQ("ab02.jpg", items.Take(2).strFile);
  EXPECT_EQ("", items.Take(3).strFile);
}

TEST_F(WhatsAppMediaOf, ContactIsTheFormattedNameOfItsCard) {
  m_store.AddMedia(1, {}, {}, "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Berger;Anna\r\nFN:Anna Berger\r\nEND:VCARD");
  m_store.AddMedia(2, {}, {}, "BEGIN:VCARD\nitem1.FN;CHARSET=UTF-8:Caf\\, bar\nEND:VCARD");
  m_store.AddMedia(3, {}, {}, "BEGIN:VCARD\nNOTE:FN\nEND:VCARD");
  m_store.AddMedia(4, {}, {}, "Ben\nsecond line");
  WhatsAppMediaItems items = Read();

  EXPECT_EQ("Anna Berger", items.Take(1).strContact);
  EXPECT_EQ("Caf, bar", items.Take(2).strContact);
  EXPECT_EQ("", items.Take(3).strContact);
  EXPECT_EQ("Ben", items.Take(4).strContact);
}

TEST_F(WhatsAppMediaOf, FirstOfTwoItemsOfAMessageCounts) {
  m_store.AddMedia(1, "first.jpg");
  m_store.AddMedia(1, "second.jpg");

  EXPECT_EQ("first.jpg", Read().Take(1).strFile);
}
