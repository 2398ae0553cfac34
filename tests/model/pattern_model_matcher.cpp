// A slow model of the pattern language: the matcher. An attempt locates the
// literals, fits the elements between them, then the tail.
//
// Tested by tests/unit/model/pattern_model_test.cpp
#include <algorithm>
#include <optional>

#include "model/pattern_bytes.h"
#include "model/pattern_model.h"

namespace zenfo::model {
namespace {

// What the last attempt left in an element.
struct State {
  size_t start = 0;
  size_t length = 0;
  size_t next = kNone;    // first byte not taken
  size_t resume = kNone;  // where a run cut at its maximum may restart
};

struct Attempt {
  bool found = false;
  size_t offset = 0;
  size_t length = 0;
  size_t next = kNone;  // where to try again; kNone: nowhere
};

// All attempts of one run over one text.
class Matcher {
 public:
  Matcher(const Context& context, const std::string& text,
          const SearchFlags& flags)
      : context_(context), text_(text), flags_(flags) {}

  // Searches [from, end). Returns false once the maximum is reached.
  bool search(size_t from, size_t end);

  Found result() const { return found_; }

 private:
  Attempt attempt(size_t start, size_t end);
  bool locate_literals(size_t start, size_t end, size_t& next);
  bool fit_gaps(size_t start, size_t& current, size_t& next);
  bool fit_gap(size_t start, size_t first, size_t last, size_t& current,
               size_t& next);
  bool fit_tail(size_t start, size_t current, size_t end, size_t& next);
  Attempt report() const;
  bool keep(const Attempt& one) const;

  bool match(size_t index, size_t position, size_t limit, size_t start);
  bool match_run(size_t index, size_t position, size_t limit, size_t start);
  bool match_string_list(size_t index, size_t position, size_t limit);
  void match_wildcard(size_t index, size_t position);
  bool counts(const Element& element, unsigned char byte) const;

  size_t count() const { return context_.elements.size(); }
  const Element& element(size_t i) const { return context_.elements[i]; }
  bool is_literal(size_t i) const { return element(i).kind == Kind::kLiteral; }

