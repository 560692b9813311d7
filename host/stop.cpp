#include "stop.h"

#include <atomic>
#include <csignal>

#include "temporary_file.h"

namespace {

std::atomic<int> stopSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler stores to it");

void Stop(int signal) {
  if (stopSignal.exchange(signal) == 0) return;
  DeleteTemporaryFiles();
  std::signal(signal, SIG_DFL);
  std::raise(signal);  // takes effect when the handler returns
}

}  // namespace

void HandleStopSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before = {}, action = {};
    action.sa_handler = Stop;
    action.sa_flags = SA_RESTART;
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
      sigaction(signal, &action, nullptr);
  }
}

int StopSignal() {
  return stopSignal;
}
