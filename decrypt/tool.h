#pragma once
#include <string>

#include "decrypt/crypto.h"
#include "decrypt/protocol.h"

namespace orvandel {

/// Checks the password. Prints "Wrong password", or a line with "Count:" if it is right.
ToolStatus CheckPassword(const std::string& strBackup, const Secret& password);

/// Decrypts every file of the backup to a flat folder and prints lines with "Count:" as progress.
/// @param strManifestFolder folder for "Manifest.db-decypted".
ToolStatus DecryptBackup(const std::string& strBackup, const std::string& strFolder,
                         const std::string& strManifestFolder, const Secret& password);

}  // namespace orvandel
