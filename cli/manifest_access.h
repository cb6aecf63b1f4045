#pragma once
#include <functional>
#include <memory>

#include "cli/options.h"
#include "decrypt/backup_reader.h"

namespace orvandel {

/// Opens a backup of any age, encrypted or not, for the commands that go through its manifest. The manifest
/// of an encrypted one is decrypted into this process's private work folder; nothing else is.
/// @return 0, or the exit status of the process, with a line printed on standard error. A missing manifest is
/// kExitNoBackup.
int OpenManifest(const BackupOptions& options, std::unique_ptr<BackupReader>& pReader);

/// Calls visit for each entry of the manifest until it returns false or a signal requests a stop.
/// @return false when the manifest could not be read completely, with a line printed on standard error.
bool VisitManifest(const BackupReader& reader, BackupReader::Detail detail,
                   const std::function<bool(ManifestEntry&& entry)>& visit);

/// Writes the name of an entry, "Domain/relative/path", to a string that may be reused.
void SetEntryName(const ManifestEntry& entry, std::string& strName);

/// The exit status of a command that has done its work. Flushes standard output.
/// @param bComplete false when something could not be read, decrypted or written.
int FinishCommand(bool bComplete);

}  // namespace orvandel
