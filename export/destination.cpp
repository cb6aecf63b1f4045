#include "export/destination.h"

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

#include "common/path.h"
#include "common/text.h"

namespace {

/// The real path of a folder that may not exist: that of its nearest ancestor that does, with a "/" at its
/// end. The steps are taken as the system takes them, so that ".." behind a link leads where it really leads.
QString RealPath(QString qstrFolder) {
  while (!qstrFolder.isEmpty() && !QFileInfo::exists(qstrFolder))
    qstrFolder.truncate(qMax(qstrFolder.lastIndexOf('/'), 0));
  return QFileInfo(qstrFolder.isEmpty() ? "/" : qstrFolder).canonicalFilePath() + '/';
}

}  // namespace

Destination::Destination(const QString& qstrRoot, const QString& qstrBackupRoot)
    : m_qstrRoot(qstrRoot), m_qstrRealBackup(QFileInfo(qstrBackupRoot).canonicalFilePath() + '/') {}

bool Destination::MakeFolder(const QString& qstrFolder, QString& qstrReason) {
  const auto [it, bNew] = m_made.try_emplace(ToNarrow(qstrFolder));
  if (bNew) {
    const QString qstrPath = m_qstrRoot + qstrFolder;
    if (HasParentStep(it->first))
      it->second = "The name leads out of the destination";
    else if (m_qstrRealBackup != "/" && RealPath(qstrPath).startsWith(m_qstrRealBackup))
      it->second = "The folder lies in the backup, which must not change";
  }
  qstrReason = it->second;
  errno = EACCES;
  if (!qstrReason.isEmpty()) return false;
  // Each time, since a folder may go while the recovery runs.
  const QString qstrPath = m_qstrRoot + qstrFolder;
  errno = 0;
  if (QDir().mkpath(qstrPath)) return true;
  qstrReason = QString("The folder can't be made (%1)").arg(QString::fromLocal8Bit(strerror(errno)));
  return false;
}
