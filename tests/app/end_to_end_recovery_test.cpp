// A recovery through the real program, with real input events.
#include <QCoreApplication>

#include "sample/demo_backup.h"
#include "tests/app/end_to_end_fixture.h"
#include "tests/app/recovery_tree.h"
#include "tests/backup/tree_state.h"
#include "tests/ui/modal.h"

using namespace orvandel;

namespace {

class EndToEndRecovery : public EndToEnd {
 protected:
  /// Starts the program, scans the only backup and presses "Recovery".
  void ScanAndPressRecovery() {
    StartProgram();
    ASSERT_TRUE(Shows(kInScan, kGrayButton)) << m_program.readAllStandardError().toStdString();
    ClickAt(kFirstRow);
    ASSERT_TRUE(Shows(kInScan, kActiveButton));
    ClickAt(kInScan);
    ASSERT_TRUE(Shows(kLeftInRecovery, kActiveButton));
    ClickAt(kLeftInRecovery);
  }
  void TypeFolder(const std::string& strFolder) {
    Run("xdotool",
        {"search", "--sync", "--onlyvisible", "--name", "^Find Directory$", "windowfocus", "--sync"});
    Run("xdotool", {"type", "--delay", "5", QString::fromStdString(strFolder)});
    Run("xdotool", {"key", "Return"});
  }
  /// The end of the bar is blue once it is full.
  bool BarIsFull(const QPoint& dialog) {
    const QColor end = PixelOf(dialog + QPoint(488, 65));
    return end.blue() > end.red() + 40;
  }
};

TEST_F(EndToEndRecovery, AllThatAScanFindsIsWrittenAsTheCommandLineWritesIt) {
  DemoOptions options;
  options.messages = 120;
  writeDemoBackup(QString::fromStdString(BackupPath("one")), options);
  const std::string strOut = m_folder.MakeFolder("out folder");
  const std::string strExpected = RecoverByCommand(BackupPath("one"), m_folder.Path("expected"));
  const auto before = TreeState(BackupPath("one"));
  ScanAndPressRecovery();

  TypeFolder(strOut);
  QRect dialog;
  ASSERT_TRUE(WaitFor([&] { return !(dialog = WindowOf("^Orvandel$")).isEmpty(); }, kLimit));
  ASSERT_TRUE(WaitFor([&] { return BarIsFull(dialog.topLeft()); }, kLimit));
  ClickOnDisplay(dialog.topLeft() + QPoint(345, 227));  // "Finished"
  const bool bClosed = WaitFor([&] { return WindowOf("^Orvandel$").isEmpty(); }, kLimit);

  EXPECT_EQ(QSize(500, 250), dialog.size());
  EXPECT_TRUE(bClosed) << "it asks, or has not ended";
  EXPECT_EQ(QProcess::Running, m_program.state());
  EXPECT_TRUE(Shows(kLeftInRecovery, kActiveButton));
  ExpectSameFiles(RecoveredFiles(strExpected), RecoveredFiles(strOut));
  EXPECT_EQ(before, TreeState(BackupPath("one")));
}

}  // namespace
