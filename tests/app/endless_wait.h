#pragma once

namespace orvandel {

/// Runs the test program as the child process of a test: it opens a progress dialog of a kind, confirms a
/// cancel and waits for a worker that never ends.
constexpr char kEndlessWaitArgument[] = "--wait-after-cancel";

/// Prints "cancelled" once the kind's cancel flag is set, and "ended" if the wait ends.
/// @param nKind 2 to 4.
int WaitAfterCancel(int nKind);

}  // namespace orvandel
