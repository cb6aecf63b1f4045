#pragma once
#include <QObject>
#include <QPoint>
#include <QWidget>
#include <functional>
#include <list>
#include <string>

namespace orvandel {

/// Operates modal dialogs while the test is blocked in their event loops: one step after the other, each as
/// soon as a dialog of its class is active. If a dialog doesn't appear in time, the process is terminated.
class ModalSteps {
 public:
  ModalSteps() = default;
  /// Fails the test if a step is left.
  ~ModalSteps();
  ModalSteps(const ModalSteps&) = delete;
  ModalSteps& operator=(const ModalSteps&) = delete;

  /// @param pszClass class of the dialog, as "CMessageBox".
  /// @param ready    a further condition on the dialog; may be empty.
  void Then(const char* pszClass, std::function<void(QWidget*)> action,
            std::function<bool(QWidget*)> ready = {});
  /// Clicks a button of the dialog, by its object name.
  void ThenClick(const char* pszClass, const char* pszButton);

  bool Done() const { return m_steps.empty(); }

 private:
  struct Step {
    std::string strClass;
    std::function<void(QWidget*)> action;
    std::function<bool(QWidget*)> ready;
  };
  void Arm();
  void Look();

  std::list<Step> m_steps;
  QObject m_context;
  bool m_bArmed = false;
  qint64 m_nWaited = 0;
};

/// A left click in the middle of a widget.
void Click(QWidget* pWidget);
/// A left click at a place of a widget.
void Click(QWidget* pWidget, const QPoint& place);

/// Waits until a condition holds, processing events meanwhile.
/// @return false on timeout.
bool WaitFor(const std::function<bool()>& condition, int nMilliseconds = 30000);

}  // namespace orvandel
