#pragma once

namespace orvandel {

/// Exit status of the process. After a signal it is 128 plus the signal's number.
enum ExitStatus {
  kExitDone = 0,
  kExitUsage = 1,
  kExitNoBackup = 2,
  kExitPassword = 3,
  kExitNotWritten = 4,
};

}  // namespace orvandel
