#include "extract/file_head.h"

#include <cerrno>

#include "common/file.h"
#include "common/status.h"

namespace orvandel {

namespace {

void FillHead(const Result<OpenedFile>& file, BackupFileHead& head) {
  head.nReadError = 0;
  head.bWhole = false;
  head.nOpenError = file ? 0 : file.Error().nCode;
  head.strOpenProblem.clear();
  if (!file) return;
  head.nFileSize = file->nSize;
  uint32_t nRead = 0;
  errno = 0;
  head.bWhole =
      ReadData(file->descriptor.Get(), head.bytes.data(), BackupFileHead::kSize, nRead) == kStatusOk;
  if (!head.bWhole) head.nReadError = errno;
}

/// @param strName name in the source's folder.
void FillHead(const FileSource& source, const std::string& strName, BackupFileHead& head) {
  head.nOpenError = head.nReadError = 0;
  head.strOpenProblem.clear();
  const Result<FileSource::Head> read = source.ReadHead(strName, head.bytes.data(), BackupFileHead::kSize);
  head.bWhole = read && read->nRead == BackupFileHead::kSize;
  if (read) {
    head.nFileSize = read->nFileSize;
  } else {
    head.nOpenError = read.Error().nCode;
    head.strOpenProblem = read.Error().strReason;
  }
}

}  // namespace

void ReadFileHead(const char* pszPath, BackupFileHead& head) {
  std::string strName;
  if (const auto pSource = FileSourceOf(pszPath, strName)) return FillHead(*pSource, strName, head);
  FillHead(OpenBackupFile(pszPath), head);
}

void ReadFileHead(const BackupFolder& folder, const std::string& strPath, BackupFileHead& head) {
  if (const FileSource* pSource = folder.Source())
    return FillHead(*pSource, strPath.substr(strPath.rfind('/') + 1), head);
  FillHead(folder.Open(strPath), head);
}

}  // namespace orvandel
