#include "pattern/context.h"

#include <algorithm>

#include "frame/callbacks.h"

namespace zenfo {
namespace {

constexpr size_t kReportsPerRun = 100;

size_t report_step_size(size_t total) {
  return std::max(total / kReportsPerRun, size_t{1});
}

uint32_t in_32_bits(size_t value) {
  return static_cast<uint32_t>(std::min<size_t>(value, UINT32_MAX));
}

// The temporaries round to double precision whatever the unit computes in.
int32_t percent(size_t position, size_t total) {
  volatile double product = static_cast<double>(position) * 100.0;
  volatile double quotient = product / static_cast<double>(total);
  return static_cast<int32_t>(quotient);
}

}  // namespace

void CompiledPattern::clear() {
  elements.clear();
  start_count = 0;
  last_main = 0;
  found_before = {};
}

PatternContext::PatternContext() : control_names(default_control_names()) {
  auto printable = std::make_unique<CharClass>("?");
  printable->add_include_range(33, 255);
  predefined_classes.add(std::move(printable));
  any_character.add_include_range(0, 255);
}

void PatternContext::set_interrupt_hook(InterruptHook hook) {
  matches.set_interrupt_hook(hook);
}

void PatternContext::set_report_hook(ReportHook hook) {
  matches.set_report_hook(hook);
}

bool PatternContext::polls() const {
  InterruptHook hook = matches.interrupt_hook();
  return hook != nullptr &&
         !(hook == &interr && host_callbacks().interrupt == nullptr);
}

bool PatternContext::reports() const {
  ReportHook hook = matches.report_hook();
  return hook != nullptr &&
         !(hook == &report && host_callbacks().report == nullptr);
}

int32_t PatternContext::poll_due(size_t count) {
  if (count == 0) return 0;
  InterruptHook hook = matches.interrupt_hook();
  if (hook == nullptr) return 0;
  uint32_t& polls = search_counters().polls;
  const uint32_t interval = poll_interval();
  while (true) {
    size_t due_after = polls < interval ? interval - polls : 1;
    if (count < due_after) break;
    count -= due_after;
    polls = 0;
    int32_t answer = hook(&interrupt_argument_);
    if (answer != 0) return answer;
  }
  polls += static_cast<uint32_t>(count);
  return 0;
}

void PatternContext::report_progress(size_t position, size_t total) {
  ReportHook hook = matches.report_hook();
  if (hook == nullptr || total == 0) return;
  uint32_t& last_step = search_counters().report_step;
  if (position == 0) {
    last_step = 0;
  } else {
    size_t step = position / report_step_size(total);
    if (step <= last_step && position < total) return;
    last_step = in_32_bits(step);
  }
  progress_ = {in_32_bits(total), in_32_bits(position),
               percent(position, total)};
  hook(&progress_);
}

size_t PatternContext::next_report(size_t total) {
  return (size_t{search_counters().report_step} + 1) * report_step_size(total);
}

int32_t PatternContext::add_user_class(std::unique_ptr<CharClass> user_class) {
  return user_classes.add(std::move(user_class));
}

std::string PatternContext::expand_control_names(std::string_view text) const {
  return convert_carets(text, control_names, operators.escape);
}

void PatternContext::clear_matches() {
  matches.clear();
  set_text(nullptr, 0);
}

void PatternContext::set_text(const char* text, size_t length) {
  text_ = text;
  text_length_ = text != nullptr ? length : 0;
}

}  // namespace zenfo
