#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include "backup/session.h"
#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/json_stream.h"
#include "cli/open_backup.h"
#include "cli/output.h"
#include "cli/places.h"
#include "cli/problems.h"
#include "common/places.h"
#include "common/text.h"

namespace {

QJsonObject BackupObject(const __BACK_FILE_INFO__& info) {
  return {{"displayName", FromNarrow(info.strDisplayName)},
          {"lastBackupDate", FromNarrow(info.strLastBackupDate)},
          {"serialNumber", FromNarrow(info.strSerialNumber)},
          {"phoneNumber", FromNarrow(info.strPhoneNumber)},
          {"encrypted", info.bEncrypted},
          {"path", FromNarrow(info.strBackupPath)}};
}

QString BackupLine(const __BACK_FILE_INFO__& info) {
  return QStringList{
      Printable(FromNarrow(info.strDisplayName)), Printable(FromNarrow(info.strLastBackupDate)),
      Printable(FromNarrow(info.strSerialNumber)), info.bEncrypted ? "encrypted" : "not encrypted",
      Printable(FromNarrow(info.strBackupPath))}
      .join('\t');
}

/// Says why the list is empty, where that helps.
void ExplainEmptyList(const QString& qstrFolder) {
  if (QFileInfo::exists(qstrFolder + "/Info.plist"))
    PrintError(QString("%1 is a backup itself; 'orvandel-cli scan %1' reads it").arg(qstrFolder));
  else
    PrintError(QString("no backups below %1").arg(qstrFolder));
}

}  // namespace

int RunBackups(const Options& options) {
  if (!options.qstrFolder.isEmpty()) {
    if (!QFileInfo(options.qstrFolder).isDir()) {
      PrintError(options.qstrFolder + ": no such folder");
      return kExitNoBackup;
    }
    SetBackupRoot(options.qstrFolder);
  }
  CIphoneBackupFile session;
  std::vector<__BACK_FILE_INFO__> backups;
  session.GetBackFileInfo(backups);
  for (__BACK_FILE_INFO__& info : backups) CompleteEncryption(info);
  if (backups.empty())
    ExplainEmptyList(options.qstrFolder.isEmpty() ? FromNarrow(BackupRoot()) : options.qstrFolder);

  QJsonArray array;
  // The session lists them in reverse.
  for (auto it = backups.rbegin(); it != backups.rend(); ++it) {
    if (options.bJson)
      array.append(BackupObject(*it));
    else
      PrintLine(BackupLine(*it));
  }
  if (options.bJson) Print(ToJson(array) + '\n');
  return FinishOutput() ? kExitDone : kExitNotWritten;
}
