#include "ui/focus_ring.h"

#include <QFocusEvent>
#include <QPainter>

using namespace orvandel;

namespace {

constexpr int kGap = 2;    // pixels between the widget and the ring
constexpr int kWidth = 2;  // of the ring
constexpr double kRadius = 6;

bool g_bKeyboardInUse = false;  // the last change of the focus that the user made was by Tab

}  // namespace

/// Sees the focus of the widgets come and go.
class FocusRing::Watcher : public QObject {
 public:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
    auto* pWidget = static_cast<QWidget*>(pWatched);
    switch (pEvent->type()) {
      case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(pEvent)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) g_bKeyboardInUse = true;
        if (reason == Qt::MouseFocusReason) g_bKeyboardInUse = false;
        if (g_bKeyboardInUse) Of(pWidget, true)->Surround(pWidget);
        break;
      }
      case QEvent::MouseButtonPress:
        g_bKeyboardInUse = false;
        [[fallthrough]];
      case QEvent::FocusOut:
      case QEvent::Hide:
        if (FocusRing* pRing = Of(pWidget, false)) pRing->hide();
        break;
      default:
        break;
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
  static Watcher watcher;
  pWidget->installEventFilter(&watcher);
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
