#pragma once
#include <string>

/// Copies a store out of a backup and lets everybody read and write the copy. A file that is there already
/// stays. Both paths narrow. Nothing is reported: who needs to know looks for the copy.
void CopyStore(const std::string& strSource, const std::string& strDestination);
