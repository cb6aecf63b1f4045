#include <QTest>
#include <QThread>
#include <filesystem>

#include "tests/cli/small_backup.h"
#include "tests/ui/window_fixture.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

class ScanTest : public WindowTest {
 protected:
  /// Opens the window over the backup of WriteSmallBackup and scans it.
  void OpenAndScan(BackupBuilder::Layout layout = BackupBuilder::Layout::Db) {
    WriteSmallBackup(BackupPath("one"), layout);
    Open();
    ScanBackup();
  }
  std::vector<int> NodeStates() {
    std::vector<int> states;
    for (int i = 0; i < 11; ++i) states.push_back(Node(i)->checkState(0));
    return states;
  }
};

TEST_F(ScanTest, FillsTheTreeWithTicksAndCounts) {
  for (const auto layout : {BackupBuilder::Layout::Db, BackupBuilder::Layout::Mbdb}) {
    OpenAndScan(layout);

    EXPECT_EQ(kSmallBackupLabels, Labels());
    EXPECT_EQ(std::vector<int>({2, 2, 2, 2, 2, 2, 2, 2, 2, 0, 2}), NodeStates());
    CloseWindow();
    std::filesystem::remove_all(BackupPath("one"));
  }
}

TEST_F(ScanTest, FillsTheTablesWithTickedRowsThirtyHigh) {
  OpenAndScan();
  const std::vector<std::pair<const char*, int>> tables = {
      {"m_pCameraTable", 2},    {"m_pPhotoStreamTable", 1},   {"m_pAppPhotosTable", 1},
      {"m_pAppVideosTable", 1}, {"m_pMessageTable", 1},       {"m_pMessAttachTable", 1},
      {"m_pContactsTable", 1},  {"m_pCallHistoryTable", 1},   {"m_pNotesTable", 1},
      {"m_pWhatsappTable", 0},  {"m_pWhatsappAttachTable", 1}};

  for (const auto& [pszTable, nRows] : tables) {
    const QTableWidget* pTable = Table(pszTable);

    ASSERT_EQ(nRows, pTable->rowCount()) << pszTable;
    for (int i = 0; i < nRows; ++i) {
      EXPECT_EQ(Qt::Checked, pTable->item(i, 0)->checkState()) << pszTable;
      EXPECT_EQ(30, pTable->rowHeight(i)) << pszTable;
    }
  }
}

TEST_F(ScanTest, ShowsWhatTheBackupHolds) {
  OpenAndScan();

  EXPECT_EQ("IMG_0001.PNG", Cells(Table("m_pCameraTable"), 0)[0]);
  EXPECT_EQ("IMG_0002.MOV", Cells(Table("m_pCameraTable"), 1)[0]);
  EXPECT_EQ("IMG_0003.JPG", Cells(Table("m_pPhotoStreamTable"), 0)[0]);
  EXPECT_EQ(std::vector<std::string>({"example.Snap", "Folder"}), Cells(Table("m_pAppPhotosTable"), 0));
  EXPECT_EQ(std::vector<std::string>({"example.Radio", "Folder"}), Cells(Table("m_pAppVideosTable"), 0));
  EXPECT_EQ(std::vector<std::string>({"ÄnneBerger", "+493023125001", "2016-05-01 09:13:33", "Hallo"}),
            Cells(Table("m_pMessageTable"), 0));
  EXPECT_EQ("laugh.GIF", Cells(Table("m_pMessAttachTable"), 0)[0]);
  EXPECT_EQ(std::vector<std::string>(
                {"ÄnneBerger", "Gärtnerei", "+493023125001", "aenne@example.net", "example.net"}),
            Cells(Table("m_pContactsTable"), 0));
  EXPECT_EQ(std::vector<std::string>(
                {"ÄnneBerger", "+493023125001", "2016-05-01 09:12:33", "Incoming", "00:01:01"}),
            Cells(Table("m_pCallHistoryTable"), 0));
  EXPECT_EQ("Einkauf", Cells(Table("m_pNotesTable"), 0)[0]);
  EXPECT_EQ("b.JPG", Cells(Table("m_pWhatsappAttachTable"), 0)[0]);
}

TEST_F(ScanTest, EndsOnTheCameraPageWithTheLineAndNoSelectedNode) {
  OpenAndScan();
  auto* pRecovery = Find<QPushButton>("m_pRecoveryButton");

  const std::string strLine = SelectionLine();

  // Two photos, a photo of the stream, a file of each app, two attachments; four kinds of documents.
  EXPECT_TRUE(strLine.rfind("Select 4.", 0) == 0) << strLine;
  EXPECT_NE(std::string::npos, strLine.find(" MB in 11 files")) << strLine;
  EXPECT_EQ(0, WindowAccess::PageStack(Window())->currentIndex());
  EXPECT_TRUE(WindowAccess::Tree(Window())->selectedItems().isEmpty());
  EXPECT_EQ(nullptr, WindowAccess::CurrentTreeItem(Window()));
  EXPECT_EQ(10, WindowAccess::CurrentCategory(Window()));
  EXPECT_TRUE(pRecovery->isEnabled());
  EXPECT_EQ(Layout2_main_button_style, pRecovery->styleSheet());
}

TEST_F(ScanTest, OfAnEmptyBackupLeavesEverythingAtZero) {
  WriteEmptyBackup("one");
  Open();

  ScanBackup();

  EXPECT_EQ(kZeroLabels, Labels());
  EXPECT_EQ(std::vector<int>(11, 0), NodeStates());
  EXPECT_EQ("Select 0 Bytes in 0 file", SelectionLine());
  EXPECT_FALSE(Find<QPushButton>("m_pRecoveryButton")->isEnabled());
  EXPECT_EQ(main_button_style_no_file, Find<QPushButton>("m_pRecoveryButton")->styleSheet());
}

