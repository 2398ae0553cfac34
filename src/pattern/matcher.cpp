// Idea. A search is a chain of attempts, each of which says where the next one
// starts (attempt.h). Most attempts of most patterns fail for one of a few
// reasons that can be seen more cheaply without an attempt. So before each
// attempt the search skips to the next start at which one could succeed:
//  - a pattern that is one literal: its matches are the literal's occurrences;
//  - a pattern that is one run of a set of bytes: its matches are these runs;
//  - one class without an upper bound before a literal: locate the literal and
//    walk back over the class;
//  - a class, character list or string list at the start: go to the next byte
//    of the set, or the next occurrence of an alternative.
// Skipped attempts are passed to Ticks, so that polls and reports are the same.
// Where there are neither, a pattern that is one literal with runs beside it
// needs no attempts at all (literal_with_runs.h).
//
// Cost. Linear in the text for a given pattern: literals, alternatives and runs
// are located once and remembered (element.h).
// Fits:    digits[2-]x over a log file: the search is for the literal, and the
//          rest is tried only where it occurs.
// Doesn't: ?alphadigits: with wildcards and unbounded classes at the start
//          there is an attempt at most positions, at some tens of nanoseconds
//          each.
// Covered by SearchPaths.AgreeOnRandomCases and by the hostile patterns in
// tests/unit/pattern/matcher_test.cpp
#include "pattern/matcher.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "frame/guard.h"
#include "pattern/attempt.h"
#include "pattern/literal_with_runs.h"
#include "pattern/match_record.h"
#include "pattern/ticks.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

// Which attempts can be skipped because of how a pattern starts.
enum class Lead {
  kNone,        // no attempts can be skipped
  kLiteral,     // the pattern is this one literal
  kRun,         // the pattern is this one run
  kRunToFirst,  // one run without upper bound, then the first literal
  kFirstByte,   // begins with a run that needs a byte
  kFirstHit,    // begins with a string list that is not negated
  kWildcards,   // wildcards, then the first literal
};

struct Plan {
  Lead lead = Lead::kNone;
  bool has_literal = false;
  Element* first = nullptr;  // the element of the lead
};

bool is_run(const Element& element) {
  return element.kind() == ElementKind::kClass ||
         element.kind() == ElementKind::kCharList;
}

Plan plan_single(Element& only) {
  if (is_run(only)) return {Lead::kRun, false, &only};
  if (only.kind() == ElementKind::kLiteral &&
      !static_cast<LiteralElement&>(only).ignore_blanks) {
    return {Lead::kLiteral, true, &only};
  }
  return {};
}

// Elements before the first literal, without wildcards, which take nothing and
// change no next start.
Plan plan_start(const ElementList& elements) {
  Plan plan;
  size_t before_literal = 0;
  for (const auto& element : elements) {
    if (element->kind() == ElementKind::kLiteral) {
      plan.has_literal = true;
      break;
    }
    if (element->kind() == ElementKind::kWildcard) continue;
    if (before_literal++ == 0) plan.first = element.get();
  }
  if (elements.front()->kind() == ElementKind::kLiteral) return plan;
  if (plan.first == nullptr) {
    if (plan.has_literal) plan.lead = Lead::kWildcards;
  } else if (is_run(*plan.first)) {
    const auto& run = static_cast<const RunElement&>(*plan.first);
    if (plan.has_literal && before_literal == 1 && run.maximum == 0) {
      plan.lead = Lead::kRunToFirst;
    } else if (run.minimum > 0) {
      plan.lead = Lead::kFirstByte;
    }
  } else if (!static_cast<const StringListElement&>(*plan.first).negated) {
    plan.lead = Lead::kFirstHit;
  }
  return plan;
}

Plan make_plan(const CompiledPattern& pattern, SearchPath path) {
  if (path == SearchPath::kPlain || !pattern.has_main()) return {};
  if (pattern.elements.size() == 1) {
    Plan plan = plan_single(*pattern.elements.front());
    if (plan.lead != Lead::kNone) return plan;
  }
  return plan_start(pattern.elements);
}

enum class Outcome {
  kSearched,  // to the end of the area
  kFull,      // the maximum is reached
  kCancelled,
};

class Search {
 public:
  Search(PatternContext& context, const char* text, size_t length,
         const FindOptions& options)
      : context_(context),
        text_(text),
        length_(length),
        options_(options),
        plan_(make_plan(context.pattern, options.path)),
        ticks_(context, length),
        letter_or_digit_(byte_tables().letter_or_digit) {
    if (options.path == SearchPath::kFast && ticks_.silent()) {
      with_runs_ = LiteralWithRuns::of(context.pattern);
    }
  }

