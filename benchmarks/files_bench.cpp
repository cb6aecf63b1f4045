#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QProcess>

#include "backup/manifest.h"
#include "benchmarks/data.h"
#include "common/text.h"

namespace orvandel {

namespace {

/// Runs a command of orvandel-cli on the large backup, with its output thrown away.
void RunOnLargeBackup(benchmark::State& state, const QString& command, const QStringList& options) {
  const QString program = QCoreApplication::applicationDirPath() + "/orvandel-cli";
  const QString backup = QString::fromStdString(LargeBackup());
  for (auto _ : state) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, QStringList{command, backup, "-q"} + options);
    if (!process.waitForFinished(-1) || process.exitCode() != 0) state.SkipWithError("orvandel-cli failed");
  }
}

void ReadLargeManifest(benchmark::State& state) {
  const std::u16string path = Ansi2Unicode((LargeBackup() + "/Manifest.db").c_str());
  for (auto _ : state) {
    Catalogue entries;
    process_db_file(path.c_str(), entries);
    state.PauseTiming();
    if (entries.size() < static_cast<size_t>(kManifestEntries)) state.SkipWithError("entries are missing");
    entries = Catalogue();
    state.ResumeTiming();
  }
}
BENCHMARK(ReadLargeManifest)->UseRealTime()->Unit(benchmark::kMillisecond);

void ListNames(benchmark::State& state) {
  RunOnLargeBackup(state, "files", {"--names"});
}
BENCHMARK(ListNames)->UseRealTime()->Unit(benchmark::kMillisecond);

void ListEverything(benchmark::State& state) {
  RunOnLargeBackup(state, "files", {});
}
BENCHMARK(ListEverything)->UseRealTime()->Unit(benchmark::kMillisecond);

void ListEverythingAsJson(benchmark::State& state) {
  RunOnLargeBackup(state, "files", {"--json"});
}
BENCHMARK(ListEverythingAsJson)->UseRealTime()->Unit(benchmark::kMillisecond);

void ScanAsJson(benchmark::State& state) {
  RunOnLargeBackup(state, "scan", {"--json"});
}
BENCHMARK(ScanAsJson)->UseRealTime()->Unit(benchmark::kMillisecond);

void ScanAsJsonWithManifest(benchmark::State& state) {
  RunOnLargeBackup(state, "scan", {"--json", "--manifest"});
}
BENCHMARK(ScanAsJsonWithManifest)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvandel
