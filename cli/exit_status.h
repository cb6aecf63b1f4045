#pragma once

/// What the process ends with. A stop by a signal ends with 128 and the signal's number.
enum ExitStatus {
  kExitDone = 0,
  kExitUsage = 1,
  kExitNoBackup = 2,
  kExitPassword = 3,
  kExitNotWritten = 4,
};
