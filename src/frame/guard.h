// The error frame: the one place where exceptions end.
//
// Every exported operation runs in `guarded`, which catches all, logs the
// fault under the routine's name and returns the row's failure value. It also
// keeps the host's callbacks from changing the lists of a running operation: an
// operation whose row says kAlone returns its failure value while another
// operation runs.
//
// Tested by tests/unit/frame/guard_test.cpp
#pragma once

#include <cstdint>
#include <utility>

#include "frame/error_log.h"
#include "frame/rows.h"

namespace zenfo {

// How many exported operations are running, one inside another's callback.
// Process-wide by nature, like the calls themselves.
class RunningOperations {
 public:
  RunningOperations() { ++count(); }
  ~RunningOperations() { --count(); }
  RunningOperations(const RunningOperations&) = delete;
  RunningOperations& operator=(const RunningOperations&) = delete;

  static int& count() {
    static int running = 0;
    return running;
  }
};

// Catches all; a fault is logged under `routine` (null: not logged).
template <class Body>
int32_t caught(const char* routine, int32_t failure, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    if (routine != nullptr) report_runtime_error(routine);
    return failure;
  }
}

template <class Body>
int32_t guarded(const ExportRow& row, Body&& body) noexcept {
  if (row.access == Access::kAlone && RunningOperations::count() > 0) {
    return row.failure;
  }
  RunningOperations running;
  const char* routine = row.log == FaultLog::kLogged ? row.routine : nullptr;
  return caught(routine, row.failure, std::forward<Body>(body));
}

// For walks that answer a failure value instead of throwing.
template <class Body>
int32_t unlogged(int32_t failure, Body&& body) noexcept {
  return caught(nullptr, failure, std::forward<Body>(body));
}

}  // namespace zenfo
