#include "tests/faults/tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace orvandel {

namespace fs = std::filesystem;

namespace {

void TakeTimes(const std::string& strFrom, const std::string& strTo) {
  struct stat info;
  if (lstat(strFrom.c_str(), &info) != 0) throw std::runtime_error(strFrom + ": is gone");
  const timespec times[2] = {info.st_atim, info.st_mtim};
  utimensat(AT_FDCWD, strTo.c_str(), times, AT_SYMLINK_NOFOLLOW);
}

std::string StateOf(const std::string& strPath) {
  struct stat info = {};
  if (lstat(strPath.c_str(), &info) != 0) return "gone";
  std::string strState = std::to_string(info.st_mode) + " " + std::to_string(info.st_mtim.tv_sec) + "." +
                         std::to_string(info.st_mtim.tv_nsec) + " ";
  if (S_ISLNK(info.st_mode)) strState += fs::read_symlink(strPath).string();
  if (S_ISREG(info.st_mode)) strState += BytesOf(strPath);
  return strState;
}

}  // namespace

std::string BytesOf(const std::string& strPath) {
  std::string strBytes;
  struct stat info;
  const int nDescriptor = open(strPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (nDescriptor == -1) return strBytes;
  if (fstat(nDescriptor, &info) == 0 && S_ISREG(info.st_mode)) {
    strBytes.resize(static_cast<size_t>(info.st_size));
    const ssize_t nRead = read(nDescriptor, strBytes.data(), strBytes.size());
    strBytes.resize(static_cast<size_t>(std::max<ssize_t>(nRead, 0)));
  }
  close(nDescriptor);
  return strBytes;
}

void WriteBytes(const std::string& strPath, const std::string& strBytes) {
  int nDescriptor = open(strPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (nDescriptor == -1) {
    fs::create_directories(fs::path(strPath).parent_path());
    nDescriptor = open(strPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  }
  const bool bWritten = nDescriptor != -1 && write(nDescriptor, strBytes.data(), strBytes.size()) ==
                                                 static_cast<ssize_t>(strBytes.size());
  if (nDescriptor != -1) close(nDescriptor);
  if (!bWritten) throw std::runtime_error(strPath + ": can't be written");
}

void CopyTree(const std::string& strFrom, const std::string& strTo) {
  MakeEmptyFolder(strTo);
  for (const fs::directory_entry& entry : fs::directory_iterator(strFrom)) {
    const std::string strTarget = strTo + "/" + entry.path().filename().string();
    if (entry.is_directory()) {
      CopyTree(entry.path().string(), strTarget);
    } else {
      WriteBytes(strTarget, BytesOf(entry.path().string()));
      TakeTimes(entry.path().string(), strTarget);
    }
  }
  TakeTimes(strFrom, strTo);
}

void MakeEmptyFolder(const std::string& strPath) {
  fs::remove_all(strPath);
  fs::create_directories(strPath);
}

std::map<std::string, std::string> TreeState(const std::string& strFolder) {
  std::map<std::string, std::string> state = {{"", StateOf(strFolder)}};
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(strFolder))
    state[entry.path().string().substr(strFolder.size())] = StateOf(entry.path().string());
  return state;
}

std::map<std::string, std::string> FilesIn(const std::string& strFolder) {
  std::map<std::string, std::string> files;
  if (!fs::is_directory(strFolder)) return files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(strFolder)) {
    if (entry.is_regular_file() && !entry.is_symlink())
      files[entry.path().string().substr(strFolder.size())] = BytesOf(entry.path().string());
  }
  return files;
}

}  // namespace orvandel
