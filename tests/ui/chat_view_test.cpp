// The view by itself.

#include "ui/chat_view.h"

#include <QDir>

#include "tests/ui/preview_fixture.h"

namespace {

using Bubbles = std::vector<std::string>;

class ChatViewTest : public PreviewTest {
 protected:
  ~ChatViewTest() override { QDir::setCurrent(m_qstrFolder); }

  /// Where the program looks for its pages by name.
  void EnterFolder(const std::string& strFolder) {
    ASSERT_TRUE(QDir::setCurrent(QString::fromStdString(strFolder)));
  }

 private:
  const QString m_qstrFolder = QDir::currentPath();
};

TEST_F(ChatViewTest, AddsBubblesOfBothSidesInOrder) {
  ChatView view("style.html");

  EXPECT_TRUE(view.AddBubble(true, "one"));
  EXPECT_TRUE(view.AddBubble(false, "two"));
  EXPECT_TRUE(view.AddBubble(true, ""));

  EXPECT_EQ(Bubbles({Received("one"), Sent("two"), Received("")}), BubblesOf(&view));
}

TEST_F(ChatViewTest, ATextThatEndsItsStringIsNoReasonToStop) {
  ChatView view("style.html");

  EXPECT_TRUE(view.AddBubble(true, "\""));
  EXPECT_TRUE(view.AddBubble(true, "next"));

  EXPECT_EQ(Bubbles({Received("next")}), BubblesOf(&view));
}

TEST_F(ChatViewTest, ClearTakesAllAwayAndKeepsTheBody) {
  ChatView view("style.html");
  view.AddBubble(true, "one");

  view.Clear();

  EXPECT_EQ("", BodyOf(&view));
  EXPECT_EQ(QVariant(true), Ask(&view, "document.querySelector('body#content')!==null"));
}

TEST_F(ChatViewTest, EnableTakesTheAttributeAlone) {
  ChatView view("style.html");
  ASSERT_EQ("disabled", Ask(&view, "document.body.getAttribute('disabled')").toString());

  view.Enable();

  EXPECT_EQ(QVariant(false), Ask(&view, "document.body.hasAttribute('disabled')"));
  EXPECT_EQ("content", Ask(&view, "document.body.getAttribute('id')").toString());
}

TEST_F(ChatViewTest, ThePageIsReadAsUtf8FromTheCurrentFolder) {
  m_folder.Write("page.html",
                 "<html><head></head><body id='content'><i>\xc3\xbc\xe2\x82\xac</i></body></html>");
  EnterFolder(m_folder.Path());

  ChatView view("page.html");

  EXPECT_EQ("<i>\xc3\xbc\xe2\x82\xac</i>", BodyOf(&view));
}

TEST_F(ChatViewTest, ThePageOfTheProgramHasStylesForBothSides) {
  ChatView view("style.html");
  view.AddBubble(true, "one");
  view.AddBubble(false, "two");

  const auto StyleOf = [&view](const char* pszElement, const char* pszProperty) {
    return Ask(&view, QString("getComputedStyle(document.querySelector('%1')).%2").arg(pszElement, pszProperty))
        .toString();
  };
  EXPECT_EQ("left", StyleOf("p.triangle-left.left", "float"));
  EXPECT_EQ("right", StyleOf("p.triangle-right.right", "float"));
  EXPECT_EQ("hidden", StyleOf("div", "overflowY"));
}

TEST_F(ChatViewTest, WithoutItsPageTheWindowWorksAndThePanesStayEmpty) {
  EnterFolder(m_folder.MakeFolder("elsewhere"));
  OpenDataScreen();
  Records().m_mapMessage = {{1, {Message(0, "a")}}, {2, {Message(1, "b")}}};
  Records().m_mapWhatsApp = {{1, {ChatMessage(0, "A")}}, {2, {ChatMessage(1, "B")}}};
  PutFiles(kPictureCategories[0], {WritePicture("a.png", {10, 11})});

  ClickNode(4);
  ClickRow(Table("m_pMessageTable"), 1);
  ClickNode(9);
  ClickRow(Table("m_pWhatsappTable"), 1);
  ClickNode(0);

  EXPECT_EQ("", BodyOf(Messages()));
  EXPECT_EQ("", BodyOf(Chats()));
  EXPECT_EQ(2, Table("m_pMessageTable")->rowCount());
  EXPECT_EQ(QSize(10, 11), Shown(kPictureCategories[0]));
}

TEST_F(ChatViewTest, AFolderOrAnEmptyFileByThePagesNameGivesAnEmptyPage) {
  m_folder.MakeFolder("a/style.html");
  m_folder.Write("b/style.html", "");
  for (const char* pszFolder : {"a", "b"}) {
    EnterFolder(m_folder.Path(pszFolder));

    ChatView view("style.html");
    view.Clear();
    view.Enable();
    EXPECT_TRUE(view.AddBubble(true, "text")) << pszFolder;

    EXPECT_EQ("", BodyOf(&view)) << pszFolder;
  }
}

}  // namespace
