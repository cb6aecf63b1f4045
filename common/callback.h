#pragma once

/// Reports the percentage that an operation has reached. The answer 0 means go on, any other means stop.
using ProgressCallback = int (*)(void* pContext, int nProgress);

/// Reports one recovered file: percentage, status (0 or an error number) and its path in UTF-16.
/// The answer 0 means go on, any other means stop.
using RecoveryCallback = int (*)(void* pContext, int nProgress, int nErrorCode, char16_t* pRecoveryFileName);

/// Where a walk over the manifest reports to, and which stretch of the bar it covers.
struct WalkProgress {
  ProgressCallback pfnCallback = nullptr;  ///< may be null
  void* pContext = nullptr;
  int nBase = 0;  ///< percentage at which the walk begins
  int nStep = 0;  ///< percentage that one step is worth
};
