#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "backup/manifest.h"
#include "benchmarks/data.h"
#include "common/text.h"
#include "extract/media.h"

namespace orvandel {

namespace {

struct Media {
  Catalogue catalogue;
  BackupLayout layout;
  std::vector<std::string> paths;
};

const Media& Files() {
  static const Media media = [] {
    Media result;
    const std::string folder = MediaBackup();
    process_db_file(Ansi2Unicode((folder + "/Manifest.db").c_str()).c_str(), result.catalogue);
    result.layout.qstrRoot = FromNarrow(folder);
    result.layout.bHasManifestDb = true;
    for (const __MBDB_FILE__& entry : result.catalogue)
      result.paths.push_back(ToNarrow(result.layout.PathOf(entry.strFileId)));
    return result;
  }();
  return media;
}

void PlainMediaLoop(benchmark::State& state) {
  const Media& media = Files();
  char head[512];
  for (auto _ : state) {
    off_t nBytes = 0;
    for (const std::string& path : media.paths) {
      int nDescriptor = open(path.c_str(), O_RDONLY);
      if (read(nDescriptor, head, sizeof head) < 0) state.SkipWithError("can't read");
      close(nDescriptor);
      nDescriptor = open(path.c_str(), O_RDONLY);
      struct stat info;
      fstat(nDescriptor, &info);
      close(nDescriptor);
      nBytes += info.st_size;
    }
    benchmark::DoNotOptimize(nBytes);
  }
}
BENCHMARK(PlainMediaLoop)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

int Count(void* pCalls, int) {
  ++*static_cast<long*>(pCalls);
  return 0;
}

void WalkMedia(benchmark::State& state) {
  const Media& media = Files();
  for (auto _ : state) {
    long nCalls = 0;
    std::vector<_IPHONE_CAMERA_INFO_> camera, photoStream;
    WalkCameraFiles(media.catalogue, media.layout, {&Count, &nCalls, 12, 11}, camera, photoStream);
    if (camera.size() != static_cast<size_t>(kMediaFiles)) state.SkipWithError("files are missing");
  }
}
BENCHMARK(WalkMedia)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvandel
