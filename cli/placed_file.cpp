#include "cli/placed_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "cli/temporary_name.h"
#include "common/file.h"

namespace orvandel {

namespace {

constexpr mode_t kFileRights = 0644;

std::string PathOf(int nDescriptor) {
  return "/proc/self/fd/" + std::to_string(nDescriptor);
}

/// Some file systems report a full disk only on closing, which is too late here.
bool IsWritten(int nDescriptor) {
  const int nCopy = dup(nDescriptor);
  return nCopy != -1 && close(nCopy) == 0;
}

}  // namespace

Result<PlacedFile> PlacedFile::Create(int nFolder) {
#ifdef O_TMPFILE
  Descriptor unnamed(openat(nFolder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
  if (unnamed.Get() != -1 && access(PathOf(unnamed.Get()).c_str(), F_OK) == 0)
    return PlacedFile(nFolder, std::move(unnamed), {});
#endif
  const std::string strTemporary = NewTemporaryName();
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  Descriptor named(openat(nFolder, strTemporary.c_str(), kFlags, 0600));
  if (named.Get() == -1) return SystemProblem(Problem::Step::Create, strTemporary, errno);
  return PlacedFile(nFolder, std::move(named), strTemporary);
}

PlacedFile::PlacedFile(PlacedFile&& other) noexcept
    : m_nFolder(other.m_nFolder),
      m_file(std::move(other.m_file)),
      m_strTemporary(std::move(other.m_strTemporary)) {
  other.m_strTemporary.clear();
}

PlacedFile::~PlacedFile() {
  if (!m_strTemporary.empty()) unlinkat(m_nFolder, m_strTemporary.c_str(), 0);
}

/// Gives an unnamed file a name. @return 0, or an errno value.
int PlacedFile::Link(const std::string& strName) {
  const int nStatus =
      linkat(AT_FDCWD, PathOf(m_file.Get()).c_str(), m_nFolder, strName.c_str(), AT_SYMLINK_FOLLOW);
  return nStatus == 0 ? 0 : errno;
}

/// Renames the file unless the new name is taken. @return 0, or an errno value.
int PlacedFile::LinkTemporary(const std::string& strName) {
  const char* pszName = strName.c_str();
  if (linkat(m_nFolder, m_strTemporary.c_str(), m_nFolder, pszName, 0) == 0) return 0;
  if (errno == EEXIST) return EEXIST;
    // No links on this file system.
#ifdef RENAME_NOREPLACE
  if (renameat2(m_nFolder, m_strTemporary.c_str(), m_nFolder, pszName, RENAME_NOREPLACE) == 0) return 0;
  if (errno == EEXIST) return EEXIST;
#endif
  struct stat info;
  if (fstatat(m_nFolder, pszName, &info, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  return renameat(m_nFolder, m_strTemporary.c_str(), m_nFolder, pszName) == 0 ? 0 : errno;
}

Problem PlacedFile::Place(const std::string& strName, int64_t nModified, bool bReplace) {
  // Ignored: some file systems don't support modes.
  fchmod(m_file.Get(), kFileRights);
  SetModificationTime(m_file.Get(), nModified);
  if (!IsWritten(m_file.Get())) return SystemProblem(Problem::Step::Write, strName, errno);
  int nError = 0;
  if (!bReplace) {
    nError = m_strTemporary.empty() ? Link(strName) : LinkTemporary(strName);
  } else {
    if (m_strTemporary.empty()) {
      const std::string strTemporary = NewTemporaryName();
      nError = Link(strTemporary);
      if (nError == 0) m_strTemporary = strTemporary;
    }
    if (nError == 0 && renameat(m_nFolder, m_strTemporary.c_str(), m_nFolder, strName.c_str()) != 0)
      nError = errno;
    if (nError == 0) m_strTemporary.clear();
  }
  return nError == 0 ? Problem() : SystemProblem(Problem::Step::Create, strName, nError);
}

}  // namespace orvandel
