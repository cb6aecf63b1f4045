// What the page behind a chat refuses, even to scripts that are let run in it.

#include "ui/sealed_page.h"

#include <QNetworkReply>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtWebKit/QWebElement>
#include <QtWebKit/QWebSettings>
#include <QtWebKitWidgets/QWebFrame>

#include "tests/ui/preview_fixture.h"

namespace {

constexpr char kPage[] = "<html><head></head><body id='content'></body></html>";

/// The page with what it has for itself.
class OpenPage : public SealedPage {
 public:
  using SealedPage::acceptNavigationRequest;
  using SealedPage::chooseFile;
  using SealedPage::createPlugin;
  using SealedPage::createWindow;
  using SealedPage::javaScriptAlert;
  using SealedPage::javaScriptConfirm;
  using SealedPage::javaScriptPrompt;
  using SealedPage::supportsExtension;
};

class SealedPageTest : public testing::Test {
 protected:
  SealedPageTest() {
    EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
    m_page.SetContent(kPage);
  }
  /// Address of a server of the test, which nothing may reach.
  QString Address(const char* pszScheme = "http") const {
    return QString("%1://127.0.0.1:%2/").arg(pszScheme).arg(m_server.serverPort());
  }
  /// Whether anybody has come to the server. A call of the test's own comes after all others.
  bool WasReached() {
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, m_server.serverPort());
    EXPECT_TRUE(WaitFor([&] { return m_server.hasPendingConnections(); }));
    EXPECT_TRUE(WaitFor([&] { return socket.state() == QAbstractSocket::ConnectedState; }));
    const std::unique_ptr<QTcpSocket> pFirst(m_server.nextPendingConnection());
    return !pFirst || pFirst->peerPort() != socket.localPort() || m_server.hasPendingConnections();
  }
  void SetBody(const QString& qstrHtml) {
    m_page.mainFrame()->findFirstElement("body").setInnerXml(qstrHtml);
  }

  Deadline m_deadline{60};
  QTcpServer m_server;
  OpenPage m_page;
};

TEST_F(SealedPageTest, HasAllPowersOffAndIsPrivate) {
  for (const QWebSettings::WebAttribute attribute :
       {QWebSettings::JavascriptEnabled, QWebSettings::PluginsEnabled, QWebSettings::JavaEnabled,
        QWebSettings::LocalStorageEnabled, QWebSettings::OfflineStorageDatabaseEnabled,
        QWebSettings::OfflineWebApplicationCacheEnabled, QWebSettings::DeveloperExtrasEnabled,
        QWebSettings::JavascriptCanOpenWindows, QWebSettings::JavascriptCanCloseWindows,
        QWebSettings::JavascriptCanAccessClipboard, QWebSettings::LocalContentCanAccessRemoteUrls,
        QWebSettings::LocalContentCanAccessFileUrls, QWebSettings::DnsPrefetchEnabled,
        QWebSettings::HyperlinkAuditingEnabled, QWebSettings::NotificationsEnabled,
        QWebSettings::WebGLEnabled})
    EXPECT_FALSE(m_page.settings()->testAttribute(attribute)) << attribute;
  EXPECT_TRUE(m_page.settings()->testAttribute(QWebSettings::PrivateBrowsingEnabled));
  EXPECT_EQ(QWebPage::DelegateAllLinks, m_page.linkDelegationPolicy());
}

TEST_F(SealedPageTest, RunsItsOwnScriptsAndTurnsScriptsOffAgain) {
  EXPECT_EQ(42, m_page.Run("6*7").toInt());
  EXPECT_FALSE(m_page.settings()->testAttribute(QWebSettings::JavascriptEnabled));

  m_page.Run("document.getElementById(\"content\").innerHTML='<i>x</i>'");
  EXPECT_EQ("<i>x</i>", m_page.mainFrame()->findFirstElement("body").toInnerXml());
  EXPECT_FALSE(m_page.Run("this is no script").isValid());
  EXPECT_FALSE(m_page.Run("throw 1").isValid());
  EXPECT_FALSE(m_page.settings()->testAttribute(QWebSettings::JavascriptEnabled));
  EXPECT_EQ(42, m_page.Run("6*7").toInt());
}

