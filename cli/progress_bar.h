#pragma once
#include <chrono>
#include <cstdint>
#include <string>

namespace orvandel {

/// A progress bar on standard error, drawn only on a terminal and at most a few times a second.
class ProgressBar {
 public:
  explicit ProgressBar(bool bWanted);
  ~ProgressBar();  ///< clears the bar
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// @param nPercent 0 to 100; lower values than before are ignored.
  /// @param strText shown behind the bar; a new text alone redraws it a few times a second.
  void Show(int nPercent, const std::string& strText = {});
  /// Whether it is ever drawn.
  bool IsActive() const { return m_bActive; }
  /// Clears the bar until the next Show, so that a line of text can be printed.
  void Clear();

  /// A progress callback with the bar as its context. @return 1 after a signal requested a stop, else 0.
  static int Report(void* pBar, int nPercent);

 private:
  bool m_bActive;
  bool m_bDrawn = false;
  int m_nPercent = -1;
  std::string m_strText;
  std::chrono::steady_clock::time_point m_lastDrawn;
};

/// The text of a bar for work that is counted in bytes: "1.20 GB of 3.40 GB, 2:35 left". The remaining time
/// is left out while it can't be estimated.
/// @param dSeconds the time that the work done has taken.
std::string ProgressText(uint64_t nDone, uint64_t nTotal, double dSeconds);

/// The percentage of work done, 0 to 100.
int ProgressPercent(uint64_t nDone, uint64_t nTotal);

}  // namespace orvandel
