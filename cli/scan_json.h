#pragma once
#include "cli/open_backup.h"

namespace orvandel {

/// Prints the content of a backup as one JSON object. @param bManifest includes the manifest's entries.
void PrintScanJson(OpenBackup& backup, bool bManifest);

}  // namespace orvandel
