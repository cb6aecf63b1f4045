// The hidden chats of bubbles beside the tables of messages and of WhatsApp.

#include <QDir>
#include <QPointer>

#include "tests/ui/preview_fixture.h"

using namespace orvandel;

namespace {

using Bubbles = std::vector<std::string>;

class PreviewMessages : public PreviewTest {
 protected:
  QTableWidget* Rows() { return Table("m_pMessageTable"); }
  void Put(unsigned int nKey, const std::vector<__MESSAGE_INFO__>& messages) {
    Records().m_mapMessage[nKey] = messages;
  }
  /// Previews a value as the key of a conversation.
  void ShowKey(const QVariant& key) {
    QTableWidgetItem item;
    item.setData(Qt::UserRole, key);
    Window().tableItemClick(&item);
  }
};

TEST_F(PreviewMessages, AreNewestFirstEachOnItsSide) {
  OpenDataScreen();
  Put(5, {Message(0, "third", "2014-03-03 10:00:00", "Ann"),
          Message(1, "second", "2014-02-02 10:00:00", "Ann"), Message(0, "first", "2014-01-01 10:00:00")});

  ClickNode(4);

  EXPECT_EQ(Bubbles({Received("2014-03-03 10:00:00Ann<br>third"), Sent("2014-02-02 10:00:00Me<br>second"),
                     Received("2014-01-01 10:00:00<br>first")}),
            BubblesOf(Messages()));
}

TEST_F(PreviewMessages, HaveTheirPageWhateverTheWorkingDirectory) {
  const QString qstrBefore = QDir::currentPath();
  QDir::setCurrent(QString::fromStdString(m_folder.MakeFolder("elsewhere")));
  OpenDataScreen();
  QDir::setCurrent(qstrBefore);

  EngineOf(Messages());

  EXPECT_TRUE(Ask(Messages(), "document.getElementById('content')===document.body").toBool());
}

TEST_F(PreviewMessages, AnyNonZeroFlagIsASentMessage) {
  OpenDataScreen();
  Put(5, {Message(1, "a"), Message(-1, "b"), Message(2, "c"), Message(0, "d")});

  ClickNode(4);

  EXPECT_EQ(Bubbles({Sent("Me<br>a"), Sent("Me<br>b"), Sent("Me<br>c"), Received("<br>d")}),
            BubblesOf(Messages()));
}

TEST_F(PreviewMessages, EachConversationReplacesThePreviousOne) {
  OpenDataScreen();
  Put(1, {Message(0, "one")});
  Put(2, {Message(0, "two"), Message(1, "three")});
  ClickNode(4);
  ASSERT_EQ(Bubbles({Received("<br>one")}), BubblesOf(Messages()));

  ClickRow(Rows(), 1);
  EXPECT_EQ(Bubbles({Received("<br>two"), Sent("Me<br>three")}), BubblesOf(Messages()));
  PressKey(Rows(), Qt::Key_Up);
  EXPECT_EQ(Bubbles({Received("<br>one")}), BubblesOf(Messages()));
}

TEST_F(PreviewMessages, RemoveTheAttributeDisabledFromThePage) {
  OpenDataScreen();
  Put(5, {Message(0, "a")});
  ASSERT_TRUE(Ask(Messages(), "document.querySelector('body#content').hasAttribute('disabled')").toBool());

  ClickNode(4);

  EXPECT_EQ(QVariant(false),
            Ask(Messages(), "document.querySelector('body#content').hasAttribute('disabled')"));
}

TEST_F(PreviewMessages, AMissingKeyLeavesTheViewClearedAndEnabled) {
  OpenDataScreen();
  Put(5, {Message(0, "a")});
  ClickNode(4);
  ASSERT_EQ(1u, BubblesOf(Messages()).size());
  Ask(Messages(), "document.body.setAttribute('disabled','disabled')");

  ShowKey(6u);

  EXPECT_EQ("", BodyOf(Messages()));
  EXPECT_EQ(QVariant(false), Ask(Messages(), "document.body.hasAttribute('disabled')"));
}

TEST_F(PreviewMessages, AKeyThatDoesNotConvertIsZero) {
  OpenDataScreen();
  Put(0, {Message(0, "nought")});
  Put(7, {Message(0, "seven")});
  ClickNode(4);
  const std::vector<std::pair<QVariant, std::string>> keys = {
      {"x", "nought"}, {QVariant(), "nought"}, {7u, "seven"}, {"7", "seven"}, {QString("7x"), "nought"}};
  for (const auto& [key, strText] : keys) {
    ShowKey(key);
    EXPECT_EQ(Bubbles({Received("<br>" + strText)}), BubblesOf(Messages())) << key.toString().toStdString();
  }
}

TEST_F(PreviewMessages, MarkupAndEscapesAreInterpreted) {
  OpenDataScreen();
  struct Case {
    std::string strText, strShown;
  };
  const std::vector<Case> cases = {
      {"<b>bold</b>", "<b>bold</b>"},
      {"a &amp; b &lt;c", "a &amp; b &lt;c"},
      {R"(\x3ci\x3eleaning\x3c/i\x3e)", "<i>leaning</i>"},
      {R"(\u003cu\u003eline\u003c/u\u003e)", "<u>line</u>"},
      {R"(say \"this\")", "say \"this\""},
      {R"(a\nb)", "a\nb"},
      {"it's", "it's"},
      {"a trailing \\", "a trailing "},
      {R"(two \\)", R"(two \)"},
      {"100%1 %2 %L1 %%", "100%1 %2 %L1 %%"},
      {"Gr\xc3\xbc\xc3\x9f \xe2\x82\xac \xf0\x9f\x98\x80",
       "Gr\xc3\xbc\xc3\x9f \xe2\x82\xac \xf0\x9f\x98\x80"},
      {"a\tb", "a\tb"},
      {"a \\\nb", "a b"},  // a backslash continues the line
      {"", ""},
  };
  std::vector<__MESSAGE_INFO__> messages;
  Bubbles expected;
  for (const Case& one : cases) {
    messages.push_back(Message(0, one.strText));
    expected.push_back(Received("<br>" + one.strShown));
  }
  Put(5, messages);

  ClickNode(4);

  EXPECT_EQ(expected, BubblesOf(Messages()));
}

TEST_F(PreviewMessages, ATextThatEndsItsStringLosesOnlyItsOwnBubble) {
  OpenDataScreen();
  for (const char* pszText : {"say \"this\"", "a\nb", "a\rb", "a\r\nb", "\"", R"(\\" )",
                              "a\xe2\x80\xa8"
                              "b",
                              "a\xe2\x80\xa9"
                              "b",
                              R"(\xzz)", R"(\u12)"}) {
    Put(5, {Message(0, "before"), Message(1, pszText), Message(1, "after")});
    ClickNode(4);
    ShowKey(5u);

    EXPECT_EQ(Bubbles({Received("<br>before"), Sent("Me<br>after")}), BubblesOf(Messages())) << pszText;
  }
}