TEST_F(SealedPageTest, AnswersAllQuestionsWithNo) {
  QString qstrAnswer = "kept";

  EXPECT_FALSE(m_page.javaScriptConfirm(m_page.mainFrame(), "sure?"));
  EXPECT_FALSE(m_page.javaScriptPrompt(m_page.mainFrame(), "name?", "me", &qstrAnswer));
  EXPECT_EQ("kept", qstrAnswer);
  EXPECT_EQ("", m_page.chooseFile(m_page.mainFrame(), "/etc/passwd"));
  EXPECT_EQ(nullptr, m_page.createWindow(QWebPage::WebBrowserWindow));
  EXPECT_EQ(nullptr, m_page.createWindow(QWebPage::WebModalDialog));
  EXPECT_EQ(nullptr, m_page.createPlugin("", QUrl(Address()), {}, {}));
  EXPECT_TRUE(m_page.shouldInterruptJavaScript());
  m_page.javaScriptAlert(m_page.mainFrame(), "boo");
  EXPECT_EQ(nullptr, QApplication::activeModalWidget());
}

TEST_F(SealedPageTest, ScriptsAskingTheUserGetNoAnswer) {
  EXPECT_EQ("false", m_page.Run("String(confirm('sure?'))").toString());
  EXPECT_EQ("null", m_page.Run("String(prompt('name?','me'))").toString());
  EXPECT_EQ("undefined", m_page.Run("String(alert('boo'))").toString());
}

TEST_F(SealedPageTest, SeveralFilesAreNotAskedForEither) {
  EXPECT_FALSE(m_page.supportsExtension(QWebPage::ChooseMultipleFilesExtension))
      << "the engine's own answer is a dialog";
}

TEST_F(SealedPageTest, AScriptReachesNoServer) {
  const QString http = Address(), ws = Address("ws");
  const std::vector<QString> scripts = {
      "var x=new XMLHttpRequest();x.open('GET','" + http + "',false);x.send()",
      "var x=new XMLHttpRequest();x.open('POST','" + http + "',true);x.send('data')",
      "window.kept=new WebSocket('" + ws + "')",
      "window.kept=new EventSource('" + http + "')",
      "window.kept=new Image();kept.src='" + http + "a.png'",
      "window.open('" + http + "')",
      "location='" + http + "'",
      "location.assign('" + http + "')",
      "var f=document.createElement('form');f.action='" + http + "';document.body.appendChild(f);f.submit()",
      "var s=document.createElement('script');s.src='" + http + "a.js';document.body.appendChild(s)",
      "var i=document.createElement('iframe');i.src='" + http + "';document.body.appendChild(i)",
      "navigator.sendBeacon&&navigator.sendBeacon('" + http + "','x')",
  };
  for (const QString& qstrScript : scripts) m_page.Run(qstrScript);
  ServeEngine();

  EXPECT_FALSE(WasReached());
}

TEST_F(SealedPageTest, RefusesEachRequestOfItsNetwork) {
  TemporaryFolder folder;
  const QUrl file = QUrl::fromLocalFile(QString::fromStdString(folder.Write("secret", "secret")));
  QNetworkAccessManager* pNetwork = m_page.networkAccessManager();
  int nExpected = m_page.GetNetwork().RefusedRequests();
  for (const QUrl& url : {QUrl(Address()), file, QUrl("data:text/plain,x"), QUrl("qrc:/image/photo.png")}) {
    QNetworkReply* pReply = pNetwork->get(QNetworkRequest(url));
    QSignalSpy finished(pReply, &QNetworkReply::finished);

    EXPECT_TRUE(WaitFor([&] { return finished.count() == 1; })) << url.toString().toStdString();

    EXPECT_EQ(QNetworkReply::ContentAccessDenied, pReply->error());
    EXPECT_EQ("", pReply->readAll());
    EXPECT_EQ(++nExpected, m_page.GetNetwork().RefusedRequests());
    delete pReply;
  }
  EXPECT_FALSE(WasReached());
}

// The engine asks it for what is still to be loaded while the page goes down.
TEST_F(SealedPageTest, TheNetworkOutlivesTheEngine) {
  std::vector<std::string> gone;
  auto pPage = std::make_unique<SealedPage>();
  QObject::connect(pPage->networkAccessManager(), &QObject::destroyed, [&] { gone.push_back("network"); });
  QObject::connect(pPage.get(), &QObject::destroyed, [&] { gone.push_back("page"); });

  pPage.reset();

  EXPECT_EQ(std::vector<std::string>({"page", "network"}), gone);
}

