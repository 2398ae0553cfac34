// Tested by tests/unit/platform/threads_test.cpp
#include "platform/threads.h"

#include <sched.h>
#include <signal.h>

#include <algorithm>

namespace zenfo::platform {
namespace {

// Faults of a thread's own end the process in any case.
sigset_t signals_from_elsewhere() {
  sigset_t signals;
  sigfillset(&signals);
  for (const int fault : {SIGBUS, SIGSEGV, SIGFPE, SIGILL, SIGTRAP}) {
    sigdelset(&signals, fault);
  }
  return signals;
}

}  // namespace

size_t processors() {
  cpu_set_t set;
  if (sched_getaffinity(0, sizeof set, &set) != 0) return 1;
  return static_cast<size_t>(std::max(CPU_COUNT(&set), 1));
}

struct SignalsKeptAway::State {
  sigset_t before;
};

SignalsKeptAway::SignalsKeptAway() : state_(std::make_unique<State>()) {
  const sigset_t signals = signals_from_elsewhere();
  pthread_sigmask(SIG_BLOCK, &signals, &state_->before);
}

SignalsKeptAway::~SignalsKeptAway() {
  pthread_sigmask(SIG_SETMASK, &state_->before, nullptr);
}

}  // namespace zenfo::platform
