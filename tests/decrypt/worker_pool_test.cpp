#include "decrypt/worker_pool.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <fstream>

#include "decrypt/manifest_entry.h"

using namespace orvandel;

namespace {

constexpr int kJobs = 1000;

/// Runs jobs through a pool. @return the number of completed jobs.
int JobsDone(unsigned int nThreads) {
  std::atomic<int> nDone{0};
  WorkerPool<ManifestEntry> pool([&] { return [&](ManifestEntry&) { ++nDone; }; }, nThreads);
  for (int i = 0; i < kJobs; ++i) pool.Add(ManifestEntry());
  pool.Finish();
  return nDone;
}

/// Limits the process's memory, so that there is too little for a thread's stack.
bool LimitMemory() {
  std::ifstream file("/proc/self/statm");
  rlim_t nPages = 0;
  file >> nPages;
  const rlim_t nBytes = nPages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + (2 << 20);
  const rlimit limit = {nBytes, nBytes};
  return nPages != 0 && setrlimit(RLIMIT_AS, &limit) == 0;
}

}  // namespace

TEST(WorkerPool, DoesAllJobsWithAnyNumberOfThreads) {
  for (const unsigned int nThreads : {0u, 1u, 2u, 16u}) EXPECT_EQ(kJobs, JobsDone(nThreads)) << nThreads;
}

// The child is a new process, since a sanitizer lets no thread begin in one that was forked beside others.
TEST(WorkerPoolDeathTest, DoesAllJobsWhenTheSystemGrantsNoThreads) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(_exit(!LimitMemory() ? 2 : JobsDone(16) == kJobs ? 0 : 1), testing::ExitedWithCode(0), "");
}
