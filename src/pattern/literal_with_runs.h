// Patterns that are one literal with runs of bytes beside it: at most one run
// before it, without upper bound, and any number of runs after it.
//
// Finds what a chain of attempts (attempt.h) finds, without the steps that only
// other patterns need: the literal is looked for, the run before it is measured
// backwards, as far as an attempt may begin, and the runs after it are fitted
// as an attempt fits them. Searches with callbacks make the attempts instead,
// because each of them is reported.
// Fits:    digits-digits, digits[2-] ms, a literal and the rest of its line.
// Doesn't: digits[4]-: a run that is cut may begin at several places.
//
// Tested by tests/unit/pattern/literal_with_runs_test.cpp
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "pattern/context.h"
#include "pattern/element.h"

namespace zenfo {

class LiteralWithRuns {
 public:
  // Nothing for other patterns. The pattern must outlive the result and stay as
  // it is.
  static std::optional<LiteralWithRuns> of(const CompiledPattern& pattern);

  // Sets the text and the end of the area, and forgets all positions.
  void enter(const char* text, size_t area_end);

  // Makes the chain of attempts that begins at s, up to the first that matches;
  // false when none does. The next chain begins at next_start(), above s.
  bool find_from(size_t s);

  size_t match_start() const { return first_main_->start; }
  size_t match_length() const {
    return last_main_->start + last_main_->length - first_main_->start;
  }
  size_t next_start() const { return next_start_; }

 private:
  LiteralWithRuns() = default;

  bool add(Element& element);
  bool measure_before(size_t s, size_t at);
  bool fit_after(size_t position);

  RunElement* before_ = nullptr;
  LiteralElement* literal_ = nullptr;
  std::vector<RunElement*> after_;
  const Element* first_main_ = nullptr;
  const Element* last_main_ = nullptr;
  MatchScope scope_{};
  size_t next_start_ = 0;
};

}  // namespace zenfo
