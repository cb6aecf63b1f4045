#include "ui/focus_ring.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

namespace orvandel {

namespace {

constexpr int kGap = 2;    // pixels between the widget and the ring
constexpr int kWidth = 2;  // of the ring
constexpr double kRadius = 6;

bool g_bKeyboardInUse = false;  // the user has pressed Tab since the last click

/// Sees keys and clicks anywhere in the program. The reason of a change of the focus doesn't tell who made
/// it: the toolkit names Tab also when it moves the focus away from a widget that is hidden.
class InputWatcher : public QObject {
 public:
  bool eventFilter(QObject*, QEvent* pEvent) override {
    if (pEvent->type() == QEvent::MouseButtonPress) {
      g_bKeyboardInUse = false;
      for (const QWidget* pWindow : QApplication::topLevelWidgets()) {
        if (auto* pRing = pWindow->findChild<FocusRing*>(QString(), Qt::FindDirectChildrenOnly))
          pRing->hide();
      }
    } else if (pEvent->type() == QEvent::KeyPress) {
      const int nKey = static_cast<QKeyEvent*>(pEvent)->key();
      if (nKey == Qt::Key_Tab || nKey == Qt::Key_Backtab) g_bKeyboardInUse = true;
    }
    return false;
  }
};

}  // namespace

/// Sees the focus of the marked widgets come and go.
class FocusRing::FocusWatcher : public QObject {
 public:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
    const auto* pWidget = static_cast<QWidget*>(pWatched);
    if (pEvent->type() == QEvent::FocusIn && g_bKeyboardInUse) {
      Of(pWidget, true)->Surround(pWidget);
    } else if (pEvent->type() == QEvent::FocusOut) {
      if (FocusRing* pRing = Of(pWidget, false)) pRing->hide();
    }
    return false;
  }
};

FocusRing::FocusRing(QWidget* pWindow) : QWidget(pWindow) {
  setObjectName("focusRing");
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
}

FocusRing* FocusRing::Of(const QWidget* pWidget, bool bMake) {
  auto* pRing = pWidget->window()->findChild<FocusRing*>(QString(), Qt::FindDirectChildrenOnly);
  return pRing || !bMake ? pRing : new FocusRing(pWidget->window());
}

void FocusRing::Install(QWidget* pWidget) {
  static InputWatcher inputWatcher;
  static FocusWatcher focusWatcher;
  qApp->installEventFilter(&inputWatcher);  // a second time moves it, no more
  pWidget->installEventFilter(&focusWatcher);
}

void FocusRing::Surround(const QWidget* pWidget) {
  constexpr int kMargin = kGap + kWidth;
  setGeometry(QRect(pWidget->mapTo(window(), QPoint(0, 0)), pWidget->size())
                  .marginsAdded(QMargins(kMargin, kMargin, kMargin, kMargin))
                  .intersected(window()->rect()));
  show();
  raise();
}

void FocusRing::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  // Two colours, so that it stands out on the dark bars and on the light pages.
  const QRectF outer = QRectF(rect()).adjusted(kWidth / 2.0, kWidth / 2.0, -kWidth / 2.0, -kWidth / 2.0);
  painter.setPen(QPen(QColor(23, 104, 193), kWidth));
  painter.drawRoundedRect(outer, kRadius, kRadius);
  painter.setPen(QPen(Qt::white, 1));
  painter.drawRoundedRect(outer.adjusted(1.5, 1.5, -1.5, -1.5), kRadius - 1, kRadius - 1);
}

}  // namespace orvandel
