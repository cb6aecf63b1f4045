// Drives the window through a real scan of one backup and saves a picture of each screen, page and dialog:
//   orvandel-screenshots BACKUP_ROOT FOLDER
// All input is simulated clicks and keys.

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "common/places.h"
#include "common/text.h"
#include "ui/category_tables.h"
#include "ui/message_box.h"
#include "ui/styles.h"
#include "ui/window.h"

using namespace orvandel;

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

/// Saves a picture of the modal dialog that a click opens, and closes it.
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

void UntickFirstFile(DRUI& window) {
  auto* pTable = window.findChild<QTableWidget*>("m_pAppsTable");
  const QRect cell = pTable->visualItemRect(pTable->item(0, 0));
  Click(pTable->viewport(), QPoint(cell.left() + 12, cell.center().y()));
}

/// Types a folder into the active folder dialog.
void ChooseFolder(const QString& qstrFolder) {
  QWidget* pDialog = QApplication::activeModalWidget();
  Save(pDialog, "folder-dialog");
  auto* pEdit = pDialog ? pDialog->findChild<QLineEdit*>("fileNameEdit") : nullptr;
  if (!pEdit) return;
  pEdit->selectAll();
  QTest::keyClicks(pEdit, qstrFolder);
  QTest::keyClick(pEdit, Qt::Key_Return);
}

/// Recovers everything ticked; saves the progress dialog during and after the recovery, and the file list.
void SaveRecovery(DRUI& window) {
  const QTemporaryDir destination;
  QTimer::singleShot(300, [&] { ChooseFolder(destination.path()); });
  bool bTaken = false;
  QObject::connect(&window, qOverload<int, int, int, QString>(&DRUI::RecoveryCallBack), &window,
                   [&](int, int nPercent) {
                     if (bTaken || nPercent != 40) return;
                     bTaken = true;
                     Save(QApplication::activeModalWidget(), "recovering");
                   });
  QTimer end;
  QObject::connect(&end, &QTimer::timeout, [&] {
    QWidget* pDialog = QApplication::activeModalWidget();
    auto* pButton = pDialog ? pDialog->findChild<QPushButton*>("Cancel") : nullptr;
    if (!pButton || pButton->text() != "Finished") return;
    end.stop();
    Save(pDialog, "recovered");
    SaveNextDialog("recovery-detail", "OK");
    pDialog->findChild<QPushButton*>("Detail")->click();
    pButton->click();
  });
  end.start(50);
  Click(window.findChild<QPushButton*>("m_pRecoveryButton"), QPoint(20, 20));
  QObject::disconnect(&window, qOverload<int, int, int, QString>(&DRUI::RecoveryCallBack), &window, nullptr);
}

void SavePages(DRUI& window) {
  auto* pTree = window.findChild<QTreeWidget*>("m_pCategoryTree");
  for (int i = 0; i < pTree->topLevelItemCount(); ++i) {
    const TableSpec& spec = TableSpec::Of(i);
    Click(pTree->viewport(), pTree->visualItemRect(pTree->topLevelItem(i)).center());
    Save(&window, QString("%1-%2").arg(i, 2, 10, QChar('0')).arg(spec.pszPageName));
    auto* pTable = window.findChild<QTableWidget*>(spec.pszName);
    if (pTable->rowCount() == 0) continue;
    const QPoint place = pTable->visualItemRect(pTable->item(pTable->rowCount() > 1 ? 1 : 0, 0)).center();
    Click(pTable->viewport(), place);
    Save(&window, QString("%1-%2-row").arg(i, 2, 10, QChar('0')).arg(spec.pszPageName));
    if (!spec.pfnDoubleClick) continue;
    QTest::mouseDClick(pTable->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    UntickFirstFile(window);
    Save(&window, QString("%1-%2-files").arg(i, 2, 10, QChar('0')).arg(spec.pszPageName));
  }
}

}  // namespace

namespace orvandel {

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

}  // namespace orvandel

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 3) {
    fprintf(stderr, "usage: orvandel-screenshots BACKUP_ROOT FOLDER\n");
    return 1;
  }
  g_strBackupRoot = ToNarrow(QDir(FromNarrow(argv[1])).absolutePath()) + "/";
  g_folder = QDir(FromNarrow(argv[2])).absolutePath();
  QDir().mkpath(g_folder);
  UseLightColours();
  DRUI window;
  window.show();
  if (!QTest::qWaitForWindowExposed(&window)) return 1;
  Save(&window, "home");
  ScanFirstBackup(window);
  if (g_nFailed != 0) return 1;
  Save(&window, "scanned");
  SavePages(window);
  SaveRecovery(window);
  SaveNextDialog("question", "NO");
  Click(window.findChild<QPushButton*>("homeButton"), QPoint(20, 20));
  return g_nFailed == 0 ? 0 : 1;
}
