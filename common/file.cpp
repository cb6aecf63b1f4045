#include "common/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_set>
#include <vector>

#ifdef __linux__
#include <sys/syscall.h>
#endif
#ifdef SYS_openat2
#include <linux/openat2.h>
#endif

#include "common/backup_folder.h"
#include "common/new_file.h"
#include "common/status.h"
#include "common/text.h"

using namespace orvandel;

FILE* _wfopen(const char16_t* pPath, const wchar_t* pMode) {
  // Only the first letter of the mode is used. Required for output compatibility.
  const char szMode[2] = {pMode ? static_cast<char>(*pMode) : '\0', '\0'};
  return fopen(Unicode2Ansi(pPath).c_str(), szMode);
}

namespace {

constexpr int kReadFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW;

/// Opens without following a link in the last component of the path.
/// @param nFolder the folder that a relative path is resolved against.
int OpenNoFollow(int nFolder, const char* pszPath, int nFlags) {
  const int nDescriptor = openat(nFolder, pszPath, nFlags);
#ifdef O_PATH
  // For a link, O_DIRECTORY gives ENOTDIR.
  if (nDescriptor == -1 && errno == ENOTDIR && (nFlags & O_DIRECTORY)) {
    struct stat info;
    const bool bLink = fstatat(nFolder, pszPath, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(info.st_mode);
    errno = bLink ? ELOOP : ENOTDIR;
  }
#endif
  return nDescriptor;
}

/// Opens a file relative to its opened folder, so a folder replaced by a link meanwhile isn't followed.
int OpenInFolder(const std::string& strFolder, const char* pszName) {
#ifdef O_PATH
  constexpr int kFolderFlags = O_PATH | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW;
#else
  constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW;
#endif
  const int nFolder = OpenNoFollow(AT_FDCWD, strFolder.c_str(), kFolderFlags);
  if (nFolder == -1) return -1;
  const int nDescriptor = openat(nFolder, pszName, kReadFlags);
  const int nError = errno;
  close(nFolder);
  errno = nError;
  return nDescriptor;
}

/// Wraps a descriptor if it is a regular file. @param nDescriptor -1 with errno set when opening failed.
Result<OpenedFile> RegularFile(int nDescriptor, const std::string& strPath) {
  const auto fail = [&](int nError) { return SystemProblem(Problem::Step::Open, strPath, nError); };
  if (nDescriptor == -1) return fail(errno);
  Descriptor file(nDescriptor);
  struct stat info;
  if (fstat(nDescriptor, &info) != 0) return fail(errno);
  if (!S_ISREG(info.st_mode)) return fail(S_ISDIR(info.st_mode) ? EISDIR : ENXIO);
  return OpenedFile{std::move(file), info.st_size};
}

std::shared_mutex g_rootsMutex;
std::unordered_set<std::string> g_shardedRoots;

/// Length of the folder part of a path like "root/ab/abcdef" in a sharded backup; 0 for other paths.
size_t ShardFolderLength(const std::string& strPath) {
  const size_t nName = strPath.rfind('/');
  const size_t nShard = nName == std::string::npos || nName == 0 ? nName : strPath.rfind('/', nName - 1);
  if (nName == std::string::npos || nShard == std::string::npos || nShard == nName) return 0;
  const std::shared_lock<std::shared_mutex> lock(g_rootsMutex);
  return g_shardedRoots.count(strPath.substr(0, nShard)) != 0 ? nName : 0;
}

}  // namespace

namespace orvandel {

void DeclareSharded(const std::string& strRoot) {
  {
    const std::shared_lock<std::shared_mutex> lock(g_rootsMutex);
    if (g_shardedRoots.count(strRoot) != 0) return;
  }
  const std::unique_lock<std::shared_mutex> lock(g_rootsMutex);
  g_shardedRoots.insert(strRoot);
}

Result<OpenedFile> OpenBackupFile(const std::string& strPath) {
  const size_t nFolder = ShardFolderLength(strPath);
  return RegularFile(nFolder != 0 ? OpenInFolder(strPath.substr(0, nFolder), strPath.c_str() + nFolder + 1)
                                  : OpenNoFollow(AT_FDCWD, strPath.c_str(), kReadFlags),
                     strPath);
}

BackupFolder::BackupFolder(const std::string& strRoot)
    : m_pSource(FileSourceOfFolder(strRoot)), m_strPrefix(strRoot + '/') {
#ifdef SYS_openat2
  m_nFolder = open(m_strPrefix.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
#endif
}

BackupFolder::~BackupFolder() {
  if (m_nFolder != -1) close(m_nFolder);
}

Result<OpenedFile> BackupFolder::Open(const std::string& strPath) const {
#ifdef SYS_openat2
  if (m_nFolder != -1 && strPath.compare(0, m_strPrefix.size(), m_strPrefix) == 0) {
    open_how how{};
    how.flags = kReadFlags;
    how.resolve = RESOLVE_NO_SYMLINKS;
    const char* pszBelow = strPath.c_str() + m_strPrefix.size();
    const long nDescriptor = syscall(SYS_openat2, m_nFolder, pszBelow, &how, sizeof how);
    if (nDescriptor != -1 || errno == ENOENT) return RegularFile(static_cast<int>(nDescriptor), strPath);
    // Any other failure, such as ENOSYS, is reported by the fallback below.
  }
#endif
  return OpenBackupFile(strPath);
}

std::string ResolvedBackupPath(const std::string& strPath) {
  const size_t nShard = ShardFolderLength(strPath);
  const size_t nFolder = strPath.rfind('/', nShard == 0 ? std::string::npos : nShard - 1);
  const bool bHasFolder = nFolder != std::string::npos;
  const std::string strFolder = bHasFolder ? strPath.substr(0, nFolder + 1) : ".";
  const std::unique_ptr<char, decltype(&free)> resolved(realpath(strFolder.c_str(), nullptr), &free);
  if (!resolved) return strPath;
  const std::string strRoot = strcmp(resolved.get(), "/") == 0 ? "" : resolved.get();
  return strRoot + "/" + strPath.substr(bHasFolder ? nFolder + 1 : 0);
}

bool EntryExists(const std::string& strPath) {
  struct stat info;
  return lstat(strPath.c_str(), &info) == 0;
}

namespace {

constexpr size_t kCopyBlock = 1 << 20;

/// Writes a whole block. @return 0, or an errno value.
int WriteAll(int nDescriptor, const char* pData, size_t nCount) {
  while (nCount > 0) {
    const ssize_t nWritten = write(nDescriptor, pData, nCount);
    if (nWritten < 0 && errno == EINTR) continue;
    if (nWritten < 0) return errno;
    pData += nWritten;
    nCount -= static_cast<size_t>(nWritten);
  }
  return 0;
}

/// Copies in the kernel where it supports that for these two files.
/// @return true when everything was copied.
bool CopyInKernel([[maybe_unused]] int nSource, [[maybe_unused]] int nTarget) {
#ifdef __linux__
  struct stat info;
  if (fstat(nSource, &info) != 0) return false;
  off_t nLeft = info.st_size;
  if (nLeft == 0) return false;  // some file systems report 0 for files that aren't empty
  while (nLeft > 0) {
    const ssize_t nCopied =
        copy_file_range(nSource, nullptr, nTarget, nullptr, static_cast<size_t>(nLeft), 0);
    if (nCopied <= 0) return false;
    nLeft -= nCopied;
  }
  return true;
#else
  return false;
#endif
}

/// Source or target of a copy.
struct CopyEnd {
  int nDescriptor;
  const std::string& strPath;
};

Problem CopyContent(const CopyEnd& source, const CopyEnd& target) {
  if (CopyInKernel(source.nDescriptor, target.nDescriptor)) return {};
  std::vector<char> block(kCopyBlock);
  for (;;) {
    const ssize_t nRead = read(source.nDescriptor, block.data(), block.size());
    if (nRead < 0 && errno == EINTR) continue;
    if (nRead < 0) return SystemProblem(Problem::Step::Read, source.strPath, errno);
    if (nRead == 0) return {};
    if (const int nError = WriteAll(target.nDescriptor, block.data(), static_cast<size_t>(nRead)))
      return SystemProblem(Problem::Step::Write, target.strPath, nError);
  }
}

/// Makes a new file of what write writes to its descriptor.
template <typename Write>
Problem WriteCopy(const std::string& strTarget, unsigned int nRights, int64_t nModified, Write write) {
  Result<NewFile> target = NewFile::Create(strTarget, 0600);
  if (!target) return target.Error();
  if (const Problem problem = write(target->Get())) return problem;
  // Ignored: some file systems don't support modes.
  fchmod(target->Get(), static_cast<mode_t>(nRights));
  SetModificationTime(target->Get(), nModified);
  return target->Finish();
}

}  // namespace

void SetModificationTime(int nDescriptor, int64_t nModified) {
  static constexpr int64_t kCoarsest = 2;  // seconds; FAT stores even ones
  if (nModified < 0) return;
  const timespec wanted[] = {{0, UTIME_OMIT}, {static_cast<time_t>(nModified), 0}};
  struct stat info;
  if (futimens(nDescriptor, wanted) != 0 || fstat(nDescriptor, &info) != 0) return;
  // A time that the file system can't store is replaced by the nearest one that it can.
  if (info.st_mtime <= nModified && info.st_mtime >= nModified - kCoarsest) return;
  const timespec now[] = {{0, UTIME_OMIT}, {0, UTIME_NOW}};
  futimens(nDescriptor, now);
}

Problem CopyBackupFile(const std::string& strSource, const std::string& strTarget, unsigned int nRights,
                       int64_t nModified) {
  std::string strName;
  if (const auto pSource = FileSourceOf(strSource, strName)) {
    return WriteCopy(strTarget, nRights, nModified,
                     [&](int nTarget) { return pSource->Copy(strName, nTarget, strTarget); });
  }
  const Result<OpenedFile> source = OpenBackupFile(strSource);
  if (!source) return source.Error();
  return WriteCopy(strTarget, nRights, nModified, [&](int nTarget) {
    return CopyContent({source->descriptor.Get(), strSource}, {nTarget, strTarget});
  });
}

}  // namespace orvandel

int GetFileByteSize(const char16_t* pPath, long long& nSize) {
  std::string strPath;
  inner_uni2str(strPath, pPath);
  Result<OpenedFile> file = OpenBackupFile(strPath);
  if (!file) return file.Error().nCode;
  STRUCT_RSB_FILE_ATTR attr;
  if (rsb_statH(file->descriptor.Get(), &attr) != 0) return errno;
  // The low half is sign-extended; callers only use the low 32 bits.
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
