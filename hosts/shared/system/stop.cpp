#include "shared/system/stop.h"

#include <atomic>

namespace zenfo::host::system {
namespace {

std::atomic<int> status{0};
std::atomic<bool> is_obeyed{false};
// Signal handlers may only use lock-free atomics.
static_assert(std::atomic<int>::is_always_lock_free);
static_assert(std::atomic<bool>::is_always_lock_free);

}  // namespace

int stop_status() { return status; }

bool note_stop(int new_status) { return status.exchange(new_status) == 0; }

void forget_stop() { status = 0; }

bool obey_stop(bool on) { return is_obeyed.exchange(on); }

bool is_stop_obeyed() { return is_obeyed; }

}  // namespace zenfo::host::system
