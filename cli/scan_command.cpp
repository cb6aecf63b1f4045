#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/output.h"
#include "cli/scan_json.h"
#include "common/text.h"

int RunScan(const Options& options) {
  ProgressBar bar(!options.bQuiet);
  OpenBackup backup(options);
  if (const int nStatus = ReadBackup(options, bar, backup)) return nStatus;
  if (options.bJson) {
    PrintScanJson(backup, options.bManifest);
  } else {
    for (const Category& category : Categories())
      PrintLine(FromNarrow(CategoryLabel(category, category.pfnCount(backup.records))));
  }
  return FinishOutput() && AllLosses(backup).empty() ? kExitDone : kExitNotWritten;
}
