#pragma once
#include <atomic>

// How long reading ends early. Most steps of a scan ask their progress callback whether to go on; a store may
// take any time between two such questions, so that its reader looks at this flag.

/// Sets the flag that asks the readers to stop, null for none (the default). It outlives its use here.
/// Belongs to the whole process.
void SetStopFlag(const std::atomic<bool>* pFlag);

/// True when the flag is set. From any thread.
bool IsStopRequested();
