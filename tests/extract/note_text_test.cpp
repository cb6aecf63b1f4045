#include <gmock/gmock.h>

#include "extract/notes.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

struct TextCase {
  const char* pszStored;
  const char* pszText;
};

void PrintTo(const TextCase& one, std::ostream* pStream) {
  *pStream << one.pszStored;
}

class NoteEntity : public testing::TestWithParam<TextCase> {};

class NoteMarkup : public testing::TestWithParam<TextCase> {};

}  // namespace

TEST_P(NoteEntity, BecomesItsCharacter) {
  QString qstrText = QString::fromUtf8(GetParam().pszStored);

  DecodeHtmlSpecialChars(qstrText);

  EXPECT_EQ(GetParam().pszText, qstrText.toStdString()) << GetParam().pszStored;
}

// The patterns of apostrophe and quote end before the semicolon, which therefore remains.
INSTANTIATE_TEST_SUITE_P(
    Entities, NoteEntity,
    testing::Values(TextCase{"", ""}, TextCase{"plain & simple;", "plain & simple;"}, TextCase{"&#39;", "';"},
                    TextCase{"&#39", "'"}, TextCase{"&quot;", "\";"}, TextCase{"&quot", "\""},
                    TextCase{"&lt;", "<"}, TextCase{"&lt", "&lt"}, TextCase{"&gt;", ">"},
                    TextCase{"&gt", "&gt"}, TextCase{"&nbsp;", " "}, TextCase{"&nbsp", "&nbsp"},
                    TextCase{"&amp;", "&"}, TextCase{"&amp", "&amp"}, TextCase{"&lt;&lt;a&gt;&gt;", "<<a>>"},
                    TextCase{"Tom&#39;s &quot;special&quot;", "Tom';s \";special\";"},
                    TextCase{"&LT;&Amp;&NBSP;&QUOT", "&LT;&Amp;&NBSP;&QUOT"},
                    TextCase{"&#34;&#x27;&apos;&euro;", "&#34;&#x27;&apos;&euro;"}, TextCase{"&#391;", "'1;"},
                    TextCase{"\xC3\xA4&nbsp;\xE5\xB1\xB1", "\xC3\xA4 \xE5\xB1\xB1"}),
    [](const auto& info) { return "Case" + std::to_string(info.index); });

// The ampersand is decoded last, so that text encoded twice is decoded once.
INSTANTIATE_TEST_SUITE_P(Order, NoteEntity,
                         testing::Values(TextCase{"&amp;lt;", "&lt;"}, TextCase{"&amp;gt;", "&gt;"},
                                         TextCase{"&amp;nbsp;", "&nbsp;"}, TextCase{"&amp;#39;", "&#39;"},
                                         TextCase{"&amp;quot;", "&quot;"}, TextCase{"&amp;amp;", "&amp;"},
                                         TextCase{"&amp;amp;lt;", "&amp;lt;"}),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST_P(NoteMarkup, IsCleanedByAFewReplacements) {
  TemporaryFolder folder;
  NotesCloudStore store(FromNarrow(folder.Path("notes.db")));
  store.add(kNewYear2014, QString::fromUtf8(GetParam().pszStored), "kept");
  store.close();
  std::vector<__NOTES__> notes;

  CIPhoneNotes().GetNotesStoreInfo(folder.Path("notes.db"), notes);

  ASSERT_EQ(1u, notes.size());
  EXPECT_EQ(GetParam().pszText, notes[0].strTitle) << GetParam().pszStored;
}

INSTANTIATE_TEST_SUITE_P(
    Tags, NoteMarkup,
    testing::Values(TextCase{"<div>one</div><div>two</div>", "\none\ntwo"},
                    TextCase{"one<br>two", "one\ntwo"}, TextCase{"<div><br></div>", "\n\n"},
                    TextCase{"one<br/>two<br />", "one<br/>two<br />"},
                    TextCase{"<DIV>one</DIV><BR>", "<DIV>one</DIV><BR>"},
                    TextCase{"<div dir=\"rtl\">one</div>", "<div dir=\"rtl\">one"},
                    TextCase{"<p>one</p><b>two</b>", "<p>one</p><b>two</b>"}, TextCase{"a</div>b", "ab"},
                    TextCase{"&lt;div&gt;one&lt;/div&gt;&lt;br&gt;", "\none\n"},
                    TextCase{"&amp;lt;br&amp;gt;", "&lt;br&gt;"}, TextCase{"<d</div>iv>", "<div>"},
                    TextCase{"line\nline", "line\nline"}),
    [](const auto& info) { return "Case" + std::to_string(info.index); });
