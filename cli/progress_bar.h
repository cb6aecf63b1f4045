#pragma once
#include <chrono>

/// A bar on standard error, drawn only when that is a terminal and never more than some times a second.
class ProgressBar {
 public:
  explicit ProgressBar(bool bWanted);
  ~ProgressBar();  ///< takes the bar away
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// @param nPercent 0 to 100; the bar never goes back.
  void Show(int nPercent);
  /// Takes the bar away until the next Show, so that a line of text can be printed.
  void Clear();

  /// A progress callback with the bar as its context. Answers 1 once a signal has asked to stop.
  static int Report(void* pBar, int nPercent);

 private:
  bool m_bActive;
  bool m_bDrawn = false;
  int m_nPercent = -1;
  std::chrono::steady_clock::time_point m_lastDrawn;
};
