#pragma once
#include <QDeadlineTimer>
#include <atomic>
#include <functional>

#include "ui/hand_over.h"

class QThread;

namespace orvandel {

/// Connects the main thread with a worker: its start, its progress, its steps on widgets, a cancel and its
/// end.
///
/// The object lives on the main thread and serves one worker after another, one at a time. The flags that a
/// worker is cancelled by and reports its end with belong to the caller, which clears and reads them; here
/// they are set and waited for. Where the main thread blocks, it runs the steps that the worker hands over,
/// and takes no other events.
class BackgroundTask {
 public:
  // Main thread.

  /// Starts a thread with the priority of the calling one, and blocks until its function has called Begun or
  /// returned. A step that the worker hands over right after that waits for the event loop.
  /// @param thread  outlives End.
  /// @return false when the system refuses another thread; its function then never runs.
  bool Start(QThread& thread);

  /// Blocks until the worker has set a flag or the time is over. @return the flag.
  bool ServeUntil(const std::atomic<bool>& bFlag, QDeadlineTimer deadline = QDeadlineTimer::Forever);

  /// Blocks until the thread that was started has ended. All that it did is visible then.
  void End();

  // Either thread.

  /// Sets a flag: the main thread a cancel, the worker its end. A ServeUntil for the flag returns at once.
  void Raise(std::atomic<bool>& bFlag);

  // The worker.

  /// Lets Start return: the flags of the worker before have been cleared.
  void Begun();

  /// True for a value other than the last one asked about since Begun.
  bool IsNewProgress(int nProgress);

  /// Runs a step on the main thread and returns when it has run. On the main thread it runs at once.
  void RunOnMainThread(const std::function<void()>& step) { m_handOver.Run(step); }

  /// Blocks until the main thread has handled what was posted to it before, or blocks for this worker itself.
  void CatchUp() {
    m_handOver.Run([] {});
  }

 private:
  HandOver m_handOver;
  QThread* m_pThread = nullptr;  // between Start and End
  QMetaObject::Connection m_finished;
  std::atomic<bool> m_bBegun{false};
  std::atomic<bool> m_bEnded{false};
  int m_nLastProgress = -1;  // of the worker
};

}  // namespace orvandel
