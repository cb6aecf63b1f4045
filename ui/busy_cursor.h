#pragma once
#include <QGuiApplication>

namespace orvandel {

/// Shows the wait cursor over all windows during the object's lifetime, while the main thread is blocked.
/// Main thread only.
class BusyCursor {
 public:
  BusyCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
  BusyCursor(const BusyCursor&) = delete;
  BusyCursor& operator=(const BusyCursor&) = delete;
};

}  // namespace orvandel
