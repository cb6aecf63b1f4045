#pragma once

namespace orvandel {

/// Called with the progress of an operation, in percent. Return 0 to continue, anything else to stop.
using ProgressCallback = int (*)(void* pContext, int nProgress);

/// Called for each recovered file with the progress in percent, a status (0 or an error number) and the path
/// in UTF-16. Return 0 to continue, anything else to stop.
using RecoveryCallback = int (*)(void* pContext, int nProgress, int nErrorCode, char16_t* pRecoveryFileName);

/// Where a walk over the manifest reports its progress, and which range of the progress bar it covers.
struct WalkProgress {
  ProgressCallback pfnCallback = nullptr;  ///< may be null
  void* pContext = nullptr;
  int nBase = 0;  ///< percentage at the start of the walk
  int nStep = 0;  ///< percentage points per step
};

}  // namespace orvandel
