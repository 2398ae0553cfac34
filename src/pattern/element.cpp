#include "pattern/element.h"

#include <algorithm>

#include "text/byte_tables.h"

namespace zenfo {
namespace {

// Neither space nor control: what a negated string list takes.
const ByteSet& above_blank() {
  static const ByteSet set = [] {
    std::array<bool, 256> flags{};
    std::fill(flags.begin() + 33, flags.end(), true);
    return ByteSet(flags);
  }();
  return set;
}

bool equal(const char* a, std::string_view b, bool case_flag) {
  if (case_flag) return std::equal(b.begin(), b.end(), a);
  const auto& fold = byte_tables().fold;
  return std::equal(b.begin(), b.end(), a, [&](char left, char right) {
    return fold[static_cast<unsigned char>(left)] ==
           fold[static_cast<unsigned char>(right)];
  });
}

}  // namespace

void Element::reset(bool case_flag) {
  clear_match();
  next = resume = 0;
  case_flag_ = case_flag;
  prepare();
  forget();
}

bool Element::matched(size_t p, size_t taken) {
  start = p;
  length = taken;
  next = p + taken;
  return true;
}

bool Element::failed(size_t p, size_t taken) {
  next = p + taken;
  return false;
}

// Literals

void LiteralElement::prepare() {
  searcher_ = SubstringSearcher(text_, case_flag());
}

bool LiteralElement::match(const MatchScope& scope, size_t p, size_t limit) {
  resume = 0;
  if (limit < p || limit - p < text_.size()) return failed(p, 0);
  if (!equal(scope.text + p, text_, case_flag())) return failed(p, 0);
  return matched(p, text_.size());
}

bool LiteralElement::locate(const MatchScope& scope, size_t from) {
  // kNoPosition is above all positions.
  const bool known = located_from_ <= from && from <= located_at_;
  if (!known) {
    const char* begin = scope.text + from;
    const char* end = scope.text + scope.area_end;
    const char* found;
    located_length_ = text_.size();
    if (ignore_blanks) {
      found =
          find_substring(begin, text_.data(), end, text_.data() + text_.size(),
                         case_flag(), true, &located_length_);
    } else {
      found = searcher_.find(begin, end);
    }
    located_from_ = from;
    located_at_ = found != nullptr ? static_cast<size_t>(found - scope.text)
                                   : kNoPosition;
  }
  if (located_at_ == kNoPosition) return false;
  return matched(located_at_, located_length_);
}

// String lists

void Alternatives::prepare(bool case_flag) {
  window_ = kWindow;
  for (Entry& entry : entries_) {
    entry.searcher = SubstringSearcher(entry.text, case_flag);
    // Windows overlap by the length of a text: keep that a small part.
    window_ = std::max(window_, 4 * entry.text.size());
  }
}

void Alternatives::forget() {
  searched_from_ = kNoPosition;
  last_limit_ = kNoPosition;
}

void Alternatives::start_at(size_t p) {
  searched_from_ = window_end_ = p;
  for (Entry& entry : entries_) entry.hit = kNoPosition;
}

// First occurrence that begins in [from, starts_end) and lies in the area.
size_t Alternatives::search(const MatchScope& scope, const Entry& entry,
                            size_t from, size_t starts_end) {
  size_t room = scope.area_end - starts_end;
  size_t end = starts_end + std::min(room, entry.text.size() - 1);
  const char* found = entry.searcher.find(scope.text + from, scope.text + end);
  return found != nullptr ? static_cast<size_t>(found - scope.text)
                          : kNoPosition;
}

// p lies before what was searched: only the bytes between are new.
void Alternatives::go_back(const MatchScope& scope, size_t p) {
  for (Entry& entry : entries_) {
    size_t earlier = search(scope, entry, p, searched_from_);
    if (earlier != kNoPosition) entry.hit = earlier;
  }
  searched_from_ = p;
}

// p lies at or behind it: hits that were passed are looked for anew.
void Alternatives::go_on(const MatchScope& scope, size_t p) {
  searched_from_ = p;
  window_end_ = std::max(window_end_, p);
  for (Entry& entry : entries_) {
    if (entry.hit == kNoPosition || entry.hit >= p) continue;
    entry.hit = search(scope, entry, p, window_end_);
  }
}

// Takes the next window for the entries that had no hit up to its start.
void Alternatives::extend(const MatchScope& scope) {
  size_t from = window_end_;
  window_end_ += std::min(scope.area_end - from, window_);
  for (Entry& entry : entries_) {
    if (entry.hit != kNoPosition) continue;
    entry.hit = search(scope, entry, from, window_end_);
  }
}

Alternatives::Hit Alternatives::earliest_known(size_t limit) const {
  Hit best;
  for (const Entry& entry : entries_) {
    if (entry.hit > best.position || entry.hit == kNoPosition) continue;
    if (entry.hit >= limit || limit - entry.hit < entry.text.size()) continue;
    best = {entry.hit, entry.text.size()};
  }
  return best;
}

Alternatives::Hit Alternatives::earliest(const MatchScope& scope, size_t p,
                                         size_t limit) {
  if (p >= limit) return {};
  if (limit == last_limit_ && p >= searched_from_ && p <= last_.position) {
    return last_;
  }
  if (searched_from_ == kNoPosition) start_at(p);
  if (p < searched_from_) {
    go_back(scope, p);
  } else {
    go_on(scope, p);
  }
  last_limit_ = limit;
  last_ = earliest_known(limit);
  while (last_.position == kNoPosition && window_end_ < limit) {
    extend(scope);
    last_ = earliest_known(limit);
  }
  return last_;
}

bool StringListElement::match(const MatchScope& scope, size_t p, size_t limit) {
  resume = 0;
  Alternatives::Hit hit = alternatives.earliest(scope, p, limit);
  if (!negated) {
    return hit.position == p ? matched(p, hit.length) : failed(p, 0);
  }
  size_t stop = std::min(hit.position, limit);
  const char* end = above_blank().find_other(scope.text + p, scope.text + stop);
  size_t run = static_cast<size_t>(end - scope.text) - p;
  return run > 0 ? matched(p, run) : failed(p, 0);
}

// Runs

// The first byte of [p, limit) that does not count, or limit. Runs that
// attempts meet again and again are scanned once.
size_t RunElement::run_end(const char* text, size_t p, size_t limit) {
  if (counted_.contains_all()) return limit;
  if (p < run_from_ || p > run_to_) run_from_ = run_to_ = p;
  if (run_to_ < limit) {
    const char* end = counted_.find_other(text + run_to_, text + limit);
    run_to_ = static_cast<size_t>(end - text);
  }
  return std::min(run_to_, limit);
}

bool RunElement::match(const MatchScope& scope, size_t p, size_t limit) {
  resume = 0;
  const size_t room = limit - p;
  if (room < minimum) return failed(p, 0);
  const bool bounded = maximum != 0 && maximum < room;
  const size_t look = bounded ? p + maximum + 1 : limit;
  const size_t run = run_end(scope.text, p, look) - p;
  if (bounded && run > maximum) {
    // Cut: the run may also begin one byte later.
    resume = std::max(p, scope.attempt_start + 1);
    return matched(p, maximum);
  }
  return run >= minimum ? matched(p, run) : failed(p, run);
}

ClassElement::ClassElement(ElementKind kind, const CharClass& source,
                           uint32_t least, uint32_t most, bool is_negated)
    : RunElement(kind, true), class_(source) {
  minimum = least;
  maximum = most;
  negated = is_negated;
  counted_ = class_.members(negated);
}

bool WildcardElement::match(const MatchScope& /*scope*/, size_t p,
                            size_t /*limit*/) {
  resume = 0;
  return matched(p, 0);
}

CharListElement::CharListElement(std::string_view characters, uint32_t least,
                                 uint32_t most, bool is_negated)
    : RunElement(ElementKind::kCharList, true), chars_(characters) {
  minimum = least;
  maximum = most;
  negated = is_negated;
  prepare();
}

void CharListElement::prepare() {
  std::array<uint8_t, 256> fold;
  for (size_t byte = 0; byte < fold.size(); ++byte) {
    fold[byte] = static_cast<uint8_t>(byte);
  }
  if (!case_flag()) fold = byte_tables().fold;
  std::array<bool, 256> listed{};
  for (char c : chars_) listed[fold[static_cast<unsigned char>(c)]] = true;
  std::array<bool, 256> flags;
  for (size_t byte = 0; byte < flags.size(); ++byte) {
    flags[byte] = listed[fold[byte]] != negated;
  }
  counted_ = ByteSet(flags);
}

}  // namespace zenfo
