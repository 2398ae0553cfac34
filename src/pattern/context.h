// A pattern context: what pattern texts are read with (operators, control
// names, classes), the compiled elements, and the matches of the last run.
//
// The library owns three: for the find, the exclusion and the replace pattern.
//
// Tested by tests/unit/pattern/context_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "containers/item_list.h"
#include "containers/progress.h"
#include "pattern/char_class.h"
#include "pattern/element.h"
#include "pattern/operators.h"

namespace zenfo {

// Counters of all searches. They are library-wide because one search runs at a
// time: a poll or a step counted by one run carries over to the next.
struct SearchCounters {
  uint32_t polls = 0;        // since the cancel hook was last called
  uint32_t report_step = 0;  // last step of a search that was reported
};
inline SearchCounters& search_counters() {
  static SearchCounters counters;
  return counters;
}

// Where the literal that is a whole pattern occurs in a text, found before the
// search. A search of that text with that case flag and folding takes the
// matches from here.
struct FoundBefore {
  const char* text = nullptr;  // null: nothing is known
  size_t length = 0;
  bool case_flag = true;
  uint32_t fold_version = 0;  // of byte_tables
  // All occurrences, by rising offset; the owner keeps them.
  std::span<const uint32_t> offsets;
};

// A compiled pattern: start-marker elements, main elements and end-marker
// elements, in this order. Owns them.
class CompiledPattern {
 public:
  void clear();
  bool empty() const { return elements.empty(); }
  // Whether there is a main element; without one nothing is ever matched.
  bool has_main() const { return main_end() > start_count; }

  // One past the last main element.
  size_t main_end() const { return static_cast<size_t>(last_main + 1); }

  ElementList elements;     // the combined list
  size_t start_count = 0;   // of start-marker elements
  ptrdiff_t last_main = 0;  // index of the last main element; may be -1
  FoundBefore found_before;
};

class PatternContext {
 public:
  PatternContext();
  PatternContext(const PatternContext&) = delete;
  PatternContext& operator=(const PatternContext&) = delete;

  // The hooks serve the search and are passed on to the match list.
  void set_interrupt_hook(InterruptHook hook);
  void set_report_hook(ReportHook hook);
  // Every how many polls the interrupt hook is called; 0 means 100. The engine
  // leaves it at that, tests do not.
  void set_poll_interval(uint32_t interval) { poll_interval_ = interval; }
  uint32_t poll_interval() const {
    return poll_interval_ != 0 ? poll_interval_ : kDefaultPollInterval;
  }

  // Counts a poll and, when it is due, asks the hook; non-zero: stop.
  int32_t poll_cancel() { return poll_cancel_times(1); }
  // The same for `count` polls in a row; stops counting at the first stop.
  int32_t poll_cancel_times(size_t count) {
    uint32_t& polls = search_counters().polls;
    const uint32_t interval = poll_interval();
    if (polls >= interval || count >= interval - polls) {
      return poll_due(count);
    }
    if (matches.interrupt_hook() != nullptr) {
      polls += static_cast<uint32_t>(count);
    }
    return 0;
  }
  // Whether a cancellation ended the last run (written by the matcher).
  bool cancelled = false;

  // Reports step `position` of `total`: the first, the last and about a
  // hundred between. The percentage is computed in double precision.
  void report_progress(size_t position, size_t total);
  // The least position above those reported that will be reported.
  static size_t next_report(size_t total);

  // Whether any call has an effect: false also when the hooks are the library's
  // own and the host has no such callback. A run may then skip them.
  bool polls() const;
  bool reports() const;

  // 1; -1 for a null class.
  int32_t add_user_class(std::unique_ptr<CharClass> user_class);
  // Always 1.
  int32_t clear_user_classes() { return user_classes.clear(); }

  // The text with each of the context's control names replaced by its byte;
  // escaped names and the escapes stay.
  std::string expand_control_names(std::string_view text) const;

  // Empties the match list and forgets its text.
  void clear_matches();
  // The text that the matches are in; null and 0 when there is none.
  void set_text(const char* text, size_t length);
  const char* text() const { return text_; }
  size_t text_length() const { return text_length_; }
  const char* text_end() const {
    return text_ != nullptr ? text_ + text_length_ : nullptr;
  }

  Operators operators;
  std::vector<ControlName> control_names;
  ClassList user_classes;        // loaded from a definition file
  ClassList predefined_classes;  // "?": 33 to 255
  CharClass any_character;       // no name, 0 to 255

  CompiledPattern pattern;
  ItemList matches;  // of MatchRecord

 private:
  static constexpr uint32_t kDefaultPollInterval = 100;

  int32_t poll_due(size_t count);

  uint32_t poll_interval_ = 0;
  uint32_t interrupt_argument_ = 0;
  ProgressRecord progress_{};
  const char* text_ = nullptr;
  size_t text_length_ = 0;
};

}  // namespace zenfo
