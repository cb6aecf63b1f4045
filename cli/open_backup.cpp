#include "cli/open_backup.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "cli/exit_status.h"
#include "cli/problems.h"
#include "cli/stop_signal.h"
#include "common/status.h"
#include "common/text.h"

namespace {

bool HoldsBackups(const QString& qstrFolder) {
  for (const QFileInfo& entry : QDir(qstrFolder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    if (QFile::exists(entry.filePath() + "/Info.plist")) return true;
  }
  return false;
}

int NotABackup(const QString& qstrFolder, int nError) {
  if (nError == ENOENT && !QFileInfo::exists(qstrFolder)) {
    PrintError(qstrFolder + ": no such folder");
  } else {
    PrintError(QString("%1: not a backup: \"Info.plist\" in it can't be read (%2)")
                   .arg(qstrFolder, QString::fromLocal8Bit(strerror(nError))));
    if (HoldsBackups(qstrFolder))
      PrintError(QString("there are backups below it; 'orvandel-cli backups %1' lists them").arg(qstrFolder));
  }
  return kExitNoBackup;
}

void WarnOfOddities(const __BACK_FILE_INFO__& info) {
  const QString qstrPath = FromNarrow(info.strBackupPath);
  if (info.strDisplayName.empty() && info.strSerialNumber.empty() && info.strLastBackupDate.empty())
    PrintError(qstrPath + "/Info.plist: tells nothing of the device; the content is read all the same");
  const bool bAscii =
      std::all_of(qstrPath.begin(), qstrPath.end(), [](QChar c) { return c.unicode() < 0x80; });
  if (!bAscii)
    PrintError(qstrPath +
               ": in a path with characters beyond ASCII, sizes of photos read 0 and message and WhatsApp "
               "attachments are left out; a link to it with a plain name gives them all");
}

}  // namespace

int Interrupted() {
  PrintError("stopped");
  return 128 + StopSignal();
}

int ReadBackup(const Options& options, ProgressBar& bar, OpenBackup& backup) {
  __BACK_FILE_INFO__ info;
  errno = 0;
  if (backup.session.GetBackFileInfo(ToNarrow(options.qstrBackup).c_str(), &info) != kStatusOk)
    return NotABackup(options.qstrBackup, errno);
  QString qstrDecryptedFolder;
  if (info.bEncrypted) {
    if (const int nStatus = backup.decryptRun.Run(options, bar)) return nStatus;
    qstrDecryptedFolder = backup.decryptRun.Folder();
  }
  WarnOfOddities(info);

  backup.session.Init(&info);
  const std::unique_ptr<IPhoneRecoveryParse> pParser(
      CIphoneRecoveryFactory::getInstance()->CreateRecoveryParse(&backup.session,
                                                                 RECOVERY_TYPE_LOCAL_BACKUP));
  pParser->InitCallback(&ProgressBar::Report, &bar);
  backup.nManifestStatus = pParser->Scan(qstrDecryptedFolder);
  WalkCategories(*pParser, backup.records, {});
  bar.Clear();
  return StopSignal() != 0 ? Interrupted() : kExitDone;
}
