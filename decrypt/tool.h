#pragma once
#include <string>

#include "decrypt/crypto.h"

enum ToolStatus {
  kToolDone = 0,
  kToolFailed = 1,  ///< something could not be read or written: one line on standard error for each
  kToolUsage = 2,
  kToolWrongPassword = 3,
};

/// Tries the password. Prints "Wrong password", or a line with "Count:" once it has proved right.
ToolStatus CheckPassword(const std::string& strBackup, const Secret& password);

/// Writes every file of the backup decrypted into a folder, flat, and prints lines with "Count:" as it goes.
/// @param strManifestFolder where "Manifest.db-decypted" goes.
ToolStatus DecryptBackup(const std::string& strBackup, const std::string& strFolder,
                         const std::string& strManifestFolder, const Secret& password);
