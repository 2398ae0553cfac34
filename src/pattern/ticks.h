// Progress and cancellation between the attempts of a search.
//
// Before each further attempt the search reports where it starts and polls for
// cancellation. Searches that skip attempts which cannot match say which ones
// they skipped, so the same calls are made at the same places. When the host
// has no callbacks, nothing is counted.
//
// Tested by tests/unit/pattern/ticks_test.cpp
#pragma once

#include <algorithm>
#include <cstddef>

#include "pattern/byte_set.h"
#include "pattern/context.h"

namespace zenfo {

class Ticks {
 public:
  // Reports 0 of `total`, the length of the text.
  Ticks(PatternContext& context, size_t total);

  // The host has no callbacks: the calls below do nothing.
  bool silent() const { return silent_; }

  // All answer true when the run is cancelled.

  // The next attempt starts at s.
  bool attempt_at(size_t s) { return !silent_ && attempt(s); }
  // The next attempts start at every position from `from` + 1 to `to`.
  bool attempts_at_all(size_t from, size_t to);
  // The next attempts start at those of these positions where the byte or the
  // one before is outside the set: where a run of its bytes begins or ends, and
  // between runs.
  bool attempts_at_breaks(const char* text, const ByteSet& set, size_t from,
                          size_t to);
  // This many attempts, the last of which starts at `last`; the others start
  // before next_report().
  bool attempts(size_t count, size_t last);
  // The least start that will be reported.
  size_t next_report() const { return next_report_; }
  // One poll apart from attempts.
  bool poll() { return polls_ && context_.poll_cancel() != 0; }

  // Reports the end of the search.
  void finish() { context_.report_progress(total_, total_); }

 private:
  bool attempt(size_t s);
  bool poll_times(size_t count) {
    return polls_ && context_.poll_cancel_times(count) != 0;
  }

  PatternContext& context_;
  size_t total_;
  bool polls_;
  bool silent_;
  size_t next_report_;  // kNoPosition when there are no reports
};

}  // namespace zenfo
