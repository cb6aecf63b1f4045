// The window's scan and recovery without a user, for the fault campaign:
//   orvandel-faults-window BACKUP_ROOT BACKUP WORK_FOLDER DESTINATION PASSWORD
// Scans one backup of the list and recovers all of it. Ends with 0, also when the list lacks the backup.

#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <cstring>

#include "app/message_handler.h"
#include "common/places.h"
#include "common/text.h"
#include "ui/styles.h"
#include "ui/window.h"

using namespace orvandel;

namespace {

std::string g_strBackupRoot, g_strWorkFolder;

/// Closes the recovery's dialog, which stays open until then.
void CloseWhenFinished() {
  QWidget* pDialog = QApplication::activeModalWidget();
  const auto* pButton = pDialog ? pDialog->findChild<QPushButton*>("Cancel") : nullptr;
  if (pButton && pButton->text() == "Finished") pDialog->close();
}

}  // namespace

namespace orvandel {

std::string BackupRoot() {
  return g_strBackupRoot;
}
std::string WorkFolder() {
  return g_strWorkFolder;
}
std::string ProgramFolder() {
  return ToNarrow(QCoreApplication::applicationDirPath()) + "/";
}

/// Calls what a user's clicks would trigger.
class WindowAccess {
 public:
  static void SetPassword(DRUI& window, const QString& qstrPassword) {
    window.m_strBackupPassword = qstrPassword;
  }
  static bool Choose(DRUI& window, const std::string& strBackup) {
    for (int nRow = 0; nRow < window.m_pBackupTable->rowCount(); ++nRow) {
      if (window.ChooseBackup(nRow, 0) && window.m_curBackupInfo.strBackupPath == strBackup) return true;
    }
    return false;
  }
  static void Recover(DRUI& window, const QString& qstrFolder) {
    window.m_strSelectDir = qstrFolder;
    window.RunRecovery();
  }
};

}  // namespace orvandel

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  if (argc != 6) {
    std::fprintf(stderr,
                 "usage: orvandel-faults-window BACKUP_ROOT BACKUP WORK_FOLDER DESTINATION PASSWORD\n");
    return 1;
  }
  qInstallMessageHandler(customMessageHandler);
  inner_initUnicodeMap("UTF-8");
  InitResources();
  g_strBackupRoot = std::string(argv[1]) + "/";
  g_strWorkFolder = std::string(argv[3]) + "/";
  DRUI window;
  window.setVisible(true);
  WindowAccess::SetPassword(window, QString::fromUtf8(argv[5]));
  if (!WindowAccess::Choose(window, argv[2])) {
    std::puts("not in the list");
    return 0;
  }
  window.btnSlotScan();
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, CloseWhenFinished);
  timer.start(5);
  WindowAccess::Recover(window, QString::fromUtf8(argv[4]));
  std::puts("recovered");
  return 0;
}
