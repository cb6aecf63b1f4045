// The way of a backup that is picked as a folder, and the decrypt tool: a program beside this one that checks
// a password, and writes the backup's files decrypted into the work folder.

#include <unistd.h>

#include <QFileDialog>
#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <utility>

#include "app/password_dialog.h"
#include "backup/discovery.h"
#include "common/places.h"
#include "common/status.h"
#include "common/text.h"
#include "decrypt/client.h"
#include "ui/busy_cursor.h"
#include "ui/message_box.h"
#include "ui/window.h"

using namespace orvandel;

namespace {

/// Where decrypted files go. The double slash in it is wanted: the tool gets the path as it stands.
QString DecryptedFolder() {
  return FromNarrow(WorkFolder() + "/" + kDecryptFolderName);
}

/// State of a run of the tool, shared by the worker of a scan and the main thread. After a cancel, lines may
/// be served when the scan is over.
struct ToolRun {
  std::atomic<bool> bKill{false};  ///< set by the main thread: a line calls for it
  std::atomic<bool> bOver{false};  ///< set by the worker: further lines mean nothing
};

}  // namespace

void DRUI::ShowInformation(const QString& qstrText) {
  CMessageBox box;
  box.InitInfoDialog(qstrText);
  box.setGeometry(x() + width() / 3, y() + height() / 3, 400, 200);
  box.exec();
}

void DRUI::btnSlotSelect() {
  m_strSelectDir.clear();
  m_strSelectDir =
      QFileDialog::getExistingDirectory(this, QString(), m_strSelectDir, QFileDialog::ShowDirsOnly);
  if (m_strSelectDir.isEmpty()) return;
  const std::string strFolder = ToNarrow(m_strSelectDir);
  __BACK_FILE_INFO__ info;
  if (m_backupFile.GetBackFileInfo(strFolder.c_str(), &info) != kStatusOk)
    return ShowInformation("Can not found the iTunes Backup file.");
  m_curBackupInfo = info;
  m_nTotalFileCount = std::max<int64_t>(CountBackupFiles(strFolder), 1);
  m_strBackupPassword.clear();
  if (info.bEncrypted && !AskForPassword()) return;
  btnSlotScan();
}

bool DRUI::AskForPassword() {
  for (;;) {
    QString qstrPassword;
    {
      CPasswordUI dialog;
      dialog.exec();
      if (dialog.GetResult() != 0) return false;
      qstrPassword = dialog.GetPassword();
    }
    if (qstrPassword.isEmpty()) {
      ShowInformation("The password can't be empty, please try again.");
      continue;
    }
    DropDecryptProcess();
    m_nDecryptStatus = kStatusOk;
    auto pTool = std::make_unique<DecryptClient>(
        [this](const QByteArray& line) { return CheckPasswordRecieve(line); }, this);
    DecryptClient& tool = *pTool;
    m_pDecryptProcess = std::move(pTool);
    {
      // Nothing is painted during the check: without this the password would stay on the screen.
      const BusyCursor cursor;
      repaint();
      // Deliberately not asked whether it started: a tool that can't be objects to no password.
      tool.StartByCommand(ToolTask::CheckPassword, FromNarrow(m_curBackupInfo.strBackupPath),
                          DecryptedFolder(), qstrPassword);
      tool.Wait();
    }
    if (m_nDecryptStatus == kStatusOk) {
      m_strBackupPassword = qstrPassword;
      return true;
    }
    ShowInformation("Your password is not correct! Please try again.");
  }
}

bool DRUI::CheckPasswordRecieve(const QByteArray& line) {
  if (RejectsPassword(line)) {
    m_nDecryptStatus = kStatusWrongPassword;
    return true;
  }
  if (!CountIn(line)) return false;
  // The first sign of progress proves the password.
  m_nDecryptStatus = kStatusOk;
  return true;
}

bool DRUI::DecryptDataRecieve(const QByteArray& line) {
  if (RejectsPassword(line)) {
    m_nDecryptStatus = kStatusWrongPassword;
    return true;
  }
  const std::optional<qint64> nDone = CountIn(line);
  if (!nDone) return false;
  if (m_bCancelScan) return true;
  // A backup from the list was never counted: the bar then stays where it is.
  if (m_nTotalFileCount <= 0) return false;
  emit ScanProcessCallBack(ToolPercent(*nDone, m_nTotalFileCount) + 1);
  return false;
}

void DRUI::DropDecryptProcess() {
  if (m_pDecryptProcess) m_pDecryptProcess->kill();
  m_pDecryptProcess.reset();
}

QString DRUI::DecryptBackup() {
  m_task.RunOnMainThread([this] { DropDecryptProcess(); });
  m_nDecryptStatus = kStatusOk;
  const QString qstrFolder = DecryptedFolder();
  std::vector<std::string> old;
  TraverseFolderAndFile(ToNarrow(qstrFolder), old);
  for (const std::string& strEntry : old) unlink(strEntry.c_str());

  // The process belongs to this worker, its lines to the main thread, whose queue brings them to the window.
  // While the main thread waits for a cancelled scan it takes none, so that nothing kills the tool then.
  const auto pRun = std::make_shared<ToolRun>();
  DecryptClient tool([this, pRun](const QByteArray& line) {
    QMetaObject::invokeMethod(
        this,
        [this, line, pRun] {
          if (!pRun->bOver && DecryptDataRecieve(line)) pRun->bKill = true;
        },
        Qt::QueuedConnection);
    return false;
  });
  tool.StartByCommand(ToolTask::Decrypt, FromNarrow(m_curBackupInfo.strBackupPath), qstrFolder,
                      m_strBackupPassword);
  tool.Wait([&] { return pRun->bKill.load(); });
  // Lines that still stand in the queue come first, unless a cancel keeps the main thread from serving it.
  m_task.CatchUp();
  pRun->bOver = true;
  return qstrFolder;
}
