#include "decrypt/worker_pool.h"

#include <system_error>

namespace orvandel {

namespace {
constexpr size_t kMostWaiting = 256;
}

WorkerPool::WorkerPool(std::function<void(ManifestEntry& job)> work, unsigned int nThreads)
    : m_work(std::move(work)) {
  try {
    for (unsigned int i = 0; i < nThreads; ++i) m_threads.emplace_back([this] { Run(); });
  } catch (const std::system_error&) {
    // No more threads available: the existing ones run the jobs, or Add does.
  }
}

void WorkerPool::Add(ManifestEntry&& job) {
  if (m_threads.empty()) return m_work(job);
  std::unique_lock<std::mutex> lock(m_mutex);
  m_hasRoom.wait(lock, [this] { return m_waiting.size() < kMostWaiting; });
  m_waiting.push_back(std::move(job));
  m_hasJob.notify_one();
}

void WorkerPool::Finish() {
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bFinished = true;
    m_hasJob.notify_all();
  }
  for (std::thread& thread : m_threads) thread.join();
  m_threads.clear();
}

void WorkerPool::Run() {
  std::unique_lock<std::mutex> lock(m_mutex);
  for (;;) {
    m_hasJob.wait(lock, [this] { return m_bFinished || !m_waiting.empty(); });
    if (m_waiting.empty()) return;
    ManifestEntry job = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_hasRoom.notify_one();
    lock.unlock();
    m_work(job);
    lock.lock();
  }
}

}  // namespace orvandel