  // Searches one area, which is not empty.
  Outcome area(size_t begin, size_t end) {
    scope_ = {text_, end, 0};
    switch (plan_.lead) {
      case Lead::kLiteral:
        return is_found_before() ? literals_found_before(begin, end)
                                 : literals(begin, end);
      case Lead::kRun:
        plan_.first->forget();
        return runs(begin, end);
      default:
        return with_runs_ ? literals_with_runs(begin, end)
                          : attempts(begin, end);
    }
  }

  Ticks& ticks() { return ticks_; }
  int32_t count() const {
    return static_cast<int32_t>(std::min<size_t>(count_, INT32_MAX));
  }

 private:
  const RunElement& run() const {
    return static_cast<const RunElement&>(*plan_.first);
  }

  // The definition: attempt by attempt, except those that are skipped.
  Outcome attempts(size_t s, size_t end) {
    if (!attempt_) attempt_.emplace(context_.pattern);
    attempt_->enter(text_, end);
    while (true) {
      if (plan_.lead != Lead::kNone) {
        Skip skip = skip_from(s, end);
        if (skip != Skip::kGoOn) {
          return skip == Skip::kEnd ? Outcome::kSearched : Outcome::kCancelled;
        }
      }
      bool found = attempt_->try_at(s);
      if (found && take(attempt_->match_start(), attempt_->match_length())) {
        return Outcome::kFull;
      }
      s = attempt_->next_start();
      if (s >= end) return Outcome::kSearched;
      if (ticks_.attempt_at(s)) return Outcome::kCancelled;
    }
  }

  // The same attempts, without callbacks.
  Outcome literals_with_runs(size_t s, size_t end) {
    with_runs_->enter(text_, end);
    while (with_runs_->find_from(s)) {
      if (take(with_runs_->match_start(), with_runs_->match_length())) {
        return Outcome::kFull;
      }
      s = with_runs_->next_start();
    }
    return Outcome::kSearched;
  }

  enum class Skip { kGoOn, kEnd, kCancelled };

  // Moves s to the next start where an attempt could succeed.
  Skip skip_from(size_t& s, size_t end) {
    while (true) {
      if (plan_.has_literal && !attempt_->literals_in_place(s)) {
        return Skip::kGoOn;  // the attempt says where to continue
      }
      // Up to here all attempts locate the same literals.
      const size_t limit = plan_.has_literal ? attempt_->first_literal() : end;
      const size_t start = next_start_worth(s, limit);
      if (start != kNoPosition) {
        if (skipped(s, start, limit)) return Skip::kCancelled;
        s = start;
        return Skip::kGoOn;
      }
      // The attempt at the literal fails too.
      const size_t last = plan_.has_literal ? limit + 1 : limit;
      const size_t stop = std::min(last, end - 1);
      if (skipped_all(s, stop, limit)) return Skip::kCancelled;
      if (last >= end) return Skip::kEnd;
      s = last;
    }
  }

  // The first start in [s, limit] whose attempt passes its first element, or
  // kNoPosition.
  size_t next_start_worth(size_t s, size_t limit) {
    switch (plan_.lead) {
      case Lead::kWildcards:
        return limit;
      case Lead::kRunToFirst: {
        size_t start =
            offset(run().counted().run_start(text_ + s, text_ + limit));
        return limit - start >= run().minimum ? start : kNoPosition;
      }
      case Lead::kFirstByte: {
        size_t start = offset(run().counted().find(text_ + s, text_ + limit));
        return start < limit ? start : kNoPosition;
      }
      case Lead::kFirstHit:
        return static_cast<StringListElement&>(*plan_.first)
            .alternatives.earliest(scope_, s, limit)
            .position;
      default:
        return s;
    }
  }

  // Passes to Ticks the attempts after s up to one at `start`, which follows a
  // byte outside the set when the lead is kRunToFirst.
  bool skipped(size_t s, size_t start, size_t limit) {
    if (ticks_.silent() || s == start) return false;
    if (plan_.lead != Lead::kRunToFirst) {
      return ticks_.attempts_at_all(s, start);
    }
    if (run().minimum <= 1) {
      return ticks_.attempts_at_breaks(text_, run().counted(), s, start);
    }
    while (s < start) {
      s = next_after_short_run(s, limit);
      if (ticks_.attempt_at(s)) return true;
    }
    return false;
  }

