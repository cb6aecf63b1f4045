#pragma once
#include <sys/stat.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <filesystem>
#include <map>
#include <string>

#include "tests/support.h"

namespace orvandel {

/// The observable state of a folder: for each path below it the kind, mode, modification time and content, or
/// the target of a link. The folder itself has an empty path.
inline std::map<std::string, std::string> TreeState(const std::string& strFolder) {
  namespace fs = std::filesystem;
  std::map<std::string, std::string> state;
  const auto add = [&](const fs::path& path) {
    struct stat attributes = {};
    EXPECT_EQ(0, lstat(path.c_str(), &attributes)) << path;
    std::string strLine = std::to_string(attributes.st_mode) + " " +
                          std::to_string(attributes.st_mtim.tv_sec) + "." +
                          std::to_string(attributes.st_mtim.tv_nsec);
    if (S_ISLNK(attributes.st_mode)) strLine += " -> " + fs::read_symlink(path).string();
    if (S_ISREG(attributes.st_mode)) {
      const std::string strBytes = ReadFile(path.string());
      const QByteArray bytes = QByteArray::fromStdString(strBytes);
      strLine += " " + QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().toStdString();
    }
    state[path.string().substr(strFolder.size())] = strLine;
  };
  add(strFolder);
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(strFolder)) add(entry.path());
  return state;
}

}  // namespace orvandel
