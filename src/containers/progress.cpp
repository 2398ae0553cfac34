#include "containers/progress.h"

#include <algorithm>

namespace zenfo {
namespace {

constexpr uint32_t kDefaultPeriod = 100;
constexpr uint32_t kReportsPerWalk = 100;

// Process-wide: see the header.
struct Counters {
  uint32_t poll_interrupt = 0;
  uint32_t poll_interrupt_every = 0;
  uint32_t report_reset = 0;
  uint32_t last_position_step = 0;
  uint32_t last_position_of_step = 0;
};
Counters counters;

// True on the (period + 1)-th call, and on every (period + 1)-th after it.
bool due(uint32_t& counter, uint32_t period) {
  uint32_t old = counter++;
  if (old < period) return false;
  counter = 0;
  return true;
}

// What due() would leave after this many calls.
void advance(uint32_t& counter, uint32_t period, uint64_t calls) {
  if (calls > 0 && counter > period) {
    counter = 0;
    --calls;
  }
  counter = static_cast<uint32_t>((counter + calls) % (uint64_t{period} + 1));
}

void set_default(uint32_t& period) {
  if (period == 0) period = kDefaultPeriod;
}

uint32_t step_size(uint32_t total) {
  return std::max(total / kReportsPerWalk, uint32_t{1});
}

}  // namespace

int32_t single_precision_percent(uint32_t position, uint32_t total) {
  // The temporaries round to single precision whatever the unit computes in:
  // 7 of 10 is 70, not 69.
  volatile float quotient =
      static_cast<float>(position) / static_cast<float>(total);
  volatile float product = quotient * 100.0f;
  return static_cast<int32_t>(product);
}

int32_t ProgressHooks::poll_interrupt() {
  if (interrupt_hook_ == nullptr) return 0;
  set_default(interrupt_period_);
  if (!due(counters.poll_interrupt, interrupt_period_)) return 0;
  return interrupt_hook_(&interrupt_argument_);
}

int32_t ProgressHooks::poll_interrupt_every(uint32_t period) {
  if (interrupt_hook_ == nullptr) return 0;
  if (!due(counters.poll_interrupt_every, period)) return 0;
  return interrupt_hook_(&interrupt_argument_);
}

int32_t ProgressHooks::report_reset() {
  if (report_hook_ == nullptr) return 0;
  set_default(report_period_);
  if (!due(counters.report_reset, report_period_)) return 0;
  progress_ = {};
  return report_hook_(&progress_);
}

void ProgressHooks::skip(uint32_t count) {
  if (interrupt_hook_ != nullptr) {
    set_default(interrupt_period_);
    advance(counters.poll_interrupt, interrupt_period_, count);
  }
  if (report_hook_ != nullptr) {
    set_default(report_period_);
    advance(counters.report_reset, report_period_, count);
  }
}

int32_t ProgressHooks::report_position_of(uint32_t position, uint32_t total) {
  return report_step(position, total, counters.last_position_of_step);
}

int32_t ProgressHooks::report_position(uint32_t position, uint32_t count) {
  return report_step(position, count, counters.last_position_step);
}

uint64_t ProgressHooks::next_position(uint32_t count) {
  return (uint64_t{counters.last_position_step} + 1) * step_size(count);
}

int32_t ProgressHooks::report_step(uint32_t position, uint32_t total,
                                   uint32_t& last_step) {
  if (report_hook_ == nullptr || total == 0) return 0;
  if (position == 0) {
    last_step = 0;
  } else {
    uint32_t step = position / step_size(total);
    if (step <= last_step && position < total) return 0;
    last_step = step;
  }
  progress_ = {total, position, single_precision_percent(position, total)};
  return report_hook_(&progress_);
}

}  // namespace zenfo
