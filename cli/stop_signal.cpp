#include "cli/stop_signal.h"

#include <csignal>
#include <initializer_list>

namespace {

volatile std::sig_atomic_t g_nSignal = 0;

void Remember(int nSignal) {
  g_nSignal = nSignal;
}

}  // namespace

void CatchStopSignals() {
  struct sigaction action = {};
  action.sa_handler = Remember;
  action.sa_flags = SA_RESTART;
  for (int nSignal : {SIGINT, SIGTERM, SIGHUP}) sigaction(nSignal, &action, nullptr);
  signal(SIGPIPE, SIG_IGN);  // a reader that goes away is met as a failed write
}

int StopSignal() {
  return g_nSignal;
}
