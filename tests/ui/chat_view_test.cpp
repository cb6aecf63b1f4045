// The view on its own.

#include "ui/chat_view.h"

#include <unistd.h>

#include <QDir>
#include <QProcess>

#include "tests/ui/preview_fixture.h"

using namespace orvandel;

namespace {

using Bubbles = std::vector<std::string>;

class ChatViewTest : public PreviewTest {
 protected:
  ~ChatViewTest() override { QDir::setCurrent(m_qstrFolder); }

  /// The folder in which the program looks for its pages.
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

TEST_F(ChatViewTest, ATextThatEndsItsStringDoesNotStopLaterOnes) {
  ChatView view("style.html");

  EXPECT_TRUE(view.AddBubble(true, "\""));
  EXPECT_TRUE(view.AddBubble(true, "next"));

  EXPECT_EQ(Bubbles({Received("next")}), BubblesOf(&view));
}

TEST_F(ChatViewTest, ClearRemovesAllBubblesAndKeepsTheBody) {
  ChatView view("style.html");
  view.AddBubble(true, "one");

  view.Clear();

  EXPECT_EQ("", BodyOf(&view));
  EXPECT_EQ(QVariant(true), Ask(&view, "document.querySelector('body#content')!==null"));
}

TEST_F(ChatViewTest, EnableRemovesOnlyTheAttribute) {
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
    return Ask(&view,
               QString("getComputedStyle(document.querySelector('%1')).%2").arg(pszElement, pszProperty))
        .toString();
  };
  EXPECT_EQ("left", StyleOf("p.triangle-left.left", "float"));
  EXPECT_EQ("right", StyleOf("p.triangle-right.right", "float"));
  EXPECT_EQ("hidden", StyleOf("div", "overflowY"));
}

TEST_F(ChatViewTest, WithoutItsPageTheWindowWorksAndThePanesStayEmpty) {
  SetProgramFolder(m_folder.MakeFolder("elsewhere"));
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

TEST_F(ChatViewTest, NoEngineStartsUntilTheViewIsShown) {
  ChatView view("style.html");
  view.AddBubble(true, "one");
  view.Clear();
  view.Enable();
  view.AddBubble(false, "two");
  QCoreApplication::processEvents();
  EXPECT_EQ(nullptr, view.Engine());
  EXPECT_TRUE(view.children().isEmpty());

  view.show();

  ASSERT_NE(nullptr, view.Engine());
  EXPECT_TRUE(WaitFor([&] { return view.IsLoaded(); }));
  EXPECT_EQ(Bubbles({Sent("two")}), BubblesOf(&view));
}

TEST_F(ChatViewTest, HoldsTheSameWheneverItIsFirstShown) {
  const auto Fill = [](ChatView& view, int nShowAt) {
    const std::function<void()> steps[] = {[&] { view.AddBubble(true, "one"); },
                                           [&] { view.Enable(); },
                                           [&] { view.AddBubble(false, "a \\x41"); },
                                           [&] { view.Clear(); },
                                           [&] { view.Enable(); },
                                           [&] { view.AddBubble(true, "<b id='x'>y</b>"); },
                                           [&] { view.AddBubble(false, "\""); },
                                           [&] { view.AddBubble(true, "<img name='body'>last"); }};
    int nStep = 0;
    for (const auto& step : steps) {
      if (nStep++ == nShowAt) EngineOf(&view);
      step();
    }
  };
  const Bubbles expected = {Received("<b id=\"x\">y</b>"), Received("<img>last")};
  for (const int nShowAt : {0, 3, 4, 6, 8}) {
    ChatView view("style.html");

    Fill(view, nShowAt);

    EXPECT_EQ(expected, BubblesOf(&view)) << nShowAt;
    EXPECT_EQ(QVariant(false), Ask(&view, "document.body.hasAttribute('disabled')")) << nShowAt;
  }
}

TEST_F(ChatViewTest, AnEarlierEnableOutlastsAClearing) {
  ChatView view("style.html");
  view.Enable();
  view.Clear();

  EXPECT_EQ(QVariant(false), Ask(&view, "document.body.hasAttribute('disabled')"));
}

TEST_F(ChatViewTest, PaintsItsBubblesInItsWholeArea) {
  ChatView view("style.html");
  view.AddBubble(true, "left");
  view.AddBubble(false, "right");
  view.resize(300, 200);
  view.show();
  EngineOf(&view);
  view.resize(500, 400);

  EXPECT_EQ(view.size(), view.Engine()->Widget()->size());
  // A bubble is neither white nor black.
  EXPECT_TRUE(WaitFor([&] {
    const QImage image = view.grab().toImage();
    int nColoured = 0;
    for (int nY = 0; nY < image.height(); ++nY)
      for (int nX = 0; nX < image.width(); ++nX) nColoured += QColor(image.pixel(nX, nY)).saturation() > 40;
    return nColoured > 500;
  }));
}

TEST_F(ChatViewTest, MayBeDestroyedWhileItsPageIsLoading) {
  for (int i = 0; i < 5; ++i) {
    auto pView = std::make_unique<ChatView>("style.html");
    pView->AddBubble(true, "one");
    pView->show();
    for (int nEvents = 0; nEvents < i; ++nEvents) QCoreApplication::processEvents();
  }
  ChatView view("style.html");
  EXPECT_EQ(Bubbles(), BubblesOf(&view));
}

#ifdef __linux__
TEST_F(ChatViewTest, TheProgramItselfLinksNoEngine) {
  QProcess process;
  process.start("ldd", {QCoreApplication::applicationDirPath() + "/orvandel"});
  ASSERT_TRUE(process.waitForFinished());
  const QByteArray libraries = process.readAllStandardOutput();

  EXPECT_TRUE(libraries.contains("libQt6Widgets"));
  EXPECT_FALSE(libraries.contains("WebEngine"));
}

// The engine would end the whole process. Its sandbox is never switched off by the program.
TEST_F(ChatViewTest, StaysEmptyForTheSuperuserWhoHasNotSwitchedTheSandboxOff) {
  if (geteuid() != 0) GTEST_SKIP() << "the engine's sandbox works for everybody else";
  const QByteArray setting = qgetenv("QTWEBENGINE_DISABLE_SANDBOX");
  qunsetenv("QTWEBENGINE_DISABLE_SANDBOX");
  ExpectQtWarning("a chat can't be shown");
  ChatView view("style.html");
  view.AddBubble(true, "one");

  view.show();

  EXPECT_EQ(nullptr, view.Engine());
  EXPECT_TRUE(qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"));
  qputenv("QTWEBENGINE_DISABLE_SANDBOX", setting);
}
#endif

}  // namespace
