#include "tests/app/end_to_end_fixture.h"

#include <QFile>
#include <QStandardPaths>

#include "tests/ui/modal.h"

namespace orvandel {

namespace {

constexpr QSize kDisplay(1280, 900);
constexpr QSize kWindow(1000, 680);
constexpr QPoint kWindowPlace((kDisplay.width() - kWindow.width()) / 2,
                              (kDisplay.height() - kWindow.height()) / 2);

}  // namespace

void EndToEnd::SetUp() {
  for (const char* pszTool : {"Xvfb", "xdotool", "import", "unshare", "chroot"}) {
    if (QStandardPaths::findExecutable(pszTool).isEmpty()) GTEST_SKIP() << pszTool << " isn't there";
  }
  if (QFile::exists("/Library")) GTEST_SKIP() << "/Library is there on this machine";
  const std::string strObstacle = ObstacleToOwnRoot(m_folder);
  if (!strObstacle.empty()) GTEST_SKIP() << strObstacle;
  m_screen.start("Xvfb", {"-displayfd", "1", "-noreset", "-screen", "0",
                          QString("%1x%2x24").arg(kDisplay.width()).arg(kDisplay.height())});
  if (!WaitFor([&] { return m_screen.canReadLine(); })) GTEST_SKIP() << "Xvfb doesn't start";
  m_display = "DISPLAY=:" + QString::fromLatin1(m_screen.readLine()).trimmed();
}

EndToEnd::~EndToEnd() {
  m_program.kill();
  m_program.waitForFinished(kLimit);
  m_screen.terminate();  // on SIGTERM it removes its lock and socket
  m_screen.waitForFinished(kLimit);
}

void EndToEnd::StartProgram() {
  // File dialogs remember their last folder.
  m_program.Start({"start"}, {m_display, "QT_QPA_PLATFORM=xcb", "XDG_CONFIG_HOME=" + Folder("settings")},
                  InOwnRoot(m_folder));
}

QString EndToEnd::Run(const QString& qstrTool, const QStringList& arguments) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("DISPLAY", m_display.section('=', 1));
  process.setProcessEnvironment(environment);
  process.start(qstrTool, arguments);
  EXPECT_TRUE(process.waitForFinished(kLimit)) << qstrTool.toStdString();
  return QString::fromUtf8(process.readAllStandardOutput());
}

QImage EndToEnd::Display() {
  const QString qstrPath = QString::fromStdString(m_folder.Path("screen.png"));
  Run("import", {"-silent", "-window", "root", qstrPath});
  return QImage(qstrPath);
}

QImage EndToEnd::Screen() {
  return Display().copy(QRect(kWindowPlace, kWindow));
}

bool EndToEnd::Shows(const QPoint& place, const QColor& colour) {
  return WaitFor([&] { return Screen().pixelColor(place) == colour; }, kLimit);
}

void EndToEnd::ClickAt(const QPoint& place) {
  ClickOnDisplay(kWindowPlace + place);
}

QRect EndToEnd::WindowOf(const QString& qstrTitle) {
  const QStringList windows = Run("xdotool", {"search", "--onlyvisible", "--name", qstrTitle}).split('\n');
  if (windows.first().isEmpty()) return QRect();
  QRect rect;
  for (const QString& qstrLine :
       Run("xdotool", {"getwindowgeometry", "--shell", windows.first()}).split('\n')) {
    const int nValue = qstrLine.section('=', 1).toInt();
    if (qstrLine.startsWith("X=")) rect.moveLeft(nValue);
    if (qstrLine.startsWith("Y=")) rect.moveTop(nValue);
    if (qstrLine.startsWith("WIDTH=")) rect.setWidth(nValue);
    if (qstrLine.startsWith("HEIGHT=")) rect.setHeight(nValue);
  }
  return rect;
}

QColor EndToEnd::PixelOf(const QPoint& place) {
  return Display().pixelColor(place);
}

void EndToEnd::ClickOnDisplay(const QPoint& place) {
  Run("xdotool",
      {"mousemove", "--sync", QString::number(place.x()), QString::number(place.y()), "click", "1"});
}

}  // namespace orvandel
