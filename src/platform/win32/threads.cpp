// Tested by tests/unit/platform/threads_test.cpp
#include "platform/threads.h"

#include <bit>

#include "platform/win32/system.h"

namespace zenfo::platform {

size_t processors() {
  DWORD_PTR own = 0;
  DWORD_PTR all = 0;
  if (GetProcessAffinityMask(GetCurrentProcess(), &own, &all) == 0) return 1;
  return own != 0 ? static_cast<size_t>(std::popcount(own)) : 1;
}

// Windows has no signals that interrupt a thread.
struct SignalsKeptAway::State {};
SignalsKeptAway::SignalsKeptAway() = default;
SignalsKeptAway::~SignalsKeptAway() = default;

}  // namespace zenfo::platform
