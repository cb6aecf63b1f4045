#include "cli/extraction.h"

#include <sys/stat.h>

#include "cli/entry_writer.h"
#include "cli/manifest_access.h"
#include "cli/output.h"
#include "cli/stop_signal.h"
#include "common/text.h"
#include "decrypt/worker_pool.h"

namespace orvandel {

namespace {

/// The number of bytes that will be extracted, as far as the records tell.
uint64_t CountBytes(const FilesOptions& options, const BackupReader& reader, PresentFiles& present) {
  EntryFilter filter(options.conditions, present);
  uint64_t nTotal = 0;
  std::string strName;
  VisitManifest(reader, BackupReader::Detail::Records, [&](ManifestEntry&& entry) {
    SetEntryName(entry, strName);
    if (filter.Accepts(entry, strName)) nTotal += CountedSize(entry);
    return true;
  });
  return nTotal;
}

}  // namespace

bool ExtractFiles(const FilesOptions& options, const BackupReader& reader) {
  umask(022);  // the rights of what is written don't depend on the user's
  const auto tree = DestinationTree::Open(ToNarrow(options.qstrDestination), reader.Folder());
  if (!tree) {
    PrintError(options.qstrDestination + ": " + FromNarrow(tree.Error().strReason));
    return false;
  }
  ProgressBar bar(!options.bQuiet);
  PresentFiles present(reader.Folder(), reader.IsSharded());
  ExtractionReport report(options, bar, bar.IsActive() ? CountBytes(options, reader, present) : 0);
  EntryFilter filter(options.conditions, present);
  TargetNames names((*tree)->TakesSafeNamesOnly(), (*tree)->IgnoresCase());
  const BackupFolder folder(reader.Folder());
  WorkerPool<EntryJob> pool([&] {
    return [pWriter = std::make_shared<EntryWriter>(options, reader, folder, *tree, report)](EntryJob& job) {
      pWriter->Write(job);
    };
  });
  std::string strName;
  const bool bComplete = VisitManifest(reader, BackupReader::Detail::Records, [&](ManifestEntry&& entry) {
    SetEntryName(entry, strName);
    if (!filter.Accepts(entry, strName)) return true;
    // Nothing tells what it is, and the backup has no file for it.
    if (entry.kind == ManifestEntry::Kind::Unknown && !reader.IsFile(entry)) return true;
    EntryJob job{std::move(entry), {}};
    job.target = names.Of(job.entry);
    pool.Add(std::move(job));
    return true;
  });
  pool.Finish();
  bar.Clear();
  if (bComplete && StopSignal() == 0) filter.ReportUnmatched();
  report.PrintTotals();
  return bComplete && !report.HasFailed();
}

}  // namespace orvandel
