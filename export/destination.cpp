#include "export/destination.h"

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

#include "common/path.h"
#include "common/text.h"

namespace orvandel {

namespace {

/// The canonical path of a folder, or of its nearest existing ancestor, with a trailing "/". Components are
/// resolved like the system does, so ".." after a link is the parent of the link's target.
QString RealPath(QString qstrFolder) {
  while (!qstrFolder.isEmpty() && !QFileInfo::exists(qstrFolder))
    qstrFolder.truncate(qMax(qstrFolder.lastIndexOf('/'), 0));
  return QFileInfo(qstrFolder.isEmpty() ? "/" : qstrFolder).canonicalFilePath() + '/';
}

}  // namespace

Destination::Destination(const QString& qstrRoot, const QString& qstrBackupRoot)
    : m_qstrRoot(qstrRoot), m_qstrRealBackup(QFileInfo(qstrBackupRoot).canonicalFilePath() + '/') {}

const std::string& Destination::RefusalOf(const QString& qstrFolder) {
  const auto [it, bNew] = m_refusals.try_emplace(ToNarrow(qstrFolder));
  auto& [strFolder, strRefusal] = *it;
  if (!bNew) return strRefusal;
  const QString qstrPath = m_qstrRoot + qstrFolder;
  const bool bHasBackup = m_qstrRealBackup != "/";
  if (HasParentStep(strFolder))
    strRefusal = "The name leads out of the destination";
  else if (bHasBackup && RealPath(qstrPath).startsWith(m_qstrRealBackup))
    strRefusal = "The folder is inside the backup, which must not change";
  return strRefusal;
}

Problem Destination::MakeFolder(const QString& qstrFolder) {
  const QString qstrPath = m_qstrRoot + qstrFolder;
  const std::string& strRefusal = RefusalOf(qstrFolder);
  if (!strRefusal.empty()) return {Problem::Step::Create, EACCES, ToNarrow(qstrPath), strRefusal};
  // Created each time, since a folder may be removed during the recovery.
  errno = 0;
  if (QDir().mkpath(qstrPath)) return {};
  const int nError = errno;
  return {Problem::Step::Create, nError != 0 ? nError : EACCES, ToNarrow(qstrPath),
          std::string("The folder can't be created (") + strerror(nError) + ")"};
}

}  // namespace orvandel
