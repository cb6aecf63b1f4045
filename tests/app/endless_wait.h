#pragma once

/// Makes the test program the child process of a test: it opens a progress dialog of a kind, confirms a
/// cancel and waits for the worker that never ends.
constexpr char kEndlessWaitArgument[] = "--wait-after-cancel";

/// Prints "cancelled" once the kind's cancel flag is set, and "ended" should the wait ever end.
/// @param nKind 2 to 4.
int WaitAfterCancel(int nKind);
