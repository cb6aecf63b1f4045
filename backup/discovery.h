#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "backup/info.h"
#include "common/problem.h"

// Walkers over one level of a folder, without hidden entries, by name ignoring case. All paths narrow and
// full.

/// Puts each sub-folder at the front of the vector, so that they come out in reverse. @return 1.
int TraverseSubFolders(const std::string& strFolder, std::vector<std::string>& folders);
/// Puts each file at the front of the vector. @return 1.
int TraverseFiles(const std::string& strFolder, std::vector<std::string>& files);
/// Puts each file and folder at the end of the vector. @return 1.
int TraverseFolderAndFile(const std::string& strFolder, std::vector<std::string>& entries);
/// Number of files directly in the folder.
int64_t TraverseFileCnt(const std::string& strFolder);

/// Number of files of a backup: those in its folder and in its sub-folders.
int64_t CountBackupFiles(const std::string& strFolder);

/// Reads the facts of a backup from its "Info.plist", line by line as text. What the file doesn't tell stays
/// as it is.
/// @return a problem when the file can't be opened, with the record untouched.
Problem ReadBackupInfo(const std::string& strFolder, __BACK_FILE_INFO__& info);

/// 1 when the contacts store of the backup is there and isn't plain SQLite, else 0.
int IsBackupEncrypted(const std::string& strFolder);
