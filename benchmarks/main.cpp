#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

#include "benchmarks/data.h"
#include "benchmarks/memory.h"

using namespace orvandel;

namespace {

/// A benchmark, its baseline, and the highest allowed ratio of the two.
struct Target {
  const char* pszWhat;
  const char* pszMeasured;
  const char* pszBaseline;
  double dLimit;
};

constexpr Target kTargets[] = {
    {"Digest of 1,000,000 names / EVP one-shot", "OwnDigest", "EvpDigest", 1.0},
    {"Binary manifest of 1,000,000 entries / EVP one-shot", "ReadBinaryManifest", "EvpDigest", 1.5},
    {"Database manifest of 1,000,000 rows / plain SQLite loop", "ReadDatabaseManifest", "PlainManifestQuery",
     1.4},
    {"Message store of 1,000,000 rows / plain SQLite loop", "ReadMessageStore", "PlainMessageQuery", 1.6},
    {"1,000,000 messages with attributedBody / plain SQLite loop", "ReadBodyStore", "PlainBodyQuery", 1.5},
    {"1,000,000 messages in 2,000 chats of WhatsApp / plain SQLite loop", "ReadWhatsAppStore",
     "PlainWhatsAppQuery", 1.6},
    {"Media walk over 100,000 files / plain loop of system calls", "WalkMedia", "PlainMediaLoop", 0.75},
    {"Export of 1,000,000 messages in 2,000 conversations / plain fwrite", "ExportMessages",
     "PlainExportWrites", 2.0},
    {"Names of 1,000,000 entries by orvandel-cli / reading the manifest", "ListNames", "ReadLargeManifest",
     1.5},
    {"Everything of 1,000,000 entries by orvandel-cli / reading the manifest", "ListEverything",
     "ReadLargeManifest", 5.0},
    {"The same as JSON / reading the manifest", "ListEverythingAsJson", "ReadLargeManifest", 5.0},
    {"Scan of 1,000,000 entries as JSON with the manifest / without it", "ScanAsJsonWithManifest",
     "ScanAsJson", 2.0},
    {"Unlocking with 2,000,000 rounds / openssl kdf", "DerivePasswordKey", "OpenSslKdf", 1.0},
};
constexpr double kPeakMemoryLimit = 400;  // MiB

/// Prints the results as usual and keeps the best time of each benchmark.
class BestTimes : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      const std::string name = run.run_name.function_name;
      const double dTime = run.GetAdjustedRealTime();
      const auto [it, bNew] = m_times.emplace(name, dTime);
      if (!bNew) it->second = std::min(it->second, dTime);
    }
    ConsoleReporter::ReportRuns(runs);
  }

  double Of(const char* pszName) const {
    const auto it = m_times.find(pszName);
    return it == m_times.end() ? 0 : it->second;
  }

 private:
  std::map<std::string, double> m_times;
};

const char* Verdict(bool bMet) {
  return bMet ? "met" : "NOT MET";
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  SetDataFolder(QCoreApplication::applicationDirPath() + "/../data");
  const bool bAll = argc == 1;  // Initialize removes the arguments that it knows
  benchmark::Initialize(&argc, argv);
  // Measured first: a child's peak includes the memory of this process when it is started.
  const double dPeak = bAll ? ScanPeakMemory() : 0;
  BestTimes times;
  benchmark::RunSpecifiedBenchmarks(&times);

  printf("\n| What | Figure (ms) | Baseline (ms) | Ratio | Limit | |\n|---|---|---|---|---|---|\n");
  for (const Target& target : kTargets) {
    const double dMeasured = times.Of(target.pszMeasured), dBaseline = times.Of(target.pszBaseline);
    if (dMeasured == 0 || dBaseline == 0) continue;  // filtered out
    const double dRatio = dMeasured / dBaseline;
    printf("| %s | %.0f | %.0f | %.2f | %.2f | %s |\n", target.pszWhat, dMeasured, dBaseline, dRatio,
           target.dLimit, Verdict(dRatio <= target.dLimit));
  }
  if (!bAll) return 0;
  printf("| Peak memory of a scan of 1,000,000 entries, MiB | %.0f | | | %.0f | %s |\n", dPeak,
         kPeakMemoryLimit, Verdict(dPeak <= kPeakMemoryLimit));
  return 0;
}
