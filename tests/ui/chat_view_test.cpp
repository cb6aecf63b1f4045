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
  EXPECT_FALSE(view.page()->mainFrame()->findFirstElement("body#content").isNull());
}

TEST_F(ChatViewTest, EnableTakesTheAttributeAlone) {
  ChatView view("style.html");
  ASSERT_EQ("disabled", view.page()->mainFrame()->findFirstElement("body").attribute("disabled"));

  view.Enable();

  EXPECT_FALSE(view.page()->mainFrame()->findFirstElement("body").hasAttribute("disabled"));
  EXPECT_EQ("content", view.page()->mainFrame()->findFirstElement("body").attribute("id"));
}

TEST_F(ChatViewTest, ThePageIsReadAsUtf8FromTheCurrentFolder) {
  m_folder.Write("page.html",
                 "<html><head></head><body id='content'><i>\xc3\xbc\xe2\x82\xac</i></body></html>");
  EnterFolder(m_folder.Path());

  const ChatView view("page.html");

  EXPECT_EQ("<i>\xc3\xbc\xe2\x82\xac</i>", BodyOf(&view));
}

TEST_F(ChatViewTest, ThePageOfTheProgramHasStylesForBothSides) {
  ChatView view("style.html");
  view.AddBubble(true, "one");
  view.AddBubble(false, "two");

  const QWebElement left = view.page()->mainFrame()->findFirstElement("p.triangle-left.left");
  const QWebElement right = view.page()->mainFrame()->findFirstElement("p.triangle-right.right");

  EXPECT_EQ("left", left.styleProperty("float", QWebElement::ComputedStyle));
  EXPECT_EQ("right", right.styleProperty("float", QWebElement::ComputedStyle));
  EXPECT_EQ("hidden", left.parent().styleProperty("overflow-y", QWebElement::ComputedStyle));
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
