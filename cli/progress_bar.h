#pragma once
#include <chrono>

namespace orvandel {

/// A progress bar on standard error, drawn only on a terminal and at most a few times a second.
class ProgressBar {
 public:
  explicit ProgressBar(bool bWanted);
  ~ProgressBar();  ///< clears the bar
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// @param nPercent 0 to 100; lower values than before are ignored.
  void Show(int nPercent);
  /// Clears the bar until the next Show, so that a line of text can be printed.
  void Clear();

  /// A progress callback with the bar as its context. @return 1 after a signal requested a stop, else 0.
  static int Report(void* pBar, int nPercent);

 private:
  bool m_bActive;
  bool m_bDrawn = false;
  int m_nPercent = -1;
  std::chrono::steady_clock::time_point m_lastDrawn;
};

}  // namespace orvandel