TEST_F(SealedPageTest, GoesDownWhateverIsStillToBeLoaded) {
  for (int i = 0; i < 30; ++i) {
    SealedPage page;
    page.SetContent(kPage);
    QString qstrMarkup;
    for (const char* pszKind : {"prefetch", "subresource", "icon", "stylesheet", "import"})
      qstrMarkup += QString("<link rel='%1' href='%2%3'>").arg(pszKind, Address()).arg(i);

    page.Run("document.body.innerHTML=\"" + qstrMarkup + "<img src='x'>\"");

    if (i % 2) QCoreApplication::processEvents();
  }
  EXPECT_FALSE(WasReached());
}

TEST_F(SealedPageTest, GoesNowhere) {
  for (const QString& qstrUrl : {Address(), QString("file:///etc/passwd"), QString("javascript:alert(1)"),
                                 QString("data:text/html,x"), QString("qrc:/image/photo.png")}) {
    EXPECT_FALSE(m_page.acceptNavigationRequest(m_page.mainFrame(), QNetworkRequest(QUrl(qstrUrl)),
                                                QWebPage::NavigationTypeOther))
        << qstrUrl.toStdString();
  }
  SetBody("<b>kept</b>");

  m_page.mainFrame()->load(QUrl(Address()));
  m_page.mainFrame()->load(QUrl("file:///etc/passwd"));
  ServeEngine();

  EXPECT_EQ("<b>kept</b>", m_page.mainFrame()->findFirstElement("body").toInnerXml());
  EXPECT_FALSE(WasReached());
}

TEST_F(SealedPageTest, PutsItsPolicyBeforeAllOfThePage) {
  for (const char* pszPage :
       {"<html><head><title>x</title></head><body id='content'></body></html>",
        "<!DOCTYPE html><HTML><HEAD></HEAD><BODY id='content'></BODY></HTML>", "<b>x</b>", ""}) {
    m_page.SetContent(pszPage);

    const QWebElement first = m_page.mainFrame()->findFirstElement("head").firstChild();

    EXPECT_EQ("META", first.tagName()) << pszPage;
    EXPECT_EQ("Content-Security-Policy", first.attribute("http-equiv")) << pszPage;
    EXPECT_EQ("default-src 'none'; style-src 'unsafe-inline'", first.attribute("content")) << pszPage;
  }
}

TEST_F(SealedPageTest, RunsNoScriptOfAPage) {
  m_page.SetContent(
      "<html><head><script>document.title='ran'</script></head>"
      "<body id='content' "
      "onload=\"document.title='ran'\"><script>document.title='ran'</script></body></html>");
  m_page.Run(
      "document.body.insertAdjacentHTML('beforeEnd',\"<img src='x' onerror='document.title=1'>"
      "<svg onload='document.title=2'></svg><details ontoggle='document.title=3' open></details>\")");
  ServeEngine();

  EXPECT_EQ("", m_page.Run("document.title").toString());
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
    EXPECT_TRUE(SealedPage::StaysInString(qstrText)) << qstrText.toStdString();
  for (const QString& qstrText : ending)
    EXPECT_FALSE(SealedPage::StaysInString(qstrText)) << qstrText.toStdString();
}

// What is told to stay does so for the engine as well, and what is told to end it ends it.
TEST_F(SealedPageTest, AgreesWithTheEngineOnStringsOfAllShortTexts) {
  const QString letters = QString("\\\"\n\rn") + QChar(0x2028);
  std::vector<QString> texts = {""};
  for (size_t i = 0; texts[i].size() < 4; ++i)
    for (const QChar letter : letters) texts.push_back(texts[i] + letter);

  for (const QString& qstrText : texts) {
    if (!SealedPage::StaysInString(qstrText)) continue;
    // Within the string the rest of the line is text, too.
    m_page.Run("window.hit=0");
    m_page.Run("window.text=\"" + qstrText + "</p>;window.hit=1;//\"");
    ASSERT_EQ(0, m_page.Run("window.hit").toInt()) << qstrText.toUtf8().toHex().constData();
    ASSERT_TRUE(m_page.Run("window.text").toString().endsWith("</p>;window.hit=1;//"))
        << qstrText.toUtf8().toHex().constData();
  }
}

}  // namespace
