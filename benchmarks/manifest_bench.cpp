#include <benchmark/benchmark.h>
#include <openssl/evp.h>
#include <sqlite3.h>

#include "backup/digest.h"
#include "backup/manifest.h"
#include "benchmarks/data.h"
#include "common/text.h"

namespace orvandel {

namespace {

const Catalogue& Names() {
  static const Catalogue catalogue = [] {
    Catalogue entries;
    process_mbdb_file(Ansi2Unicode(BinaryManifest().c_str()).c_str(), entries);
    return entries;
  }();
  return catalogue;
}

void EvpDigest(benchmark::State& state) {
  const Catalogue& names = Names();
  unsigned char digest[EVP_MAX_MD_SIZE];
  for (auto _ : state) {
    for (const __MBDB_FILE__& entry : names) {
      unsigned int nLength = 0;
      EVP_Digest(entry.strFileName.data(), entry.strFileName.size(), digest, &nLength, EVP_sha1(), nullptr);
      benchmark::DoNotOptimize(digest);
    }
  }
}
BENCHMARK(EvpDigest)->Unit(benchmark::kMillisecond);

void OwnDigest(benchmark::State& state) {
  const Catalogue& names = Names();
  char digest[41] = {};
  for (auto _ : state) {
    for (const __MBDB_FILE__& entry : names) {
      SHA1(reinterpret_cast<const unsigned char*>(entry.strFileName.c_str()), digest, 40);
      benchmark::DoNotOptimize(digest);
    }
  }
}
BENCHMARK(OwnDigest)->Unit(benchmark::kMillisecond);

void ReadBinaryManifest(benchmark::State& state) {
  const std::u16string path = Ansi2Unicode(BinaryManifest().c_str());
  for (auto _ : state) {
    Catalogue entries;
    process_mbdb_file(path.c_str(), entries);
    state.PauseTiming();
    if (entries.size() != static_cast<size_t>(kManifestEntries)) state.SkipWithError("entries are missing");
    entries = Catalogue();
    state.ResumeTiming();
  }
}
BENCHMARK(ReadBinaryManifest)->Unit(benchmark::kMillisecond);

std::string Column(sqlite3_stmt* pStatement, int nColumn) {
  const auto* pText = reinterpret_cast<const char*>(sqlite3_column_text(pStatement, nColumn));
  return pText ? std::string(pText, static_cast<size_t>(sqlite3_column_bytes(pStatement, nColumn)))
               : std::string();
}

void PlainManifestQuery(benchmark::State& state) {
  const std::string path = DatabaseManifest();
  for (auto _ : state) {
    Catalogue entries;
    sqlite3* pStore = nullptr;
    sqlite3_stmt* pStatement = nullptr;
    sqlite3_open_v2(path.c_str(), &pStore, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_prepare_v2(pStore, "select fileID, domain, relativePath from Files", -1, &pStatement, nullptr);
    while (sqlite3_step(pStatement) == SQLITE_ROW) {
      __MBDB_FILE__ entry;
      entry.strFileId = Column(pStatement, 0);
      entry.strFileName = Column(pStatement, 1);
      const std::string relativePath = Column(pStatement, 2);
      if (!relativePath.empty()) entry.strFileName.append(1, '-').append(relativePath);
      if (!entry.strFileId.empty()) entries.push_back(std::move(entry));
    }
    sqlite3_finalize(pStatement);
    sqlite3_close(pStore);
    state.PauseTiming();
    if (entries.size() != static_cast<size_t>(kManifestEntries)) state.SkipWithError("entries are missing");
    entries = Catalogue();
    state.ResumeTiming();
  }
}
BENCHMARK(PlainManifestQuery)->Unit(benchmark::kMillisecond);

void ReadDatabaseManifest(benchmark::State& state) {
  const std::u16string path = Ansi2Unicode(DatabaseManifest().c_str());
  for (auto _ : state) {
    Catalogue entries;
    process_db_file(path.c_str(), entries);
    state.PauseTiming();
    if (entries.size() != static_cast<size_t>(kManifestEntries)) state.SkipWithError("entries are missing");
    entries = Catalogue();
    state.ResumeTiming();
  }
}
BENCHMARK(ReadDatabaseManifest)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvandel
