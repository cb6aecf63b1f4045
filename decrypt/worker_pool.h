#pragma once
#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace orvandel {

/// Runs jobs on all cores, at least on two, so that reading and writing overlap. The queue is short, so that
/// a manifest of a million files isn't in memory. Add and Finish belong to one thread.
template <typename Job>
class WorkerPool {
 public:
  using Work = std::function<void(Job& job)>;

  /// Starts the threads. If fewer can be started, those run the jobs; without any, Add runs them.
  /// @param makeWork called once for each thread, and once for Add; the result may own state that is used by
  /// one thread alone. It must not throw.
  explicit WorkerPool(const std::function<Work()>& makeWork,
                      unsigned int nThreads = std::max(2U, std::thread::hardware_concurrency()))
      : m_ownWork(makeWork()) {
    try {
      for (unsigned int i = 0; i < nThreads; ++i)
        m_threads.emplace_back([this, work = makeWork()] { Run(work); });
    } catch (const std::system_error&) {
      // No more threads available.
    }
  }
  ~WorkerPool() { Finish(); }
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  /// Queues a job; blocks while the queue is full.
  void Add(Job&& job) {
    if (m_threads.empty()) return m_ownWork(job);
    std::unique_lock<std::mutex> lock(m_mutex);
    m_hasRoom.wait(lock, [this] { return m_waiting.size() < kMostWaiting; });
    m_waiting.push_back(std::move(job));
    m_hasJob.notify_one();
  }

  /// Waits until all jobs are done. Add must not be called afterwards.
  void Finish() {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_bFinished = true;
      m_hasJob.notify_all();
    }
    for (std::thread& thread : m_threads) thread.join();
    m_threads.clear();
  }

 private:
  static constexpr size_t kMostWaiting = 256;

  void Run(const Work& work) {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
      m_hasJob.wait(lock, [this] { return m_bFinished || !m_waiting.empty(); });
      if (m_waiting.empty()) return;
      Job job = std::move(m_waiting.front());
      m_waiting.pop_front();
      m_hasRoom.notify_one();
      lock.unlock();
      work(job);
      lock.lock();
    }
  }

  Work m_ownWork;
  std::mutex m_mutex;
  std::condition_variable m_hasJob, m_hasRoom;
  std::deque<Job> m_waiting;
  bool m_bFinished = false;
  std::vector<std::thread> m_threads;
};

}  // namespace orvandel
