#pragma once
#include <atomic>

// Cancellation of long reads. Most steps of a scan are cancelled by the result of their progress callback.
// Reading a store can take arbitrarily long between two callbacks, so its reader polls this flag.

namespace orvandel {

/// Sets the flag that the readers poll; null for none (the default). It must outlive all readers. Global to
/// the process.
void SetStopFlag(const std::atomic<bool>* pFlag);

/// True when the flag is set. Thread-safe.
bool IsStopRequested();

}  // namespace orvandel
