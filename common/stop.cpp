#include "common/stop.h"

namespace orvandel {

namespace {
std::atomic<const std::atomic<bool>*> g_pFlag{nullptr};
}

void SetStopFlag(const std::atomic<bool>* pFlag) {
  g_pFlag = pFlag;
}

bool IsStopRequested() {
  const std::atomic<bool>* pFlag = g_pFlag;
  return pFlag && pFlag->load(std::memory_order_relaxed);
}

}  // namespace orvandel
