#include "cli/check_destination.h"

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

#include "cli/exit_status.h"
#include "cli/output.h"

namespace orvandel {

namespace {

/// The canonical path of a folder that may not exist yet: that of its nearest existing ancestor plus the
/// rest.
QString RealPath(const QString& qstrFolder) {
  QString qstrAncestor = qstrFolder;
  QString qstrRest;
  while (!QFileInfo::exists(qstrAncestor) && qstrAncestor.contains('/')) {
    qstrRest.prepend(qstrAncestor.mid(qstrAncestor.lastIndexOf('/')));
    qstrAncestor.truncate(qstrAncestor.lastIndexOf('/'));
  }
  return QFileInfo(qstrAncestor.isEmpty() ? "/" : qstrAncestor).canonicalFilePath() + qstrRest;
}

}  // namespace

int CheckDestination(const QString& qstrBackup, const QString& qstrDestination) {
  if ((RealPath(qstrDestination) + '/').startsWith(RealPath(qstrBackup) + '/')) {
    PrintError(qstrDestination + ": is inside the backup, which must not change; choose another folder");
    return kExitUsage;
  }
  errno = 0;
  if (QDir().mkpath(qstrDestination)) return kExitDone;
  const int nError = errno;
  if (QFileInfo::exists(qstrDestination)) {
    PrintError(qstrDestination + ": is not a folder");
    return kExitNotWritten;
  }
  PrintError(QString("%1: the folder can't be created (%2)")
                 .arg(qstrDestination, QString::fromLocal8Bit(strerror(nError))));
  return kExitNotWritten;
}

}  // namespace orvandel
