// The restrictions of the page behind a chat, even for scripts that are allowed to run in it.

#include "chat/sealed_page.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <memory>

#include "tests/support.h"
#include "ui/chat_view.h"

using namespace orvandel;

namespace {

constexpr char kPage[] = "<html><head></head><body id='content'></body></html>";

/// The page with its own profile.
class OpenPage : public SealedPage {
 public:
  using SealedPage::acceptNavigationRequest;
  using SealedPage::chooseFiles;
  using SealedPage::createWindow;
  using SealedPage::javaScriptAlert;
  using SealedPage::javaScriptConfirm;
  using SealedPage::javaScriptPrompt;
  using SealedPage::SealedPage;
};

class SealedPageTest : public testing::Test {
 protected:
  SealedPageTest() {
    EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
    Load(kPage);
  }
  void Load(const QString& qstrHtml) {
    QSignalSpy loaded(&m_page, &QWebEnginePage::loadFinished);
    m_page.SetContent(qstrHtml);
    EXPECT_TRUE(QTest::qWaitFor([&] { return loaded.count() == 1; }, kPatience));
  }
  /// Runs a script of the program. @return its result.
  QVariant Run(const QString& qstrScript) {
    const auto pAnswer = std::make_shared<std::pair<bool, QVariant>>();
    m_page.Run(qstrScript, [pAnswer](const QVariant& value) { *pAnswer = {true, value}; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return pAnswer->first; }, kPatience)) << qstrScript.toStdString();
    return pAnswer->second;
  }
  /// Runs the page's timers that are due within 100 ms of its clock.
  void ServeEngine() {
    const double nBegin = Run("performance.now()").toDouble();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return Run("performance.now()").toDouble() > nBegin + 100; }, kPatience));
  }
  /// Address of the test's server, which must get no requests.
  QString Address(const char* pszScheme = "http") const {
    return QString("%1://127.0.0.1:%2/").arg(pszScheme).arg(m_server.serverPort());
  }
  /// Whether the server got a connection. A connection of the test arrives after all others.
  bool WasReached() {
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, m_server.serverPort());
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_server.hasPendingConnections(); }, kPatience));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return socket.state() == QAbstractSocket::ConnectedState; }, kPatience));
    const std::unique_ptr<QTcpSocket> pFirst(m_server.nextPendingConnection());
    return !pFirst || pFirst->peerPort() != socket.localPort() || m_server.hasPendingConnections();
  }
  QString Body() { return Run("document.body.innerHTML").toString(); }

  static constexpr int kPatience = 30000;  // milliseconds
  QTcpServer m_server;
  QWebEngineProfile m_profile;  // must outlive the page
  OpenPage m_page{&m_profile};
};

TEST_F(SealedPageTest, HasAllPowersOffAndIsPrivate) {
  for (const QWebEngineSettings::WebAttribute attribute :
       {QWebEngineSettings::JavascriptEnabled, QWebEngineSettings::PluginsEnabled,
        QWebEngineSettings::LocalStorageEnabled, QWebEngineSettings::JavascriptCanOpenWindows,
        QWebEngineSettings::JavascriptCanAccessClipboard, QWebEngineSettings::JavascriptCanPaste,
        QWebEngineSettings::LocalContentCanAccessRemoteUrls,
        QWebEngineSettings::LocalContentCanAccessFileUrls, QWebEngineSettings::DnsPrefetchEnabled,
        QWebEngineSettings::HyperlinkAuditingEnabled, QWebEngineSettings::WebGLEnabled,
        QWebEngineSettings::FullScreenSupportEnabled, QWebEngineSettings::ScreenCaptureEnabled,
        QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::AutoLoadImages,
        QWebEngineSettings::NavigateOnDropEnabled})
    EXPECT_FALSE(m_page.settings()->testAttribute(attribute)) << attribute;
  EXPECT_EQ(QWebEngineSettings::DisallowUnknownUrlSchemes, m_page.settings()->unknownUrlSchemePolicy());
  EXPECT_TRUE(m_page.profile()->isOffTheRecord());
  EXPECT_TRUE(m_page.isAudioMuted());
}

TEST_F(SealedPageTest, RunsItsOwnScriptsInOrder) {
  EXPECT_EQ(42, Run("6*7").toInt());

  Run("document.getElementById(\"content\").innerHTML='<i>x</i>'");
  EXPECT_EQ("<i>x</i>", Body());
  EXPECT_FALSE(Run("this is no script").isValid());
  EXPECT_FALSE(Run("throw 1").isValid());
  EXPECT_EQ(42, Run("6*7").toInt());
}

