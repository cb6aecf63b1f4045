#include "cli/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "cli/stop_signal.h"

namespace orvandel {

namespace {
constexpr int kCells = 40;
constexpr std::chrono::milliseconds kDrawStep(50);
}  // namespace

ProgressBar::ProgressBar(bool bWanted) : m_bActive(bWanted && isatty(STDERR_FILENO)) {}

ProgressBar::~ProgressBar() {
  Clear();
}

void ProgressBar::Show(int nPercent) {
  // The percentages of some steps overshoot and drop back; the bar must not.
  nPercent = std::clamp(nPercent, 0, 100);
  if (!m_bActive || nPercent < m_nPercent || (nPercent == m_nPercent && m_bDrawn)) return;
  const auto now = std::chrono::steady_clock::now();
  // Lines of text clear the bar; don't redraw it after each of them.
  if (nPercent == m_nPercent && now - m_lastDrawn < kDrawStep) return;
  m_lastDrawn = now;
  m_nPercent = nPercent;
  m_bDrawn = true;
  const int nFull = kCells * nPercent / 100;
  const std::string strBar =
      std::string(static_cast<size_t>(nFull), '#') + std::string(static_cast<size_t>(kCells - nFull), '.');
  fprintf(stderr, "\r[%s] %3d%%", strBar.c_str(), nPercent);
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

}  // namespace orvandel
