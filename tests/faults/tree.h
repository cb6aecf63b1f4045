#pragma once
#include <map>
#include <string>

// Files and folders as the campaign sees them. All paths are absolute and without a trailing "/".

namespace orvandel {

/// All bytes of a file; empty when it can't be read.
std::string BytesOf(const std::string& strPath);

/// Writes a file, its folder included. Throws std::runtime_error when it can't.
void WriteBytes(const std::string& strPath, const std::string& strBytes);

/// Copies a folder of folders and regular files, with their times, in place of one that is there.
void CopyTree(const std::string& strFrom, const std::string& strTo);

/// Makes a folder that is empty.
void MakeEmptyFolder(const std::string& strPath);

/// The observable state of a folder: for each path below it the kind, mode, modification time and content, or
/// the target of a link. The folder itself has an empty path.
std::map<std::string, std::string> TreeState(const std::string& strFolder);

/// Regular files below a folder with their bytes, by their paths below it.
std::map<std::string, std::string> FilesIn(const std::string& strFolder);

}  // namespace orvandel
