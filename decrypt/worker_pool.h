#pragma once
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "decrypt/file_job.h"

/// Runs jobs on all cores. Few of them wait at a time, so that a manifest of a million files isn't held
/// twice.
class WorkerPool {
 public:
  /// @param work called for each job, on one of the workers; may not throw.
  explicit WorkerPool(std::function<void(FileJob& job)> work);
  ~WorkerPool() { Finish(); }
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  /// Gives a job to the workers; waits while enough of them wait already.
  void Add(FileJob&& job);
  /// Waits until all jobs are done. Nothing may be added afterwards.
  void Finish();

 private:
  void Run();

  std::function<void(FileJob& job)> m_work;
  std::mutex m_mutex;
  std::condition_variable m_hasJob, m_hasRoom;
  std::deque<FileJob> m_waiting;
  bool m_bFinished = false;
  std::vector<std::thread> m_threads;
};
