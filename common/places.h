#pragma once
#include <string>

// The fixed folders. This header only declares them; each executable defines the functions: the program with
// the machine-wide folders, the command line with a private folder, the tests with a temporary one. No other
// code knows these paths, and no environment variable changes them.

namespace orvandel {

/// The folder that contains the backups, one sub-folder each. Narrow, with a trailing "/".
std::string BackupRoot();

/// The folder for temporary files. Narrow, with a trailing "/". It need not exist.
std::string WorkFolder();

/// The folder of the program's own files, such as the decrypt tool. Narrow, with a trailing "/".
std::string ProgramFolder();

/// The folder inside the work folder that receives decrypted files.
constexpr char kDecryptFolderName[] = "VelmoraiTunesExBackupPath";

/// Name of the manifest that the decrypt tool writes, in the backup's folder or in the folder of decrypted
/// files. Tool and session both depend on the spelling.
constexpr char kDecryptedManifestName[] = "Manifest.db-decypted";

/// The places of the installed program.
constexpr char kSystemBackupRoot[] = "/Library/Application Support/MobileSync/Backup/";
constexpr char kSystemWorkFolder[] = "/Library/Application Support/Velmora Orvandel/";

}  // namespace orvandel
