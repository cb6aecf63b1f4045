#include "ui/background_task.h"

#include <QThread>

namespace orvandel {

namespace {
constexpr unsigned int kWaitStep = 100;  // milliseconds after which a flag is read again, set by Raise or not
}

bool BackgroundTask::Start(QThread& thread) {
  m_bBegun = false;
  m_bEnded = false;
  m_finished = QObject::connect(
      &thread, &QThread::finished, &m_handOver,
      [this] {
        Raise(m_bBegun);
        Raise(m_bEnded);
      },
      Qt::DirectConnection);
  thread.start(QThread::InheritPriority);
  if (!thread.isRunning() && !thread.isFinished()) {
    QObject::disconnect(m_finished);
    return false;
  }
  m_pThread = &thread;
  // Steps aren't served here: what the worker does next may rely on the dialog, which is opened after this.
  while (!m_bBegun) m_handOver.SleepFor(kWaitStep);
  return true;
}

bool BackgroundTask::ServeUntil(const std::atomic<bool>& bFlag, QDeadlineTimer deadline) {
  while (!bFlag && !deadline.hasExpired()) m_handOver.ServeFor(kWaitStep);
  return bFlag;
}

void BackgroundTask::End() {
  if (!m_pThread) return;
  ServeUntil(m_bEnded);
  m_pThread->wait();
  // Takes a Wake that came behind the flag, so that the next worker's wait isn't ended by it.
  m_handOver.SleepFor(0);
  QObject::disconnect(m_finished);
  m_pThread = nullptr;
}

void BackgroundTask::Raise(std::atomic<bool>& bFlag) {
  bFlag = true;
  m_handOver.Wake();
}

void BackgroundTask::Begun() {
  m_nLastProgress = -1;
  Raise(m_bBegun);
}

bool BackgroundTask::IsNewProgress(int nProgress) {
  if (nProgress == m_nLastProgress) return false;
  m_nLastProgress = nProgress;
  return true;
}

}  // namespace orvandel
