#pragma once
#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "decrypt/manifest_entry.h"

namespace orvandel {

/// Runs jobs on all cores. The queue is short, so that a manifest of a million files isn't in memory twice.
class WorkerPool {
 public:
  /// Starts one thread per core. If fewer can be started, those run the jobs; without any, Add runs them.
  /// @param work called for each job, on one of the workers; must not throw.
  /// @param nThreads number of threads; other values than the number of cores are for tests.
  explicit WorkerPool(std::function<void(ManifestEntry& job)> work,
                      unsigned int nThreads = std::max(1U, std::thread::hardware_concurrency()));
  ~WorkerPool() { Finish(); }
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  /// Queues a job; blocks while the queue is full.
  void Add(ManifestEntry&& job);
  /// Waits until all jobs are done. Add must not be called afterwards.
  void Finish();

 private:
  void Run();

  std::function<void(ManifestEntry& job)> m_work;
  std::mutex m_mutex;
  std::condition_variable m_hasJob, m_hasRoom;
  std::deque<ManifestEntry> m_waiting;
  bool m_bFinished = false;
  std::vector<std::thread> m_threads;
};

}  // namespace orvandel
