#pragma once
#include <string>

namespace orvandel {

/// What a recovery does with a name that isn't valid for a file or folder.
enum class NamePolicy {
  AsTheyStand,  ///< used unchanged: a "/" separates folders, and what can't be created fails
  MadeSafe,     ///< replaced by a valid name
};

/// Maximum length in bytes of a name taken from the backup. With time stamp, number and extension it fits
/// into the 255 bytes that file systems allow.
constexpr size_t kLongestNamePart = 236;

/// True for a valid file name: not empty, "." or "..", without "/" and NUL, and not too long.
/// @param strName narrow.
bool CanBeFileName(const std::string& strName);

/// Derives a name that is valid on every file system. Characters invalid on some file system are replaced by
/// "_"; a name that is too long is truncated before the extension. @param strName narrow. @return narrow,
/// never empty.
std::string SafeFileName(const std::string& strName);

}  // namespace orvandel
