#pragma once
#include <array>
#include <cstdint>
#include <string>

#include "common/backup_folder.h"

/// What one look at a file of a backup found: its size, its first bytes, and why they are missing.
struct BackupFileHead {
  static constexpr uint32_t kSize = 512;

  int nOpenError = 0;  ///< errno of OpenBackupFile; 0 for a file that was opened
  int nReadError = 0;  ///< errno of reading; 0 also for a file that is shorter than a head
  bool bWhole = false;
  int64_t nFileSize = 0;
  std::array<unsigned char, kSize> bytes;  ///< set when bWhole
};

/// Opens a file as OpenBackupFile does and fills its head. Reports nothing. From any thread.
/// @param pszPath narrow.
void ReadFileHead(const char* pszPath, BackupFileHead& head);
/// The same for one of many files of a backup.
void ReadFileHead(const BackupFolder& folder, const std::string& strPath, BackupFileHead& head);
