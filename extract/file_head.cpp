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
  if (!file) return;
  head.nFileSize = file->nSize;
  uint32_t nRead = 0;
  errno = 0;
  head.bWhole =
      ReadData(file->descriptor.Get(), head.bytes.data(), BackupFileHead::kSize, nRead) == kStatusOk;
  if (!head.bWhole) head.nReadError = errno;
}

}  // namespace

void ReadFileHead(const char* pszPath, BackupFileHead& head) {
  FillHead(OpenBackupFile(pszPath), head);
}

void ReadFileHead(const BackupFolder& folder, const std::string& strPath, BackupFileHead& head) {
  FillHead(folder.Open(strPath), head);
}

}  // namespace orvandel
