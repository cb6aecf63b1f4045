#pragma once
#include <QGuiApplication>

/// Shows the wait cursor over all windows while the object lives: while the main thread blocks and takes no
/// events. Main thread only.
class BusyCursor {
 public:
  BusyCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
  BusyCursor(const BusyCursor&) = delete;
  BusyCursor& operator=(const BusyCursor&) = delete;
};
