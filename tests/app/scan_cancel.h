#pragma once
#include <QProgressBar>
#include <QThread>
#include <atomic>
#include <memory>

#include "tests/ui/modal.h"
#include "ui/window.h"

namespace orvandel {

/// Cancels the scans of a window at a given report: the worker waits there until the user has pressed
/// "Cancel" and confirmed.
class ScanCancel {
 public:
  /// @param nValue  the worker's report at which it waits; 100 is the one after its end.
  ScanCancel(DRUI& window, int nValue) : m_window(window) {
    m_connection = QObject::connect(
        &window, &DRUI::ScanProcessCallBack, &window,
        [this, nValue](int nProgress) {
          if (nProgress < nValue || m_bReached) return;
          m_bReached = true;
          for (int i = 0; i < kLimit && !m_window.m_bCancelScan && !m_bGoOn; ++i) QThread::msleep(1);
        },
        Qt::DirectConnection);
  }
  ~ScanCancel() { QObject::disconnect(m_connection); }
  ScanCancel(const ScanCancel&) = delete;
  ScanCancel& operator=(const ScanCancel&) = delete;

  /// Presses "Cancel" once the worker waits, and a button of the question.
  void Press(ModalSteps& steps, const char* pszAnswer) {
    steps.Then(
        "SCANUI",
        [this](QWidget* pDialog) {
          auto* pBar = pDialog->findChild<QProgressBar*>("progressBar");
          m_nBar = pBar->value();
          QObject::connect(pBar, &QProgressBar::valueChanged, pBar, [this](int nValue) { m_nBar = nValue; });
          Click(pDialog->findChild<QWidget*>("Cancel"));
        },
        [this](QWidget*) { return m_bReached.load(); });
    steps.ThenClick("CMessageBox", pszAnswer);
  }

  /// Lets the worker continue without a cancel.
  void GoOn() { m_bGoOn = true; }
  bool Reached() const { return m_bReached; }
  /// The last value of the bar.
  int Bar() const { return m_nBar; }

 private:
  static constexpr int kLimit = 30000;

  DRUI& m_window;
  QMetaObject::Connection m_connection;
  std::atomic<bool> m_bReached{false};
  std::atomic<bool> m_bGoOn{false};
  int m_nBar = -1;
};

}  // namespace orvandel
