#include "cli/manifest_access.h"

#include "backup/discovery.h"
#include "cli/encrypted_backup.h"
#include "cli/exit_status.h"
#include "cli/open_backup.h"
#include "cli/output.h"
#include "cli/places.h"
#include "cli/stop_signal.h"
#include "common/places.h"
#include "common/text.h"

namespace orvandel {

namespace {

int UnlockInWorkFolder(const BackupOptions& options, BackupReader& reader) {
  if (!WorkFolderProblem().isEmpty()) {
    PrintError("the private folder for the decrypted files can't be created: " + WorkFolderProblem());
    return kExitNotWritten;
  }
  if (const int nStatus = CheckRoom(options, {reader.Folder() + "/Manifest.db"})) return nStatus;
  return Unlock(options, reader);
}

std::string WorkFolderPath() {
  const std::string strFolder = WorkFolder();
  return strFolder.substr(0, strFolder.size() - 1);
}

}  // namespace

int OpenManifest(const BackupOptions& options, std::unique_ptr<BackupReader>& pReader) {
  const std::string strBackup = ToNarrow(options.qstrBackup);
  __BACK_FILE_INFO__ info;
  if (const Problem problem = ReadBackupInfo(strBackup, info)) return NotABackup(options.qstrBackup, problem);
  CompleteEncryption(info);
  pReader = std::make_unique<BackupReader>(strBackup);
  // Before a password is asked for.
  if (!EntryExists(strBackup + "/Manifest.db") && !EntryExists(strBackup + "/Manifest.mbdb")) {
    PrintError(options.qstrBackup + ": contains no manifest (\"Manifest.db\" or \"Manifest.mbdb\")");
    return kExitNoBackup;
  }
  if (info.bEncrypted) {
    if (const int nStatus = UnlockInWorkFolder(options, *pReader)) return nStatus;
  }
  try {
    const std::string strFolder = info.bEncrypted ? WorkFolderPath() : strBackup;
    pReader->OpenManifest(strFolder, strFolder);
  } catch (const std::runtime_error& error) {
    PrintError(FromNarrow(error.what()));
    return kExitNotWritten;
  }
  return StopSignal() != 0 ? Interrupted() : kExitDone;
}

bool VisitManifest(const BackupReader& reader, BackupReader::Detail detail,
                   const std::function<bool(ManifestEntry&& entry)>& visit) {
  try {
    reader.Visit(detail, [&](ManifestEntry&& entry) { return StopSignal() == 0 && visit(std::move(entry)); });
  } catch (const std::runtime_error& error) {
    PrintError(FromNarrow(error.what()));
    return false;
  }
  // Nothing else reports losses, and a second visit doesn't report the same again.
  return Losses().empty();
}

void SetEntryName(const ManifestEntry& entry, std::string& strName) {
  strName = entry.strDomain;
  if (entry.strPath.empty()) return;
  strName += '/';
  strName += entry.strPath;
}

int FinishCommand(bool bComplete) {
  if (!FinishOutput()) return kExitNotWritten;
  if (StopSignal() != 0) return Interrupted();
  return bComplete ? kExitDone : kExitNotWritten;
}

}  // namespace orvandel
