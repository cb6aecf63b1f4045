// orvandel_window_bench: measures the cost of the window in addition to the engine, on the offscreen
// platform. Prints a table like the other benchmarks. Uses the data folder of ./bench.

#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include "benchmarks/data.h"
#include "common/format.h"
#include "common/places.h"
#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/window.h"

using namespace orvandel;

namespace orvandel {

/// Access to the window's private members.
class WindowAccess {
 public:
  static BackupRecords& Records(DRUI& window) { return window.m_records; }
  static QTreeWidget* Tree(DRUI& window) { return window.m_pCategoryTree; }
  static QTableWidget* CameraTable(DRUI& window) { return window.m_pCameraTable; }
  static void Choose(DRUI& window, const __BACK_FILE_INFO__& info) { window.m_curBackupInfo = info; }
  static CIphoneBackupFile& Session(DRUI& window) { return window.m_backupFile; }
  static void Select(DRUI& window, QTreeWidgetItem* pNode) { window.m_pCurrentTreeItem = pNode; }
  static SelectionMap& CameraSelection(DRUI& window) { return window.m_mapSelCamera; }
  static void Recover(DRUI& window, const QString& qstrFolder) {
    window.m_strSelectDir = qstrFolder;
    window.RunRecovery();
  }
};

namespace {

constexpr int kRows = 100000;
constexpr int kRounds = 3;

/// The best of several rounds, in milliseconds.
double Best(const std::function<double()>& round) {
  double dBest = round();
  for (int i = 1; i < kRounds; ++i) dBest = std::min(dBest, round());
  return dBest;
}

/// The worst of an even number of rounds, in milliseconds.
double Worst(const std::function<double()>& round) {
  double dWorst = 0;
  for (int i = 0; i < 2 * kRounds; ++i) dWorst = std::max(dWorst, round());
  return dWorst;
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

/// Creates only the items of the table, with all data of a row.
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

/// Fills and ticks the table of a visible window like a scan.
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

double Milliseconds(const QElapsedTimer& timer) {
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Time from a click on the selected node's box until the window is repainted. The better of ticking and
/// unticking.
double TickNode(DRUI& window) {
  QTreeWidgetItem* pNode = WindowAccess::Tree(window)->topLevelItem(kCameraRoll);
  QElapsedTimer timer;
  timer.start();
  pNode->setCheckState(0, pNode->checkState(0) == Qt::Checked ? Qt::Unchecked : Qt::Checked);
  window.treeItemClick(pNode, 0);
  QCoreApplication::processEvents();
  return Milliseconds(timer);
}

/// The most expensive click: ticking the last unticked row, so that the search for another visits all rows.
double TickRow(DRUI& window) {
  QTableWidget* pTable = WindowAccess::CameraTable(window);
  pTable->item(kRows - 1, 0)->setCheckState(Qt::Unchecked);
  window.cameraTableItemPress(kRows - 1, 0);
  QElapsedTimer timer;
  timer.start();
  pTable->item(kRows - 1, 0)->setCheckState(Qt::Checked);
  window.cameraTableItemPress(kRows - 1, 0);
  QCoreApplication::processEvents();
  return Milliseconds(timer);
}

QString DestinationRoot() {
  return QCoreApplication::applicationDirPath() + "/../data/recovered/";
}

/// Writes a picture of the size of a phone's, with detail everywhere. @return its path.
QString WritePicture(const QSize& size, const char* pszName) {
  const QString qstrPath = QDir(DestinationRoot()).filePath(pszName);
  QDir().mkpath(DestinationRoot());
  QImage image(size, QImage::Format_RGB32);
  for (int y = 0; y < size.height(); ++y) {
    auto* pLine = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < size.width(); ++x)
      pLine[x] = qRgb((x * 7 + y) / 40 % 256, (x / 5 + y * 3) % 256, (x * y >> 9) % 256);
  }
  image.save(qstrPath, "JPG", 90);
  return qstrPath;
}

/// Time from the choice of a row until its picture is painted.
double ShowPicture(DRUI& window, const QString& qstrPath) {
  window.InitLayout3Widget();
  _IPHONE_CAMERA_INFO_ record;
  record.strFileName = "IMG_0001.JPG";
  record.wstrFilePath = qstrPath.toStdU16String();
  WindowAccess::Records(window).m_vecCamera = {record};
  QElapsedTimer timer;
  timer.start();
  WindowAccess::Tree(window)->setCurrentItem(WindowAccess::Tree(window)->topLevelItem(kCameraRoll));
  QCoreApplication::processEvents();
  return Milliseconds(timer);
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

constexpr int kFiles = 20000;
constexpr int kFileBytes = 100 * 1000;

/// Folder of the files for measuring a recovery, created once.
QString FilesToRecover() {
  const QString qstrFolder = QCoreApplication::applicationDirPath() + "/../data/recovery/";
  if (QDir(qstrFolder).entryList(QDir::Files).size() == kFiles) return qstrFolder;
  QDir().mkpath(qstrFolder);
  QByteArray content(kFileBytes, '\0');
  for (int i = 0; i < kFiles; ++i) {
    for (char& ch : content) ch = static_cast<char>(ch * 31 + i + 7);
    QFile file(qstrFolder + QString::number(i));
    file.open(QIODevice::WriteOnly);
    file.write(content);
  }
  return qstrFolder;
}

/// A new folder beside them, after pending writes were flushed. None is removed between rounds: after many
/// deletions file systems are slow at creating files for some seconds.
QString NewDestination() {
  static int nFolder = 0;
  const QString qstrFolder = DestinationRoot() + QString::number(++nFolder);
  QDir().mkpath(qstrFolder);
  sync();
  return qstrFolder;
}

double CopyByCp(const QString& qstrSource) {
  const QString qstrDestination = NewDestination();
  QElapsedTimer timer;
  timer.start();
  QProcess::execute("cp", {"-R", qstrSource, qstrDestination});
  return Milliseconds(timer);
}

/// Operates the dialogs of a recovery and measures the longest time without event processing.
class Driver {
 public:
  explicit Driver(bool bDetail) {
    m_beat.setInterval(1);
    QObject::connect(&m_beat, &QTimer::timeout, [this, bDetail] {
      m_dLongestGap = std::max(m_dLongestGap, Milliseconds(m_gap));
      m_gap.restart();
      QWidget* pDialog = QApplication::activeModalWidget();
      if (auto* pTable = pDialog ? pDialog->findChild<QTableWidget*>("m_pTable") : nullptr) {
        pTable->scrollToBottom();
        m_nRowsSeen = pTable->rowCount();
        if (m_nRowsSeen == kFiles) pDialog->close();
        return;
      }
      if (bDetail && m_nRowsSeen == 0 && pDialog)
        return QTimer::singleShot(0, pDialog->findChild<QPushButton*>("Detail"), &QPushButton::click);
      auto* pButton = pDialog ? pDialog->findChild<QPushButton*>("Cancel") : nullptr;
      if (pButton && pButton->text() == "Finished") pDialog->close();
    });
  }
  void Start() {
    m_gap.start();
    m_beat.start();
  }
  double LongestGap() const { return m_dLongestGap; }

 private:
  QTimer m_beat;
  QElapsedTimer m_gap;
  double m_dLongestGap = 0;
  int m_nRowsSeen = 0;
};

double RecoverInWindow(DRUI& window, Driver& driver) {
  const QString qstrDestination = NewDestination();
  driver.Start();
  QElapsedTimer timer;
  timer.start();
  WindowAccess::Recover(window, qstrDestination);
  return Milliseconds(timer);
}

constexpr int kRecoveryRounds = 5;

/// The median of an odd number of figures.
double Median(std::vector<double> figures) {
  std::sort(figures.begin(), figures.end());
  return figures[figures.size() / 2];
}

void MeasureRecovery(DRUI& window) {
  const QString qstrSource = FilesToRecover();
  window.InitLayout3Widget();
  std::vector<_IPHONE_CAMERA_INFO_> records(kFiles);
  SelectionMap& selection = WindowAccess::CameraSelection(window);
  selection.clear();
  for (int i = 0; i < kFiles; ++i) {
    _IPHONE_CAMERA_INFO_& record = records[static_cast<size_t>(i)];
    record.strFileName = "IMG_" + std::to_string(i) + ".JPG";
    record.wstrFilePath = ToWide(qstrSource + QString::number(i));
    record.uFileSize = kFileBytes;
    selection[static_cast<U32>(i)] = kFileBytes;
  }
  WindowAccess::Records(window).m_vecCamera = records;
  std::vector<double> cp, inWindow;
  double dGap = 0;
  // Interleaved, with alternating order, since the speed of a disk varies.
  for (int i = 0; i < kRecoveryRounds; ++i) {
    const bool bCpFirst = i % 2 == 0;
    if (bCpFirst) cp.push_back(CopyByCp(qstrSource));
    Driver driver(false);
    inWindow.push_back(RecoverInWindow(window, driver));
    dGap = std::max(dGap, driver.LongestGap());
    if (!bCpFirst) cp.push_back(CopyByCp(qstrSource));
  }
  Driver detailDriver(true);
  RecoverInWindow(window, detailDriver);
  PrintRow("Recovery of 20,000 files of 100 KB in the window / by cp, medians of 5 rounds", Median(inWindow),
           Median(cp), 1.1);
  PrintRow("Longest time without a look at events meanwhile / 100 ms", dGap, 100, 1.0);
  PrintRow("The same with the detail list open and scrolled / 100 ms", detailDriver.LongestGap(), 100, 1.0);
  selection.clear();
  QDir(DestinationRoot()).removeRecursively();
}

}  // namespace

std::string BackupRoot() {
  return "/nonexistent/";
}

std::string ProgramFolder() {
  return ToNarrow(QCoreApplication::applicationDirPath()) + "/";
}

std::string WorkFolder() {
  static const QTemporaryDir folder;
  return ToNarrow(folder.path()) + "/";
}

}  // namespace orvandel

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  SetDataFolder(QCoreApplication::applicationDirPath() + "/../data");
  const std::string strBackup = LargeBackup();
  QDir(DestinationRoot()).removeRecursively();
  DRUI window;
  window.show();

