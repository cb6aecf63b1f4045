#include "common/places.h"

#include <unistd.h>

#include <QCoreApplication>

#include "cli/places.h"
#include "cli/private_folder.h"
#include "common/text.h"

namespace orvandel {

namespace {

std::string& Root() {
  static std::string strRoot = kSystemBackupRoot;
  return strRoot;
}

constexpr char kParent[] = "/var/tmp";  // on disk

/// Private to this process and removed at its end. Not affected by environment variables.
PrivateFolder& OwnFolder() {
  static PrivateFolder folder(kParent);
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
  return OwnFolder().IsValid() ? OwnFolder().Path() + "/" : "/dev/null/";
}

QString WorkFolderProblem() {
  return OwnFolder().IsValid() ? QString() : QString(kParent) + ": " + FromNarrow(OwnFolder().Problem());
}

void EndProcess(int nExitStatus) {
  OwnFolder().RemoveNow();
  _exit(nExitStatus);
}

std::string ProgramFolder() {
  return ToNarrow(QCoreApplication::applicationDirPath()) + "/";
}

}  // namespace orvandel
