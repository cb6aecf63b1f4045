#include "cli/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "cli/stop_signal.h"

namespace {
constexpr int kCells = 40;
constexpr std::chrono::milliseconds kDrawStep(50);
}  // namespace

ProgressBar::ProgressBar(bool bWanted) : m_bActive(bWanted && isatty(STDERR_FILENO)) {}

ProgressBar::~ProgressBar() {
  Clear();
}

void ProgressBar::Show(int nPercent) {
  // The percentages of some steps run ahead and fall back; people want a bar that goes one way.
  nPercent = std::clamp(nPercent, 0, 100);
  if (!m_bActive || nPercent < m_nPercent || (nPercent == m_nPercent && m_bDrawn)) return;
  const auto now = std::chrono::steady_clock::now();
  // Each line of text takes the bar away; it needn't come back for every one of them.
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