TEST_F(SealedPageTest, AnswersAllQuestionsWithNo) {
  const QUrl origin;
  QString qstrAnswer = "kept";

  EXPECT_FALSE(m_page.javaScriptConfirm(origin, "sure?"));
  EXPECT_FALSE(m_page.javaScriptPrompt(origin, "name?", "me", &qstrAnswer));
  EXPECT_EQ("kept", qstrAnswer);
  EXPECT_EQ(QStringList(), m_page.chooseFiles(QWebEnginePage::FileSelectOpen, {"/etc/passwd"}, {}));
  EXPECT_EQ(QStringList(), m_page.chooseFiles(QWebEnginePage::FileSelectOpenMultiple, {"/etc/passwd"}, {}));
  EXPECT_EQ(nullptr, m_page.createWindow(QWebEnginePage::WebBrowserWindow));
  EXPECT_EQ(nullptr, m_page.createWindow(QWebEnginePage::WebDialog));
  m_page.javaScriptAlert(origin, "boo");
  EXPECT_EQ(nullptr, QApplication::activeModalWidget());
}

TEST_F(SealedPageTest, ScriptsAskingTheUserGetNoAnswer) {
  EXPECT_EQ("false", Run("String(confirm('sure?'))").toString());
  EXPECT_EQ("null", Run("String(prompt('name?','me'))").toString());
  EXPECT_EQ("undefined", Run("String(alert('boo'))").toString());
}

TEST_F(SealedPageTest, AScriptReachesNoServer) {
  const QString http = Address(), ws = Address("ws");
  const std::vector<QString> scripts = {
      "var x=new XMLHttpRequest();x.open('GET','" + http + "',false);x.send()",
      "var x=new XMLHttpRequest();x.open('POST','" + http + "',true);x.send('data')",
      "fetch('" + http + "').catch(function(){})",
      "window.keptSocket=new WebSocket('" + ws + "')",
      "window.keptSource=new EventSource('" + http + "')",
      "window.keptImage=new Image();keptImage.src='" + http + "a.png'",
      "window.open('" + http + "')",
      "location='" + http + "'",
      "location.assign('" + http + "')",
      "var f=document.createElement('form');f.action='" + http + "';document.body.appendChild(f);f.submit()",
      "var s=document.createElement('script');s.src='" + http + "a.js';document.body.appendChild(s)",
      "var i=document.createElement('iframe');i.src='" + http + "';document.body.appendChild(i)",
      "navigator.sendBeacon&&navigator.sendBeacon('" + http + "','x')",
  };
  for (const QString& qstrScript : scripts) Run(qstrScript);
  ServeEngine();

  EXPECT_FALSE(WasReached());
}

TEST_F(SealedPageTest, RefusesRequestsThatNoPolicyForbids) {
  TemporaryFolder folder;
  const QString file = "file://" + QString::fromStdString(folder.Write("secret.png", "secret"));
  Load(kPage);
  Run("document.querySelector('meta').remove()");
  const int nBefore = m_page.Requests().RefusedRequests();

  for (const QString& qstrUrl : {Address() + "a.css", file})
    Run("var l=document.createElement('link');l.rel='stylesheet';l.href='" + qstrUrl +
        "';document.body.appendChild(l)");
  ServeEngine();

  EXPECT_FALSE(WasReached());
  EXPECT_GE(m_page.Requests().RefusedRequests(), nBefore);
}

TEST_F(SealedPageTest, IsDestroyedWhateverIsStillToBeLoaded) {
  for (int i = 0; i < 10; ++i) {
    QWebEngineProfile profile;
    SealedPage page(&profile);
    page.SetContent(kPage);
    QString qstrMarkup;
    for (const char* pszKind : {"prefetch", "preload", "icon", "stylesheet", "import"})
      qstrMarkup += QString("<link rel='%1' href='%2%3'>").arg(pszKind, Address()).arg(i);

    page.Run("document.body.innerHTML=\"" + qstrMarkup + "<img src='x'>\"");

    if (i % 2) QCoreApplication::processEvents();
  }
  EXPECT_FALSE(WasReached());
}

TEST_F(SealedPageTest, NavigationIsRefused) {
  for (const QString& qstrUrl : {Address(), QString("file:///etc/passwd"), QString("javascript:alert(1)"),
                                 QString("data:text/html,x"), QString("qrc:/image/photo.png")}) {
    for (const bool bMainFrame : {false, true})
      EXPECT_FALSE(m_page.acceptNavigationRequest(qstrUrl, QWebEnginePage::NavigationTypeOther, bMainFrame))
          << qstrUrl.toStdString();
  }
  Run("document.body.innerHTML='<b>kept</b>'");

  m_page.load(QUrl(Address()));
  m_page.load(QUrl("file:///etc/passwd"));
  ServeEngine();

  EXPECT_EQ("<b>kept</b>", Body());
  EXPECT_FALSE(WasReached());
}

