// What the window costs beyond the engine, on the offscreen platform. Prints a table like the other
// benchmarks:
//   orvandel_window_bench
// Data comes from the folder that ./bench fills.

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>

#include "benchmarks/data.h"
#include "common/format.h"
#include "common/places.h"
#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/window.h"

/// The window's state, which it keeps to itself otherwise.
class WindowAccess {
 public:
  static BackupRecords& Records(DRUI& window) { return window.m_records; }
  static QTreeWidget* Tree(DRUI& window) { return window.m_pCategoryTree; }
  static QTableWidget* CameraTable(DRUI& window) { return window.m_pCameraTable; }
  static void Choose(DRUI& window, const __BACK_FILE_INFO__& info) { window.m_curBackupInfo = info; }
  static CIphoneBackupFile& Session(DRUI& window) { return window.m_backupFile; }
};

namespace {

constexpr int kRows = 100000;
constexpr int kRounds = 3;

/// The best of some rounds, in milliseconds.
double Best(const std::function<double()>& round) {
  double dBest = round();
  for (int i = 1; i < kRounds; ++i) dBest = std::min(dBest, round());
  return dBest;
}

void PrintRow(const char* pszWhat, double dFigure, double dBaseline, double dLimit) {
  const double dRatio = dFigure / dBaseline;
  printf("| %s | %.0f | %.0f | %.2f | %.1f | %s |\n", pszWhat, dFigure, dBaseline, dRatio, dLimit,
         dRatio <= dLimit ? "met" : "NOT MET");
  fflush(stdout);
}

std::vector<_IPHONE_CAMERA_INFO_> MakeRecords() {
  std::vector<_IPHONE_CAMERA_INFO_> records(kRows);
  for (int i = 0; i < kRows; ++i) {
    records[static_cast<size_t>(i)].uFileSize = static_cast<uint32_t>(i + 1);
    records[static_cast<size_t>(i)].strFileName = "IMG_" + std::to_string(i) + ".JPG";
    records[static_cast<size_t>(i)].wstrFilePath = u"/backup/00/0000000000000000000000000000000000000000";
  }
  return records;
}

/// The items of the table alone, with all that a row holds.
double MakeItems(const std::vector<_IPHONE_CAMERA_INFO_>& records) {
  const QFont font("Calibri", 10, 50);
  const QIcon icon(":/image/photo.png");
  std::vector<QTableWidgetItem*> items;
  items.reserve(records.size() * 2);
  QElapsedTimer timer;
  timer.start();
  for (const _IPHONE_CAMERA_INFO_& record : records) {
    auto* pName = new QTableWidgetItem(FromNarrow(record.strFileName));
    pName->setFont(font);
    pName->setIcon(icon);
    pName->setData(Qt::UserRole, QVariant::fromValue(record));
    pName->setCheckState(Qt::Checked);
    auto* pSize = new QTableWidgetItem(FromNarrow(GetFileSizeString(record.uFileSize)));
    pSize->setFont(font);
    items.push_back(pName);
    items.push_back(pSize);
  }
  const auto dTime = static_cast<double>(timer.nsecsElapsed()) / 1e6;
  for (QTableWidgetItem* pItem : items) delete pItem;
  return dTime;
}

/// The table of a window that is on view, filled and ticked as a scan does it.
double FillTable(DRUI& window, const std::vector<_IPHONE_CAMERA_INFO_>& records) {
  window.InitLayout3Widget();
  WindowAccess::Records(window).m_vecCamera = records;
  QTreeWidgetItem* pNode = WindowAccess::Tree(window)->topLevelItem(kCameraRoll);
  pNode->setCheckState(0, Qt::Checked);
  QElapsedTimer timer;
  timer.start();
  window.UpdateTreeInfo(pNode, 0, true);
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double ScanInWindow(DRUI& window, const std::string& strBackup) {
  __BACK_FILE_INFO__ info;
  WindowAccess::Session(window).GetBackFileInfo(strBackup.c_str(), &info);
  WindowAccess::Choose(window, info);
  QElapsedTimer timer;
  timer.start();
  window.btnSlotScan();
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double ScanByCommand(const std::string& strBackup) {
  QElapsedTimer timer;
  timer.start();
  QProcess process;
  process.start(QCoreApplication::applicationDirPath() + "/orvandel-cli",
                {"scan", "--quiet", FromNarrow(strBackup)});
  process.waitForFinished(-1);
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

}  // namespace

std::string BackupRoot() {
  return "/nonexistent/";
}

std::string WorkFolder() {
  static const QTemporaryDir folder;
  return ToNarrow(folder.path()) + "/";
}

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  SetDataFolder(QCoreApplication::applicationDirPath() + "/../data");
  const std::string strBackup = LargeBackup();
  DRUI window;
  window.show();

  printf("\n| What | Figure (ms) | Baseline (ms) | Ratio | Limit | |\n|---|---|---|---|---|---|\n");
  const std::vector<_IPHONE_CAMERA_INFO_> records = MakeRecords();
  PrintRow("Table of 100,000 rows filled and ticked / its items alone",
           Best([&] { return FillTable(window, records); }), Best([&] { return MakeItems(records); }), 2.0);
  int nSignals = 0;
  QObject::connect(&window, &DRUI::ScanProcessCallBack, &window, [&](int) { ++nSignals; });
  const double dWindow = Best([&] { return ScanInWindow(window, strBackup); });
  PrintRow("Scan of 1,000,000 entries in the window / by orvandel-cli", dWindow,
           Best([&] { return ScanByCommand(strBackup); }), 1.3);
  printf("The bar was told %.0f values a second.\n", nSignals / kRounds / (dWindow / 1000));
  return 0;
}
