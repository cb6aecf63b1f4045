#pragma once

/// Makes Ctrl-C, a hang-up and a polite kill set a flag instead of ending the process in the middle of a
/// file.
/// A second one of a kind does end it, should the first not be heard.
void CatchStopSignals();

/// The signal that asked to stop, 0 for none.
int StopSignal();
