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

const TextCase kEntities[] = {
    // The patterns of apostrophe and quote end before the semicolon, which therefore remains.
    {"", ""},
    {"plain & simple;", "plain & simple;"},
    {"&#39;", "';"},
    {"&#39", "'"},
    {"&quot;", "\";"},
    {"&quot", "\""},
    {"&lt;", "<"},
    {"&lt", "&lt"},
    {"&gt;", ">"},
    {"&gt", "&gt"},
    {"&nbsp;", " "},
    {"&nbsp", "&nbsp"},
    {"&amp;", "&"},
    {"&amp", "&amp"},
    {"&lt;&lt;a&gt;&gt;", "<<a>>"},
    {"Tom&#39;s &quot;special&quot;", "Tom';s \";special\";"},
    {"&LT;&Amp;&NBSP;&QUOT", "&LT;&Amp;&NBSP;&QUOT"},
    {"&#34;&#x27;&apos;&euro;", "&#34;&#x27;&apos;&euro;"},
    {"&#391;", "'1;"},
    {"\xC3\xA4&nbsp;\xE5\xB1\xB1", "\xC3\xA4 \xE5\xB1\xB1"},
    // The ampersand is decoded last, so that text encoded twice is decoded once.
    {"&amp;lt;", "&lt;"},
    {"&amp;gt;", "&gt;"},
    {"&amp;nbsp;", "&nbsp;"},
    {"&amp;#39;", "&#39;"},
    {"&amp;quot;", "&quot;"},
    {"&amp;amp;", "&amp;"},
    {"&amp;amp;lt;", "&amp;lt;"},
};

const TextCase kTags[] = {{"<div>one</div><div>two</div>", "\none\ntwo"},
                          {"one<br>two", "one\ntwo"},
                          {"<div><br></div>", "\n\n"},
                          {"one<br/>two<br />", "one<br/>two<br />"},
                          {"<DIV>one</DIV><BR>", "<DIV>one</DIV><BR>"},
                          {"<div dir=\"rtl\">one</div>", "<div dir=\"rtl\">one"},
                          {"<p>one</p><b>two</b>", "<p>one</p><b>two</b>"},
                          {"a</div>b", "ab"},
                          {"&lt;div&gt;one&lt;/div&gt;&lt;br&gt;", "\none\n"},
                          {"&amp;lt;br&amp;gt;", "&lt;br&gt;"},
                          {"<d</div>iv>", "<div>"},
                          {"line\nline", "line\nline"}};

}  // namespace

TEST(NoteEntity, BecomesItsCharacter) {
  for (const TextCase& row : kEntities) {
    SCOPED_TRACE(row.pszStored);
    QString qstrText = QString::fromUtf8(row.pszStored);

    DecodeHtmlSpecialChars(qstrText);

    EXPECT_EQ(row.pszText, qstrText.toStdString()) << row.pszStored;
  }
}

TEST(NoteMarkup, IsCleanedByAFewReplacements) {
  for (const TextCase& row : kTags) {
    SCOPED_TRACE(row.pszStored);
    TemporaryFolder folder;
    NotesCloudStore store(FromNarrow(folder.Path("notes.db")));
    store.add(kNewYear2014, QString::fromUtf8(row.pszStored), "kept");
    store.close();
    std::vector<__NOTES__> notes;

    CIPhoneNotes().GetNotesStoreInfo(folder.Path("notes.db"), notes);

    EXPECT_THAT(Column(notes, &__NOTES__::strTitle), testing::ElementsAre(row.pszText));
  }
}