  // The same up to `stop`, the last start below the area's end, when all of
  // them are skipped.
  bool skipped_all(size_t s, size_t stop, size_t limit) {
    if (ticks_.silent() || s >= stop) return false;
    if (plan_.lead != Lead::kRunToFirst) return ticks_.attempts_at_all(s, stop);
    // The run before the literal is too short: up to it as above, then one by
    // one.
    size_t start = offset(run().counted().run_start(text_ + s, text_ + limit));
    if (skipped(s, start, limit)) return true;
    return ticks_.attempts_at_all(start, stop);
  }

  // Next start after a failing attempt at s, before the last byte outside the
  // set that precedes the literal.
  size_t next_after_short_run(size_t s, size_t limit) const {
    if (limit - s < run().minimum) return s + 1;
    size_t q = offset(run().counted().find_other(text_ + s, text_ + limit));
    if (q == s) return s + 1;
    return q - s < run().minimum ? q + 1 : q;
  }

  // One literal: all its occurrences that do not overlap.
  Outcome literals(size_t s, size_t end) {
    constexpr size_t kAtOnce = 256;
    const auto& literal = static_cast<const LiteralElement&>(*plan_.first);
    const size_t size = literal.text().size();
    const char* hits[kAtOnce];
    while (s < end) {
      // One window at a time: searching far ahead is wasted when the run stops.
      const size_t starts_end = s + std::min(end - s, Occurrences::kWindow);
      const char* stop =
          text_ + starts_end + std::min(end - starts_end, size - 1);
      const char* from = text_ + s;
      const size_t found =
          literal.searcher().find_many(from, stop, size, hits, kAtOnce);
      Outcome outcome = take_literals(hits, found, size, end);
      if (outcome != Outcome::kSearched) return outcome;
      s = std::min(offset(from), starts_end);
      if (found > 0) s = std::max(s, offset(hits[found - 1]) + size);
    }
    return Outcome::kSearched;
  }

  bool is_found_before() const {
    const FoundBefore& found = context_.pattern.found_before;
    return found.text == text_ && found.length == length_ &&
           found.case_flag == options_.case_flag &&
           found.fold_version == byte_tables().fold_version;
  }

  // The same from occurrences that are known already.
  Outcome literals_found_before(size_t s, size_t end) {
    const auto& literal = static_cast<const LiteralElement&>(*plan_.first);
    const size_t size = literal.text().size();
    const auto offsets = context_.pattern.found_before.offsets;
    auto at = std::lower_bound(offsets.begin(), offsets.end(), s);
    for (; at != offsets.end(); ++at) {
      if (*at >= end || end - *at < size) break;
      if (*at < s) continue;
      const char* hit = text_ + *at;
      const Outcome outcome = take_literals(&hit, 1, size, end);
      if (outcome != Outcome::kSearched) return outcome;
      s = *at + size;
    }
    return Outcome::kSearched;
  }

  Outcome take_literals(const char* const* hits, size_t found, size_t size,
                        size_t end) {
    for (size_t i = 0; i < found; ++i) {
      const size_t start = offset(hits[i]);
      if (take(start, size)) return Outcome::kFull;
      if (start + size < end && ticks_.attempt_at(start + size)) {
        return Outcome::kCancelled;
      }
    }
    return Outcome::kSearched;
  }

  // One run: an attempt at every byte outside the set, and at every run.
  Outcome runs(size_t s, size_t end) {
    auto& element = static_cast<RunElement&>(*plan_.first);
    while (true) {
      size_t start = offset(element.counted().find(text_ + s, text_ + end));
      // When fewer bytes remain than the minimum, nothing more is found.
      if (end - start < std::max<size_t>(element.minimum, 1)) start = end - 1;
      if (start > s && ticks_.attempts_at_all(s, start)) {
        return Outcome::kCancelled;
      }
      scope_.attempt_start = start;
      bool found = element.match(scope_, start, end) && element.length > 0;
      if (found && take(start, element.length)) return Outcome::kFull;
      s = found ? element.next : element.next + 1;
      if (s >= end) return Outcome::kSearched;
      if (ticks_.attempt_at(s)) return Outcome::kCancelled;
    }
  }

  // Counts a match, and records it when asked to; true when the maximum is
  // reached.
  bool take(size_t start, size_t size) {
    if (options_.whole_words && !stands_alone(start, start + size)) {
      return false;
    }
    ++count_;
    if (options_.store) {
      context_.matches.append(std::make_unique<MatchRecord>(
          text_ + start, static_cast<uint32_t>(size),
          static_cast<uint32_t>(start)));
    }
    return options_.maximum != 0 && count_ >= options_.maximum;
  }

