#pragma once
#include <QThread>
#include <atomic>

/// What the user reads when a worker can't be started.
constexpr char kNoWorker[] =
    "The system can't start another task. Please close other programs and try again.";

/// A thread that runs one function. Owned by who starts it; the function's result goes nowhere.
class CMyThread : public QThread {
  Q_OBJECT

 public:
  using Function = void (*)(void* pContext, int& nResult);

  /// What to run. Comes before Begin.
  void SetFunc(Function pfnFunction, void* pContext);

  /// Starts the thread with the priority of the one that calls. @return false when the system refuses another
  /// thread; the function then never runs.
  bool Begin();

  /// True once the function has returned; what it did is visible to who sees that.
  bool HasEnded() const { return m_bEnded; }

 signals:
  void ProcessCallBack(int nProgress);  ///< nothing emits it

 protected:
  void run() override;

 private:
  Function m_pfnFunction = nullptr;
  void* m_pContext = nullptr;
  std::atomic<bool> m_bEnded{false};
};
