#include "cli/private_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

namespace orvandel {

namespace {

constexpr char kPrefix[] = "orvandel-work-";  // earlier versions used "orvandel-" and held no lock
constexpr char kTemplate[] = "XXXXXX";        // replaced by mkdtemp
constexpr size_t kNameLength = sizeof kPrefix + sizeof kTemplate - 2;
constexpr mode_t kMode = 0700;  // as mkdtemp creates it
constexpr int kTries = 100;     // a cleaner can get in between only by chance

/// A descriptor that is closed on destruction, and its lock released.
class Descriptor {
 public:
  explicit Descriptor(int nDescriptor) : m_nDescriptor(nDescriptor) {}
  ~Descriptor() {
    if (m_nDescriptor >= 0) close(m_nDescriptor);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Get() const { return m_nDescriptor; }
  int Release() {
    const int nDescriptor = m_nDescriptor;
    m_nDescriptor = -1;
    return nDescriptor;
  }

 private:
  int m_nDescriptor;
};

int OpenFolder(const std::string& strPath) {
  return open(strPath.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// As flock, but isn't interrupted by signals.
bool Lock(int nDescriptor, int nOperation) {
  int nResult;
  do nResult = flock(nDescriptor, nOperation);
  while (nResult != 0 && errno == EINTR);
  return nResult == 0;
}

/// Whether the path still leads to the open folder. Between opening and locking, somebody may have removed
/// it.
bool IsAt(const std::string& strPath, int nDescriptor) {
  struct stat open = {}, there = {};
  return fstat(nDescriptor, &open) == 0 && lstat(strPath.c_str(), &there) == 0 &&
         open.st_dev == there.st_dev && open.st_ino == there.st_ino;
}

/// Doesn't follow links. What can't be removed stays.
void RemoveWithContent(const std::string& strPath) {
  std::error_code ignored;
  std::filesystem::remove_all(strPath, ignored);
}

bool HasItsName(const char* pszName) {
  return strlen(pszName) == kNameLength && strncmp(pszName, kPrefix, strlen(kPrefix)) == 0;
}

/// Removes a folder if it is one of a process that is gone.
void RemoveIfAbandoned(const std::string& strPath) {
  const Descriptor folder(OpenFolder(strPath));
  struct stat info = {};
  if (folder.Get() < 0 || fstat(folder.Get(), &info) != 0) return;
  if (info.st_uid != geteuid() || (info.st_mode & 0777) != kMode) return;
  if (!Lock(folder.Get(), LOCK_EX | LOCK_NB)) return;  // its owner lives, or there are no locks
  if (IsAt(strPath, folder.Get())) RemoveWithContent(strPath);
}

void RemoveAbandoned(const std::string& strParent) {
  const std::unique_ptr<DIR, int (*)(DIR*)> parent(opendir(strParent.c_str()), &closedir);
  if (!parent) return;
  std::vector<std::string> paths;
  while (const dirent* pEntry = readdir(parent.get()))
    if (HasItsName(pEntry->d_name)) paths.push_back(strParent + '/' + pEntry->d_name);
  for (const std::string& path : paths) RemoveIfAbandoned(path);
}

}  // namespace

PrivateFolder::PrivateFolder(const std::string& strParent) {
  RemoveAbandoned(strParent);
  for (int i = 0; i < kTries; ++i)
    if (Create(strParent)) return;
  if (m_strProblem.empty()) m_strProblem = "a new folder is removed each time";
}

/// @return false if a cleaner took the new folder for an abandoned one before it was locked.
bool PrivateFolder::Create(const std::string& strParent) {
  std::string strPath = strParent + '/' + kPrefix + kTemplate;
  if (!mkdtemp(strPath.data())) {
    m_strProblem = strerror(errno);
    return true;
  }
  Descriptor folder(OpenFolder(strPath));
  if (folder.Get() < 0) {
    if (errno == ENOENT) return false;
    m_strProblem = strerror(errno);
    rmdir(strPath.c_str());
    return true;
  }
  // Without locks nobody removes it.
  if (Lock(folder.Get(), LOCK_EX) && !IsAt(strPath, folder.Get())) return false;
  m_strPath = strPath;
  m_nDescriptor = folder.Release();
  return true;
}

void PrivateFolder::RemoveNow() {
  if (!IsValid()) return;
  RemoveWithContent(m_strPath);
  close(m_nDescriptor);
  m_nDescriptor = -1;
  m_strPath.clear();
}

}  // namespace orvandel
