// The recovery: the main thread sits in the progress dialog while the worker writes what is ticked.

#include <QDir>
#include <QFileDialog>

#include "app/progress_dialog.h"
#include "app/thread.h"
#include "common/text.h"
#include "export/document_steps.h"
#include "export/file_copy.h"
#include "export/recovery.h"
#include "ui/category_tables.h"

using namespace orvandel;

namespace {

constexpr int kEndPercent = 1000;  // fills the bar whatever is added to it
constexpr int kEndProgress = 10000;

int Share(size_t nDone, int nNumerator, size_t nTotal) {
  return static_cast<int>(nDone * static_cast<size_t>(nNumerator) / nTotal);
}

}  // namespace

void DRUI::btnRecovery() {
  m_strSelectDir.clear();
  // The dialog opens in the folder that the last one showed, which may be the backup's own, where Return
  // recovers at once.
  QFileDialog().setDirectory(QDir::currentPath());
  m_strSelectDir =
      QFileDialog::getExistingDirectory(this, QString(), m_strSelectDir, QFileDialog::ShowDirsOnly);
  if (!m_strSelectDir.isNull()) RunRecovery();
}

void DRUI::RunRecovery() {
  SCANUI dialog;
  dialog.SetSaveDir(m_strSelectDir);
  dialog.InitSlot(this, SCANUI::kRecovery);
  CMyThread thread;
  thread.SetFunc(&DRUI::_RecoveryProcess, this);
  thread.setStackSize(m_nWorkerStackSize);
  if (!m_task.Start(thread)) return ShowInformation(kNoWorker);
  dialog.exec();
  // The dialog closes when the worker is done; its last steps need no more than a moment.
  m_task.End();
}

void DRUI::_RecoveryProcess(void* pWindow, int&) {
  auto* pSelf = static_cast<DRUI*>(pWindow);
  pSelf->m_bCancelRecovery = false;
  pSelf->m_task.Begun();
  pSelf->RecoveryProcess();
}

int DRUI::RecoveryCallBack(int nProgress, int nPercent, int nErrorCode, const char16_t* pRecoveryFileName) {
  if (m_bCancelRecovery) return 1;
  emit RecoveryCallBack(nProgress, nPercent, nErrorCode, QString::fromUtf16(pRecoveryFileName));
  return 0;
}

int DRUI::RecoveryCallBack(void* pWindow, int nProgress, int nPercent, int nErrorCode,
                           const char16_t* pRecoveryFileName) {
  return static_cast<DRUI*>(pWindow)->RecoveryCallBack(nProgress, nPercent, nErrorCode, pRecoveryFileName);
}

void DRUI::RecoveryProcess() {
  CRecovery recovery;
  recovery.Init(m_strSelectDir, &m_backupFile);
  RecoverFiles();
  RecoverDocuments(recovery);
  RecoveryCallBack(kEndProgress, kEndPercent, 0, u"");
  m_task.Raise(m_bCancelRecovery);  // also the mark that the recovery has ended
}

void DRUI::RecoverFiles() {
  BackupFileCopier copier(m_strSelectDir, FromNarrow(m_backupFile.GetBackupFolder()));
  // The window reports every file as done; a copy that failed isn't noticed, and a cancel stops nothing.
  const auto copy = [&](const QString& qstrFolder, const FileToCopy& file, int nProgress, int nPercent) {
    const WrittenFile written = copier.Copy(qstrFolder, file.strName, file.wstrPath);
    RecoveryCallBack(nProgress, nPercent, 0, ToWide(written.qstrPath).c_str());
  };
  for (const FileStep& step : FileSteps()) {
    const TableSpec& spec = TableSpec::Of(step.nNumber);
    const Category& category = Categories()[step.nNumber];
    const QString qstrFolder = category.pszFolder;
    size_t nDone = 0;
    if (!spec.IsAppTable()) {
      const SelectionMap& selection = this->*spec.pSelection;
      const size_t nFiles = category.pfnCount(m_records);
      for (const auto& [nRow, nBytes] : selection) {
        const int nProgress = Share(++nDone, step.nNumerator, selection.size());
        // A map that outlived its scan may hold a row beyond the list.
        if (nRow < nFiles) copy(qstrFolder, category.pfnFile(m_records, nRow), nProgress, step.nPercent);
      }
    } else {
      const AppSelectionMap& selection = this->*spec.pAppSelection;
      const AppFileMap& apps = m_records.*category.pApps;
      for (const auto& [qstrApp, rows] : selection) {
        // One value for all files of an app.
        const int nProgress = Share(++nDone, step.nNumerator, selection.size());
        const auto it = apps.find(ToNarrow(qstrApp));
        if (it == apps.end()) continue;
        for (const auto& [nRow, nBytes] : rows) {
          if (nRow >= it->second.size()) continue;
          const _IPHONE_APP_FILE_INFO_& file = it->second[nRow];
          copy(qstrFolder + FromNarrow(file.strAppName) + '/', {file.strFileName, file.wstrFilePath},
               nProgress, step.nPercent);
        }
      }
    }
    RecoveryCallBack(step.nEndMark, 1, 0, u"");
  }
}

std::vector<QVariant> DRUI::HiddenData(const QTableWidget* pTable, const SelectionMap& rows) {
  std::vector<QVariant> hidden;
  m_task.RunOnMainThread([&] {
    for (const auto& [nRow, nValue] : rows) {
      const QTableWidgetItem* pItem = pTable->item(static_cast<int>(nRow), 0);
      hidden.push_back(pItem ? pItem->data(Qt::UserRole) : QVariant());
    }
  });
  return hidden;
}

void DRUI::RecoverDocuments(CRecovery& recovery) {
  for (const DocumentStep& step : DocumentSteps()) {
    const TableSpec& spec = TableSpec::Of(step.nNumber);
    const SelectionMap& selection = this->*spec.pSelection;
    if (!step.IsStore() && selection.empty()) continue;
    if (step.IsPage()) {
      for (const QVariant& hidden : HiddenData(this->*spec.pTable, selection)) {
        if (hidden.isValid()) step.rows.pfnAdd(recovery, hidden);
      }
    } else if (!step.IsStore()) {
      // The key of a row without a cell is that of the row before. Chats go by the row numbers of the ticked
      // messages, so that without one of those none is written.
      unsigned int nKey = 0;
      for (const QVariant& hidden : HiddenData(this->*spec.pTable, m_mapSelMessage)) {
        if (hidden.isValid()) nKey = hidden.toUInt();
        step.conversations.pfnWrite(recovery, m_records, nKey);
      }
    }
    if (step.pfnSave) step.pfnSave(recovery);
    if (step.pszReported)
      RecoveryCallBack(step.nEndMark, 1, 0, ToWide(m_strSelectDir + step.pszReported).c_str());
  }
}
