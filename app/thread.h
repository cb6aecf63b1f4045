#pragma once
#include <QThread>

namespace orvandel {

/// What the user reads when a worker can't be started.
constexpr char kNoWorker[] =
    "The system can't start another task. Please close other programs and try again.";

}  // namespace orvandel

/// A thread that runs one function. Owned by who starts it; the function's result is discarded.
class CMyThread : public QThread {
  Q_OBJECT

 public:
  using Function = void (*)(void* pContext, int& nResult);

  /// What to run. Comes before the start.
  void SetFunc(Function pfnFunction, void* pContext);

 signals:
  void ProcessCallBack(int nProgress);  ///< nothing emits it

 protected:
  void run() override;

 private:
  Function m_pfnFunction = nullptr;
  void* m_pContext = nullptr;
};
