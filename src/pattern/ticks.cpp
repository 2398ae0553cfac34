#include "pattern/ticks.h"

namespace zenfo {

Ticks::Ticks(PatternContext& context, size_t total)
    : context_(context), total_(total), polls_(context.polls()) {
  context_.report_progress(0, total_);
  next_report_ =
      context_.reports() ? PatternContext::next_report(total_) : kNoPosition;
  silent_ = !polls_ && next_report_ == kNoPosition;
}

bool Ticks::attempt(size_t s) {
  if (s >= next_report_) {
    context_.report_progress(s, total_);
    next_report_ = PatternContext::next_report(total_);
  }
  return poll_times(1);
}

bool Ticks::attempts(size_t count, size_t last) {
  if (silent_ || count == 0) return false;
  return poll_times(count - 1) || attempt(last);
}

bool Ticks::attempts_at_all(size_t from, size_t to) {
  if (silent_) return false;
  while (from < to) {
    // Up to the next start that is reported.
    size_t stop = std::min(to, std::max(next_report_, from + 1));
    if (attempts(stop - from, stop)) return true;
    from = stop;
  }
  return false;
}

bool Ticks::attempts_at_breaks(const char* text, const ByteSet& set,
                               size_t from, size_t to) {
  if (silent_) return false;
  while (from < to) {
    size_t stop = std::min(to, std::max(next_report_, from + 1));
    if (stop < to && set.contains(text[stop]) && set.contains(text[stop - 1])) {
      const char* other = set.find_other(text + stop, text + to);
      stop = static_cast<size_t>(other - text);
    }
    bool at_break = !set.contains(text[stop]) || !set.contains(text[stop - 1]);
    ByteSet::Tally tally =
        set.tally(text + from + 1, text + stop + 1, set.contains(text[from]));
    size_t count = stop - from - tally.members + tally.runs;
    if (at_break ? attempts(count, stop) : poll_times(count)) return true;
    from = stop;
  }
  return false;
}

}  // namespace zenfo
