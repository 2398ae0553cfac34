// One match attempt: fits a compiled pattern to the text from one position.
//
// Literals are located first, each at its nearest place after the one before;
// the other elements are then fitted into the gaps, greedily and without
// backtracking, and must fill them exactly. An attempt that fails says where to
// try next.
//
// Tested by tests/unit/pattern/attempt_test.cpp
#pragma once

#include <cstddef>
#include <vector>

#include "pattern/context.h"
#include "pattern/element.h"

namespace zenfo {

class Attempt {
 public:
  // The pattern must outlive the attempt and stay as it is.
  explicit Attempt(const CompiledPattern& pattern);

  // Sets the text and the end of the area, and forgets all positions.
  void enter(const char* text, size_t area_end);

  // Tries at s, which is not after the area's end; true when a match of at
  // least one byte was found. next_start() is set either way, always above s.
  bool try_at(size_t s);

  size_t match_start() const { return match_start_; }
  size_t match_length() const { return match_length_; }
  // kNoPosition: no later attempt in this area can match.
  size_t next_start() const { return next_start_; }

  // The first step of try_at: whether all literals can be found from s on, with
  // adjacent ones next to each other.
  bool literals_in_place(size_t s) { return locate(s) == Located::kAll; }
  // Start of the first literal as last located.
  size_t first_literal() const { return anchors_.front().literal->start; }

 private:
  enum class Located { kAll, kMissing, kApart };

  // A literal and the elements between the literal before and it.
  struct Anchor {
    LiteralElement* literal;
    size_t gap_begin;  // index of the first element of the gap
    size_t index;      // of the literal
    bool adjacent;     // the element before is a literal
  };

  void list_elements(const CompiledPattern& pattern);
  Located locate(size_t s);
  bool fit(size_t s);
  bool fit_gap(const Anchor& anchor, size_t& position);
  bool fit_tail(size_t position);
  bool take_result();

  std::vector<Element*> elements_;
  std::vector<Anchor> anchors_;
  bool has_main_;
  size_t first_main_;
  size_t main_end_;
  MatchScope scope_{};
  size_t match_start_ = 0;
  size_t match_length_ = 0;
  size_t next_start_ = kNoPosition;
};

}  // namespace zenfo
