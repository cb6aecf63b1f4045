// What the user sees while the main thread blocks: the wait cursor, and no dialog that has gone.
#include <QApplication>
#include <optional>
#include <set>
#include <thread>

#include "app/progress_dialog.h"
#include "tests/app/encrypted_fixture.h"

using namespace orvandel;

namespace {

constexpr char kAccept[] = "echo Count:0; exec sleep 60";
constexpr char kRefuse[] = "echo 'Wrong password'; exec sleep 60";

/// The shape of the cursor over all windows; none where each has its own.
std::optional<Qt::CursorShape> CursorOverAll() {
  const QCursor* pCursor = QGuiApplication::overrideCursor();
  return pCursor ? std::optional(pCursor->shape()) : std::nullopt;
}

/// Notes which windows are painted after a dialog of a class has gone.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(const char* pszDialog) : m_strDialog(pszDialog) { qApp->installEventFilter(this); }

  bool HasGone() const { return m_bGone; }
  bool HasSeen(const char* pszClass) const { return m_painted.count(pszClass) != 0; }
  /// Called with each paint event of a window once the dialog has gone.
  std::function<void(QWidget*)> onPaint;

 protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
    // Other events may come to objects that aren't made to their end.
    const QEvent::Type type = pEvent->type();
    if (type != QEvent::Show && type != QEvent::Hide && type != QEvent::Paint) return false;
    auto* pWidget = qobject_cast<QWidget*>(pWatched);
    if (!pWidget || !pWidget->isWindow()) return false;
    const std::string strClass = pWidget->metaObject()->className();
    if (strClass == m_strDialog && pEvent->type() == QEvent::Show) m_bGone = false;
    if (strClass == m_strDialog && pEvent->type() == QEvent::Hide) {
      m_bGone = true;
      m_painted.clear();
    }
    if (pEvent->type() == QEvent::Paint && m_bGone) {
      m_painted.insert(strClass);
      if (onPaint) onPaint(pWidget);
    }
    return false;
  }

 private:
  const std::string m_strDialog;
  bool m_bGone = false;
  std::set<std::string> m_painted;
};

class BusyCheck : public EncryptedTest {
 protected:
  BusyCheck() : m_watch("CPasswordUI") {
    // The window is painted, with the process made and the tool not yet begun: what follows is the block.
    m_watch.onPaint = [this](QWidget* pWidget) {
      QProcess* pProcess = m_pWindow ? WindowAccess::DecryptProcess(*m_pWindow) : nullptr;
      if (pWidget != m_pWindow.get() || !pProcess || pProcess == m_pSeen || Exists(ToolFolder() + "/pid"))
        return;
      m_pSeen = pProcess;
      ++m_nPaintedBefore;
      QObject::connect(pProcess, &QProcess::readyRead, &m_watch, [this] { m_during = CursorOverAll(); });
    };
  }

  PaintWatch m_watch;
  QProcess* m_pSeen = nullptr;
  int m_nPaintedBefore = 0;
  std::optional<Qt::CursorShape> m_during;
};

TEST_F(BusyCheck, HidesThePasswordDialogAndShowsTheWaitCursorWhileTheToolChecks) {
  WriteTool(kAccept, "exit");
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  std::optional<Qt::CursorShape> afterwards = Qt::WaitCursor;
  QObject::connect(&Window(), &DRUI::ScanProcessCallBack, &Window(), [&] { afterwards = CursorOverAll(); });

  SelectBackup(strBackup, "secret");

  EXPECT_EQ(1, m_nPaintedBefore);
  EXPECT_EQ(Qt::WaitCursor, m_during);
  EXPECT_EQ(std::nullopt, afterwards);
  EXPECT_EQ(std::nullopt, CursorOverAll());
}

TEST_F(BusyCheck, RestoresTheCursorBeforeReportingAWrongPassword) {
  WriteTool(kRefuse);
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  ModalSteps steps;
  ChooseFolder(steps, strBackup);
  GivePassword(steps, "wrong");
  std::optional<Qt::CursorShape> atBox = Qt::WaitCursor;
  steps.Then("CMessageBox", [&](QWidget* pBox) {
    atBox = CursorOverAll();
    Click(pBox->findChild<QPushButton*>("OK"));
  });
  GivePassword(steps, "", "Cancel");

  Select();

  EXPECT_EQ(1, m_nPaintedBefore);
  EXPECT_EQ(Qt::WaitCursor, m_during);
  EXPECT_EQ(std::nullopt, atBox);
  EXPECT_EQ(std::nullopt, CursorOverAll());
}

TEST_F(BusyCheck, RestoresTheCursorIfTheToolIsMissing) {
  RemoveTool();
  const std::string strBackup = WriteSealedBackup("one");
  Open();

  SelectBackup(strBackup, "secret");

  EXPECT_EQ(1, m_nPaintedBefore);
  EXPECT_EQ(std::nullopt, CursorOverAll());
}

class BusyWait : public WindowTest {};

TEST_F(BusyWait, HidesTheQuestionAndShowsTheWaitCursorWhileTheWorkerEnds) {
  Open();
  SCANUI dialog;
  dialog.InitSlot(&Window(), SCANUI::kScan);
  dialog.show();
  PaintWatch watch("CMessageBox");
  bool bPainted = false;
  std::optional<Qt::CursorShape> during;
  std::thread worker([&] {
    while (!Window().m_bCancelScan) std::this_thread::yield();
    // Served while the main thread blocks, and by nothing else: no event loop runs here.
    Window().GetTask().RunOnMainThread([&] {
      bPainted = watch.HasSeen("SCANUI") && watch.HasSeen("DRUI");
      during = CursorOverAll();
    });
    Window().m_bScanFinished = true;
  });
  ModalSteps steps;
  steps.ThenClick("CMessageBox", "OK");

  dialog.close();
  worker.join();

  EXPECT_TRUE(bPainted);
  EXPECT_EQ(Qt::WaitCursor, during);
  EXPECT_EQ(std::nullopt, CursorOverAll());
}

}  // namespace
