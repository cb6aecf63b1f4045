// The texts beside the tables of contacts and notes, and the categories that preview nothing.

#include "tests/ui/preview_fixture.h"

using namespace orvandel;

namespace {

class PreviewText : public PreviewTest {
 protected:
  QLabel* Contact() { return Find<QLabel>("m_pContactText"); }
  QLabel* Note() { return Find<QLabel>("m_pNoteText"); }
};

TEST_F(PreviewText, ContactShowsWhatIsThere) {
  struct Case {
    const char *pszCompany, *pszAddress, *pszUrl, *pszEmail, *pszText;
  };
  // A company shows the phone number again.
  const std::vector<Case> cases = {
      {"", "", "", "", "Ann\n123"},
      {"Firm", "", "", "", "Ann\n123\n123"},
      {"", "Street 1", "", "", "Ann\n123\nStreet 1"},
      {"", "", "http://x", "", "Ann\n123\nhttp://x"},
      {"", "", "", "a@b", "Ann\n123\na@b"},
      {"Firm", "Street 1", "http://x", "a@b", "Ann\n123\n123\nStreet 1\nhttp://x\na@b"},
      {"", "Street 1", "", "a@b", "Ann\n123\nStreet 1\na@b"},
      {"Firm", "", "http://x", "", "Ann\n123\n123\nhttp://x"},
  };
  OpenDataScreen();
  for (const Case& one : cases) {
    __PERSON_CONTENT__ person;
    person.strName = "Ann";
    person.strPhone = "123";
    person.strCompany = one.pszCompany;
    person.strAddress = one.pszAddress;
    person.strUrl = one.pszUrl;
    person.strEmail = one.pszEmail;
    person.strSocial = "social";
    Records().m_vecContact.push_back(person);
  }
  ClickNode(6);
  ASSERT_EQ("Ann\n123", TextOf(Contact())) << "the first row is shown as the page comes up";
  for (int nRow = static_cast<int>(cases.size()) - 1; nRow >= 0; --nRow) {
    ClickRow(Table("m_pContactsTable"), nRow, 1);

    EXPECT_EQ(cases[static_cast<size_t>(nRow)].pszText, TextOf(Contact()));
  }
}

TEST_F(PreviewText, AContactWithACompanyAndNoPhoneShowsAnEmptyLine) {
  OpenDataScreen();
  __PERSON_CONTENT__ person;
  person.strName = "Ann";
  person.strCompany = "Firm";
  person.strEmail = "a@b";
  Records().m_vecContact = {person};

  ClickNode(6);

  EXPECT_EQ("Ann\n\n\na@b", TextOf(Contact()));
}

TEST_F(PreviewText, NoteShowsTitleAndContent) {
  OpenDataScreen();
  __NOTES__ first;
  first.strTitle = "Shopping";
  first.strContent = "milk\nbread";
  first.strDate = "2014-01-01 10:00:00";
  Records().m_vecNote = {first, __NOTES__()};

  ClickNode(8);
  EXPECT_EQ("Title:\nShopping\nNote:\nmilk\nbread", TextOf(Note()));
  PressKey(Table("m_pNotesTable"), Qt::Key_Down);
  PressKey(Table("m_pNotesTable"), Qt::Key_Down);
  EXPECT_EQ("Title:\n\nNote:\n", TextOf(Note()));
}

TEST_F(PreviewText, LabelsHaveTheirFontSizeAndWrap) {
  OpenDataScreen();

  for (const QLabel* pLabel : {Contact(), Note()}) {
    EXPECT_TRUE(pLabel->wordWrap());
    EXPECT_EQ("Calibri 12/50", FontOf(pLabel));
    EXPECT_EQ(QSize(200, 300), pLabel->minimumSize());
    EXPECT_TRUE(pLabel->isHidden());
  }
}

TEST_F(PreviewText, MarkupIsOnlyText) {
  OpenDataScreen();
  const std::string strMarkup = "<b>x</b><img src='http://127.0.0.1:1/x.png'>";
  __PERSON_CONTENT__ person;
  person.strName = strMarkup;
  __NOTES__ note;
  note.strTitle = strMarkup;
  Records().m_vecContact = {person};
  Records().m_vecNote = {note};

  ClickNode(6);
  ClickNode(8);

  EXPECT_EQ(strMarkup + "\n", TextOf(Contact()));
  EXPECT_EQ("Title:\n" + strMarkup + "\nNote:\n", TextOf(Note()));
  for (const QLabel* pLabel : {Contact(), Note()}) EXPECT_EQ(Qt::PlainText, pLabel->textFormat());
}

TEST_F(PreviewText, HiddenPanesStayHiddenWhateverIsShown) {
  OpenFilled();
  for (const int nCategory : {4, 6, 8, 9, 4}) {
    ClickNode(nCategory);
    ClickRow(Table(nCategory == 4   ? "m_pMessageTable"
                   : nCategory == 6 ? "m_pContactsTable"
                   : nCategory == 8 ? "m_pNotesTable"
                                    : "m_pWhatsappTable"),
             1);

    for (const char* pszName : {"m_pMessageWebView", "m_pWhatsappWebView", "m_pContactText", "m_pNoteText"})
      EXPECT_TRUE(Find<QWidget>(pszName)->isHidden()) << pszName << " at " << nCategory;
  }
}

TEST_F(PreviewText, ATableBesideAHiddenPaneTakesTheWidth) {
  OpenFilled();

  ClickNode(8);
  QCoreApplication::processEvents();

  const QWidget* pPage = Table("m_pNotesTable")->parentWidget();
  EXPECT_EQ(pPage->width() - 2, Table("m_pNotesTable")->width()) << "all but the right margin";
}

TEST_F(PreviewText, CallsPreviewNothing) {
  OpenFilled();
  __PERSON_CONTENT__ person;
  person.strName = "Ann";
  Records().m_vecContact = {person};
  Records().m_mapMessage = {{5, {Message(0, "a")}}};
  ClickNode(6);
  ClickNode(4);
  const std::string strBody = BodyOf(Messages());
  ASSERT_NE("", strBody);

  ClickNode(7);
  ClickRow(Table("m_pCallHistoryTable"), 1);

  EXPECT_EQ(7, WindowAccess::CurrentCategory(Window()));
  EXPECT_EQ("Ann\n", TextOf(Contact()));
  EXPECT_EQ(strBody, BodyOf(Messages()));
  EXPECT_EQ("", TextOf(Note()));
}

TEST_F(PreviewText, NoItemPreviewsNothing) {
  OpenFilled();
  ClickNode(4);
  const std::string strBody = BodyOf(Messages());

  Window().tableItemClick(nullptr);

  EXPECT_EQ(strBody, BodyOf(Messages()));
}

// Rows of the app tables have no record, so the previous category's preview gets an empty one.

class PreviewAppRow : public PreviewTest, public testing::WithParamInterface<AppCategory> {
 protected:
  /// Shows a category, and then clicks on an app's row.
  void ClickAppAfter(int nCategory) {
    SelectNode(nCategory);
    SelectNode(GetParam().nNumber);
    EXPECT_EQ(nCategory, WindowAccess::CurrentCategory(Window()));
    ClickRow(Table(GetParam().pszTable), 0);
    EXPECT_EQ(nCategory, WindowAccess::CurrentCategory(Window()));
  }
};

TEST_P(PreviewAppRow, BlanksTheLabelOfTheCategoryBefore) {
  OpenFilled();
  Records().m_vecCamera.clear();
  PutFiles(kPictureCategories[0], {WritePicture("a.png", {10, 11})});
  ClickNode(0);
  ClickNode(GetParam().nNumber);
  ASSERT_EQ(QSize(10, 11), Shown(kPictureCategories[0])) << "the page alone previews no row";

  ClickRow(Table(GetParam().pszTable), 0);

  EXPECT_EQ(QSize(0, 0), Shown(kPictureCategories[0]));
}

TEST_P(PreviewAppRow, WritesTheTextOfAnEmptyRecord) {
  OpenFilled();
  Records().m_vecContact[0].strName = "Ann";
  Records().m_vecNote[0].strTitle = "Shopping";

  ClickAppAfter(6);
  ClickNode(8);
  ClickNode(6);  // leaves the app table, so the next click changes the selection
  Table(GetParam().pszTable)->clearSelection();
  ClickAppAfter(8);

  EXPECT_EQ("Title:\n\nNote:\n", TextOf(Find<QLabel>("m_pNoteText")));
}

TEST_P(PreviewAppRow, LooksUpMessageKeyZero) {
  OpenFilled();

  ClickAppAfter(4);

  EXPECT_EQ("", BodyOf(Messages()));
}

TEST_P(PreviewAppRow, LooksUpChatKeyZero) {
  OpenFilled();
  Records().m_mapWhatsApp = {{1, {ChatMessage(0, "A")}}};

  ClickAppAfter(9);

  EXPECT_EQ(std::vector<std::string>({Received("A")}), BubblesOf(Chats()));
}

INSTANTIATE_TEST_SUITE_P(Of, PreviewAppRow, testing::ValuesIn(kAppCategories), NameOf<AppCategory>);

}  // namespace
