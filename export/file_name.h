#pragma once
#include <string>

/// What a recovery does with a name that can't be that of a file or folder.
enum class NamePolicy {
  AsTheyStand,  ///< a "/" makes a path, and what can't be created is a failure
  MadeSafe,     ///< a name that can be one takes its place
};

/// The longest part of a name that is made of a name in the backup, in bytes. What is put around it (time
/// stamp, number, extension) fits into the 255 bytes that file systems allow.
constexpr size_t kLongestNamePart = 236;

/// True for what can be the name of one file as it stands: not empty, "." or "..", without "/" and zero
/// bytes, and not too long. @param strName narrow.
bool CanBeFileName(const std::string& strName);

/// A name close to another that can be that of a file on every system.
/// Characters that some file system refuses become "_", and an end that doesn't fit is cut off, before the
/// extension. @param strName narrow. @return narrow, never empty.
std::string SafeFileName(const std::string& strName);
