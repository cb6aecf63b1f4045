#include <sys/stat.h>

#include <QApplication>
#include <QCloseEvent>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "common/places.h"
#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

class MainWindow : public WindowTest {
 protected:
  /// Presses at a place of a widget, moves by a way and lets go, all by a button. Each event is made when it
  /// is sent, since all of them share the place of the mouse.
  static void Drag(QWidget* pWidget, const QPoint& place, const QPoint& way, Qt::MouseButton button) {
    QMouseEvent press(QEvent::MouseButtonPress, place, pWidget->mapToGlobal(place), button, button,
                      Qt::NoModifier);
    QApplication::sendEvent(pWidget, &press);
    const QPoint target = pWidget->mapToGlobal(place) + way;
    QMouseEvent move(QEvent::MouseMove, place + way, target, Qt::NoButton, button, Qt::NoModifier);
    QApplication::sendEvent(pWidget, &move);
    QMouseEvent release(QEvent::MouseButtonRelease, place, target, button, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(pWidget, &release);
  }
};

/// Distances from a window to the edges of a screen, positive inside.
struct Distances {
  int nLeft, nTop, nRight, nBottom;
};

Distances DistancesFrom(const DRUI& window, const QRect& screen) {
  const QRect frame(window.pos(), window.size());
  return {frame.left() - screen.left(), frame.top() - screen.top(), screen.right() - frame.right(),
          screen.bottom() - frame.bottom()};
}

/// The same distance to opposite edges; an odd pixel may lie at either.
void ExpectInTheMiddle(const Distances& distances) {
  EXPECT_LE(std::abs(distances.nLeft - distances.nRight), 1) << distances.nLeft << ", " << distances.nRight;
  EXPECT_LE(std::abs(distances.nTop - distances.nBottom), 1) << distances.nTop << ", " << distances.nBottom;
}

TEST_F(MainWindow, IsCentredOnTheDesktopInItsFixedSize) {
  DRUI window;

  window.setVisible(true);

  EXPECT_EQ(QSize(1000, 680), window.size());
  EXPECT_EQ(QSize(1000, 680), window.minimumSize());
  EXPECT_EQ(QSize(1000, 680), window.maximumSize());
  ExpectInTheMiddle(DistancesFrom(window, QApplication::primaryScreen()->geometry()));
}

TEST_F(MainWindow, MovesToTheMiddleOfAScreenThatBeginsAnywhere) {
  DRUI& window = Open();
  const QRect screens[] = {{0, 0, 1920, 1080},        {1920, 0, 1280, 1024},   {0, 1080, 1601, 901},
                           {-2560, -300, 2560, 1440}, {1366, -768, 1024, 700}, {40, 50, 800, 600}};
  for (const QRect& screen : screens) {
    window.MoveToMiddleOf(screen);

    ExpectInTheMiddle(DistancesFrom(window, screen));
  }
}

TEST_F(MainWindow, HasTitleIconAndSystemFrame) {
  DRUI& window = Open();

  const Qt::WindowFlags flags = window.windowFlags();

  EXPECT_EQ("Velmora Orvandel", window.windowTitle());
  EXPECT_FALSE(window.windowIcon().isNull());
  EXPECT_FALSE(window.windowIcon().pixmap(32, 32).isNull());
  EXPECT_EQ("DRUIClass", window.objectName());
  EXPECT_TRUE(flags & Qt::Window);
  EXPECT_FALSE(flags & Qt::FramelessWindowHint);
  EXPECT_FALSE(flags & Qt::CustomizeWindowHint);
  EXPECT_EQ(nullptr, window.parentWidget());
}

TEST_F(MainWindow, CentralWidgetHoldsTheScreensWithoutMargins) {
  DRUI& window = Open();

  QWidget* pCentral = window.centralWidget();

  ASSERT_NE(nullptr, pCentral);
  EXPECT_EQ("centralWidget", pCentral->objectName());
  EXPECT_EQ("background-color: rgb(252, 252, 252);", pCentral->styleSheet());
  ASSERT_NE(nullptr, qobject_cast<QVBoxLayout*>(pCentral->layout()));
  EXPECT_EQ(0, pCentral->layout()->spacing());
  EXPECT_EQ(std::vector<int>({0, 0, 0, 0}), MarginsOf(pCentral->layout()));
  EXPECT_EQ(WindowAccess::HomeScreen(window), WindowAccess::ScreenStack(window)->currentWidget());
  EXPECT_EQ(1, WindowAccess::ScreenStack(window)->count());
}

TEST_F(MainWindow, EscapeDoesNothing) {
  DRUI& window = Open();

  QTest::keyClick(&window, Qt::Key_Escape);

  EXPECT_TRUE(window.isVisible());
  EXPECT_FALSE(window.isMinimized());
}

TEST_F(MainWindow, PassesOtherKeysOnAndSwallowsEscape) {
  DRUI& window = Open();
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
  escape.accept();
  letter.accept();

  QApplication::sendEvent(&window, &escape);
  QApplication::sendEvent(&window, &letter);

  EXPECT_TRUE(escape.isAccepted());
  EXPECT_FALSE(letter.isAccepted());
}

/// Runs the event loop as main does, to its end. Where an earlier test has begun it, the engine of the chat
/// views would take that end for the process's and never run a timer again, which later tests wait for.
/// @param nEnds receives how often the application told of its end.
int RunEventLoop(int& nEnds) {
  QObject::disconnect(qApp, &QCoreApplication::aboutToQuit, nullptr, nullptr);
  const QSignalSpy ends(qApp, &QCoreApplication::aboutToQuit);
  const int nStatus = QApplication::exec();
  nEnds = ends.count();
  return nStatus;
}

TEST_F(MainWindow, ClosingItEndsTheEventLoopWithoutAQuestion) {
  DRUI& window = Open();
  int nEnds = 0;
  bool bModal = false;
  QTimer::singleShot(0, &window, [&] {
    window.close();
    bModal = QApplication::activeModalWidget() != nullptr;
  });

  const int nStatus = RunEventLoop(nEnds);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(1, nEnds);
  EXPECT_FALSE(bModal);
}

TEST_F(MainWindow, CloseAndMinimizeSlotsCloseAndMinimize) {
  DRUI& window = Open();
  QTimer::singleShot(0, &window, [&] { window.btnCloseSlot(); });

  window.btnMinSlot();
  const bool bMinimized = window.isMinimized();
  window.showNormal();
  int nEnds = 0;
  RunEventLoop(nEnds);

  EXPECT_TRUE(bMinimized);
  EXPECT_EQ(1, nEnds);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(MainWindow, DraggingTheTopBarMovesTheWindow) {
  DRUI& window = Open();
  const QPoint before = window.pos();

  Drag(Find<QLabel>("topBar"), QPoint(700, 70), QPoint(15, -20), Qt::LeftButton);

  EXPECT_EQ(before + QPoint(15, -20), window.pos());
}

TEST_F(MainWindow, DraggingByTheRightButtonOrByTwoDoesNotMoveTheWindow) {
  DRUI& window = Open();
  const QPoint before = window.pos();

  Drag(Find<QLabel>("topBar"), QPoint(700, 70), QPoint(15, -20), Qt::RightButton);
  QMouseEvent bothDown(QEvent::MouseMove, QPoint(5, 5), window.pos() + QPoint(55, 55), Qt::NoButton,
                       Qt::LeftButton | Qt::RightButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &bothDown);

  EXPECT_EQ(before, window.pos());
}

TEST_F(MainWindow, DraggingInsideATableDoesNotMoveTheWindow) {
  WriteEmptyBackup("one");
  DRUI& window = Open();
  const QPoint before = window.pos();

  Drag(Table("m_pBackupTable")->viewport(), QPoint(20, 20), QPoint(40, 40), Qt::LeftButton);
  Drag(Table("m_pBackupTable")->viewport(), QPoint(20, 150), QPoint(40, 40), Qt::LeftButton);

  EXPECT_EQ(before, window.pos());
}

TEST_F(MainWindow, MakesTheWorkFoldersWithTheHomeScreen) {
  Open();

  const std::string strWork = m_folder.Path("work");

  EXPECT_TRUE(Exists(strWork));
  EXPECT_TRUE(Exists(strWork + "/VelmoraiTunesExBackupPath"));
}

TEST_F(MainWindow, WorkFoldersThatExistAreLeftAsTheyAre) {
  m_folder.MakeFolder("work/VelmoraiTunesExBackupPath/inner");
  m_folder.Write("work/notes.txt", "mine");

  Open();

  EXPECT_EQ(std::vector<std::string>({"VelmoraiTunesExBackupPath", "notes.txt"}),
            NamesIn(m_folder.Path("work")));
  EXPECT_EQ("mine", ReadFile(m_folder.Path("work/notes.txt")));
}

TEST_F(MainWindow, FilesOfAnEarlierRunAreGoneWhenTheHomeScreenComesUp) {
  for (const char* pszName : {"VelmoraiTunesExBackupPath/0123", "tmp.jpg", "tmp.avi", "tmp.wav", "other.jpg"})
    m_folder.Write(std::string("work/") + pszName, "old");

  Open();

  EXPECT_EQ(std::vector<std::string>({"VelmoraiTunesExBackupPath", "other.jpg"}),
            NamesIn(m_folder.Path("work")));
  EXPECT_TRUE(NamesIn(m_folder.Path("work/VelmoraiTunesExBackupPath")).empty());
}

/// Permissions of a folder, 0 where there is none.
unsigned int ModeOf(const std::string& strFolder) {
  struct stat info = {};
  return stat(strFolder.c_str(), &info) == 0 ? info.st_mode & 07777u : 0;
}

TEST_F(MainWindow, MakesTheParentsOfTheWorkFolderWhereTheyArentTheSystems) {
  SetPlaces(m_folder.Path("backups"), m_folder.Path("Library/Application Support//Velmora Orvandel"));
  m_folder.MakeFolder("Library");
  chmod(m_folder.Path("Library").c_str(), 0700);
  const mode_t nMask = umask(0);

  DRUI& window = Open();

  umask(nMask);
  EXPECT_TRUE(window.isVisible());
#ifndef Q_OS_MACOS
  EXPECT_EQ(0700u, ModeOf(m_folder.Path("Library"))) << "what is there stays as it is";
  EXPECT_EQ(0755u, ModeOf(m_folder.Path("Library/Application Support")));
  EXPECT_EQ(0777u, ModeOf(m_folder.Path("Library/Application Support/Velmora Orvandel")));
  EXPECT_EQ(0777u, ModeOf(WorkFolder() + "VelmoraiTunesExBackupPath"));
#else
  EXPECT_EQ(0u, ModeOf(m_folder.Path("Library/Application Support")));
#endif
}

TEST_F(MainWindow, AWorkFolderThatCantBeMadeIsNoError) {
  m_folder.Write("no", "a file");
  SetPlaces(m_folder.Path("backups"), m_folder.Path("no/such/place"));

  DRUI& window = Open();

  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ("a file", ReadFile(m_folder.Path("no")));
}

TEST_F(MainWindow, InitLayout2WidgetBuildsNoScreen) {
  DRUI& window = Open();
  const int nChildren = window.findChildren<QObject*>().size();

  window.InitLayout2Widget();

  EXPECT_EQ(nChildren, window.findChildren<QObject*>().size());
  EXPECT_EQ(1, WindowAccess::ScreenStack(window)->count());
}

}  // namespace
