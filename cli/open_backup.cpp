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
#include "common/layout.h"
#include "common/text.h"
#include "extract/left_out.h"
#include "extract/whatsapp_chats.h"

namespace orvandel {

namespace {

bool HoldsBackups(const QString& qstrFolder) {
  for (const QFileInfo& entry : QDir(qstrFolder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    if (QFile::exists(entry.filePath() + "/Info.plist")) return true;
  }
  return false;
}

void WarnOfOddities(const __BACK_FILE_INFO__& info) {
  const QString qstrPath = FromNarrow(info.strBackupPath);
  if (info.strDisplayName.empty() && info.strSerialNumber.empty() && info.strLastBackupDate.empty())
    PrintError(qstrPath + "/Info.plist: contains no information about the device; the backup is read anyway");
  const bool bAscii =
      std::all_of(qstrPath.begin(), qstrPath.end(), [](QChar c) { return c.unicode() < 0x80; });
  if (!bAscii && !info.bEncrypted)  // files of an encrypted one are read by paths in the work folder
    PrintError(qstrPath +
               ": the path contains non-ASCII characters, so sizes of photos are 0, and message and WhatsApp "
               "attachments are missing; use a link to it with an ASCII path to get them all");
}

std::string LastStep(const std::string& strPath) {
  return strPath.substr(strPath.rfind('/') + 1);
}

/// The parser of a local backup, which also reads the chats of WhatsApp. The window uses the one that
/// doesn't, since it picks the chats of a recovery by the rows of messages.
class ChatReadingParser : public CLocalBuckupRecovery {
 public:
  explicit ChatReadingParser(CIphoneBackupFile& session) : m_session(session) { Init(&session); }

  int GetWhatsappMessageInfo(WhatsAppMap& chats) override {
    const std::string strStore = FindWhatsAppStore(m_session.GetManifest(), m_session.GetLayout());
    if (!strStore.empty()) WhatsAppChatReader().Read(strStore, chats);
    return CLocalBuckupRecovery::GetWhatsappMessageInfo(chats);
  }

 private:
  CIphoneBackupFile& m_session;
};

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

/// Lets problems name files by their names on the device, since their paths in the work folder tell nobody
/// anything.
void NameDecryptedFiles(const OpenBackup& backup) {
  const std::string strFolder = ToNarrow(backup.encrypted.Folder()) + "/";
  SetFileNaming(
      [names = DeviceNames(backup.session.GetManifest()), strFolder](const std::string& strFile) mutable {
        return strFile.compare(0, strFolder.size(), strFolder) == 0 ? ToNarrow(names.Of(strFile)) : strFile;
      });
}

void NameFailures(OpenBackup& backup) {
  DeviceNames names(backup.session.GetManifest());
  for (const EncryptedBackup::Failure& failure : backup.encrypted.Failures()) {
    const QString qstrName = failure.strFile.empty() ? backup.qstrPath : names.Of(failure.strFile);
    PrintError(qstrName + ": " + FromNarrow(failure.strReason));
    backup.notDecrypted.push_back(Unread(qstrName, failure.strReason));
  }
  if (const size_t nFailures = backup.notDecrypted.size())
    PrintError(QString("%1: %2 could not be decrypted; their content is missing from the result")
                   .arg(backup.qstrPath)
                   .arg(nFailures == 1 ? QString("1 file") : QString("%1 files").arg(nFailures)));
}

/// Counts what the stores of wanted categories contain beyond what was read.
void CountLeftOut(const WantedCategory& isWanted, OpenBackup& backup) {
  const auto isRead = [&](CategoryNumber nNumber) {
    return StopSignal() == 0 && (!isWanted || isWanted(nNumber));
  };
  const BackupLayout layout = backup.session.GetLayout();
  const auto pathOf = [&](const char* pszStore) { return ToNarrow(layout.PathOf(pszStore)); };
  if (isRead(kMessages))
    backup.leftOut.nMessagesWithoutSender = CountMessagesWithoutSender(pathOf(kMessageStore));
  if (isRead(kNotes) && backup.session.HasSnippetsOnly())
    backup.leftOut.nNotesWithSnippetOnly = CountNotesWithSnippetOnly(pathOf(kNotesCloudStore));
}

}  // namespace

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

void CompleteEncryption(__BACK_FILE_INFO__& info) {
  info.bEncrypted = EncryptionMark(info.strBackupPath).value_or(info.bEncrypted);
}

int Interrupted() {
  PrintError("stopped");
  return 128 + StopSignal();
}

int ReadBackup(const BackupOptions& options, const WantedCategory& isWanted, ProgressBar& bar,
               OpenBackup& backup) {
  __BACK_FILE_INFO__ info;
  if (const Problem problem = ReadBackupInfo(ToNarrow(options.qstrBackup), info))
    return NotABackup(options.qstrBackup, problem);
  CompleteEncryption(info);

  int nDecryptStatus = kExitDone;
  ScanSteps steps;
  steps.makeParser = [](CIphoneBackupFile& session) { return std::make_unique<ChatReadingParser>(session); };
  steps.pfnProgress = &ProgressBar::Report;
  steps.pProgressContext = &bar;
  steps.decrypt = [&]() -> std::optional<QString> {
    bar.Show(0);
    nDecryptStatus = backup.encrypted.Open(options, isWanted);
    if (nDecryptStatus != kExitDone) return std::nullopt;
    return backup.encrypted.Folder();
  };
  steps.beforeManifest = [&] { WarnOfOddities(info); };
  steps.afterManifest = [&](int nStatus) {
    backup.nManifestStatus = nStatus;
    if (!info.bEncrypted) return;
    nDecryptStatus = backup.encrypted.OpenFiles(isWanted);
    NameDecryptedFiles(backup);
    NameFailures(backup);
  };
  steps.isWanted = isWanted;
  std::unique_ptr<IPhoneRecoveryParse> pParser;
  UnknownMedia unknownMedia(MediaOf(isWanted));
  backup.session.SetUnknownMedia(&unknownMedia);
  ScanBackup(info, backup.session, pParser, backup.records, steps);
  backup.session.SetUnknownMedia(nullptr);
  if (nDecryptStatus != kExitDone) return nDecryptStatus;
  backup.leftOut.files = unknownMedia.Counts();
  CountLeftOut(isWanted, backup);
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
