#include "tests/ui/chat_view_hostile.h"

#ifdef __linux__
#include <sys/inotify.h>
#endif
#include <unistd.h>

#include <QApplication>
#include <QDialog>
#include <QMouseEvent>
#include <QTcpSocket>
#include <QTimer>

WindowWatch::WindowWatch() {
  qApp->installEventFilter(this);
}

bool WindowWatch::eventFilter(QObject* pWatched, QEvent* pEvent) {
  // Objects of the engine's own come by, too, which are built without type information; none of them is
  // shown.
  if (pEvent->type() != QEvent::Show) return false;
  auto* pWidget = qobject_cast<QWidget*>(pWatched);
  if (pWidget && pWidget->isWindow() && !qobject_cast<DRUI*>(pWidget)) {
    m_shown.push_back(std::string(pWidget->metaObject()->className()) + " " +
                      pWidget->objectName().toStdString());
    if (auto* pDialog = qobject_cast<QDialog*>(pWidget)) QTimer::singleShot(0, pDialog, &QDialog::reject);
  }
  return false;
}

FileWatch::FileWatch(const std::string& strPath) {
#ifdef __linux__
  m_nHandle = inotify_init1(IN_NONBLOCK);
  EXPECT_GE(inotify_add_watch(m_nHandle, strPath.c_str(), IN_OPEN | IN_ACCESS), 0) << strPath;
#else
  static_cast<void>(strPath);
#endif
}

FileWatch::~FileWatch() {
  if (m_nHandle >= 0) close(m_nHandle);
}

bool FileWatch::WasOpened() const {
  char bytes[4096];
  return m_nHandle >= 0 && read(m_nHandle, bytes, sizeof bytes) > 0;
}

ChatHostileTest::ChatHostileTest() : m_strSecret(m_folder.Write("secret.html", "<b>secret</b>")) {
  m_pFileWatch = std::make_unique<FileWatch>(m_strSecret);
  EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
}

std::string ChatHostileTest::Filled(std::string strText) const {
  const QString qstrServer = QString("127.0.0.1:%1/").arg(m_server.serverPort());
  return QString::fromStdString(strText)
      .replace("HTTP", "http://" + qstrServer)
      .replace("WS:", "ws://" + qstrServer)
      .replace("FILE", "file://" + QString::fromStdString(m_strSecret))
      .toStdString();
}

void ChatHostileTest::ShowHostile(const std::string& strText) {
  OpenDataScreen();
  m_windows.Forget();
  Records().m_mapMessage = {{1, {Message(0, Filled(strText))}}, {2, {Message(1, "normal")}}};
  Records().m_mapWhatsApp = {{1, {ChatMessage(0, Filled(strText))}}, {2, {ChatMessage(1, "normal")}}};
  SelectNode(4);
  ServeEngine();
  SelectNode(9);
  SelectNode(4);  // the chat has emptied the view of messages
  ServeEngine();
}

void ChatHostileTest::ClickGo(ChatView* pView) {
  // What a view that is out of sight need not lay out, it has to for a click.
  pView->page()->settings()->setUserStyleSheetUrl(QUrl());
  pView->resize(800, 600);
  pView->page()->setViewportSize(pView->size());
  const QWebElement go = pView->page()->mainFrame()->findFirstElement("[id=go]");
  ASSERT_FALSE(go.isNull());
  const QPoint place = go.geometry().center();
  ASSERT_TRUE(pView->rect().contains(place));
  for (const QEvent::Type type : {QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, place, button, type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(pView, &event);
  }
  ServeEngine();
}

void ChatHostileTest::ExpectGoesOn() {
  Table("m_pMessageTable")->selectRow(1);
  EXPECT_EQ(std::vector<std::string>({Sent("Me<br>normal")}), BubblesOf(Messages()));
  SelectNode(9);
  Table("m_pWhatsappTable")->selectRow(1);
  const std::vector<std::string> bubbles = BubblesOf(Chats());
  ASSERT_FALSE(bubbles.empty());
  EXPECT_EQ(Sent("normal"), bubbles.back());
}

void ChatHostileTest::ExpectNothingHappened() {
  EXPECT_EQ(std::vector<std::string>(), m_windows.Shown());
  EXPECT_EQ(nullptr, QApplication::activeModalWidget());
  EXPECT_EQ(QStringList(), m_urls.m_opened);
  EXPECT_FALSE(m_pFileWatch->WasOpened());
  // A call of the test's own comes after all others.
  QTcpSocket socket;
  socket.connectToHost(QHostAddress::LocalHost, m_server.serverPort());
  ASSERT_TRUE(WaitFor(
      [&] { return m_server.hasPendingConnections() && socket.state() == QAbstractSocket::ConnectedState; }));
  const std::unique_ptr<QTcpSocket> pFirst(m_server.nextPendingConnection());
  EXPECT_EQ(socket.localPort(), pFirst->peerPort()) << "somebody else came to the server";
  for (const ChatView* pView : {Messages(), Chats()}) {
    EXPECT_TRUE(pView->isHidden());
    EXPECT_FALSE(pView->page()->settings()->testAttribute(QWebSettings::JavascriptEnabled));
    EXPECT_TRUE(pView->page()->mainFrame()->childFrames().isEmpty() ||
                pView->page()->mainFrame()->childFrames().first()->findFirstElement("b").isNull());
  }
}
