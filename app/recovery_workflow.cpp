// The recovery: the main thread sits in the progress dialog while the worker writes what is ticked.

#include <QFileDialog>

#include "app/progress_dialog.h"
#include "app/thread.h"
#include "common/text.h"
#include "export/file_copy.h"
#include "export/recovery.h"
#include "ui/category_tables.h"

namespace {

constexpr int kEndPercent = 1000;  // whatever stands before it, the bar is full
constexpr int kEndProgress = 10000;

/// A category whose ticked rows go into one page, one by one.
struct PageStep {
  CategoryNumber nNumber;
  void (*pfnAdd)(CRecovery& recovery, const QVariant& hidden);
  void (*pfnSave)(CRecovery& recovery);
  int nProgress;            // of the report at its end, in hundredths of a percent
  const char* pszReported;  // the path in that report, below the destination
};

template <typename Record, void (CRecovery::*kAdd)(const Record*)>
void AddRow(CRecovery& recovery, const QVariant& hidden) {
  const auto record = hidden.value<Record>();
  (recovery.*kAdd)(&record);
}

constexpr PageStep kPageSteps[] = {
    {kContacts, AddRow<__PERSON_CONTENT__, &CRecovery::RecoveryContacts>,
     [](CRecovery& recovery) {
       recovery.SaveContactsCsv();
       recovery.SaveContacts();
     },
     9200, "/Contacts/Contacts.html"},
    {kCallHistory, AddRow<__CALLHISTORY__, &CRecovery::RecoveryCallHistory>,
     [](CRecovery& recovery) { recovery.SaveCallHistory(); }, 9300, "/CallHistory/CallHistory.html"},
    {kNotes, AddRow<__NOTES__, &CRecovery::RecoveryNotes>, [](CRecovery& recovery) { recovery.SaveNotes(); },
     9500, "/Notes/Notes.html"},
};

int Share(size_t nDone, int nNumerator, size_t nTotal) {
  return static_cast<int>(nDone * static_cast<size_t>(nNumerator) / nTotal);
}

}  // namespace

void DRUI::btnRecovery() {
  m_strSelectDir.clear();
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
  if (!thread.Begin()) return ShowInformation(kNoWorker);
  dialog.exec();
  // The dialog closes when the worker is done; its last steps need no more than a moment.
  while (!thread.wait(0) || !thread.HasEnded()) m_handOver.ServeFor(1);
}

void DRUI::_RecoveryProcess(void* pWindow, int&) {
  auto* pSelf = static_cast<DRUI*>(pWindow);
  pSelf->m_bCancelRecovery = false;
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
  m_bCancelRecovery = true;  // also the mark that the recovery has ended
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
  m_handOver.Run([&] {
    for (const auto& [nRow, nValue] : rows) {
      const QTableWidgetItem* pItem = pTable->item(static_cast<int>(nRow), 0);
      hidden.push_back(pItem ? pItem->data(Qt::UserRole) : QVariant());
    }
  });
  return hidden;
}

void DRUI::RecoverDocuments(CRecovery& recovery) {
  const auto report = [this](int nProgress, const char* pszPath) {
    RecoveryCallBack(nProgress, 1, 0, ToWide(m_strSelectDir + pszPath).c_str());
  };
  /// Conversations of the ticked rows: the key of a row without a cell is that of the row before.
  const auto recoverConversations = [&](const QTableWidget* pTable, const auto& conversations,
                                        const auto& recover) {
    unsigned int nKey = 0;
    for (const QVariant& hidden : HiddenData(pTable, m_mapSelMessage)) {
      if (hidden.isValid()) nKey = hidden.toUInt();
      const auto it = conversations.find(nKey);
      if (it != conversations.end() && !it->second.empty()) recover(&it->second.front());
    }
  };
  if (!m_mapSelMessage.empty()) {
    recoverConversations(m_pMessageTable, m_records.m_mapMessage, [&](const __MESSAGE_INFO__* pFirst) {
      recovery.RecoveryMsg(pFirst, m_records.m_mapMessage);
    });
    // These paths are reported whatever was written, and no file bears the first: the real ones carry a time
    // stamp.
    report(9100, "/Message/sms.csv");
  }
  recovery.SaveMessage();
  for (const PageStep& step : kPageSteps) {
    const TableSpec& spec = TableSpec::Of(step.nNumber);
    const SelectionMap& selection = this->*spec.pSelection;
    if (selection.empty()) continue;
    for (const QVariant& hidden : HiddenData(this->*spec.pTable, selection)) {
      if (hidden.isValid()) step.pfnAdd(recovery, hidden);
    }
    step.pfnSave(recovery);
    report(step.nProgress, step.pszReported);
  }
  // Chats go by the row numbers of the ticked messages, so that without one of those none is written.
  if (!m_mapSelWhatsapp.empty()) {
    recoverConversations(m_pWhatsappTable, m_records.m_mapWhatsApp, [&](const __WHATSAPP_MESSAGE__* pFirst) {
      recovery.RecoveryWhatsAppMsg(pFirst, m_records.m_mapWhatsApp);
    });
  }
}
