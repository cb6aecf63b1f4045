#include <cstdlib>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "tests/app/scan_cancel.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

constexpr int kScans = 200;
constexpr int kWarmUp = 100;  // scans until Qt's caches are full
// Qt keeps about a third of it. A leaked data screen takes ten times as much.
constexpr qint64 kAllowedBytes = (kScans - kWarmUp) * qint64{16 * 1024};

/// The reports at which every second scan is cancelled, in turn: at its start, after the manifest, during the
/// photos and the messages, and after its end.
constexpr int kCancelAt[] = {1, 12, 20, 35, 45, 100};

/// Bytes in use on the heap, without cached free memory; -1 if not available.
qint64 BytesInUse() {
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 33) && !defined(__SANITIZE_ADDRESS__)
  const struct mallinfo2 info = mallinfo2();
  return static_cast<qint64>(info.uordblks + info.hblkhd);
#else
  return -1;
#endif
}

class ScanStress : public WindowTest {
 protected:
  void ScanOnce() {
    Window().btnSlotScan();
    ASSERT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
    ASSERT_TRUE(Window().m_bScanFinished);
  }
};

TEST_F(ScanStress, TwoHundredScansOneHundredCancelled) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  ClickRow(Table("m_pBackupTable"), 0);
  int nCancelled = 0;
  qint64 nBefore = 0;

  for (int i = 1; i <= kScans; ++i) {
    const bool bCancels = i % 2 == 0;
    if (bCancels) {
      ScanCancel cancel(Window(), kCancelAt[nCancelled++ % static_cast<int>(std::size(kCancelAt))]);
      ModalSteps steps;
      cancel.Press(steps, "OK");
      ScanOnce();
    } else {
      ScanOnce();
      ASSERT_EQ(kSmallBackupLabels, Labels()) << "scan " << i;
    }
    ASSERT_EQ(bCancels, Window().m_bCancelScan) << "scan " << i;
    QCoreApplication::processEvents();
    // Deliberate: these two hold the files of all scans.
    WindowAccess::Records(Window()).m_mapAppPhotoFiles.clear();
    WindowAccess::Records(Window()).m_mapAppVideoFiles.clear();
    if (i == kWarmUp) nBefore = BytesInUse();
  }
  const qint64 nGrowth = BytesInUse() - nBefore;

  EXPECT_EQ(kScans / 2, nCancelled);
  RecordProperty("bytes", static_cast<int>(nGrowth));
  EXPECT_LT(nGrowth, kAllowedBytes);
}

}  // namespace
