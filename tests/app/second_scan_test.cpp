#include "common/status.h"
#include "sample/pictures.h"
#include "tests/cli/small_backup.h"
#include "tests/ui/window_fixture.h"

using namespace orvandel;

namespace {

class SecondScan : public WindowTest {
 protected:
  /// Presses "Home" and confirms.
  void GoHome() {
    ModalSteps steps;
    steps.ThenClick("CMessageBox", "OK");
    Click(Find<QPushButton>("homeButton"));
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

  /// A backup with a photo and a file of the app "example.Second", and nothing else.
  void WriteOtherBackup(const std::string& strName) {
    BackupBuilder backup(QString::fromStdString(BackupPath(strName)), BackupBuilder::Layout::Mbdb);
    backup.writeInfo({});
    backup.addFile("CameraRollDomain", "Media/DCIM/100APPLE/OTHER.JPG", sample_media::jpeg(9));
    backup.addFile("AppDomain-com.example.Second", "Documents/dog.gif", sample_media::gif(8));
    backup.finish();
  }
};

TEST_F(SecondScan, OfTheSameBackupGivesTheSameTree) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  ScanBackup();
  GoHome();

  Click(Find<QPushButton>("m_pScanButton"));

  EXPECT_EQ(kSmallBackupLabels, Labels());
  EXPECT_EQ(2, Table("m_pCameraTable")->rowCount());
  EXPECT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
}

TEST_F(SecondScan, LeavesNoRowOfTheFirstOnTheScreen) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  WriteEmptyBackup("two");
  Open();
  ScanBackup(RowOf("one"));
  ClickNode(0);
  GoHome();

  ScanBackup(RowOf("two"));

  for (const char* pszTable : {"m_pCameraTable", "m_pPhotoStreamTable", "m_pAppsTable", "m_pMessageTable",
                               "m_pMessAttachTable", "m_pContactsTable", "m_pCallHistoryTable",
                               "m_pNotesTable", "m_pWhatsappTable", "m_pWhatsappAttachTable"})
    EXPECT_EQ(0, Table(pszTable)->rowCount()) << pszTable;
  EXPECT_EQ(kZeroLabels, Labels());
  EXPECT_EQ(nullptr, WindowAccess::CurrentTreeItem(Window()));
  EXPECT_EQ(0, WindowAccess::PageStack(Window())->currentIndex());
}

TEST_F(SecondScan, AppTablesListBothBackupsAndLabelsTheSecondAlone) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  WriteOtherBackup("two");
  Open();
  ScanBackup(RowOf("one"));
  GoHome();

  ScanBackup(RowOf("two"));

  ASSERT_EQ(2, Table("m_pAppPhotosTable")->rowCount());
  EXPECT_EQ("example.Second", Cells(Table("m_pAppPhotosTable"), 0)[0]);
  EXPECT_EQ("example.Snap", Cells(Table("m_pAppPhotosTable"), 1)[0]);
  EXPECT_EQ(1, Table("m_pAppVideosTable")->rowCount());
  EXPECT_EQ("App Photos(1)", Labels()[2]);
  EXPECT_EQ("App Videos(0)", Labels()[3]);
  EXPECT_EQ(1u, WindowAccess::Records(Window()).m_mapAppPhotoFiles["example.Snap"].size());
  EXPECT_EQ("OTHER.JPG", Cells(Table("m_pCameraTable"), 0)[0]);
}

TEST_F(SecondScan, TicksOfTheFirstStayInTheMaps) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  WriteOtherBackup("two");
  Open();
  ScanBackup(RowOf("one"));
  GoHome();

  ScanBackup(RowOf("two"));

  EXPECT_EQ(2u, WindowAccess::CameraSelection(Window()).size());
  EXPECT_EQ(1, Table("m_pCameraTable")->rowCount());
}

/// A parser that records its destruction.
class NotedParser : public CLocalBuckupRecovery {
 public:
  NotedParser(std::vector<std::string>& notes, int nNumber) : m_notes(notes), m_nNumber(nNumber) {
    m_notes.push_back("made " + std::to_string(m_nNumber));
  }
  ~NotedParser() override { m_notes.push_back("gone " + std::to_string(m_nNumber)); }
  int Scan(QString qstrFolder) override {
    m_notes.push_back("scanned by " + std::to_string(m_nNumber));
    return CLocalBuckupRecovery::Scan(qstrFolder);
  }

 private:
  std::vector<std::string>& m_notes;
  const int m_nNumber;
};

TEST_F(SecondScan, MakesItsOwnParser) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  std::vector<std::string> notes;
  int nMade = 0;
  Open();
  WindowAccess::ParserMaker(Window()) = [&](CIphoneBackupFile& backupFile) {
    auto pParser = std::make_unique<NotedParser>(notes, ++nMade);
    pParser->Init(&backupFile);
    return pParser;
  };
  EXPECT_EQ(nullptr, WindowAccess::Parser(Window()));
  ScanBackup();
  GoHome();

  Click(Find<QPushButton>("m_pScanButton"));

  EXPECT_EQ(std::vector<std::string>({"made 1", "scanned by 1", "gone 1", "made 2", "scanned by 2"}), notes);
  EXPECT_EQ(kSmallBackupLabels, Labels());
  CloseWindow();
  EXPECT_EQ("gone 2", notes.back());
}

/// A parser that reports one value and fails.
class StuckParser : public CLocalBuckupRecovery {
 public:
  int InitCallback(ProgressCallback pfnCallback, void* pContext) override {
    m_pfnReport = pfnCallback;
    m_pReportContext = pContext;
    return 0;
  }
  int Scan(QString) override {
    m_pfnReport(m_pReportContext, 40);
    return kStatusFailed;
  }

 private:
  ProgressCallback m_pfnReport = nullptr;
  void* m_pReportContext = nullptr;
};

TEST_F(SecondScan, ReportsTheValueAtWhichTheFirstEnded) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  WindowAccess::ParserMaker(Window()) = [](CIphoneBackupFile&) { return std::make_unique<StuckParser>(); };
  std::vector<int> reports;
  QObject::connect(&Window(), &DRUI::ScanProcessCallBack, &Window(),
                   [&](int nProgress) { reports.push_back(nProgress); });
  ScanBackup();
  GoHome();

  Click(Find<QPushButton>("m_pScanButton"));

  EXPECT_EQ(std::vector<int>({40, 100, 40, 100}), reports);
}

}  // namespace
