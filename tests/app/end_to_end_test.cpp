#include <gtest/gtest.h>
#include <unistd.h>

#include <QFile>
#include <QImage>
#include <QStandardPaths>

#include "tests/app/program.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"
#include "tests/ui/modal.h"

namespace {

constexpr int kLimit = 60000;  // milliseconds
constexpr int kWindowLeft = (1280 - 1000) / 2;
constexpr int kWindowTop = (900 - 680) / 2;

const QColor kGrayButton(191, 191, 191);
const QColor kActiveButton(48, 81, 109);
const QColor kTopBar(79, 79, 79);

// Places on the window.
const QPoint kInTopBar(720, 10);
const QPoint kFirstRow(300, 200);
const QPoint kInScan(890, 600);
const QPoint kLeftOfHome(60, 611);  // left of the button's text
const QPoint kLeftInRecovery(860, 611);

/// Makes a root of its own out of the machine's, with "/Library" from a folder of the test, and runs a
/// command there. All of it goes with the process.
constexpr char kScript[] =
    "set -e\n"
    "root=$1 library=$2; shift 2\n"
    "mount -t tmpfs tmpfs \"$root\"\n"
    "for entry in /*; do\n"
    "  if [ -L \"$entry\" ]; then cp -P \"$entry\" \"$root$entry\"\n"
    "  elif [ -d \"$entry\" ]; then mkdir \"$root$entry\"; mount --rbind \"$entry\" \"$root$entry\"; fi\n"
    "done\n"
    "mkdir \"$root/Library\"\n"
    "mount --bind \"$library\" \"$root/Library\"\n"
    "exec chroot \"$root\" \"$@\"\n";

class EndToEnd : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* pszTool : {"Xvfb", "xdotool", "import", "unshare", "chroot"}) {
      if (QStandardPaths::findExecutable(pszTool).isEmpty()) GTEST_SKIP() << pszTool << " isn't there";
    }
    if (QFile::exists("/Library")) GTEST_SKIP() << "/Library is there on this machine";
    QProcess probe;
    probe.start("unshare", Unshare() << "sh"
                                     << "-c" << kScript << "sh" << Folder("root") << Folder("Library")
                                     << "true");
    if (!probe.waitForFinished(kLimit) || probe.exitStatus() != QProcess::NormalExit || probe.exitCode() != 0)
      GTEST_SKIP() << "no file system of one's own here: " << probe.readAllStandardError().toStdString();
    m_screen.start("Xvfb", {"-displayfd", "1", "-noreset", "-screen", "0", "1280x900x24"});
    if (!WaitFor([&] { return m_screen.canReadLine(); })) GTEST_SKIP() << "Xvfb doesn't start";
    m_display = "DISPLAY=:" + QString::fromLatin1(m_screen.readLine()).trimmed();
  }

  ~EndToEnd() override {
    m_program.kill();
    m_program.waitForFinished(kLimit);
    m_screen.terminate();  // it takes its lock and socket along
    m_screen.waitForFinished(kLimit);
  }

  static QStringList Unshare() {
    return geteuid() == 0 ? QStringList{"-m", "--propagation", "private"}
                          : QStringList{"-rm", "--propagation", "private"};
  }
  QString Folder(const char* pszName) { return QString::fromStdString(m_folder.MakeFolder(pszName)); }

  void StartProgram() {
    m_program.Start({"start"}, {m_display, "QT_QPA_PLATFORM=xcb"},
                    QStringList{"unshare"} + Unshare() +
                        QStringList{"sh", "-c", kScript, "sh", Folder("root"), Folder("Library")});
  }

  /// Runs a tool on the display to its end.
  void Run(const QString& qstrTool, const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", m_display.section('=', 1));
    process.setProcessEnvironment(environment);
    process.start(qstrTool, arguments);
    ASSERT_TRUE(process.waitForFinished(kLimit)) << qstrTool.toStdString();
  }

  QImage Screen() {
    const QString qstrPath = QString::fromStdString(m_folder.Path("screen.png"));
    Run("import", {"-silent", "-window", "root", qstrPath});
    return QImage(qstrPath).copy(kWindowLeft, kWindowTop, 1000, 680);
  }
  /// Waits until a place of the window has a colour.
  bool Shows(const QPoint& place, const QColor& colour) {
    return WaitFor([&] { return Screen().pixelColor(place) == colour; }, kLimit);
  }
  void ClickAt(const QPoint& place) {
    Run("xdotool", {"mousemove", "--sync", QString::number(kWindowLeft + place.x()),
                    QString::number(kWindowTop + place.y()), "click", "1"});
  }

  TemporaryFolder m_folder;
  QProcess m_screen;
  Program m_program;
  QString m_display;
};

TEST_F(EndToEnd, StartsListsPicksScansAndShowsTheTree) {
  const std::string strWork = m_folder.MakeFolder("Library/Application Support/Velmora Orvandel");
  const std::string strLeft = m_folder.Write(
      "Library/Application Support/Velmora Orvandel/VelmoraiTunesExBackupPath/0123456789", "left");
  const std::string strBackup = m_folder.Path("Library/Application Support/MobileSync/Backup/one");
  WriteSmallBackup(strBackup, BackupBuilder::Layout::Db);
  const auto before = TreeOf(strBackup);

  StartProgram();
  ASSERT_TRUE(Shows(kInTopBar, kTopBar)) << m_program.readAllStandardError().toStdString();
  ASSERT_TRUE(Shows(kInScan, kGrayButton));
  const bool bLeft = Exists(strLeft);
  const QImage home = Screen();
  ClickAt(kFirstRow);
  const bool bPicked = Shows(kInScan, kActiveButton);
  ClickAt(kInScan);
  const bool bScanned = Shows(kLeftOfHome, kActiveButton) && Shows(kLeftInRecovery, kActiveButton);
  const QImage scanned = Screen();
  ClickAt(QPoint(150, 130));  // a node of the tree
  const bool bPageChanged = WaitFor([&] { return Screen() != scanned; }, kLimit);

  EXPECT_FALSE(bLeft) << "the file of an earlier run is still there";
  EXPECT_TRUE(bPicked) << "the row of the backup can't be picked";
  EXPECT_TRUE(bScanned);
  EXPECT_TRUE(bPageChanged);
  EXPECT_NE(home, scanned);
  EXPECT_EQ(QProcess::Running, m_program.state()) << "the end of the dialog must not end the program";
  EXPECT_EQ(before, TreeOf(strBackup));
  EXPECT_EQ(std::vector<std::string>({"VelmoraiTunesExBackupPath"}), NamesIn(strWork));
  EXPECT_FALSE(Exists("/Library"));
}

TEST_F(EndToEnd, EscapeDoesNotCloseTheWindow) {
  StartProgram();
  ASSERT_TRUE(Shows(kInTopBar, kTopBar)) << m_program.readAllStandardError().toStdString();

  Run("xdotool", {"search", "--sync", "--onlyvisible", "--name", "^Velmora Orvandel$", "windowfocus",
                  "--sync", "key", "Escape"});

  EXPECT_TRUE(m_program.StaysAlone());
  EXPECT_EQ(kTopBar, Screen().pixelColor(kInTopBar));
}

}  // namespace
