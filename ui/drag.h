#pragma once
class QMouseEvent;
class QPoint;
class QWidget;

// Moving a window by any free part of it.

/// With the left button: keeps the distance from the window's corner to the pointer, and accepts the event.
void BeginDrag(const QWidget* pWindow, QMouseEvent* pEvent, QPoint& ptDrag);

/// While the left button alone is down: moves the window along, and accepts the event.
void ContinueDrag(QWidget* pWindow, QMouseEvent* pEvent, const QPoint& ptDrag);