  // No letter or digit of the whole text touches [start, end).
  bool stands_alone(size_t start, size_t end) const {
    return (start == 0 || !is_word(text_[start - 1])) &&
           (end >= length_ || !is_word(text_[end]));
  }

  bool is_word(char c) const {
    return letter_or_digit_[static_cast<unsigned char>(c)];
  }

  size_t offset(const char* at) const {
    return static_cast<size_t>(at - text_);
  }

  PatternContext& context_;
  const char* text_;
  size_t length_;
  const FindOptions& options_;
  Plan plan_;
  std::optional<Attempt> attempt_;            // made when the first is
  std::optional<LiteralWithRuns> with_runs_;  // for a pattern of that kind
  Ticks ticks_;
  const std::array<bool, 256>& letter_or_digit_;
  MatchScope scope_{};
  size_t count_ = 0;
};

// Empties the match list and prepares the elements. False when `answer` is
// final already.
bool begin_run(PatternContext& context, const char* text, size_t length,
               const FindOptions& options, int32_t& answer) {
  context.clear_matches();
  context.cancelled = false;
  answer = 0;
  if (text == nullptr) return false;
  answer = -1;
  const ElementList& elements = context.pattern.elements;
  if (elements.empty()) return false;
  for (const auto& element : elements) {
    if (element == nullptr) return false;
  }
  for (const auto& element : elements) element->reset(options.case_flag);
  context.set_text(text, length);
  return true;
}

int32_t end_run(PatternContext& context, const Search& search,
                Outcome outcome) {
  context.cancelled = outcome == Outcome::kCancelled;
  if (context.cancelled) return -1;
  return search.count();
}

struct Area {
  size_t begin;
  size_t end;
};

// The area of a record, cut to the text; empty for a record of another kind.
Area area_of(Record* record, size_t length) {
  const auto* match = record_cast<MatchRecord>(record);
  if (match == nullptr) return {0, 0};
  size_t begin = std::min<size_t>(match->offset, length);
  return {begin, begin + std::min<size_t>(match->length, length - begin)};
}

Outcome search_inside(Search& search, ItemList& areas, size_t length) {
  Outcome outcome = Outcome::kSearched;
  const uint32_t count = areas.count();
  for (uint32_t i = 0; i < count && outcome == Outcome::kSearched; ++i) {
    if (search.ticks().poll()) return Outcome::kCancelled;
    Area area = area_of(areas.get(i), length);
    if (area.begin < area.end) outcome = search.area(area.begin, area.end);
  }
  return outcome;
}

Outcome search_outside(Search& search, ItemList& areas, size_t length) {
  Outcome outcome = Outcome::kSearched;
  size_t cursor = 0;
  const uint32_t count = areas.count();
  for (uint32_t i = 0; i < count && outcome == Outcome::kSearched; ++i) {
    if (search.ticks().poll()) return Outcome::kCancelled;
    if (record_cast<MatchRecord>(areas.get(i)) == nullptr) continue;
    Area area = area_of(areas.current(), length);
    if (cursor < area.begin) outcome = search.area(cursor, area.begin);
    cursor = std::max(cursor, area.end);
  }
  if (outcome != Outcome::kSearched) return outcome;
  if (search.ticks().poll()) return Outcome::kCancelled;
  return cursor < length ? search.area(cursor, length) : outcome;
}

}  // namespace

int32_t find_all(PatternContext& context, const char* text, size_t length,
                 const FindOptions& options) {
  return unlogged(-1, [&]() -> int32_t {
    int32_t answer;
    if (!begin_run(context, text, length, options, answer)) return answer;
    Search search(context, text, length, options);
    Outcome outcome = length > 0 ? search.area(0, length) : Outcome::kSearched;
    return end_run(context, search, outcome);
  });
}

int32_t find_all_by_areas(PatternContext& context, const char* text,
                          size_t length, const FindOptions& options,
                          PatternContext* areas, bool inside) {
  if (areas == nullptr) return find_all(context, text, length, options);
  return unlogged(-1, [&]() -> int32_t {
    int32_t answer;
    if (!begin_run(context, text, length, options, answer)) return answer;
    Search search(context, text, length, options);
    Outcome outcome = inside ? search_inside(search, areas->matches, length)
                             : search_outside(search, areas->matches, length);
    if (outcome != Outcome::kCancelled) search.ticks().finish();
    return end_run(context, search, outcome);
  });
}

}  // namespace zenfo
