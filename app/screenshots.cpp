// Runs the window through a real scan of one backup and leaves a picture of each screen, page and dialog in a
// folder:
//   orvandel-screenshots BACKUP_ROOT FOLDER
// Everything is done by clicks, as a user would.

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>
#include <QTimer>
#include <cstdio>

#include "common/places.h"
#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/message_box.h"
#include "ui/window.h"

namespace {

std::string g_strBackupRoot;
QString g_folder;
int g_nFailed = 0;

void Save(QWidget* pWidget, const QString& qstrName) {
  QApplication::processEvents();
  const QString qstrPath = g_folder + "/" + qstrName + ".png";
  if (pWidget && pWidget->grab().save(qstrPath)) {
    printf("%s\n", qPrintable(qstrPath));
  } else {
    fprintf(stderr, "orvandel-screenshots: %s: no picture could be taken\n", qPrintable(qstrPath));
    ++g_nFailed;
  }
}

void Click(QWidget* pWidget, const QPoint& place) {
  QTest::mouseClick(pWidget, Qt::LeftButton, Qt::NoModifier, place);
}

/// Takes a picture of the modal dialog that a click brings up, once it stands, and closes it.
void SaveNextDialog(const QString& qstrName, const char* pszButton) {
  QTimer::singleShot(300, [=] {
    QWidget* pDialog = QApplication::activeModalWidget();
    Save(pDialog, qstrName);
    if (auto* pButton = pDialog ? pDialog->findChild<QPushButton*>(pszButton) : nullptr) pButton->click();
  });
}

void ScanFirstBackup(DRUI& window) {
  auto* pTable = window.findChild<QTableWidget*>("m_pBackupTable");
  if (pTable->rowCount() == 0) {
    fprintf(stderr, "orvandel-screenshots: no backup below %s\n", g_strBackupRoot.c_str());
    ++g_nFailed;
    return;
  }
  Click(pTable->viewport(), pTable->visualItemRect(pTable->item(0, 0)).center());
  Save(&window, "home-chosen");
  bool bTaken = false;
  QObject::connect(&window, &DRUI::ScanProcessCallBack, &window, [&](int nProgress) {
    if (bTaken || nProgress < 30) return;
    bTaken = true;
    Save(QApplication::activeModalWidget(), "scanning");
  });
  Click(window.findChild<QPushButton*>("m_pScanButton"), QPoint(20, 20));
  QObject::disconnect(&window, &DRUI::ScanProcessCallBack, &window, nullptr);
}

void SavePages(DRUI& window) {
  auto* pTree = window.findChild<QTreeWidget*>("m_pCategoryTree");
  for (int i = 0; i < pTree->topLevelItemCount(); ++i) {
    const TableSpec& spec = TableSpec::Of(i);
    Click(pTree->viewport(), pTree->visualItemRect(pTree->topLevelItem(i)).center());
    Save(&window, QString("%1-%2").arg(i, 2, 10, QChar('0')).arg(spec.pszPageName));
    auto* pTable = window.findChild<QTableWidget*>(spec.pszName);
    if (spec.pfnDoubleClick && pTable->rowCount() > 0) {
      const QPoint place = pTable->visualItemRect(pTable->item(pTable->rowCount() - 1, 1)).center();
      Click(pTable->viewport(), place);
      QTest::mouseDClick(pTable->viewport(), Qt::LeftButton, Qt::NoModifier, place);
      Save(&window, QString("%1-%2-files").arg(i, 2, 10, QChar('0')).arg(spec.pszPageName));
    }
  }
}

}  // namespace

std::string BackupRoot() {
  return g_strBackupRoot;
}

std::string WorkFolder() {
  static const QTemporaryDir folder;
  return ToNarrow(folder.path()) + "/";
}

std::string ProgramFolder() {
  return ToNarrow(QCoreApplication::applicationDirPath()) + "/";
}

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 3) {
    fprintf(stderr, "usage: orvandel-screenshots BACKUP_ROOT FOLDER\n");
    return 1;
  }
  g_strBackupRoot = ToNarrow(QDir(FromNarrow(argv[1])).absolutePath()) + "/";
  g_folder = QDir(FromNarrow(argv[2])).absolutePath();
  QDir().mkpath(g_folder);
  QDir::setCurrent(QCoreApplication::applicationDirPath());
  DRUI window;
  window.show();
  if (!QTest::qWaitForWindowExposed(&window)) return 1;
  Save(&window, "home");
  ScanFirstBackup(window);
  if (g_nFailed != 0) return 1;
  Save(&window, "scanned");
  SavePages(window);
  SaveNextDialog("question", "NO");
  Click(window.findChild<QPushButton*>("homeButton"), QPoint(20, 20));
  return g_nFailed == 0 ? 0 : 1;
}
