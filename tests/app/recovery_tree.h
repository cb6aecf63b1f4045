#pragma once
#include <map>
#include <string>

// Comparison of recoveries file by file.

namespace orvandel {

/// Contents of the files of a recovery by their paths below the destination, both without time stamps.
using RecoveredTree = std::map<std::string, std::string>;
RecoveredTree RecoveredFiles(const std::string& strOut);

/// Compares two recoveries and describes each difference.
void ExpectSameFiles(const RecoveredTree& expected, const RecoveredTree& files);

/// Recovers all of a backup with the command line. @return the destination.
std::string RecoverByCommand(const std::string& strBackup, const std::string& strOut);

}  // namespace orvandel
