#pragma once
#include <string>
#include <vector>

#include "tests/cli/command.h"

/// Whether a process may mount a file system of its own here. @param strFolder is there.
bool MayMount(const std::string& strFolder);

/// Runs orvandel-cli with a file system of its own mounted at a folder, which is there, and then copies what
/// came there to strKept, since the mount ends with the process.
/// @param pszOptions of a tmpfs, such as "ro" or "size=64k".
CommandResult RunOnMount(const char* pszOptions, const std::string& strFolder, const std::string& strKept,
                         const std::vector<std::string>& command);
