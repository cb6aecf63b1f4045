#include "ui/hand_over.h"

#include <QThread>
#include <chrono>
#include <new>
#include <utility>

namespace orvandel {

void HandOver::Run(const std::function<void()>& step) {
  if (QThread::currentThread() == thread()) {
    step();
    return;
  }
  std::unique_lock<std::mutex> lock(m_mutex);
  m_pStep = &step;
  m_changed.notify_all();
  m_nStep = (m_nStep + 1) & 0xFFFF;
  try {
    QMetaObject::invokeMethod(this, "ServePending", Qt::QueuedConnection, Q_ARG(int, m_nStep));
  } catch (const std::bad_alloc&) {
    m_pStep = nullptr;
    throw;
  }
  m_changed.wait(lock, [this] { return m_pStep == nullptr; });
  if (m_pError) std::rethrow_exception(std::exchange(m_pError, nullptr));
}

void HandOver::ServeFor(unsigned int nMilliseconds) {
  {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::milliseconds(nMilliseconds),
                       [this] { return m_pStep != nullptr || m_bWoken; });
    m_bWoken = false;
  }
  Serve();
}

void HandOver::SleepFor(unsigned int nMilliseconds) {
  std::unique_lock<std::mutex> lock(m_mutex);
  m_changed.wait_for(lock, std::chrono::milliseconds(nMilliseconds), [this] { return m_bWoken; });
  m_bWoken = false;
}

void HandOver::Wake() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_bWoken = true;
  m_changed.notify_all();
}

void HandOver::ServePending(int nStep) {
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (nStep != m_nStep) return;
  }
  Serve();
}

void HandOver::Serve() {
  std::unique_lock<std::mutex> lock(m_mutex);
  const std::function<void()>* pStep = m_pStep;
  if (!pStep) return;  // served already, while the main thread blocked
  lock.unlock();
  std::exception_ptr pError;
  try {
    (*pStep)();
  } catch (...) {
    // The event loop can't carry it on, and the worker waits.
    pError = std::current_exception();
  }
  lock.lock();
  m_pError = pError;
  m_pStep = nullptr;
  m_changed.notify_all();
}

}  // namespace orvandel
