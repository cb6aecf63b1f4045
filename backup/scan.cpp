#include "backup/scan.h"

#include "common/status.h"

namespace orvandel {

std::unique_ptr<IPhoneRecoveryParse> MakeLocalParser(CIphoneBackupFile& session) {
  return std::unique_ptr<IPhoneRecoveryParse>(
      CIphoneRecoveryFactory::getInstance()->CreateRecoveryParse(&session, RECOVERY_TYPE_LOCAL_BACKUP));
}

int ScanBackup(const __BACK_FILE_INFO__& info, CIphoneBackupFile& session,
               std::unique_ptr<IPhoneRecoveryParse>& pParser, BackupRecords& records,
               const ScanSteps& steps) {
  pParser.reset();
  session.Init(&info);
  pParser = steps.makeParser(session);
  if (!pParser) return kStatusFailed;
  pParser->InitCallback(steps.pfnProgress, steps.pProgressContext);

  QString qstrDecryptedFolder;
  if (info.bEncrypted) {
    const std::optional<QString> folder = steps.decrypt();
    if (!folder) return kStatusOk;
    qstrDecryptedFolder = *folder;
  }
  if (steps.beforeManifest) steps.beforeManifest();
  const int nStatus = pParser->Scan(qstrDecryptedFolder);
  if (steps.afterManifest) steps.afterManifest(nStatus);
  if (nStatus == kStatusWrongPassword) return nStatus;
  if (nStatus == kStatusFailed || nStatus == kStatusStopWalk) return kStatusStopWalk;
  return WalkCategories(*pParser, records, steps.afterCategory, steps.isWanted);
}

}  // namespace orvandel
