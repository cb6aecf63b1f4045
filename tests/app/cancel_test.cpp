#include <QLabel>
#include <QTest>

#include "sample/pictures.h"
#include "tests/app/scan_cancel.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

// Reports of a scan of a plain backup: 1 at its start, 12 after the manifest, up to 34 in the walk of the
// photos, from there to 45 in the messages.
constexpr int kManifestRead = 12;
constexpr int kAmidPhotos = 20;
constexpr int kAmidMessages = 35;
constexpr int kEnd = 100;
constexpr int kPhotos = 60;

class CancelTest : public WindowTest {
 protected:
  /// A backup with enough photos for many reports of the walk.
  void WriteManyPhotos(const std::string& strName) {
    WritePhotos(BackupPath(strName), kPhotos, sample_media::jpeg(1, 32, 32));
  }
  int Count(int nCategory) {
    const QString qstrLabel = Node(nCategory)->text(0);
    return qstrLabel.section('(', 1).chopped(1).toInt();
  }
  void ExpectDataScreen() {
    EXPECT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
    EXPECT_EQ(11, WindowAccess::Tree(Window())->topLevelItemCount());
    EXPECT_TRUE(Window().m_bCancelScan);
    EXPECT_TRUE(Window().m_bScanFinished);
  }
};

TEST_F(CancelTest, DuringAManifestWalkKeepsWhatTheWalkHasFound) {
  WriteManyPhotos("one");
  Open();
  ScanCancel cancel(Window(), kAmidPhotos);
  ModalSteps steps;
  cancel.Press(steps, "OK");

  ScanBackup();

  ExpectDataScreen();
  EXPECT_GT(Count(0), 0);
  EXPECT_LT(Count(0), kPhotos);
  EXPECT_EQ(Qt::Checked, Node(0)->checkState(0));
  EXPECT_EQ(Count(0), Table("m_pCameraTable")->rowCount());
  EXPECT_EQ(0, cancel.Bar());
}

TEST_F(CancelTest, DuringAStoreStepReadsTheStoresAndStopsTheWalksAfterThem) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  ScanCancel cancel(Window(), kAmidMessages);
  ModalSteps steps;
  cancel.Press(steps, "OK");

  ScanBackup();

  ExpectDataScreen();
  EXPECT_EQ(2, Count(0));
  EXPECT_EQ(1, Count(4));
  EXPECT_EQ(1, Count(6)) << "a store is read to its end";
  EXPECT_EQ(1, Count(7));
  EXPECT_EQ(1, Count(8));
  EXPECT_LE(Count(2) + Count(3), 1) << "the walk of the apps stops at its first answer";
  EXPECT_EQ(0, cancel.Bar());
}

TEST_F(CancelTest, BeforeTheMessagesDiscardsThem) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  ScanCancel cancel(Window(), kManifestRead);
  ModalSteps steps;
  cancel.Press(steps, "OK");

  ScanBackup();

  ExpectDataScreen();
  EXPECT_EQ(0, Count(4));
  EXPECT_EQ(1, Count(6));
  EXPECT_LE(Count(0), 1);
}

TEST_F(CancelTest, AfterTheWorkerHasFinishedEndsAtOnceWithFullCounts) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  ScanCancel cancel(Window(), kEnd);
  ModalSteps steps;
  cancel.Press(steps, "OK");

  ScanBackup();

  ExpectDataScreen();
  EXPECT_EQ(kSmallBackupLabels, Labels());
  EXPECT_EQ(0, cancel.Bar());
}

TEST_F(CancelTest, AQuestionThatOutlivesTheScanIsAnsweredWithoutAHang) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  for (const char* pszAnswer : {"OK", "NO"}) {
    Open();
    ScanCancel cancel(Window(), kManifestRead);
    ModalSteps steps;
    const QProgressBar* pBar = nullptr;
    steps.Then(
        "SCANUI",
        [&](QWidget* pDialog) {
          pBar = pDialog->findChild<QProgressBar*>("progressBar");
          Click(pDialog->findChild<QWidget*>("Cancel"));
        },
        [&](QWidget*) { return cancel.Reached(); });
    // The worker continues while the question is open.
    steps.Then("CMessageBox", [&](QWidget*) { cancel.GoOn(); });
    steps.Then(
        "CMessageBox", [&](QWidget* pBox) { Click(pBox->findChild<QWidget*>(pszAnswer)); },
        [&](QWidget*) { return pBar->value() == kEnd; });

    ScanBackup();

    EXPECT_EQ(kSmallBackupLabels, Labels()) << pszAnswer;
    EXPECT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
  }
}

TEST_F(CancelTest, NoOnTheQuestionLetsTheScanRunOnToItsEnd) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  ScanCancel cancel(Window(), kManifestRead);
  ModalSteps steps;
  cancel.Press(steps, "NO");
  steps.Then("SCANUI", [&](QWidget*) { cancel.GoOn(); });

  ScanBackup();

  EXPECT_EQ(kSmallBackupLabels, Labels());
  EXPECT_FALSE(Window().m_bCancelScan);
  EXPECT_EQ(100, cancel.Bar());
}

TEST_F(CancelTest, EscapeAndCloseAndRightClickAskLikeCancel) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  const std::function<void(QWidget*)> ways[] = {
      [](QWidget* pDialog) { QTest::keyClick(pDialog, Qt::Key_Escape); },
      [](QWidget* pDialog) { pDialog->close(); },
      [](QWidget* pDialog) {
        QTest::mouseClick(pDialog, Qt::RightButton, Qt::NoModifier, {250, 120});
      },
  };
  for (const auto& way : ways) {
    Open();
    ScanCancel cancel(Window(), kManifestRead);
    ModalSteps steps;
    std::string strQuestion;
    steps.Then("SCANUI", way, [&](QWidget*) { return cancel.Reached(); });
    steps.Then("CMessageBox", [&](QWidget* pBox) {
      strQuestion = TextOf(pBox->findChild<QLabel*>("m_pTextLabel"));
      Click(pBox->findChild<QWidget*>("OK"));
    });

    ScanBackup();

    EXPECT_EQ("Are you sure to cancel the scanning?", strQuestion);
    ExpectDataScreen();
  }
}

TEST_F(CancelTest, ACancelledScanCanBeRepeated) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  {
    ScanCancel cancel(Window(), kManifestRead);
    ModalSteps steps;
    cancel.Press(steps, "OK");
    ScanBackup();
  }

  Window().btnSlotScan();

  EXPECT_EQ(kSmallBackupLabels, Labels());
  EXPECT_FALSE(Window().m_bCancelScan);
}

}  // namespace
