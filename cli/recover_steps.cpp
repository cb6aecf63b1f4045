#include "cli/recover_steps.h"

#include <algorithm>

#include "cli/stop_signal.h"
#include "common/text.h"

namespace {

// The order in which the window recovers files, which isn't that of the tree.
constexpr std::array kFileOrder = {kCameraRoll, kPhotoStream,         kAppPhotos,
                                   kAppVideos,  kWhatsAppAttachments, kMessageAttachments};

class FileRecovery {
 public:
  FileRecovery(const Options& options, OpenBackup& backup, RecoveryReport& report)
      : m_copier(options.qstrDestination, FromNarrow(backup.session.GetBackupFolder())),
        m_records(backup.records),
        m_report(report) {}

  void CopyCategory(CategoryNumber nNumber) {
    const QString qstrFolder = Categories()[nNumber].pszFolder;
    switch (nNumber) {
      case kCameraRoll:
        return CopyList(m_records.m_vecCamera, qstrFolder);
      case kPhotoStream:
        return CopyList(m_records.m_vecPhotoStream, qstrFolder);
      case kAppPhotos:
        return CopyApps(m_records.m_mapAppPhotoFiles, qstrFolder);
      case kAppVideos:
        return CopyApps(m_records.m_mapAppVideoFiles, qstrFolder);
      case kWhatsAppAttachments:
        return CopyList(m_records.m_vecWhatsAppAttachment, qstrFolder);
      case kMessageAttachments:
        return CopyList(m_records.m_vecMessageAttachment, qstrFolder);
      default:
        return;
    }
  }

 private:
  template <typename File>
  void CopyList(const std::vector<File>& files, const QString& qstrFolder) {
    for (const File& file : files) {
      if (StopSignal() != 0) return;
      m_report.Add(m_copier.Copy(qstrFolder, file.strFileName, file.wstrFilePath));
      m_report.Advance();
    }
  }

  void CopyApps(const AppFileMap& apps, const QString& qstrFolder) {
    for (const auto& [strApp, files] : apps) CopyList(files, qstrFolder + FromNarrow(strApp) + '/');
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
  for (CategoryNumber nNumber : kFileOrder) {
    if (IsWanted(options, nNumber)) recovery.CopyCategory(nNumber);
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
