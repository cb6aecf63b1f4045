#pragma once
#include "cli/open_backup.h"

/// Prints all of a backup as one JSON object.
void PrintScanJson(OpenBackup& backup, bool bManifest);
