#include "common/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "common/status.h"
#include "common/text.h"

FILE* _wfopen(const char16_t* pPath, const wchar_t* pMode) {
  // The mode has always reached fopen as its first letter alone; what the files hold depends on it.
  const char szMode[2] = {pMode ? static_cast<char>(*pMode) : '\0', '\0'};
  return fopen(Unicode2Ansi(pPath).c_str(), szMode);
}

int OpenRegularFile(const char* pszPath) {
  const int nDescriptor = open(pszPath, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (nDescriptor == -1) return -1;
  struct stat info;
  if (fstat(nDescriptor, &info) == 0 && S_ISREG(info.st_mode)) return nDescriptor;
  close(nDescriptor);
  errno = S_ISDIR(info.st_mode) ? EISDIR : ENXIO;
  return -1;
}

int GetFileByteSize(const char16_t* pPath, long long& nSize) {
  std::string strPath;
  inner_uni2str(strPath, pPath);
  const int nDescriptor = open(strPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (nDescriptor == -1) return errno;
  STRUCT_RSB_FILE_ATTR attr;
  const int nError = rsb_statH(nDescriptor, &attr) == 0 ? 0 : errno;
  close(nDescriptor);
  if (nError != 0) return nError;
  // The low half is widened with its sign. Callers keep 32 bits, where that doesn't show.
  const auto nLow = static_cast<int64_t>(static_cast<int32_t>(attr.nFileSizeLow));
  nSize =
      static_cast<long long>((static_cast<uint64_t>(attr.nFileSizeHigh) << 32) | static_cast<uint64_t>(nLow));
  return 0;
}

int ReadData(int nDescriptor, void* pBuffer, uint32_t nCount, uint32_t& nRead) {
  static constexpr uint32_t kChunk = 65536;
  nRead = 0;
  while (nRead < nCount) {
    const ssize_t nGot =
        read(nDescriptor, static_cast<char*>(pBuffer) + nRead, std::min(kChunk, nCount - nRead));
    if (nGot <= 0) return kStatusShortRead;
    nRead += static_cast<uint32_t>(nGot);
  }
  return 0;
}

int rsb_statH(int nDescriptor, STRUCT_RSB_FILE_ATTR* pAttr) {
  if (nDescriptor == -1) {
    errno = EBADF;
    return -1;
  }
  struct stat info;
  if (fstat(nDescriptor, &info) != 0) return -1;
  if (pAttr) {
    const auto nSize = static_cast<uint64_t>(info.st_size);
    *pAttr = {};
    pAttr->nFileSizeHigh = static_cast<uint32_t>(nSize >> 32);
    pAttr->nFileSizeLow = static_cast<uint32_t>(nSize);
  }
  return 0;
}

void rsb_msleep(unsigned int nMilliseconds) {
  timespec rest{static_cast<time_t>(nMilliseconds / 1000),
                static_cast<long>(nMilliseconds % 1000) * 1000000L};
  nanosleep(&rest, nullptr);
}
