#include "ui/drag.h"

#include <QMouseEvent>
#include <QWidget>

namespace orvandel {

void BeginDrag(const QWidget* pWindow, QMouseEvent* pEvent, QPoint& ptDrag) {
  if (pEvent->button() != Qt::LeftButton) return;
  ptDrag = pEvent->globalPosition().toPoint() - pWindow->frameGeometry().topLeft();
  pEvent->accept();
}

void ContinueDrag(QWidget* pWindow, QMouseEvent* pEvent, const QPoint& ptDrag) {
  if (pEvent->buttons() != Qt::LeftButton) return;
  pWindow->move(pEvent->globalPosition().toPoint() - ptDrag);
  pEvent->accept();
}

}  // namespace orvandel
