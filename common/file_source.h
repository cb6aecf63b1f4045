#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "common/result.h"

namespace orvandel {

/// The content of files that aren't in their folder as they are: those of an encrypted backup read in place.
///
/// While a source is installed for a folder, the heads and copies of files in that folder come from it.
/// Everything else, such as opening a store, still finds only what the folder really holds. All functions are
/// thread-safe.
class FileSource {
 public:
  virtual ~FileSource() = default;

  struct Head {
    int64_t nFileSize = 0;  ///< of the whole file, in bytes
    size_t nRead = 0;       ///< less than asked for if the file is shorter
  };
  /// Reads the beginning of a file.
  /// @param strName name in the folder. @param nCount bytes to read, a multiple of 16.
  /// @return the problem's code is ENOENT for a file that doesn't exist.
  virtual Result<Head> ReadHead(const std::string& strName, unsigned char* pBuffer, size_t nCount) const = 0;

  /// Checks what can be checked of a file without reading all of it. @return no problem for a sound file.
  virtual Problem Check(const std::string& strName) const = 0;

  /// Writes a whole file to an open one. @param strTarget its path, for the problem.
  virtual Problem Copy(const std::string& strName, int nTarget, const std::string& strTarget) const = 0;
};

/// Installs a source for a folder of the whole process. Remove it before its folder is used otherwise; null
/// removes it. Not to be called while files of that folder are read.
/// @param strFolder narrow, without a trailing "/".
void InstallFileSource(const std::string& strFolder, std::shared_ptr<const FileSource> pSource);

/// The source of a folder; null for none.
std::shared_ptr<const FileSource> FileSourceOfFolder(const std::string& strFolder);

/// The source of the folder that a path is in; null for none. @param strName receives the name in it.
std::shared_ptr<const FileSource> FileSourceOf(const std::string& strPath, std::string& strName);

}  // namespace orvandel
