#pragma once

/// Makes Ctrl-C, a hang-up and SIGTERM set a flag instead of ending the process in the middle of a file. The
/// readers of stores look at the flag too. A second signal of a kind ends the process at once.
void CatchStopSignals();

/// The signal that asked to stop, 0 for none.
int StopSignal();