TEST_F(ScanTest, WithoutAManifestFindsTheStoresByName) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Mbdb);
  std::filesystem::remove(BackupPath("one") + "/Manifest.mbdb");
  Open();

  ScanBackup();

  EXPECT_EQ(
      std::vector<std::string>({"Camera Roll(0)", "Photo Stream(0)", "App Photos(0)", "App Videos(0)",
                                "Message(1)", "Messages Attachments(0)", "Contacts(1)", "Call History(1)",
                                "Notes(1)", "WhatsApp(0)", "WhatsApp Attachments(0)"}),
      Labels());
}

TEST_F(ScanTest, ShowsTheDataScreenAtZeroBehindTheDialog) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  std::vector<std::string> labels;
  std::string strLine;
  int nPage = -1;
  QWidget* pScreen = nullptr;
  // The worker's first report is received on the worker, which waits for the check here.
  std::atomic<bool> bLooked{false};
  QObject::connect(
      m_pWindow.get(), &DRUI::ScanProcessCallBack, m_pWindow.get(),
      [&](int) {
        while (!bLooked) QThread::msleep(1);
      },
      Qt::DirectConnection);
  ModalSteps steps;
  QRect dialog;
  steps.Then("SCANUI", [&](QWidget* pDialog) {
    dialog = QRect(pDialog->pos(), pDialog->size());
    labels = Labels();
    strLine = SelectionLine();
    nPage = WindowAccess::PageStack(Window())->currentIndex();
    pScreen = WindowAccess::ScreenStack(Window())->currentWidget();
    bLooked = true;
  });

  ScanBackup();

  EXPECT_EQ(kZeroLabels, labels);
  EXPECT_EQ("Select 0 Bytes in 0 file", strLine);
  EXPECT_EQ(0, nPage);
  EXPECT_EQ(WindowAccess::DataScreen(Window()), pScreen);
  EXPECT_EQ(QRect(Window().x() + 250, Window().y() + 170, 500, 250), dialog);
}

TEST_F(ScanTest, ReportsRiseToAHundred) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  std::vector<int> values;
  QObject::connect(m_pWindow.get(), &DRUI::ScanProcessCallBack, m_pWindow.get(),
                   [&](int nValue) { values.push_back(nValue); });

  ScanBackup();
  QCoreApplication::processEvents();

  ASSERT_FALSE(values.empty());
  EXPECT_EQ(1, values.front());
  EXPECT_EQ(100, values.back());
  EXPECT_TRUE(Window().m_bScanFinished);
  EXPECT_FALSE(Window().m_bCancelScan);
}

TEST_F(ScanTest, LeavesTheBackupUnchanged) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  const auto before = TreeOf(BackupPath("one"));
  Open();

  ScanBackup();
  for (int i = 0; i < 11; ++i) ClickNode(i);

  EXPECT_EQ(before, TreeOf(BackupPath("one")));
}

TEST_F(ScanTest, HomeAndNoLeavesTheDataScreenUnchanged) {
  OpenAndScan();
  ClickNode(6);
  const std::vector<std::string> labels = Labels();
  const std::string strLine = SelectionLine();
  const QImage before = Window().grab().toImage();
  ModalSteps steps;
  QRect box;
  std::string strText;
  steps.Then("CMessageBox", [&](QWidget* pBox) {
    box = pBox->geometry();
    strText = TextOf(pBox->findChild<QLabel*>("m_pTextLabel"));
    Click(pBox->findChild<QPushButton*>("NO"));
  });

  Click(Find<QPushButton>("homeButton"));

  EXPECT_EQ("Are you sure want to go back to Home?\nIf back,the scanning results will not be saved.",
            strText);
  EXPECT_EQ(QRect(Window().x() + 333, Window().y() + 226, 400, 150), box);
  EXPECT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
  EXPECT_EQ(labels, Labels());
  EXPECT_EQ(strLine, SelectionLine());
  EXPECT_EQ(before, Window().grab().toImage());
}

TEST_F(ScanTest, HomeAndOkShowsTheHomeScreenAndKeepsEverything) {
  OpenAndScan();
  QWidget* pDataScreen = WindowAccess::DataScreen(Window());
  ModalSteps steps;
  steps.ThenClick("CMessageBox", "OK");

  Click(Find<QPushButton>("homeButton"));

  EXPECT_EQ(WindowAccess::HomeScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
  EXPECT_EQ(pDataScreen, WindowAccess::DataScreen(Window()));
  EXPECT_EQ(kSmallBackupLabels, Labels());
  EXPECT_EQ(2u, WindowAccess::CameraSelection(Window()).size());
  EXPECT_EQ(2u, WindowAccess::Records(Window()).m_vecCamera.size());
  EXPECT_EQ(0, Table("m_pBackupTable")->currentRow());
  EXPECT_TRUE(Find<QPushButton>("m_pScanButton")->isEnabled());
}

TEST_F(ScanTest, ARightClickOnTheHomeQuestionCountsAsNo) {
  OpenAndScan();
  ModalSteps steps;
  steps.Then("CMessageBox", [](QWidget* pBox) {
    QTest::mouseClick(pBox, Qt::RightButton, Qt::NoModifier, {200, 40});
  });

  Click(Find<QPushButton>("homeButton"));

  EXPECT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
}

}  // namespace
