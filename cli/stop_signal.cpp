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
  action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);  // the second one ends the process at once
  for (int nSignal : {SIGINT, SIGTERM, SIGHUP}) sigaction(nSignal, &action, nullptr);
  signal(SIGPIPE, SIG_IGN);  // a reader that goes away is met as a failed write
}

int StopSignal() {
  return g_nSignal;
}
