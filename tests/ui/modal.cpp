#include "tests/ui/modal.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

namespace orvandel {

namespace {
constexpr int kInterval = 2;   // polling interval in milliseconds
constexpr int kLooks = 30000;  // polls until the timeout
}  // namespace

ModalSteps::~ModalSteps() {
  for (const Step& step : m_steps) ADD_FAILURE() << "nothing was done to a " << step.strClass;
}

void ModalSteps::Then(const char* pszClass, std::function<void(QWidget*)> action,
                      std::function<bool(QWidget*)> ready) {
  m_steps.push_back({pszClass, std::move(action), std::move(ready)});
  Arm();
}

void ModalSteps::ThenClick(const char* pszClass, const char* pszButton) {
  const std::string strButton = pszButton;
  Then(pszClass, [strButton](QWidget* pDialog) {
    auto* pButton = pDialog->findChild<QPushButton*>(QString::fromStdString(strButton));
    ASSERT_NE(nullptr, pButton) << strButton;
    Click(pButton);
  });
}

void ModalSteps::Arm() {
  if (m_bArmed || m_steps.empty()) return;
  m_bArmed = true;
  QTimer::singleShot(kInterval, &m_context, [this] { Look(); });
}

void ModalSteps::Look() {
  m_bArmed = false;
  if (m_steps.empty()) return;
  QWidget* pDialog = QApplication::activeModalWidget();
  const Step& first = m_steps.front();
  if (pDialog && pDialog->isVisible() && pDialog->metaObject()->className() == first.strClass &&
      (!first.ready || first.ready(pDialog))) {
    const std::function<void(QWidget*)> action = first.action;
    m_steps.pop_front();
    m_nWaited = 0;
    Arm();  // before the action, which may open the next dialog and return only after it
    action(pDialog);
    return;
  }
  if (++m_nWaited > kLooks) {
    // The event loop of the dialog that is open instead would never end.
    std::fprintf(stderr, "no %s came up\n", first.strClass.c_str());
    std::abort();
  }
  Arm();
}

void Click(QWidget* pWidget) {
  Click(pWidget, pWidget->rect().center());
}

void Click(QWidget* pWidget, const QPoint& place) {
  QTest::mouseClick(pWidget, Qt::LeftButton, Qt::NoModifier, place);
}

bool WaitFor(const std::function<bool()>& condition, int nMilliseconds) {
  return QTest::qWaitFor(condition, nMilliseconds);
}

}  // namespace orvandel
