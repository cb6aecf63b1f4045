#include "tests/ui/preview_fixture.h"

#include <signal.h>
#include <unistd.h>

#include <QShowEvent>
#include <QTest>
#include <random>

namespace orvandel {

namespace {

void EndHangingTest(int) {
  constexpr char kText[] = "the test hangs\n";
  [[maybe_unused]] const ssize_t nWritten = write(STDERR_FILENO, kText, sizeof(kText) - 1);
  _exit(1);
}

std::u16string WidePath(const std::string& strPath) {
  return QString::fromStdString(strPath).toStdU16String();
}

}  // namespace

Deadline::Deadline(int nSeconds) {
  signal(SIGALRM, EndHangingTest);
  alarm(static_cast<unsigned>(nSeconds));
}

Deadline::~Deadline() {
  alarm(0);
  signal(SIGALRM, SIG_DFL);
}

ChatEngine& EngineOf(ChatView* pView) {
  if (!pView->Engine()) {
    QShowEvent event;
    QCoreApplication::sendEvent(pView, &event);
  }
  if (!pView->Engine()) throw std::runtime_error("the view has no engine");
  EXPECT_TRUE(WaitFor([&] { return pView->IsLoaded(); }));
  return *pView->Engine();
}

QVariant Ask(ChatView* pView, const QString& qstrScript) {
  // The answer may arrive after the timeout.
  struct Answer {
    bool bThere = false;
    QVariant value;
  };
  const auto pAnswer = std::make_shared<Answer>();
  EngineOf(pView).Run(qstrScript, [pAnswer](const QVariant& value) { *pAnswer = {true, value}; });
  EXPECT_TRUE(WaitFor([&] { return pAnswer->bThere; })) << qstrScript.left(100).toStdString();
  return pAnswer->value;
}

void ServeEngine(ChatView* pView) {
  const double nBegin = Ask(pView, "performance.now()").toDouble();
  EXPECT_TRUE(WaitFor([&] { return Ask(pView, "performance.now()").toDouble() > nBegin + 100; }));
}

const std::vector<PictureCategory> kPictureCategories = {
    {0, "CameraRoll", "m_pCameraTable", "m_pCameraPreview", {750, 300}, {750, 300}, false},
    {1, "PhotoStream", "m_pPhotoStreamTable", "m_pPhotoStreamPreview", {750, 300}, {750, 300}, false},
    {2, "AppPhotos", "m_pAppsTable", "m_pAppFilePreview", {750, 200}, {750, 300}, true},
    {3, "AppVideos", "m_pAppsTable", "m_pAppFilePreview", {750, 200}, {750, 300}, true},
    {5, "MessageAttachments", "m_pMessAttachTable", "m_pMessAttachPreview", {720, 200}, {700, 200}, false},
    {10,
     "WhatsAppAttachments",
     "m_pWhatsappAttachTable",
     "m_pWhatsappAttachPreview",
     {720, 200},
     {700, 200},
     false},
};

void PreviewTest::PutFiles(const PictureCategory& category, const std::vector<std::string>& paths) {
  BackupRecords& records = Records();
  for (const std::string& strPath : paths) {
    const std::u16string wstrPath = WidePath(strPath);
    switch (category.nNumber) {
      case 0:
        records.m_vecCamera.push_back({1, "file", wstrPath});
        break;
      case 1:
        records.m_vecPhotoStream.push_back({1, "file", wstrPath});
        break;
      case 2:
        records.m_mapAppPhotoFiles["Alpha"].push_back({1, "Alpha", "file", wstrPath});
        break;
      case 3:
        records.m_mapAppVideoFiles["Alpha"].push_back({1, "Alpha", "file", wstrPath});
        break;
      case 5:
        records.m_vecMessageAttachment.push_back({0, 1, "file", wstrPath});
        break;
      default:
        records.m_vecWhatsAppAttachment.push_back({1, "file", wstrPath});
    }
  }
}

void PreviewTest::ShowFiles(const PictureCategory& category, const std::vector<std::string>& paths) {
  OpenDataScreen();
  PutFiles(category, paths);
  ClickNode(category.nNumber);
  if (category.bApps)
    DoubleClickRow(Table(category.nNumber == 2 ? "m_pAppPhotosTable" : "m_pAppVideosTable"), 0, 0);
}

QSize PreviewTest::ShowFile(const PictureCategory& category, const std::string& strPath) {
  ShowFiles(category, {strPath});
  return Shown(category);
}

QSize PreviewTest::PictureSize(const QLabel* pLabel) {
  return pLabel->pixmap().size();
}

QImage PreviewTest::Picture(const PictureCategory& category) {
  return Preview(category)->pixmap().toImage().convertToFormat(QImage::Format_RGB32);
}

void PreviewTest::PressKey(QTableWidget* pTable, int nKey) {
  QTest::keyClick(pTable, static_cast<Qt::Key>(nKey));
}

std::string PreviewTest::WritePicture(const std::string& strName, const QSize& size) const {
  QImage image(size, QImage::Format_RGB32);
  std::minstd_rand random(7);
  for (int nY = 0; nY < image.height(); ++nY) {
    auto* pLine = reinterpret_cast<QRgb*>(image.scanLine(nY));
    for (int nX = 0; nX < image.width(); ++nX) pLine[nX] = random() & 0x100 ? 0xffffffff : 0xff000000;
  }
  const std::string strPath = m_folder.Path(strName);
  EXPECT_TRUE(image.save(QString::fromStdString(strPath))) << strPath;
  return strPath;
}

std::string PreviewTest::BodyOf(ChatView* pView) {
  return Ask(pView, "document.body.innerHTML").toString().toStdString();
}

std::vector<std::string> PreviewTest::BubblesOf(ChatView* pView) {
  std::vector<std::string> bubbles;
  const QVariant markup =
      Ask(pView, "Array.prototype.map.call(document.body.children,function(child){return child.outerHTML})");
  for (const QVariant& bubble : markup.toList()) bubbles.push_back(bubble.toString().toStdString());
  return bubbles;
}

std::string Received(const std::string& strText) {
  return "<div style=\"overflow:hidden;\"><p class=\"triangle-left left\">" + strText + "</p></div>";
}

std::string Sent(const std::string& strText) {
  return "<div style=\"overflow:hidden;\"><p class=\"triangle-right right\">" + strText + "</p></div>";
}

__MESSAGE_INFO__ Message(int nIsFromMe, const std::string& strText, const std::string& strDate,
                         const std::string& strName) {
  __MESSAGE_INFO__ message;
  message.nIsFromMe = nIsFromMe;
  message.strText = strText;
  message.strDate = strDate;
  message.strContactName = strName;
  return message;
}

__WHATSAPP_MESSAGE__ ChatMessage(int nIsFromMe, const std::string& strText) {
  __WHATSAPP_MESSAGE__ message;
  message.nIsFromMe = nIsFromMe;
  message.strContent = strText;
  return message;
}

}  // namespace orvandel
