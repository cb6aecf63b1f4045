#include "cli/recover_steps.h"

#include <algorithm>

#include "cli/stop_signal.h"
#include "common/text.h"

namespace {

class FileRecovery {
 public:
  FileRecovery(const Options& options, OpenBackup& backup, RecoveryReport& report)
      : m_copier(options.qstrDestination, FromNarrow(backup.session.GetBackupFolder())),
        m_records(backup.records),
        m_report(report) {}

  void CopyCategory(const Category& category) {
    const QString qstrFolder = category.pszFolder;
    if (category.pApps) {
      for (const auto& [strApp, files] : m_records.*category.pApps) {
        for (const _IPHONE_APP_FILE_INFO_& file : files)
          Copy(qstrFolder + FromNarrow(strApp) + '/', {file.strFileName, file.wstrFilePath});
      }
      return;
    }
    for (size_t nRow = 0; nRow < category.pfnCount(m_records); ++nRow)
      Copy(qstrFolder, category.pfnFile(m_records, nRow));
  }

 private:
  void Copy(const QString& qstrFolder, const FileToCopy& file) {
    if (StopSignal() != 0) return;
    m_report.Add(m_copier.Copy(qstrFolder, file.strName, file.wstrPath));
    m_report.Advance();
  }

  BackupFileCopier m_copier;
  const BackupRecords& m_records;
  RecoveryReport& m_report;
};

template <typename Conversations, typename Write>
void WriteConversations(const Conversations& conversations, RecoveryReport& report, Write write) {
  for (const auto& [nKey, messages] : conversations) {
    if (StopSignal() != 0) return;
    if (!messages.empty()) write(&messages.front());
    report.Advance();
  }
}

/// Rows one by one, then the page that they make; no page without rows, or after a stop.
template <typename Record, typename Add, typename Save>
void WriteTable(const std::vector<Record>& records, Add add, Save save) {
  for (const Record& record : records) add(&record);
  if (!records.empty() && StopSignal() == 0) save();
}

}  // namespace

bool IsWanted(const Options& options, CategoryNumber nNumber) {
  return std::find(options.only.begin(), options.only.end(), nNumber) != options.only.end();
}

qint64 CountWork(const Options& options, const BackupRecords& records) {
  qint64 nCount = 0;
  for (const Category& category : Categories()) {
    const bool bOnePage =
        category.nNumber == kContacts || category.nNumber == kCallHistory || category.nNumber == kNotes;
    if (!bOnePage && IsWanted(options, category.nNumber))
      nCount += static_cast<qint64>(category.pfnCount(records));
  }
  return nCount;
}

bool WantsDocuments(const Options& options) {
  for (const Category& category : Categories()) {
    if (!category.pszFolder && IsWanted(options, category.nNumber)) return true;
  }
  return false;
}

void RecoverFiles(const Options& options, OpenBackup& backup, RecoveryReport& report) {
  FileRecovery recovery(options, backup, report);
  for (const FileStep& step : FileSteps()) {
    if (IsWanted(options, step.nNumber)) recovery.CopyCategory(Categories()[step.nNumber]);
  }
}

void RecoverDocuments(const Options& options, const BackupRecords& records, CRecovery& recovery,
                      RecoveryReport& report) {
  if (IsWanted(options, kMessages)) {
    WriteConversations(records.m_mapMessage, report, [&](const __MESSAGE_INFO__* pFirst) {
      recovery.RecoveryMsg(pFirst, records.m_mapMessage);
    });
  }
  if (StopSignal() != 0) return;
  recovery.SaveMessage();  // wanted or not: without a folder of messages it does nothing
  if (IsWanted(options, kContacts)) {
    WriteTable(
        records.m_vecContact, [&](const __PERSON_CONTENT__* p) { recovery.RecoveryContacts(p); },
        [&] {
          recovery.SaveContactsCsv();
          recovery.SaveContacts();
        });
  }
  if (IsWanted(options, kCallHistory)) {
    WriteTable(
        records.m_vecCall, [&](const __CALLHISTORY__* p) { recovery.RecoveryCallHistory(p); },
        [&] { recovery.SaveCallHistory(); });
  }
  if (IsWanted(options, kNotes)) {
    WriteTable(
        records.m_vecNote, [&](const __NOTES__* p) { recovery.RecoveryNotes(p); },
        [&] { recovery.SaveNotes(); });
  }
  if (IsWanted(options, kWhatsApp)) {
    WriteConversations(records.m_mapWhatsApp, report, [&](const __WHATSAPP_MESSAGE__* pFirst) {
      recovery.RecoveryWhatsAppMsg(pFirst, records.m_mapWhatsApp);
    });
  }
}
