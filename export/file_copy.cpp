#include "export/file_copy.h"

#include <sys/stat.h>

#include <QFile>
#include <cerrno>
#include <cstring>

#include "common/text.h"

BackupFileCopier::BackupFileCopier(const QString& qstrDestination, const QString& qstrBackupRoot)
    : m_destination(qstrDestination, qstrBackupRoot) {}

WrittenFile BackupFileCopier::Copy(const QString& qstrFolder, const std::string& strName,
                                   const std::u16string& wstrSource) {
  WrittenFile result;
  // As the file will really be called: what the encoding can't express is replaced before a free name is
  // looked for.
  result.qstrPath = m_destination.Root() + qstrFolder + FromNarrow(strName);
  const std::string strWanted = ToNarrow(result.qstrPath);
  if (!m_destination.MakeFolder(qstrFolder, result.qstrReason)) return result;
  const std::string strPath = m_freeNames.Take(strWanted);
  result.qstrPath = FromNarrow(strPath);
  QFile source(FromWide(wstrSource));
  errno = 0;
  if (!source.copy(result.qstrPath)) {
    const int nError = errno;
    result.qstrReason = source.errorString();
    // Qt's own words tell which step failed, the system's why.
    const QString qstrCause = QString::fromLocal8Bit(strerror(nError));
    if (nError != 0 && !result.qstrReason.contains(qstrCause)) result.qstrReason += " (" + qstrCause + ")";
    return result;
  }
  chmod(strPath.c_str(), 0777);
  return result;
}
