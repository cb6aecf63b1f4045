#pragma once
#include <string>

// Names of files under construction in a destination, where the file system has no unnamed ones.

namespace orvandel {

/// A new name, unique in this process and, by a random part, among processes. Thread-safe.
std::string NewTemporaryName();

/// True for a name that NewTemporaryName may have returned in any process.
bool IsTemporaryName(const std::string& strName);

/// True for one that it may have returned in this process.
bool IsOwnTemporaryName(const std::string& strName);

}  // namespace orvandel
