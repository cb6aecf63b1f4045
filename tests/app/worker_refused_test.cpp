// The window when the system refuses to start a thread.
#include "app/thread.h"
#include "tests/app/recovery_fixture.h"
#include "tests/cli/small_backup.h"
#include "ui/background_task.h"

using namespace orvandel;

namespace {

constexpr char kWarning[] = "QThread::start: Thread stack size error";

/// Closes the information box and records its text.
void CloseBox(ModalSteps& steps, std::string& strText) {
  steps.Then("CMessageBox", [&strText](QWidget* pBox) {
    strText = TextOf(pBox->findChild<QLabel*>("m_pTextLabel"));
    Click(pBox->findChild<QPushButton*>("OK"));
  });
}

TEST(RefusedThread, IsNotTakenForAStartedOne) {
  BackgroundTask task;
  CMyThread thread;
  thread.setStackSize(1);
  ExpectQtWarning(kWarning);

  const bool bRefused = !task.Start(thread);
  thread.setStackSize(0);
  const bool bStarted = task.Start(thread);

  EXPECT_TRUE(bRefused);
  EXPECT_TRUE(bStarted);
  EXPECT_TRUE(thread.wait(30000));
}

TEST(RefusedThread, OneThatEndsAtOnceCountsAsStarted) {
  for (int i = 0; i < 1000; ++i) {
    BackgroundTask task;
    CMyThread thread;

    EXPECT_TRUE(task.Start(thread));

    EXPECT_TRUE(thread.wait(30000));
  }
}

class RefusedScan : public WindowTest {};

TEST_F(RefusedScan, InformsTheUserAndAllowsAnotherScan) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  WindowAccess::RefuseWorkers(Window(), true);
  ExpectQtWarning(kWarning);
  std::string strText;
  ModalSteps steps;
  CloseBox(steps, strText);

  ScanBackup();

  EXPECT_EQ(kNoWorker, strText);
  EXPECT_EQ(nullptr, QApplication::activeModalWidget());
  EXPECT_EQ(WindowAccess::HomeScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
  WindowAccess::RefuseWorkers(Window(), false);
  ScanBackup();
  EXPECT_EQ(kSmallBackupLabels, Labels());
}

class RefusedRecovery : public RecoveryTest {};

TEST_F(RefusedRecovery, InformsTheUserAndAllowsAnotherRecovery) {
  AddFile(0, "one");
  WindowAccess::RefuseWorkers(Window(), true);
  ExpectQtWarning(kWarning);
  std::string strText;
  ModalSteps steps;
  TypeFolder(steps, Out());
  CloseBox(steps, strText);

  Window().btnRecovery();

  EXPECT_EQ(kNoWorker, strText);
  EXPECT_EQ(nullptr, QApplication::activeModalWidget());
  EXPECT_EQ(std::vector<std::string>(), Written());
  WindowAccess::RefuseWorkers(Window(), false);
  Recover();
  EXPECT_EQ(std::vector<std::string>({"/Camera Roll/one"}), Written());
}

}  // namespace
