#include <QApplication>
#include <QFile>
#include <QTimer>
#include <random>

#include "tests/cli/small_backup.h"
#include "tests/ui/window_fixture.h"

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

namespace {

constexpr int kScans = 200;
constexpr long kAllowedGrowth = 8 * 1024;  // KiB, over the second half

/// Resident memory of the process in KiB; 0 where the system doesn't tell.
long ResidentMemory() {
  QFile file("/proc/self/status");
  if (!file.open(QIODevice::ReadOnly)) return 0;
  for (const QByteArray& line : file.readAll().split('\n')) {
    if (line.startsWith("VmRSS:")) return line.mid(6).simplified().split(' ').first().toLong();
  }
  return 0;
}

class ScanStress : public WindowTest {};

/// Presses a button of a dialog of a class that is on top, if there is one.
bool PressIfThere(const char* pszClass, const char* pszButton) {
  QWidget* pDialog = QApplication::activeModalWidget();
  if (!pDialog || !pDialog->isVisible() || pDialog->metaObject()->className() != std::string(pszClass))
    return false;
  Click(pDialog->findChild<QWidget*>(pszButton));
  return true;
}

TEST_F(ScanStress, TwoHundredScansOneHundredCancelled) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  ClickRow(Table("m_pBackupTable"), 0);
  std::mt19937 random(20161);
  std::uniform_int_distribution<int> delay(0, 12);  // milliseconds; a scan takes about as long
  int nComplete = 0;
  int nCancelled = 0;
  long nHalfWay = 0;

  for (int i = 1; i <= kScans; ++i) {
    QObject guard;  // takes its timers along when the scan is over
    if (i % 2 == 0) {
      QTimer::singleShot(delay(random), &guard, [&] {
        QTimer* pConfirm = new QTimer(&guard);
        QObject::connect(pConfirm, &QTimer::timeout, &guard, [] { PressIfThere("CMessageBox", "OK"); });
        pConfirm->start(1);
        PressIfThere("SCANUI", "Cancel");
      });
    }
    Window().btnSlotScan();
    ASSERT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
    ASSERT_TRUE(Window().m_bScanFinished);
    if (Window().m_bCancelScan) {
      ++nCancelled;
    } else {
      ++nComplete;
      ASSERT_EQ(kSmallBackupLabels, Labels()) << "scan " << i;
    }
    if (i == kScans / 2) nHalfWay = ResidentMemory();
  }
  const long nGrowth = ResidentMemory() - nHalfWay;

  EXPECT_EQ(kScans, nComplete + nCancelled);
  EXPECT_GE(nComplete, kScans / 2);
  EXPECT_GT(nCancelled, 0);
  RecordProperty("cancelled", nCancelled);
  if (!kSanitized) {
    EXPECT_LT(nGrowth, kAllowedGrowth);
  }
}

}  // namespace
