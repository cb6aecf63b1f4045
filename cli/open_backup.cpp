#include "cli/open_backup.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <unordered_map>

#include "backup/discovery.h"
#include "backup/scan.h"
#include "cli/exit_status.h"
#include "cli/output.h"
#include "cli/stop_signal.h"
#include "common/file.h"
#include "common/text.h"
#include "decrypt/backup_files.h"
#include "decrypt/protocol.h"

namespace orvandel {

namespace {

bool HoldsBackups(const QString& qstrFolder) {
  for (const QFileInfo& entry : QDir(qstrFolder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    if (QFile::exists(entry.filePath() + "/Info.plist")) return true;
  }
  return false;
}

int NotABackup(const QString& qstrFolder, const Problem& problem) {
  if (problem.nCode == ENOENT && !QFileInfo::exists(qstrFolder)) {
    PrintError(qstrFolder + ": no such folder");
  } else {
    PrintError(QString("%1: not a backup: \"Info.plist\" in it can't be read (%2)")
                   .arg(qstrFolder, FromNarrow(problem.strReason)));
    if (HoldsBackups(qstrFolder))
      PrintError(QString("there are backups below it; 'orvandel-cli backups %1' lists them").arg(qstrFolder));
  }
  return kExitNoBackup;
}

bool HasReadableContacts(const std::string& strFolder) {
  const BackupLayout layout{FromNarrow(strFolder), false, EntryExists(strFolder + "/Manifest.db")};
  return static_cast<bool>(OpenBackupFile(ToNarrow(layout.PathOf(kContactsStore))));
}

void WarnOfOddities(const __BACK_FILE_INFO__& info) {
  const QString qstrPath = FromNarrow(info.strBackupPath);
  if (info.strDisplayName.empty() && info.strSerialNumber.empty() && info.strLastBackupDate.empty())
    PrintError(qstrPath + "/Info.plist: contains no information about the device; the backup is read anyway");
  const bool bAscii =
      std::all_of(qstrPath.begin(), qstrPath.end(), [](QChar c) { return c.unicode() < 0x80; });
  if (!bAscii)
    PrintError(qstrPath +
               ": the path contains non-ASCII characters, so sizes of photos are 0, and message and WhatsApp "
               "attachments are missing; use a link to it with an ASCII path to get them all");
}

std::string LastStep(const std::string& strPath) {
  return strPath.substr(strPath.rfind('/') + 1);
}

/// Maps paths of backup files to their names on the device.
class DeviceNames {
 public:
  explicit DeviceNames(const Catalogue& catalogue) : m_catalogue(catalogue) {}

  /// The name on the device; the path itself for a file that isn't in the manifest.
  QString Of(const std::string& strPath) {
    if (m_names.empty()) {
      for (const __MBDB_FILE__& entry : m_catalogue) m_names.emplace(entry.strFileId, &entry.strFileName);
    }
    const auto it = m_names.find(LastStep(strPath));
    return FromNarrow(it == m_names.end() ? strPath : *it->second);
  }

 private:
  const Catalogue& m_catalogue;
  std::unordered_map<std::string, const std::string*> m_names;  // by identifier; filled on first use
};

/// Makes the record of a file that could not be read. @param qstrName its name on the device.
WrittenFile Unread(const QString& qstrName, const std::string& strReason) {
  return {qstrName, {Problem::Step::Read, EIO, ToNarrow(qstrName), strReason}, {}};
}

void NameFailures(OpenBackup& backup) {
  DeviceNames names(backup.session.GetManifest());
  for (const DecryptRun::Failure& failure : backup.decryptRun.Failures()) {
    const QString qstrName =
        failure.qstrFile.isEmpty() ? backup.qstrPath : names.Of(ToNarrow(failure.qstrFile));
    PrintError(qstrName + ": " + failure.qstrReason);
    // A file that is in the manifest but missing from the backup is skipped, as in an unencrypted backup.
    if (!failure.qstrFile.isEmpty() && failure.qstrReason == kMissingSource) continue;
    backup.notDecrypted.push_back(Unread(qstrName, ToNarrow(failure.qstrReason)));
  }
  if (!backup.notDecrypted.empty())
    PrintError(QString("%1: %2 could not be decrypted; their content is missing from the result")
                   .arg(backup.qstrPath)
                   .arg(backup.notDecrypted.size() == 1
                            ? QString("1 file")
                            : QString("%1 files").arg(static_cast<qint64>(backup.notDecrypted.size()))));
}

}  // namespace

void CompleteEncryption(__BACK_FILE_INFO__& info) {
  if (!info.bEncrypted && !HasReadableContacts(info.strBackupPath))
    info.bEncrypted = IsMarkedEncrypted(info.strBackupPath);
}

int Interrupted() {
  PrintError("stopped");
  return 128 + StopSignal();
}

int ReadBackup(const BackupOptions& options, ProgressBar& bar, OpenBackup& backup) {
  __BACK_FILE_INFO__ info;
  if (const Problem problem = ReadBackupInfo(ToNarrow(options.qstrBackup), info))
    return NotABackup(options.qstrBackup, problem);
  CompleteEncryption(info);

  int nDecryptStatus = kExitDone;
  ScanSteps steps;
  steps.pfnProgress = &ProgressBar::Report;
  steps.pProgressContext = &bar;
  steps.decrypt = [&]() -> std::optional<QString> {
    nDecryptStatus = backup.decryptRun.Run(options, bar);
    if (nDecryptStatus != kExitDone) return std::nullopt;
    return backup.decryptRun.Folder();
  };
  steps.beforeManifest = [&] { WarnOfOddities(info); };
  steps.afterManifest = [&](int nStatus) {
    backup.nManifestStatus = nStatus;
    NameFailures(backup);
  };
  std::unique_ptr<IPhoneRecoveryParse> pParser;
  ScanBackup(info, backup.session, pParser, backup.records, steps);
  if (nDecryptStatus != kExitDone) return nDecryptStatus;
  bar.Clear();
  return StopSignal() != 0 ? Interrupted() : kExitDone;
}

std::vector<WrittenFile> LostFiles(const OpenBackup& backup,
                                   const std::function<bool(const std::string& strFileId)>& isWanted) {
  DeviceNames names(backup.session.GetManifest());
  std::vector<WrittenFile> lost;
  for (const auto& [strFile, strReason] : Losses()) {
    if (isWanted(LastStep(strFile))) lost.push_back(Unread(names.Of(strFile), strReason));
  }
  return lost;
}

std::vector<WrittenFile> AllLosses(const OpenBackup& backup) {
  std::vector<WrittenFile> lost = LostFiles(backup, [](const std::string&) { return true; });
  lost.insert(lost.end(), backup.notDecrypted.begin(), backup.notDecrypted.end());
  return lost;
}

}  // namespace orvandel
