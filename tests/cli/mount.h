#pragma once
#include <string>
#include <vector>

#include "tests/cli/command.h"

namespace orvandel {

/// Whether a process may mount a private file system here. @param strFolder an existing folder.
bool MayMount(const std::string& strFolder);

/// Runs orvandel-cli with a private file system mounted at an existing folder, and then copies the result to
/// strKept, because the mount ends with the process.
/// @param pszOptions tmpfs options, such as "ro" or "size=64k".
CommandResult RunOnMount(const char* pszOptions, const std::string& strFolder, const std::string& strKept,
                         const std::vector<std::string>& command);

}  // namespace orvandel
