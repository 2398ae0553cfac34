// Progress and interruption of long walks: how often the host is asked whether
// to stop and gets reports, whatever the walk's length.
//
// The counters are process-wide by nature, because one operation runs at a
// time: the first poll of a new walk can come early or late by up to one
// period.
//
// Tested by tests/unit/containers/progress_test.cpp
#pragma once

#include <cstdint>

#include "zenfofr130.h"

namespace zenfo {

// Non-zero stops the walk. The argument is of no meaning to the library's own
// hook.
using InterruptHook = int32_t (*)(void* argument);
using ReportHook = int32_t (*)(ProgressRecord* record);

// The hooks of one list (or of another object that walks) and their periods.
class ProgressHooks {
 public:
  void set_interrupt_hook(InterruptHook hook) { interrupt_hook_ = hook; }
  void set_report_hook(ReportHook hook) { report_hook_ = hook; }
  InterruptHook interrupt_hook() const { return interrupt_hook_; }
  ReportHook report_hook() const { return report_hook_; }
  // No hook at all: walks may skip the calls below.
  bool silent() const {
    return interrupt_hook_ == nullptr && report_hook_ == nullptr;
  }

  // Asks the hook on every (period + 1)-th poll, counted across all walks of
  // the process; 0 otherwise. The period is the list's own, 100 unless set.
  int32_t poll_interrupt();
  // The same with the given period and a counter of its own.
  int32_t poll_interrupt_every(uint32_t period);
  // Reports a record of zeros, as rarely as poll_interrupt asks.
  int32_t report_reset();
  // A step of a walk without positions: polls, then reports a record of zeros.
  // False when the host wants a stop.
  bool goes_on() {
    if (poll_interrupt() != 0) return false;
    report_reset();
    return true;
  }
  // Counts `count` calls of goes_on() at once, for a walk that is made later,
  // or never. To be called while nobody would hear of them.
  void skip(uint32_t count);
  // Reports step `position` of `total`, about a hundred times a walk, always
  // at 0 and at the end.
  int32_t report_position_of(uint32_t position, uint32_t total);

 protected:
  // The same, remembering its last step apart from report_position_of.
  int32_t report_position(uint32_t position, uint32_t count);
  // The least position above those reported that will be reported.
  static uint64_t next_position(uint32_t count);

 private:
  int32_t report_step(uint32_t position, uint32_t total, uint32_t& last_step);

  uint32_t interrupt_period_ = 0;  // 0 becomes 100 on first use
  uint32_t report_period_ = 0;     // likewise
  uint32_t interrupt_argument_ = 0;
  ProgressRecord progress_{};
  InterruptHook interrupt_hook_ = nullptr;
  ReportHook report_hook_ = nullptr;
};

// position / total * 100 in single precision, truncated toward zero.
int32_t single_precision_percent(uint32_t position, uint32_t total);

}  // namespace zenfo
