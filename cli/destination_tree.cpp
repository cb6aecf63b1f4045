#include "cli/destination_tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <optional>
#include <vector>

#include "cli/temporary_name.h"

namespace orvandel {

namespace {

constexpr mode_t kFolderRights = 0755;
// The longest path that programs can open is 4095 bytes; some are left for the destination itself.
constexpr size_t kLongestPath = 3800;
#ifdef O_PATH
constexpr int kFolderFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

Problem NotCreated(const std::string& strPath, int nError) {
  return SystemProblem(Problem::Step::Create, strPath, nError);
}

Problem Refused(const std::string& strPath, const std::string& strReason) {
  return {Problem::Step::Create, EACCES, strPath, strReason};
}

bool CanCreate(int nFolder, const std::string& strName) {
  const Descriptor file(openat(nFolder, strName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  return file.Get() != -1;
}

}  // namespace

Result<std::shared_ptr<DestinationTree>> DestinationTree::Open(const std::string& strRoot,
                                                               const std::string& strBackup) {
  Descriptor root(open(strRoot.c_str(), kFolderFlags));
  struct stat backup;
  if (root.Get() == -1 || stat(strBackup.c_str(), &backup) != 0) return NotCreated(strRoot, errno);
  std::shared_ptr<DestinationTree> pTree(new DestinationTree(strRoot, std::move(root)));
  pTree->m_backup = {backup.st_dev, backup.st_ino};
  pTree->Probe();
  return pTree;
}

void DestinationTree::Probe() {
  const std::string strName = NewTemporaryName();
  if (!CanCreate(m_root.Get(), strName)) return;
  std::string strUpper = strName;
  std::transform(strUpper.begin(), strUpper.end(), strUpper.begin(),
                 [](unsigned char nByte) { return static_cast<char>(toupper(nByte)); });
  struct stat info;
  m_bIgnoresCase = fstatat(m_root.Get(), strUpper.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
  const std::string strOdd = strName + ":?\"";
  m_bSafeNamesOnly = !CanCreate(m_root.Get(), strOdd);
  for (const std::string& strProbe : {strName, strOdd}) unlinkat(m_root.Get(), strProbe.c_str(), 0);
}

Result<Descriptor> DestinationTree::Step(int nFolder, const std::string& strName,
                                         const std::string& strPath) const {
  const auto openIt = [&] { return openat(nFolder, strName.c_str(), kFolderFlags | O_NOFOLLOW); };
  int nOpened = openIt();
  if (nOpened == -1 && errno == ENOENT) {
    if (mkdirat(nFolder, strName.c_str(), kFolderRights) != 0 && errno != EEXIST)
      return NotCreated(strPath, errno);
    nOpened = openIt();
  }
  Descriptor folder(nOpened);
  struct stat info;
  if (folder.Get() == -1) {
    const int nError = errno;
    const bool bLink =
        fstatat(nFolder, strName.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(info.st_mode);
    return bLink ? Refused(strPath, strPath + " is a link, which isn't followed")
                 : NotCreated(strPath, nError);
  }
  if (fstat(folder.Get(), &info) == 0 && Inode(info.st_dev, info.st_ino) == m_backup)
    return Refused(strPath, "its folder is inside the backup, which must not change");
  return folder;
}

Result<Descriptor> DestinationTree::OpenFolder(const std::string& strFolder) const {
  if (strFolder.size() > kLongestPath) return NotCreated(m_strRoot + '/' + strFolder, ENAMETOOLONG);
  std::optional<Descriptor> folder(fcntl(m_root.Get(), F_DUPFD_CLOEXEC, 0));
  if (folder->Get() == -1) return NotCreated(m_strRoot, errno);
  for (size_t nStart = 0; nStart < strFolder.size();) {
    const size_t nEnd = std::min(strFolder.find('/', nStart), strFolder.size());
    Result<Descriptor> next = Step(folder->Get(), strFolder.substr(nStart, nEnd - nStart),
                                   m_strRoot + '/' + strFolder.substr(0, nEnd));
    if (!next) return next.Error();
    folder.emplace(std::move(*next));
    nStart = nEnd + 1;
  }
  return std::move(*folder);
}

void DestinationTree::RemoveLeftovers(int nFolder) {
  struct stat info;
  if (fstat(nFolder, &info) != 0) return;
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (!m_clean.emplace(info.st_dev, info.st_ino).second) return;
  const int nListed = openat(nFolder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  DIR* pFolder = nListed == -1 ? nullptr : fdopendir(nListed);
  if (!pFolder) {
    if (nListed != -1) close(nListed);
    return;
  }
  std::vector<std::string> leftovers;
  while (const dirent* pEntry = readdir(pFolder)) {
    const std::string strName = pEntry->d_name;
    if (IsTemporaryName(strName) && !IsOwnTemporaryName(strName)) leftovers.push_back(strName);
  }
  closedir(pFolder);
  for (const std::string& strName : leftovers) {
    if (fstatat(nFolder, strName.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(info.st_mode))
      unlinkat(nFolder, strName.c_str(), 0);
  }
}

}  // namespace orvandel
