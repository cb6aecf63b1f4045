#pragma once

class QMouseEvent;
class QPoint;
class QWidget;

// Dragging a window by any free area.

namespace orvandel {

/// Left button: stores the offset from the window's corner to the pointer and accepts the event.
void BeginDrag(const QWidget* pWindow, QMouseEvent* pEvent, QPoint& ptDrag);

/// While only the left button is down: moves the window and accepts the event.
void ContinueDrag(QWidget* pWindow, QMouseEvent* pEvent, const QPoint& ptDrag);

}  // namespace orvandel
