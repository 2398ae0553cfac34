#include "platform/posix/bus_guard.h"

#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <mutex>

namespace zenfo::platform {
namespace {

// Read by the handler, whenever it is called.
struct Range {
  std::atomic<uintptr_t> begin{0};
  std::atomic<uintptr_t> end{0};  // 0: free
  std::atomic<std::atomic<bool>*> lost{nullptr};
};

constexpr size_t kMostRanges = 16;
std::mutex mutex;  // of all but the handler, which reads the ranges alone
Range ranges[kMostRanges];
size_t guarded_ranges = 0;
uintptr_t page_bytes = 0;
struct sigaction handler_before;
volatile sig_atomic_t passing_on = 0;

// Null for an address that is not guarded.
Range* range_of(uintptr_t address) {
  Range* found = std::find_if(
      std::begin(ranges), std::end(ranges), [&](const Range& range) {
        return address < range.end.load() && address >= range.begin.load();
      });
  return found != std::end(ranges) ? found : nullptr;
}

bool put_zeros(uintptr_t address) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  void* page = reinterpret_cast<void*>(address / page_bytes * page_bytes);
  return mmap(page, page_bytes, PROT_READ | PROT_WRITE,
              MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) == page;
}

// Repeats the fault, or sends the signal again, with no handler installed.
void leave_to_system(int signal, const siginfo_t* info) {
  ::signal(signal, SIG_DFL);
  if (info->si_code <= 0) raise(signal);
}

// What would have happened without this handler. The host's handler may have
// been installed after this one and pass the signal on to it: that ends here.
void pass_on(int signal, siginfo_t* info, void* context) {
  if (passing_on != 0) {
    leave_to_system(signal, info);
    return;
  }
  passing_on = 1;
  if ((handler_before.sa_flags & SA_SIGINFO) != 0) {
    handler_before.sa_sigaction(signal, info, context);
  } else if (handler_before.sa_handler == SIG_IGN && info->si_code <= 0) {
    // Sent by a process: ignored.
  } else if (handler_before.sa_handler == SIG_DFL ||
             handler_before.sa_handler == SIG_IGN) {
    leave_to_system(signal, info);
  } else {
    handler_before.sa_handler(signal);
  }
  passing_on = 0;
}

void on_bus_error(int signal, siginfo_t* info, void* context) {
  const int error = errno;
  const auto address = reinterpret_cast<uintptr_t>(info->si_addr);
  Range* range = info->si_code > 0 ? range_of(address) : nullptr;
  if (range != nullptr) range->lost.load()->store(true);
  if (range == nullptr || !put_zeros(address)) {
    pass_on(signal, info, context);
  }
  errno = error;
}

bool install_handler() {
  passing_on = 0;
  page_bytes = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
  struct sigaction handler = {};
  handler.sa_sigaction = on_bus_error;
  handler.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigemptyset(&handler.sa_mask);
  return sigaction(SIGBUS, &handler, &handler_before) == 0;
}

// A handler that the host has installed since then stays.
void remove_handler() {
  struct sigaction present;
  if (sigaction(SIGBUS, nullptr, &present) == 0 &&
      (present.sa_flags & SA_SIGINFO) != 0 &&
      present.sa_sigaction == on_bus_error) {
    sigaction(SIGBUS, &handler_before, nullptr);
  }
}

}  // namespace

bool guard_range(char* begin, size_t size, std::atomic<bool>& lost) {
  const std::lock_guard lock(mutex);
  Range* free = std::find_if(std::begin(ranges), std::end(ranges),
                             [](const Range& range) { return range.end == 0; });
  if (free == std::end(ranges)) return false;
  if (guarded_ranges == 0 && !install_handler()) return false;
  ++guarded_ranges;
  const auto address = reinterpret_cast<uintptr_t>(begin);
  free->lost = &lost;
  free->begin = address;
  free->end = address + size;
  return true;
}

void release_range(char* begin) {
  const std::lock_guard lock(mutex);
  const auto address = reinterpret_cast<uintptr_t>(begin);
  for (Range& range : ranges) {
    if (range.end == 0 || range.begin != address) continue;
    range.end = 0;
    if (--guarded_ranges == 0) remove_handler();
    return;
  }
}

}  // namespace zenfo::platform
