#include "cli/stop_signal.h"

#include <atomic>
#include <csignal>
#include <initializer_list>

#include "common/stop.h"

namespace orvandel {

namespace {

volatile std::sig_atomic_t g_nSignal = 0;

std::atomic<bool> g_bStop{false};  // polled by the readers of the engine
static_assert(std::atomic<bool>::is_always_lock_free, "set by a signal handler");

void Remember(int nSignal) {
  g_nSignal = nSignal;
  g_bStop = true;
}

}  // namespace

void CatchStopSignals() {
  SetStopFlag(&g_bStop);
  struct sigaction action = {};
  action.sa_handler = Remember;
  action.sa_flags =
      static_cast<int>(SA_RESTART | SA_RESETHAND);  // a second signal ends the process immediately
  for (int nSignal : {SIGINT, SIGTERM, SIGHUP}) sigaction(nSignal, &action, nullptr);
  signal(SIGPIPE, SIG_IGN);  // a closed pipe is reported as a failed write
}

int StopSignal() {
  return g_nSignal;
}

}  // namespace orvandel
