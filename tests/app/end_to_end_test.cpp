#include "tests/app/end_to_end_fixture.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/modal.h"

using namespace orvandel;

namespace {

TEST_F(EndToEnd, StartsListsPicksScansAndShowsTheTree) {
  const std::string strWork = m_folder.MakeFolder("Library/Application Support/Velmora Orvandel");
  const std::string strLeft = m_folder.Write(
      "Library/Application Support/Velmora Orvandel/VelmoraiTunesExBackupPath/0123456789", "left");
  const std::string strBackup = BackupPath("one");
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
