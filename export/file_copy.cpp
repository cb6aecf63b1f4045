#include "export/file_copy.h"

#include <cerrno>
#include <cstring>

#include "common/file.h"
#include "common/text.h"

namespace {
// By the step of a copy.
constexpr const char* kFailures[] = {"", "The file in the backup can't be opened",
                                     "The file in the backup can't be read", "The copy can't be made",
                                     "The copy can't be written"};
}  // namespace

BackupFileCopier::BackupFileCopier(const QString& qstrDestination, const QString& qstrBackupRoot)
    : m_destination(qstrDestination, qstrBackupRoot) {}

WrittenFile BackupFileCopier::Copy(const QString& qstrFolder, const std::string& strName,
                                   const std::u16string& wstrSource) {
  WrittenFile result;
  // As the file will really be called: what the encoding can't express is replaced before a free name is
  // looked for.
  result.qstrPath = m_destination.Root() + qstrFolder + FromNarrow(strName);
  const std::string strWanted = ToNarrow(result.qstrPath);
  result.bNotCreated = true;
  if (qstrFolder != m_qstrLastFolder && !m_destination.MakeFolder(qstrFolder, result.qstrReason))
    return result;
  m_qstrLastFolder = qstrFolder;
  const std::string strPath = m_freeNames.Take(strWanted);
  result.qstrPath = FromNarrow(strPath);
  const std::string strSource = ToNarrow(FromWide(wstrSource));
  CopyError error = CopyBackupFile(strSource.c_str(), strPath.c_str(), kRecoveredFileRights);
  // A folder may go while the recovery runs.
  if (error.step == CopyError::kCreate && error.nError == ENOENT &&
      m_destination.MakeFolder(qstrFolder, result.qstrReason))
    error = CopyBackupFile(strSource.c_str(), strPath.c_str(), kRecoveredFileRights);
  result.bNotCreated = error.step == CopyError::kCreate;
  if (error.step != CopyError::kNone && result.qstrReason.isEmpty()) {
    const std::string strReason =
        error.step == CopyError::kOpen ? OpenFailure(error.nError) : strerror(error.nError);
    result.qstrReason =
        QString("%1 (%2)").arg(kFailures[error.step], QString::fromLocal8Bit(strReason.c_str()));
  }
  return result;
}
