#include "tests/ui/chat_view_hostile.h"

#ifdef __linux__
#include <sys/inotify.h>
#endif
#include <unistd.h>

#include <QApplication>
#include <QDialog>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

namespace orvandel {

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

void ChatHostileTest::SelectHostile(const std::string& strText) {
  OpenDataScreen();
  m_windows.Forget();
  Records().m_mapMessage = {{1, {Message(0, Filled(strText))}}, {2, {Message(1, "normal")}}};
  Records().m_mapWhatsApp = {{1, {ChatMessage(0, Filled(strText))}}, {2, {ChatMessage(1, "normal")}}};
  SelectNode(4);
  SelectNode(9);
  SelectNode(4);  // the chat has emptied the view of messages
  EXPECT_EQ(nullptr, Messages()->Engine()) << "no untrusted text reaches an engine";
  EXPECT_EQ(nullptr, Chats()->Engine());
}

void ChatHostileTest::ShowHostile(const std::string& strText) {
  SelectHostile(strText);
  EngineOf(Messages());
  EngineOf(Chats());
  SelectNode(9);
  SelectNode(4);  // now into the running engines
  ServeEngine(Messages());
  ServeEngine(Chats());
}

void ChatHostileTest::ClickGo(ChatView* pView) {
  // Out of sight a page takes no clicks.
  SelectNode(pView == Chats() ? 9 : 4);
  pView->setVisible(true);
  pView->setMinimumSize(600, 400);
  QCoreApplication::processEvents();
  QWidget* pPage = EngineOf(pView).Widget()->focusProxy();
  ASSERT_NE(nullptr, pPage);
  // Laid out for the size that it has now, with the element in view.
  ASSERT_TRUE(WaitFor([&] { return Ask(pView, "window.innerWidth").toInt() == pPage->width(); }));
  Ask(pView, "document.querySelector('[id=go]').scrollIntoView({block:'center'})");
  const QVariantList middle =
      Ask(pView,
          "(function(){var box=document.querySelector('[id=go]').getBoundingClientRect();"
          "return [box.x+box.width/2,box.y+box.height/2]})()")
          .toList();
  ASSERT_EQ(2, middle.size());
  const QPoint place(qRound(middle[0].toDouble()), qRound(middle[1].toDouble()));
  ASSERT_TRUE(pPage->rect().contains(place)) << place.x() << " " << place.y();
  QTest::mouseMove(pPage, place);
  QTest::mouseClick(pPage, Qt::LeftButton, Qt::NoModifier, place);
  ServeEngine(pView);
  pView->setVisible(false);
  SelectNode(4);
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
  for (ChatView* pView : {Messages(), Chats()}) {
    EXPECT_TRUE(pView->isHidden());
    EXPECT_EQ(QVariant(true),
              Ask(pView,
                  "Array.prototype.every.call(document.querySelectorAll('iframe,frame,object,embed'),"
                  "function(one){var inner=one.contentDocument;return !inner||!inner.querySelector('b')})"));
  }
}

}  // namespace orvandel
