#pragma once
#include <sys/stat.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <filesystem>
#include <map>
#include <string>

#include "tests/support.h"

/// All that a user could tell of a folder's content: for each name below it the kind, mode, time of change
/// and bytes, or the target of a link. The folder itself stands under an empty name.
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
