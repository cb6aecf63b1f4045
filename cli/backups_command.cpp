#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include "backup/session.h"
#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/json_stream.h"
#include "cli/open_backup.h"
#include "cli/options.h"
#include "cli/output.h"
#include "cli/places.h"
#include "common/places.h"
#include "common/text.h"

namespace orvandel {

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

/// Prints a hint why the list is empty.
void ExplainEmptyList(const QString& qstrFolder) {
  if (QFileInfo::exists(qstrFolder + "/Info.plist"))
    PrintError(QString("%1 is a backup itself; 'orvandel-cli scan %1' reads it").arg(qstrFolder));
  else
    PrintError(QString("no backups below %1").arg(qstrFolder));
}

void AddNoOptions(QCommandLineParser&) {}

int ListBackups(const QCommandLineParser& parser, const QStringList& arguments) {
  Options options;
  ReadOptions(parser, options);
  const QString qstrFolder = arguments.isEmpty() ? QString() : AbsolutePath(arguments[0]);
  if (!qstrFolder.isEmpty()) {
    if (!QFileInfo(qstrFolder).isDir()) {
      PrintError(qstrFolder + ": no such folder");
      return kExitNoBackup;
    }
    SetBackupRoot(qstrFolder);
  }
  CIphoneBackupFile session;
  std::vector<__BACK_FILE_INFO__> backups;
  session.GetBackFileInfo(backups);
  for (__BACK_FILE_INFO__& info : backups) CompleteEncryption(info);
  if (backups.empty()) ExplainEmptyList(qstrFolder.isEmpty() ? FromNarrow(BackupRoot()) : qstrFolder);

  QJsonArray array;
  // The session lists them in reverse order.
  for (auto it = backups.rbegin(); it != backups.rend(); ++it) {
    if (options.bJson)
      array.append(BackupObject(*it));
    else
      PrintLine(BackupLine(*it));
  }
  if (options.bJson) Print(ToJson(array) + '\n');
  return FinishOutput() ? kExitDone : kExitNotWritten;
}

}  // namespace

Command BackupsCommand() {
  return {"backups",
          "lists the backups in a folder",
          "Lists the backups in a folder: name, date, serial number, whether it is encrypted, and path.",
          {{"[FOLDER]", "The folder to search. Default: the folder of backups on this machine."}},
          AddNoOptions,
          ListBackups};
}

}  // namespace orvandel
