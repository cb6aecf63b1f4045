#include "common/places.h"

#include <unistd.h>
#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include "cli/places.h"
#include "common/text.h"

namespace orvandel {

namespace {

std::string& Root() {
  static std::string strRoot = kSystemBackupRoot;
  return strRoot;
}

/// Private to this process, on disk, and removed at its end. Not affected by environment variables.
const QTemporaryDir& PrivateFolder() {
  static const QTemporaryDir folder("/var/tmp/orvandel-XXXXXX");
  return folder;
}

}  // namespace

void SetBackupRoot(const QString& qstrFolder) {
  Root() = ToNarrow(qstrFolder.endsWith('/') ? qstrFolder : qstrFolder + '/');
}

std::string BackupRoot() {
  return Root();
}

std::string WorkFolder() {
  // Without one, a path that can't exist, so that whatever needs the folder fails.
  return PrivateFolder().isValid() ? ToNarrow(PrivateFolder().path()) + "/" : "/dev/null/";
}

QString WorkFolderProblem() {
  return PrivateFolder().isValid() ? QString() : "/var/tmp: " + PrivateFolder().errorString();
}

void EndProcess(int nExitStatus) {
  QDir(PrivateFolder().path()).removeRecursively();
  _exit(nExitStatus);
}

std::string ProgramFolder() {
  return ToNarrow(QCoreApplication::applicationDirPath()) + "/";
}

}  // namespace orvandel
