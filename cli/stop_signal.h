#pragma once

namespace orvandel {

/// Makes SIGINT, SIGHUP and SIGTERM set a flag instead of ending the process in the middle of a file. The
/// readers of stores poll the flag too. A second signal of the same kind ends the process immediately.
void CatchStopSignals();

/// The signal that requested a stop, 0 for none.
int StopSignal();

}  // namespace orvandel
