#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "backup/info.h"
#include "common/problem.h"

// List a folder, not recursively, without hidden entries, sorted by name ignoring case. All paths are narrow
// and absolute.

namespace orvandel {

/// Inserts each sub-folder at the front of the vector, so they are in reverse order. @return 1.
int TraverseSubFolders(const std::string& strFolder, std::vector<std::string>& folders);
/// Inserts each file at the front of the vector. @return 1.
int TraverseFiles(const std::string& strFolder, std::vector<std::string>& files);

}  // namespace orvandel

/// Appends each file and folder to the vector. @return 1.
int TraverseFolderAndFile(const std::string& strFolder, std::vector<std::string>& entries);
/// Number of files directly in the folder.
int64_t TraverseFileCnt(const std::string& strFolder);

namespace orvandel {

/// Number of files of a backup, in its folder and its sub-folders.
int64_t CountBackupFiles(const std::string& strFolder);

/// Reads the description of a backup from its "Info.plist", line by line as text. Fields without a key in the
/// file are unchanged.
/// @return a problem when the file can't be opened, with the record unchanged.
Problem ReadBackupInfo(const std::string& strFolder, __BACK_FILE_INFO__& info);

/// The model of a device, as written in "Info.plist". Empty texts if it isn't there.
struct DeviceModel {
  std::string strProductType;     ///< such as "iPhone7,2"
  std::string strProductVersion;  ///< of iOS
};

/// Reads the model of a backup's device from its "Info.plist", as ReadBackupInfo does. Reports nothing.
DeviceModel ReadDeviceModel(const std::string& strFolder);

/// @return 1 when the contacts store of the backup exists and isn't plain SQLite, else 0.
int IsBackupEncrypted(const std::string& strFolder);

}  // namespace orvandel
