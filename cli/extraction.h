#pragma once
#include "cli/files_options.h"
#include "decrypt/backup_reader.h"

namespace orvandel {

/// Extracts the entries that options select below their destination, which must exist, on all cores. Prints a
/// line for each file and the totals. Sets the process's umask.
/// @return false when something could not be read, decrypted or written.
bool ExtractFiles(const FilesOptions& options, const BackupReader& reader);

}  // namespace orvandel
