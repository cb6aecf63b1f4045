#pragma once
#include <string>

#include "common/file.h"
#include "common/file_source.h"

namespace orvandel {

/// Opens many files of one backup, with the results of OpenBackupFile and fewer system calls per file. Holds
/// the backup's folder open for its lifetime. Thread-safe.
class BackupFolder {
 public:
  /// @param strRoot narrow, without a trailing "/". It need not exist.
  explicit BackupFolder(const std::string& strRoot);
  ~BackupFolder();
  BackupFolder(const BackupFolder&) = delete;
  BackupFolder& operator=(const BackupFolder&) = delete;

  /// Same as OpenBackupFile. @param strPath narrow; may be outside the root.
  Result<OpenedFile> Open(const std::string& strPath) const;

  /// The source of the files directly in the folder; null where they are as they are.
  const FileSource* Source() const { return m_pSource.get(); }

 private:
  const std::shared_ptr<const FileSource> m_pSource;
  std::string m_strPrefix;  // common prefix of the paths below the root
  int m_nFolder = -1;
};

}  // namespace orvandel
