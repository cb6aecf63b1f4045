#pragma once
#include <QThread>
#include <atomic>

/// A thread that runs one function. Owned by who starts it; the function's result goes nowhere.
class CMyThread : public QThread {
  Q_OBJECT

 public:
  using Function = void (*)(void* pContext, int& nResult);

  /// What to run. Comes before start.
  void SetFunc(Function pfnFunction, void* pContext);

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
