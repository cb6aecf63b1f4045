#include "export/file_copy.h"

#include <cerrno>

#include "common/file.h"
#include "common/text.h"

namespace orvandel {

namespace {

/// The beginning of the error message, by the problem's step.
const char* FailureOf(Problem::Step step) {
  switch (step) {
    case Problem::Step::Open:
      return "The file in the backup can't be opened";
    case Problem::Step::Read:
      return "The file in the backup can't be read";
    case Problem::Step::Create:
      return "The copy can't be created";
    case Problem::Step::Write:
      return "The copy can't be written";
    default:
      return "";
  }
}

/// Copies a file. @return on failure a problem whose reason begins with FailureOf.
Problem CopyFile(const std::string& strSource, const std::string& strTarget, int64_t nModified) {
  // A path ends at its first zero byte.
  Problem problem = CopyBackupFile(strSource.c_str(), strTarget.c_str(), kRecoveredFileRights, nModified);
  if (problem) problem.strReason = std::string(FailureOf(problem.step)) + " (" + problem.strReason + ")";
  return problem;
}

}  // namespace

BackupFileCopier::BackupFileCopier(const QString& qstrDestination, const QString& qstrBackupRoot)
    : m_destination(qstrDestination, qstrBackupRoot) {}

WrittenFile BackupFileCopier::Copy(const QString& qstrFolder, const std::string& strName,
                                   const std::u16string& wstrSource, int64_t nModified) {
  WrittenFile result;
  // Converted to narrow and back, so that characters the encoding can't represent are replaced before a free
  // name is chosen.
  result.qstrPath = m_destination.Root() + qstrFolder + FromNarrow(strName);
  const std::string strWanted = ToNarrow(result.qstrPath);
  if (qstrFolder != m_qstrLastFolder) {
    result.problem = m_destination.MakeFolder(qstrFolder);
    if (result.problem) return result;
  }
  m_qstrLastFolder = qstrFolder;
  const std::string strPath = m_freeNames.Take(strWanted);
  result.qstrPath = FromNarrow(strPath);
  const std::string strSource = ToNarrow(FromWide(wstrSource));
  result.problem = CopyFile(strSource, strPath, nModified);
  // The folder may have been removed during the recovery.
  if (result.problem.step == Problem::Step::Create && result.problem.nCode == ENOENT) {
    result.problem = m_destination.MakeFolder(qstrFolder);
    if (!result.problem) result.problem = CopyFile(strSource, strPath, nModified);
  }
  return result;
}

}  // namespace orvandel