TEST_F(PreviewMessages, NamesAreInsertedVerbatimToo) {
  OpenDataScreen();
  Put(5,
      {Message(0, "a", "date", "<i>Ann</i>"), Message(0, "b", "date", "Bob \"the\" Cat"), Message(0, "c")});

  ClickNode(4);

  EXPECT_EQ(Bubbles({Received("date<i>Ann</i><br>a"), Received("<br>c")}), BubblesOf(Messages()));
}

class PreviewWhatsApp : public PreviewTest {
 protected:
  QTableWidget* Rows() { return Table("m_pWhatsappTable"); }
  void Put(unsigned int nKey, const std::vector<__WHATSAPP_MESSAGE__>& messages) {
    Records().m_mapWhatsApp[nKey] = messages;
  }
};

TEST_F(PreviewWhatsApp, EachBubbleHoldsAllTextsUpToItsOwn) {
  OpenDataScreen();
  Put(3, {ChatMessage(0, "one"), ChatMessage(1, "two"), ChatMessage(0, "three")});

  SelectNode(9);

  EXPECT_EQ(Bubbles({Received("one"), Sent("onetwo"), Received("onetwothree")}), BubblesOf(Chats()));
}

TEST_F(PreviewWhatsApp, TextsHaveNeitherDateNorName) {
  OpenDataScreen();
  __WHATSAPP_MESSAGE__ message = ChatMessage(0, "text");
  message.strDate = "2014-01-01 10:00:00";
  message.strName = message.strChatName = message.strChatTitle = "Ann";
  message.strPhone = message.strChatPhone = "+49";
  Put(3, {message});

  SelectNode(9);

  EXPECT_EQ(Bubbles({Received("text")}), BubblesOf(Chats()));
}

