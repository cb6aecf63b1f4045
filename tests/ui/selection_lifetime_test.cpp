// Ticks when a data screen is replaced by the next.

#include "sample/pictures.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/selection_fixture.h"

using namespace orvandel;

namespace {

class SelectionLifetime : public SelectionTest {
 protected:
  /// Rebuilds the data screen, as a scan does.
  void BuildAnew() {
    Window().InitLayout3Widget();
    QStackedLayout* pScreens = WindowAccess::ScreenStack(Window());
    pScreens->addWidget(WindowAccess::DataScreen(Window()));
    pScreens->setCurrentWidget(WindowAccess::DataScreen(Window()));
    QCoreApplication::processEvents();
  }
  /// Row of a backup in the list.
  int RowOf(const std::string& strBackup) {
    const QTableWidget* pTable = Table("m_pBackupTable");
    for (int i = 0; i < pTable->rowCount(); ++i) {
      const auto info = pTable->item(i, 0)->data(Qt::UserRole).value<__BACK_FILE_INFO__>();
      if (info.strBackupPath == BackupPath(strBackup)) return i;
    }
    return -1;
  }
  void GoHome() {
    ModalSteps steps;
    steps.ThenClick("CMessageBox", "OK");
    Click(Find<QPushButton>("homeButton"));
  }
};

TEST_F(SelectionLifetime, TheNextScreenKeepsAllTicksOfTheLast) {
  OpenScanned();
  ClickNode(2);
  ClickRow(Table("m_pAppPhotosTable"), 1);

  BuildAnew();

  for (const PlainCategory& category : kPlainCategories)
    EXPECT_EQ(category.whole, Selection(category.nNumber)) << category.pszName;
  for (const AppCategory& category : kAppCategories)
    EXPECT_EQ(AppSelectionMap({{"Alpha", kAlpha}, {"Beta", kBeta}, {"Gamma", kGamma}}),
              AppSelection(category.nNumber));
  EXPECT_EQ(2, PressedCategory());
  EXPECT_EQ("Beta", PressedApp());
}

TEST_F(SelectionLifetime, TheNextScreenPointsAtNothingOfTheLast) {
  OpenScanned();
  ClickNode(3);
  ClickRow(Table("m_pAppVideosTable"), 1);
  ASSERT_NE(nullptr, WindowAccess::CurrentAppItem(Window()));

  BuildAnew();

  EXPECT_EQ(nullptr, WindowAccess::CurrentTreeItem(Window()));
  EXPECT_EQ(nullptr, WindowAccess::CurrentAppItem(Window()));
  TickNode(0);
  ClickRowBox(Table("m_pCameraTable"), 0);
  EXPECT_EQ(SelectionMap({{1, 2000}, {2, 30}}), Selection(0));
  EXPECT_EQ(kTicked, NodeState(0));
}

TEST_F(SelectionLifetime, RowsBeyondTheNewOnesStayAndAreCounted) {
  OpenDataScreen();
  Records().m_vecCamera = {{1, "a", u""}, {2, "b", u""}, {4, "c", u""}};
  TickNode(0);
  Records().m_vecCamera = {{64, "d", u""}};

  BuildAnew();
  TickNode(0);
  Window().RefreshSelectFileInfo();

  EXPECT_EQ(SelectionMap({{0, 64}, {1, 2}, {2, 4}}), Selection(0));
  EXPECT_EQ("Select 70 Bytes in 3 files", SelectionLine());
  ClickNodeBox(0);
  EXPECT_EQ(SelectionMap({{1, 2}, {2, 4}}), Selection(0));
  EXPECT_EQ("Select 6 Bytes in 2 files", SelectionLine());
}

TEST_F(SelectionLifetime, ACategoryThatTheNextScanDoesNotTickLosesItsRowsAlone) {
  OpenScanned();
  Records().m_vecNote.resize(1);

  BuildAnew();
  SetNode(8, kUnticked);

  EXPECT_EQ(SelectionMap({{1, 1}, {2, 2}}), Selection(8));
}

TEST_F(SelectionLifetime, ASecondScanOverwritesTheRowsThatItTicks) {
  const QByteArray photo = sample_media::jpeg(1);
  WritePhotos(BackupPath("one"), 3, photo.leftJustified(300000, ' ', true));
  WritePhotos(BackupPath("two"), 1, photo.leftJustified(400000, ' ', true));
  Open();
  ScanBackup(RowOf("one"));
  ASSERT_EQ(SelectionMap({{0, 300000}, {1, 300000}, {2, 300000}}), Selection(0));

  GoHome();
  EXPECT_EQ(3u, Selection(0).size());

  ScanBackup(RowOf("two"));
  EXPECT_EQ(SelectionMap({{0, 400000}, {1, 300000}, {2, 300000}}), Selection(0));
  EXPECT_EQ("Select 976.56 KB in 3 files", SelectionLine());  // 1000000 bytes
}

TEST_F(SelectionLifetime, AScanWithoutRecordsLeavesTicksAndRecoveryOn) {
  WritePhotos(BackupPath("one"), 1, sample_media::jpeg(1).leftJustified(300000, ' ', true));
  WriteEmptyBackup("two");
  Open();
  ScanBackup(RowOf("one"));
  GoHome();

  ScanBackup(RowOf("two"));

  EXPECT_EQ(SelectionMap({{0, 300000}}), Selection(0));
  EXPECT_EQ("Select 292.97 KB in 1 files", SelectionLine());
  EXPECT_TRUE(RecoveryIsOn());
}

}  // namespace
