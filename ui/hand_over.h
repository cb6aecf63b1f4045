#pragma once
#include <QObject>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>

namespace orvandel {

/// Carries steps on widgets from a worker to the main thread. The worker waits until a step is done.
///
/// The object lives on the main thread. Steps are served by its event loop; where the main thread blocks on a
/// worker, it calls ServeFor, which serves nothing else.
class HandOver : public QObject {
  Q_OBJECT

 public:
  /// Runs a step on the main thread and returns when it has run. On the main thread it runs at once.
  /// One worker at a time. What the step throws is thrown here.
  void Run(const std::function<void()>& step);

  /// Main thread: waits for a step or a Wake for at most so long, and runs the step if there is one.
  void ServeFor(unsigned int nMilliseconds);

  /// Main thread: waits for a Wake for at most so long.
  void SleepFor(unsigned int nMilliseconds);

  /// Ends the wait that the main thread is in, or its next one. From any thread.
  void Wake();

 private:
  /// Runs the step that waits, if it is still this one. The event of a step that was served early stays in
  /// the queue, and must not serve a later step ahead of what was posted before that.
  Q_INVOKABLE void ServePending(int nStep);
  void Serve();

  std::mutex m_mutex;
  std::condition_variable m_changed;
  const std::function<void()>* m_pStep = nullptr;  // of the worker that waits; null when there is none
  int m_nStep = 0;                                 // its number
  std::exception_ptr m_pError;                     // what the last step threw
  bool m_bWoken = false;                           // no wait has seen the last Wake yet
};

}  // namespace orvandel