TEST_F(PreviewWhatsApp, ChatsAddUpInTheOrderOfTheirSelection) {
  OpenDataScreen();
  Put(1, {ChatMessage(0, "A")});
  Put(2, {ChatMessage(1, "B"), ChatMessage(0, "b")});
  SelectNode(9);

  ClickRow(Rows(), 1);
  ClickRow(Rows(), 0);

  EXPECT_EQ(Bubbles({Received("A"), Sent("B"), Received("Bb"), Received("A")}), BubblesOf(Chats()));
}

TEST_F(PreviewWhatsApp, AChatEmptiesTheViewOfMessages) {
  OpenDataScreen();
  Records().m_mapMessage[5] = {Message(0, "a")};
  Put(1, {ChatMessage(0, "A")});
  SelectNode(4);
  ASSERT_EQ(1u, BubblesOf(Messages()).size());

  SelectNode(9);

  EXPECT_EQ("", BodyOf(Messages()));
  EXPECT_EQ(Bubbles({Received("A")}), BubblesOf(Chats()));
}

TEST_F(PreviewWhatsApp, AMissingKeyEmptiesTheViewOfMessagesAndKeepsTheOther) {
  OpenDataScreen();
  Records().m_mapMessage[5] = {Message(0, "a")};
  Put(1, {ChatMessage(0, "A")});
  SelectNode(9);
  Records().m_mapWhatsApp.clear();
  SelectNode(4);
  ASSERT_EQ(1u, BubblesOf(Messages()).size());

  SelectNode(9);

  EXPECT_EQ("", BodyOf(Messages()));
  EXPECT_EQ(Bubbles({Received("A")}), BubblesOf(Chats()));
}

TEST_F(PreviewWhatsApp, KeysAreUnsigned) {
  OpenDataScreen();
  Put(4294967295u, {ChatMessage(0, "largest")});

  SelectNode(9);

  EXPECT_EQ(Bubbles({Received("largest")}), BubblesOf(Chats()));
}

TEST_F(PreviewWhatsApp, ThePageKeepsTheAttributeDisabled) {
  OpenDataScreen();
  Put(1, {ChatMessage(0, "A")});

  SelectNode(9);

  EXPECT_EQ(QVariant(true), Ask(Chats(), "document.body.hasAttribute('disabled')"));
}

TEST_F(PreviewWhatsApp, ATextThatEndsItsStringLosesAllLaterBubbles) {
  OpenDataScreen();
  Put(1, {ChatMessage(0, "one"), ChatMessage(0, "\"two\""), ChatMessage(0, "three")});
  Put(2, {ChatMessage(0, "next")});
  SelectNode(9);

  ClickRow(Rows(), 1);

  EXPECT_EQ(Bubbles({Received("one"), Received("next")}), BubblesOf(Chats()));
}

TEST_F(PreviewWhatsApp, AFreshDataScreenStartsFromEmptyViews) {
  OpenDataScreen();
  Put(1, {ChatMessage(0, "A")});
  SelectNode(9);
  QPointer<ChatView> pOld = Chats();

  Window().InitLayout3Widget();

  EXPECT_TRUE(pOld.isNull());
  for (const char* pszName : {"m_pMessageWebView", "m_pWhatsappWebView"})
    EXPECT_EQ(Bubbles(), BubblesOf(WindowAccess::DataScreen(Window())->findChild<ChatView*>(pszName)))
        << pszName;
}

// The press selects the node, and the click then is on a selected node, so the chat is added to the view
// twice.
TEST_F(PreviewWhatsApp, AClickOnTheNodeAddsTheFirstChatTwice) {
  OpenDataScreen();
  Put(1, {ChatMessage(0, "A"), ChatMessage(1, "B")});

  ClickNode(9);

  EXPECT_EQ(Bubbles({Received("A"), Sent("AB"), Received("A"), Sent("AB")}), BubblesOf(Chats()));
}

}  // namespace