TEST_F(SealedPageTest, PutsItsPolicyBeforeAllOfThePage) {
  for (const char* pszPage :
       {"<html><head><title>x</title></head><body id='content'></body></html>",
        "<!DOCTYPE html><HTML><HEAD></HEAD><BODY id='content'></BODY></HTML>", "<b>x</b>", ""}) {
    Load(pszPage);

    EXPECT_EQ("META", Run("document.head.firstChild.tagName").toString()) << pszPage;
    EXPECT_EQ("Content-Security-Policy", Run("document.head.firstChild.httpEquiv").toString()) << pszPage;
    EXPECT_EQ("default-src 'none'; style-src 'unsafe-inline'",
              Run("document.head.firstChild.content").toString())
        << pszPage;
  }
}

TEST_F(SealedPageTest, RunsNoScriptOfAPage) {
  const QString qstrTitle = Run("document.title").toString();
  Load(
      "<html><head><script>document.title='ran'</script></head>"
      "<body id='content' "
      "onload=\"document.title='ran'\"><script>document.title='ran'</script></body></html>");
  Run("document.body.insertAdjacentHTML('beforeEnd',\"<img src='x' onerror='document.title=1'>"
      "<svg onload='document.title=2'></svg><details ontoggle='document.title=3' open></details>\")");
  ServeEngine();

  EXPECT_EQ(qstrTitle, Run("document.title").toString());
}

TEST_F(SealedPageTest, NoScriptRunsLater) {
  Run("setTimeout(function(){document.title='late'},0);Promise.resolve().then(function(){document.title='"
      "soon'})");
  ServeEngine();

  EXPECT_NE("late", Run("document.title").toString());
}

// Scripts are disabled even without the page's policy.
TEST_F(SealedPageTest, RunsNoScriptOfAPageWithoutThePolicyEither) {
  Run("document.querySelector('meta').remove()");
  const QString qstrTitle = Run("document.title").toString();

  Run("document.body.insertAdjacentHTML('beforeEnd',\"<img src='x' onerror='document.title=1'>"
      "<svg onload='document.title=2'></svg><details ontoggle='document.title=3' open></details>\")");
  ServeEngine();

  EXPECT_EQ(qstrTitle, Run("document.title").toString());
}

TEST_F(SealedPageTest, KnowsWhatEndsAString) {
  const QString separator(QChar(0x2028)), paragraph(QChar(0x2029));
  const std::vector<QString> staying = {"",
                                        "text",
                                        "it's",
                                        R"(\")",
                                        R"(a\"b\"c)",
                                        R"(\\)",
                                        R"(\\\")",
                                        "\t",
                                        "<b>",
                                        "\\",
                                        "a\\",
                                        "\\\n",
                                        R"(\x22)",
                                        R"(\u0022)",
                                        QString(QChar(0)),
                                        QString::fromUtf8("\xf0\x9f\x98\x80")};
  const std::vector<QString> ending = {"\"",
                                       "a\"b",
                                       R"(\\")",
                                       R"(\\\\")",
                                       "\n",
                                       "\r",
                                       "a\nb",
                                       "\\\\\n",
                                       separator,
                                       "a" + paragraph,
                                       "\\n\"",
                                       "\\\"\"",
                                       QString(QChar(0)) + "\""};
  for (const QString& qstrText : staying)
    EXPECT_TRUE(ChatView::StaysInString(qstrText)) << qstrText.toStdString();
  for (const QString& qstrText : ending)
    EXPECT_FALSE(ChatView::StaysInString(qstrText)) << qstrText.toStdString();
}

// ChatView::StaysInString agrees with the engine.
TEST_F(SealedPageTest, AgreesWithTheEngineOnStringsOfAllShortTexts) {
  const QString letters = QString("\\\"\n\rn") + QChar(0x2028);
  std::vector<QString> texts = {""};
  for (size_t i = 0; texts[i].size() < 4; ++i)
    for (const QChar letter : letters) texts.push_back(texts[i] + letter);

  for (const QString& qstrText : texts) {
    if (!ChatView::StaysInString(qstrText)) continue;
    // Within the string, the rest of the line is text, too.
    Run("window.hit=0");
    Run("window.text=\"" + qstrText + "</p>;window.hit=1;//\"");
    ASSERT_EQ(0, Run("window.hit").toInt()) << qstrText.toUtf8().toHex().constData();
    ASSERT_TRUE(Run("window.text").toString().endsWith("</p>;window.hit=1;//"))
        << qstrText.toUtf8().toHex().constData();
  }
}

}  // namespace
