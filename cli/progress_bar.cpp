#include "cli/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "cli/stop_signal.h"
#include "common/format.h"

namespace orvandel {

namespace {
constexpr int kCells = 40;
constexpr std::chrono::milliseconds kDrawStep(50);
constexpr double kLeastSeconds = 1;      // before that an estimate is worth nothing
constexpr double kMostSeconds = 360000;  // of an estimate: 100 hours
}  // namespace

ProgressBar::ProgressBar(bool bWanted) : m_bActive(bWanted && isatty(STDERR_FILENO)) {}

ProgressBar::~ProgressBar() {
  Clear();
}

void ProgressBar::Show(int nPercent, const std::string& strText) {
  // The percentages of some steps overshoot and drop back; the bar must not.
  nPercent = std::clamp(nPercent, 0, 100);
  const bool bSame = nPercent == m_nPercent && strText == m_strText;
  if (!m_bActive || nPercent < m_nPercent || (bSame && m_bDrawn)) return;
  const auto now = std::chrono::steady_clock::now();
  // Lines of text clear the bar; don't redraw it after each of them.
  if (nPercent == m_nPercent && now - m_lastDrawn < kDrawStep) return;
  m_lastDrawn = now;
  m_nPercent = nPercent;
  m_strText = strText;
  m_bDrawn = true;
  const int nFull = kCells * nPercent / 100;
  const std::string strBar =
      std::string(static_cast<size_t>(nFull), '#') + std::string(static_cast<size_t>(kCells - nFull), '.');
  fprintf(stderr, "\r[%s] %3d%%", strBar.c_str(), nPercent);
  if (!strText.empty()) fprintf(stderr, "  %s\033[K", strText.c_str());
  fflush(stderr);
}

void ProgressBar::Clear() {
  if (!m_bDrawn) return;
  fputs("\r\033[K", stderr);
  fflush(stderr);
  m_bDrawn = false;
}

int ProgressBar::Report(void* pBar, int nPercent) {
  static_cast<ProgressBar*>(pBar)->Show(nPercent);
  return StopSignal() != 0 ? 1 : 0;
}

std::string ProgressText(uint64_t nDone, uint64_t nTotal, double dSeconds) {
  const auto sizeOf = [](uint64_t nSize) {
    return GetFileSizeString(static_cast<long long>(std::min<uint64_t>(nSize, INT64_MAX)));
  };
  nDone = std::min(nDone, nTotal);
  std::string strText = sizeOf(nDone) + " of " + sizeOf(nTotal);
  if (nDone == 0 || dSeconds < kLeastSeconds) return strText;
  const double dLeft = dSeconds / static_cast<double>(nDone) * static_cast<double>(nTotal - nDone);
  if (dLeft >= kMostSeconds) return strText;
  const auto nLeft = static_cast<int>(std::ceil(dLeft));
  char szTime[32];
  if (nLeft >= 3600)
    snprintf(szTime, sizeof szTime, ", %d:%02d:%02d left", nLeft / 3600, nLeft / 60 % 60, nLeft % 60);
  else
    snprintf(szTime, sizeof szTime, ", %d:%02d left", nLeft / 60, nLeft % 60);
  return strText + szTime;
}

int ProgressPercent(uint64_t nDone, uint64_t nTotal) {
  if (nTotal == 0) return 0;
  return static_cast<int>(100.0L * static_cast<long double>(std::min(nDone, nTotal)) /
                          static_cast<long double>(nTotal));
}

}  // namespace orvandel