  const Context& context_;
  const std::string& text_;
  const SearchFlags& flags_;
  std::vector<State> states_;
  Found found_;
};

// ---- Elements -------------------------------------------------------------

// Whether a byte belongs to the run of a class or of a char list. Case is
// ignored for char lists when the run ignores it, never for classes.
bool Matcher::counts(const Element& element, unsigned char byte) const {
  bool member = false;
  if (element.kind == Kind::kClass) {
    member = is_member(element.char_class, byte);
  } else {
    for (const char c : element.chars) {
      member = member || same_byte(static_cast<unsigned char>(c), byte,
                                   flags_.exact_case);
    }
  }
  return member != element.negated;
}

// Greedy. Fails at once if too few bytes are left for the minimum. A run that
// would exceed the maximum matches with the maximum, whatever the minimum.
bool Matcher::match_run(size_t index, size_t position, size_t limit,
                        size_t start) {
  const Element& run_of = element(index);
  State& state = states_[index];
  state.next = position;
  if (run_of.minimum != 0 && limit - position < run_of.minimum) return false;
  size_t run = 0;
  while (position + run < limit &&
         counts(run_of, byte_at(text_, position + run))) {
    if (run_of.maximum != 0 && run == run_of.maximum) {
      state.resume = std::max(position, start + 1);
      break;
    }
    ++run;
  }
  state.next = position + run;
  const bool was_cut = state.resume != kNone;
  if (!was_cut && run_of.minimum != 0 && run < run_of.minimum) return false;
  state.start = position;
  state.length = run;
  return true;
}

// Not negated: the earliest occurrence of any alternative must begin here; of
// two that begin at the same position the later in the list is taken. Negated:
// matches the visible bytes up to the earliest occurrence, at least one.
bool Matcher::match_string_list(size_t index, size_t position, size_t limit) {
  const Element& list = element(index);
  State& state = states_[index];
  state.next = position;
  size_t earliest = kNone;
  size_t length = 0;
  for (const std::string& one : list.alternatives) {
    const size_t at =
        find_substring(text_, position, limit, one, flags_.exact_case);
    if (at == kNone || at > earliest) continue;
    earliest = at;
    length = one.size();
  }
  if (list.negated) {
    const size_t stop = earliest == kNone ? limit : earliest;
    length = 0;
    while (position + length < stop &&
           byte_at(text_, position + length) > kLastBlank) {
      ++length;
    }
    if (length == 0) return false;
  } else if (earliest != position) {
    return false;
  }
  state.start = position;
  state.length = length;
  state.next = position + length;
  return true;
}

// Matches everywhere and takes nothing, whatever its bounds.
void Matcher::match_wildcard(size_t index, size_t position) {
  State& state = states_[index];
  state.start = position;
  state.length = 0;
  state.next = position;
}

bool Matcher::match(size_t index, size_t position, size_t limit, size_t start) {
  states_[index].next = kNone;
  states_[index].resume = kNone;
  if (element(index).kind == Kind::kWildcard) {
    match_wildcard(index, position);
    return true;
  }
  if (element(index).kind == Kind::kStringList) {
    return match_string_list(index, position, limit);
  }
  return match_run(index, position, limit, start);
}

// ---- One attempt ----------------------------------------------------------

// Literals are located first, each the nearest after the previous one. A
// missing one ends the search. Literals that are neighbours in the pattern must
// be adjacent, else the search continues after the first literal of the
// pattern.
bool Matcher::locate_literals(size_t start, size_t end, size_t& next) {
  size_t current = start;
  size_t first_literal = kNone;
  for (size_t i = 0; i < count(); ++i) {
    if (!is_literal(i)) continue;
    const std::string& literal = element(i).text;
    const size_t at =
        find_substring(text_, current, end, literal, flags_.exact_case);
    if (at == kNone) {
      next = kNone;
      return false;
    }
    if (first_literal == kNone) first_literal = i;
    if (i > 0 && is_literal(i - 1) && at != current) {
      const State& first = states_[first_literal];
      next = first.start + first.length;
      return false;
    }
    states_[i].start = at;
    states_[i].length = literal.size();
    current = at + literal.size();
  }
  return true;
}

// The elements first..last-1 are before the literal `last` and must fill the
// bytes from `current` to it exactly.
bool Matcher::fit_gap(size_t start, size_t first, size_t last, size_t& current,
                      size_t& next) {
  const size_t limit = states_[last].start;
  for (size_t i = first; i < last; ++i) {
    if (match(i, current, limit, start)) {
      current += states_[i].length;
      continue;
    }
    const size_t stopped = states_[i].next;
    if (stopped == current) {
      next = i == 0 ? current + 1 : current;
    } else {
      next = stopped == limit ? limit + 1 : stopped + 1;
    }
    if (i > first && states_[i - 1].resume != kNone) {
      next = states_[i - 1].resume;
    }
    return false;
  }
  if (first < last && current != limit) {
    const size_t stopped = states_[last - 1].next;
    next = stopped == limit ? limit + 1 : stopped;
    return false;
  }
  return true;
}

// Sets `current` to the end of the last literal.
bool Matcher::fit_gaps(size_t start, size_t& current, size_t& next) {
  size_t first = 0;
  for (size_t i = 0; i < count(); ++i) {
    if (!is_literal(i)) continue;
    if (!fit_gap(start, first, i, current, next)) return false;
    current = states_[i].start + states_[i].length;
    first = i + 1;
  }
  return true;
}

// Fits the elements after the last literal. After a failure at the very end the
// search continues after the end. Else it continues where the previous element
// may restart; or where the failing element began, if that is further; or one
// byte after where it stopped.
bool Matcher::fit_tail(size_t start, size_t current, size_t end, size_t& next) {
  size_t first = count();
  while (first > 0 && !is_literal(first - 1)) --first;
  for (size_t i = first; i < count(); ++i) {
    if (match(i, current, end, start)) {
      current += states_[i].length;
      continue;
    }
    const size_t stopped = states_[i].next;
    if (stopped == end) {
      next = end + 1;
    } else if (i > first && states_[i - 1].resume != kNone) {
      next = states_[i - 1].resume;
    } else {
      next = current > start ? current : stopped + 1;
    }
    return false;
  }
  return true;
}

// The main elements are the match; the next attempt starts after the last
// element of the pattern. If that has length 0 and is no wildcard, it starts
// one byte later.
Attempt Matcher::report() const {
  Attempt one;
  const size_t last_main = static_cast<size_t>(context_.last_main);
  one.offset = states_[context_.start_count].start;
  for (size_t i = context_.start_count; i <= last_main; ++i) {
    one.length += states_[i].length;
  }
  const State& last = states_.back();
  one.next = last.start + last.length;
  const bool is_wildcard = element(count() - 1).kind == Kind::kWildcard;
  if (last.length == 0 && !is_wildcard) one.next = last.start + 1;
  one.found = one.length != 0;
  return one;
}

// Every attempt that does not end the search advances by at least a byte.
Attempt Matcher::attempt(size_t start, size_t end) {
  states_.assign(count(), State());
  Attempt one;
  size_t current = start;
  if (locate_literals(start, end, one.next) &&
      fit_gaps(start, current, one.next) &&
      fit_tail(start, current, end, one.next)) {
    one = report();
  }
  if (one.next != kNone) one.next = std::max(one.next, start + 1);
  return one;
}

// ---- Runs -----------------------------------------------------------------

// The whole-word test uses the whole text, even beyond the searched area.
bool Matcher::keep(const Attempt& one) const {
  if (!flags_.whole_words) return true;
  return is_whole_word(text_, one.offset, one.offset + one.length - 1) == 1;
}

bool Matcher::search(size_t from, size_t end) {
  while (from != kNone && from < end) {
    const Attempt one = attempt(from, end);
    if (one.found && keep(one)) {
      found_.matches.push_back({one.offset, one.length});
      ++found_.count;
      const auto found = static_cast<uint32_t>(found_.count);
      if (flags_.maximum != 0 && found >= flags_.maximum) return false;
    }
    from = one.next;
  }
  return true;
}

// Results that need no attempt: no match in an empty text, failure without a
// pattern, no match without a main element.
std::optional<Found> early_answer(const Context& context,
                                  const std::string& text) {
  if (text.empty()) return Found{0, {}};
  if (context.elements.empty()) return Found{-1, {}};
  const auto first_main = static_cast<ptrdiff_t>(context.start_count);
  if (context.last_main < first_main) return Found{0, {}};
  return std::nullopt;
}

// Areas are not trusted, so they are cut to the text.
Match clamped(const Match& area, size_t text_length) {
  const size_t offset = std::min(area.offset, text_length);
  return {offset, std::min(area.length, text_length - offset)};
}

void search_inside(Matcher& matcher, const std::vector<Match>& areas,
                   size_t text_length) {
  for (const Match& given : areas) {
    const Match area = clamped(given, text_length);
    if (!matcher.search(area.offset, area.offset + area.length)) return;
  }
}

void search_outside(Matcher& matcher, const std::vector<Match>& areas,
                    size_t text_length) {
  size_t cursor = 0;
  for (const Match& given : areas) {
    const Match area = clamped(given, text_length);
    if (!matcher.search(cursor, area.offset)) return;
    cursor = std::max(cursor, area.offset + area.length);
  }
  matcher.search(cursor, text_length);
}

}  // namespace

Found find_all(const Context& context, const std::string& text,
               const SearchFlags& flags) {
  if (const auto early = early_answer(context, text)) return *early;
  Matcher matcher(context, text, flags);
  matcher.search(0, text.size());
  return matcher.result();
}

Found find_all_by_areas(const Context& context, const std::string& text,
                        const SearchFlags& flags,
                        const std::vector<Match>* areas, bool inside) {
  if (areas == nullptr) return find_all(context, text, flags);
  if (const auto early = early_answer(context, text)) return *early;
  Matcher matcher(context, text, flags);
  if (inside) {
    search_inside(matcher, *areas, text.size());
  } else {
    search_outside(matcher, *areas, text.size());
  }
  return matcher.result();
}

}  // namespace zenfo::model
