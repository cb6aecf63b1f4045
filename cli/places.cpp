#include "common/places.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include "cli/places.h"
#include "common/text.h"

namespace {

std::string& Root() {
  static std::string strRoot = kSystemBackupRoot;
  return strRoot;
}

}  // namespace

void SetBackupRoot(const QString& qstrFolder) {
  Root() = ToNarrow(qstrFolder.endsWith('/') ? qstrFolder : qstrFolder + '/');
}

std::string BackupRoot() {
  return Root();
}

std::string WorkFolder() {
  // Private to this process, on disk, and gone with it. No environment variable moves it.
  static const QTemporaryDir folder("/var/tmp/orvandel-XXXXXX");
  // Without one, a place that can't hold anything: what needs the folder fails on its own terms.
  return folder.isValid() ? ToNarrow(folder.path()) + "/" : "/dev/null/";
}

std::string ProgramFolder() {
  return ToNarrow(QCoreApplication::applicationDirPath()) + "/";
}
