#pragma once
#include <string>

// Where the system's fixed folders are. This header only declares them: each executable defines the functions
// (the program with the machine-wide folders, the command line with a private folder, the tests with a
// temporary one), so that no other code knows a path and none reads the environment for it.

/// The folder whose sub-folders are the backups. Narrow, with a trailing "/".
std::string BackupRoot();

/// The folder for temporary files. Narrow, with a trailing "/". It need not exist.
std::string WorkFolder();

/// Where the program's own files lie: the decrypt tool. Narrow, with a trailing "/".
std::string ProgramFolder();

/// The folder inside the work folder that receives decrypted files.
constexpr char kDecryptFolderName[] = "VelmoraiTunesExBackupPath";

/// File name of the manifest that the decrypt tool writes, in the backup's folder or among the decrypted
/// files. The spelling is deliberate: the tool and the session both rely on it.
constexpr char kDecryptedManifestName[] = "Manifest.db-decypted";

/// The places of the installed program.
constexpr char kSystemBackupRoot[] = "/Library/Application Support/MobileSync/Backup/";
constexpr char kSystemWorkFolder[] = "/Library/Application Support/Velmora Orvandel/";
