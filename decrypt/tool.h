#pragma once
#include <string>

#include "decrypt/crypto.h"
#include "decrypt/protocol.h"

/// Tries the password. Prints "Wrong password", or a line with "Count:" once it has proved right.
ToolStatus CheckPassword(const std::string& strBackup, const Secret& password);

/// Writes every file of the backup decrypted into a folder, flat, and prints lines with "Count:" as it goes.
/// @param strManifestFolder where "Manifest.db-decypted" goes.
ToolStatus DecryptBackup(const std::string& strBackup, const std::string& strFolder,
                         const std::string& strManifestFolder, const Secret& password);
