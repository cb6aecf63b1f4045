#include "export/file_copy.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>

#include "common/path.h"
#include "common/text.h"

BackupFileCopier::BackupFileCopier(const QString& qstrDestination) : m_qstrDestination(qstrDestination) {}

WrittenFile BackupFileCopier::Copy(const QString& qstrFolder, const std::string& strName,
                                   const std::u16string& wstrSource) {
  WrittenFile result;
  const QString qstrTarget = m_qstrDestination + qstrFolder;
  const std::string strWanted = ToNarrow(qstrTarget) + strName;
  result.qstrPath = FromNarrow(strWanted);
  if (HasParentStep(ToNarrow(qstrFolder) + strName)) {
    result.qstrReason = "The folder leads out of the destination";
    return result;
  }
  QDir().mkpath(qstrTarget);
  const std::string strPath = m_freeNames.Take(strWanted);
  result.qstrPath = FromNarrow(strPath);
  QFile source(FromWide(wstrSource));
  if (!source.copy(result.qstrPath)) {
    result.qstrReason = source.errorString();
    return result;
  }
  chmod(strPath.c_str(), 0777);
  return result;
}