  printf("\n| What | Figure (ms) | Baseline (ms) | Ratio | Limit | |\n|---|---|---|---|---|---|\n");
  const std::vector<_IPHONE_CAMERA_INFO_> records = MakeRecords();
  PrintRow("Table of 100,000 rows filled and ticked / its items alone",
           Best([&] { return FillTable(window, records); }), Best([&] { return MakeItems(records); }), 2.0);
  QTreeWidgetItem* pNode = WindowAccess::Tree(window)->topLevelItem(kCameraRoll);
  WindowAccess::Tree(window)->setCurrentItem(pNode);
  // Here the slowest of several rounds, with the limit itself as the baseline.
  PrintRow("Tick on the node of 100,000 rows / 300 ms", Worst([&] { return TickNode(window); }), 300, 1.0);
  PrintRow("Tick on one of 100,000 rows / 30 ms", Worst([&] { return TickRow(window); }), 30, 1.0);
  const QString qstrSmaller = WritePicture(QSize(4032, 3024), "12.jpg");
  const QString qstrLarger = WritePicture(QSize(8064, 6048), "48.jpg");
  PrintRow("Picture of 12 megapixels on view / 150 ms",
           Worst([&] { return ShowPicture(window, qstrSmaller); }), 150, 1.0);
  PrintRow("Picture of 48 megapixels on view / 150 ms",
           Worst([&] { return ShowPicture(window, qstrLarger); }), 150, 1.0);
  MeasureRecovery(window);
  int nSignals = 0;
  QObject::connect(&window, &DRUI::ScanProcessCallBack, &window, [&](int) { ++nSignals; });
  const double dWindow = Best([&] { return ScanInWindow(window, strBackup); });
  PrintRow("Scan of 1,000,000 entries in the window / by orvandel-cli", dWindow,
           Best([&] { return ScanByCommand(strBackup); }), 1.3);
  printf("The bar was updated %.0f times a second.\n", nSignals / kRounds / (dWindow / 1000));
  return 0;
}
