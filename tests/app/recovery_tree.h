#pragma once
#include <map>
#include <string>

// Recoveries compared file by file.

/// Contents of the files of a recovery by their paths below the destination. Both come without time
/// stamps.
using RecoveredTree = std::map<std::string, std::string>;
RecoveredTree RecoveredFiles(const std::string& strOut);

/// Compares two recoveries, with a few words on each difference.
void ExpectSameFiles(const RecoveredTree& expected, const RecoveredTree& files);

/// Recovers all of a backup with the command line. @return the destination.
std::string RecoverByCommand(const std::string& strBackup, const std::string& strOut);
