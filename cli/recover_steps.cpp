#include "cli/recover_steps.h"

#include <algorithm>

#include "cli/file_times.h"
#include "cli/stop_signal.h"
#include "common/text.h"
#include "export/document_steps.h"
#include "export/file_name.h"

namespace orvandel {

namespace {

/// The wanted categories of files, in the order of the recovery.
std::vector<const Category*> WantedFiles(const RecoverOptions& options) {
  std::vector<const Category*> wanted;
  for (const FileStep& step : FileSteps()) {
    if (IsWanted(options, step.nNumber)) wanted.push_back(&Categories()[step.nNumber]);
  }
  return wanted;
}

class FileRecovery {
 public:
  FileRecovery(const RecoverOptions& options, OpenBackup& backup, RecoveryReport& report)
      : m_copier(options.qstrDestination, FromNarrow(backup.session.GetBackupFolder())),
        m_records(backup.records),
        m_report(report) {
    if (!options.bTimes) return;
    for (const Category* pCategory : WantedFiles(options))
      VisitFiles(*pCategory, [this](const auto&, const FileToCopy& file) { m_times.Add(file.wstrPath); });
    m_times.Read(backup);
  }

  void CopyCategory(const Category& category) {
    VisitFiles(category, [&](const std::string& strApp, const FileToCopy& file) {
      Copy(category.pszFolder, strApp, file);
    });
  }

 private:
  /// @param visit called with the name of the app, empty for none, and the file.
  template <typename Visit>
  void VisitFiles(const Category& category, Visit visit) const {
    if (category.pApps) {
      for (const auto& [strApp, files] : m_records.*category.pApps) {
        for (const _IPHONE_APP_FILE_INFO_& file : files) visit(strApp, {file.strFileName, file.wstrFilePath});
      }
      return;
    }
    for (size_t nRow = 0; nRow < category.pfnCount(m_records); ++nRow)
      visit(std::string(), category.pfnFile(m_records, nRow));
  }

  /// @param strApp name of a sub-folder; empty for none.
  void Copy(const QString& qstrFolder, const std::string& strApp, const FileToCopy& file) {
    if (StopSignal() != 0) return;
    m_report.Add(CopyUnderAnyName(qstrFolder, strApp, file));
    m_report.Advance();
  }

  /// Tries the names in the backup first. Invalid names are replaced by safe ones.
  WrittenFile CopyUnderAnyName(const QString& qstrFolder, const std::string& strApp, const FileToCopy& file) {
    const auto folderOf = [&](const std::string& strName) {
      return strApp.empty() ? qstrFolder : qstrFolder + FromNarrow(strName) + '/';
    };
    const int64_t nModified = m_times.Of(file.wstrPath);
    const WrittenFile written = m_copier.Copy(folderOf(strApp), file.strName, file.wstrPath, nModified);
    const std::string strSafeApp = SafeFileName(strApp), strSafeName = SafeFileName(file.strName);
    const bool bSame = strSafeName == file.strName && (strApp.empty() || strSafeApp == strApp);
    if (written.Succeeded() || !written.IsNotCreated() || bSame) return written;
    WrittenFile safe = m_copier.Copy(folderOf(strSafeApp), strSafeName, file.wstrPath, nModified);
    safe.qstrOriginalName = FromNarrow(strApp.empty() ? file.strName : strApp + '/' + file.strName);
    return safe.Succeeded() ? safe : written;
  }

  BackupFileCopier m_copier;
  FileTimes m_times;
  const BackupRecords& m_records;
  RecoveryReport& m_report;
};

void WriteConversations(const DocumentStep& step, const BackupRecords& records, CRecovery& recovery,
                        RecoveryReport& report, RecoveryIndex& index) {
  for (const unsigned int nKey : step.conversations.pfnKeys(records)) {
    if (StopSignal() != 0) return;
    index.SetConversation(nKey);
    step.conversations.pfnWrite(recovery, records, nKey);
    report.Advance();
  }
}

bool IsOnePage(const Category& category) {
  return std::any_of(DocumentSteps().begin(), DocumentSteps().end(), [&](const DocumentStep& step) {
    return step.nNumber == category.nNumber && step.IsPage();
  });
}

}  // namespace

bool IsWanted(const RecoverOptions& options, CategoryNumber nNumber) {
  return std::find(options.only.begin(), options.only.end(), nNumber) != options.only.end();
}

qint64 CountWork(const RecoverOptions& options, const BackupRecords& records) {
  qint64 nCount = 0;
  for (const Category& category : Categories()) {
    if (!IsOnePage(category) && IsWanted(options, category.nNumber))
      nCount += static_cast<qint64>(category.pfnCount(records));
  }
  return nCount;
}

bool WantsDocuments(const RecoverOptions& options) {
  for (const Category& category : Categories()) {
    if (!category.pszFolder && IsWanted(options, category.nNumber)) return true;
  }
  return false;
}

void RecoverFiles(const RecoverOptions& options, OpenBackup& backup, RecoveryReport& report) {
  FileRecovery recovery(options, backup, report);
  for (const Category* pCategory : WantedFiles(options)) recovery.CopyCategory(*pCategory);
}

void RecoverDocuments(const RecoverOptions& options, const BackupRecords& records, CRecovery& recovery,
                      RecoveryReport& report, RecoveryIndex& index) {
  for (const DocumentStep& step : DocumentSteps()) {
    if (StopSignal() != 0) return;
    // The message store is also copied only when messages are wanted, since that replaces the copy of an
    // earlier run.
    if (!IsWanted(options, step.nNumber)) continue;
    if (step.IsPage()) {
      step.rows.pfnAddAll(recovery, records);
      const bool bEmpty = Categories()[step.nNumber].pfnCount(records) == 0;
      if (bEmpty || StopSignal() != 0) continue;
    } else if (!step.IsStore()) {
      WriteConversations(step, records, recovery, report, index);
    }
    if (step.pfnSave) step.pfnSave(recovery);
  }
}

void ReportLosses(const RecoverOptions& options, const OpenBackup& backup, RecoveryReport& report) {
  const auto isWanted = [&](CategoryNumber nNumber) { return IsWanted(options, nNumber); };
  const bool bFiles = std::any_of(FileSteps().begin(), FileSteps().end(),
                                  [&](const FileStep& step) { return isWanted(step.nNumber); });
  for (const WrittenFile& file : LostFiles(backup, [&](const std::string& strFileId) {
         // Any other file of a backup may be one of a category that reads files.
         const StoreUse* pStore = FindStoreUse(strFileId);
         return pStore ? pStore->IsWanted(isWanted) : bFiles;
       }))
    report.Add(file);
  for (const WrittenFile& file : backup.notDecrypted) report.Add(file);
}

}  // namespace orvandel
