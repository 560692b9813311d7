#include "stop.h"

#include <atomic>
#include <csignal>

namespace {

std::atomic<int> stopSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler stores to it");

}  // namespace

void HandleStopSignals() {
  struct sigaction action = {};
  action.sa_handler = [](int signal) { stopSignal = signal; };
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

int StopSignal() {
  return stopSignal;
}
