#include "backup/categories.h"
#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/open_backup.h"
#include "cli/output.h"
#include "cli/scan_json.h"
#include "common/text.h"

namespace orvandel {

namespace {

constexpr char kManifest[] = "manifest";

void AddScanOptions(QCommandLineParser& parser) {
  AddBackupOptions(parser);
  parser.addOption({kManifest, "With --json: also lists every entry of the manifest."});
}

int Scan(const QCommandLineParser& parser, const QStringList& arguments) {
  BackupOptions options;
  ReadBackupOptions(parser, arguments[0], options);
  ProgressBar bar(!options.bQuiet);
  OpenBackup backup(options);
  if (const int nStatus = ReadBackup(options, {}, bar, backup)) return nStatus;
  if (options.bJson) {
    PrintScanJson(backup, parser.isSet(kManifest));
  } else {
    for (const Category& category : Categories())
      PrintLine(FromNarrow(CategoryLabel(category, category.pfnCount(backup.records))));
  }
  const bool bWritten = FinishOutput();
  PrintLeftOut(backup.leftOut);
  return bWritten && AllLosses(backup).empty() ? kExitDone : kExitNotWritten;
}

}  // namespace

Command ScanCommand() {
  return {"scan",
          "counts the content of a backup",
          "Reads a backup and prints the number of items in each category.",
          {kBackupArgument},
          AddScanOptions,
          Scan};
}

}  // namespace orvandel
