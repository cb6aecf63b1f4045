#pragma once
#include <array>
#include <cstdint>
#include <string>

#include "common/backup_folder.h"

namespace orvandel {

/// Size and first bytes of a file of a backup, or why they are missing.
struct BackupFileHead {
  static constexpr uint32_t kSize = 512;

  int nOpenError = 0;          ///< errno of OpenBackupFile; 0 on success
  std::string strOpenProblem;  ///< the reason, if the system's text for the error isn't it; narrow
  int nReadError = 0;          ///< errno of reading; 0 also for a file shorter than a head
  bool bWhole = false;
  int64_t nFileSize = 0;
  std::array<unsigned char, kSize> bytes;  ///< valid when bWhole
};

/// Opens a file with OpenBackupFile, or asks its folder's source (common/file_source.h), and reads its head.
/// Reports nothing. Thread-safe.
/// @param pszPath narrow.
void ReadFileHead(const char* pszPath, BackupFileHead& head);
/// Same as above for one of many files of a backup.
void ReadFileHead(const BackupFolder& folder, const std::string& strPath, BackupFileHead& head);

}  // namespace orvandel
