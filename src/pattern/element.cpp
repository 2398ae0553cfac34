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
  const uint32_t fold_version = byte_tables().fold_version;
  if (case_flag != case_flag_ || fold_version != prepared_for_) {
    case_flag_ = case_flag;
    prepared_for_ = 0;
    prepare();
    prepared_for_ = fold_version;
  }
  forget();
}

// Occurrences

void Occurrences::prepare(bool case_flag) {
  searcher_ = SubstringSearcher(text_, case_flag);
  // Windows overlap by the length of the text: keep the overlap a small part.
  window_ = std::max(kWindow, 4 * text_.size());
}

// Searches from searched_ on, one window at most, or until the hits fill the
// room.
void Occurrences::search(const MatchScope& scope) {
  const size_t starts_end =
      searched_ + std::min(scope.area_end - searched_, window_);
  const size_t room = scope.area_end - starts_end;
  const char* end = scope.text + starts_end + std::min(room, text_.size() - 1);
  const char* at = scope.text + searched_;
  taken_ = 0;
  found_ = searcher_.find_many(at, end, 1, hits_.data(), kAtOnce);
  searched_ = std::min(static_cast<size_t>(at - scope.text), starts_end);
}

// Nothing known begins at or after p.
size_t Occurrences::search_from(const MatchScope& scope, size_t p,
                                size_t bound) {
  while (true) {
    searched_ = std::max(searched_, p);
    if (searched_ >= bound) return kNoPosition;
    search(scope);
    if (found_ > 0) return static_cast<size_t>(hits_[0] - scope.text);
  }
}

// Literals

bool LiteralElement::match(const MatchScope& scope, size_t p, size_t limit) {
  resume = 0;
  if (limit < p || limit - p < text().size()) return failed(p, 0);
  if (!equal(scope.text + p, text(), case_flag())) return failed(p, 0);
  return matched(p, text().size());
}

bool LiteralElement::locate(const MatchScope& scope, size_t from) {
  if (ignore_blanks) return locate_past_blanks(scope, from);
  size_t at = occurrences_.next(scope, from, scope.area_end);
  return at != kNoPosition && matched(at, text().size());
}

bool LiteralElement::locate_past_blanks(const MatchScope& scope, size_t from) {
  size_t spanned = 0;
  const char* found = find_substring(
      scope.text + from, text().data(), scope.text + scope.area_end,
      text().data() + text().size(), case_flag(), true, &spanned);
  return found != nullptr &&
         matched(static_cast<size_t>(found - scope.text), spanned);
}

// String lists

void Alternatives::prepare(bool case_flag) {
  entries_.clear();
  together_.reset();
  if (search_together(case_flag)) return;
  entries_.reserve(texts_.size());
  for (const std::string& text : texts_) {
    entries_.emplace_back(text).prepare(case_flag);
  }
}

// False when they are few, or one cannot be searched for together with others.
bool Alternatives::search_together(bool case_flag) {
  if (texts_.size() < kMany) return false;
  Together together;
  together.set = {{texts_.begin(), texts_.end()}, case_flag};
  together.last_with.resize(together.set.size());
  for (uint32_t i = 0; i < texts_.size(); ++i) {
    const uint32_t number = together.set.number_of(i);
    if (number == TextSet::kNoNumber) return false;
    together.last_with[number] = i;
  }
  together_ = std::move(together);
  return true;
}

void Alternatives::forget() {
  last_from_ = kNoPosition;
  for (Occurrences& entry : entries_) entry.forget();
  if (together_) together_->from = kNoPosition;
}

// The earliest that begins before `bound`, or an earliest one known anyway.
Alternatives::Hit Alternatives::earliest_before(const MatchScope& scope,
                                                size_t p, size_t limit,
                                                size_t bound) {
  Hit best;
  for (Occurrences& entry : entries_) {
    // Those after the best so far do not matter.
    if (best.position < bound) bound = best.position + 1;
    size_t at = entry.next(scope, p, bound);
    if (at > best.position || at >= limit) continue;
    if (limit - at < entry.text().size()) continue;
    best = {at, entry.text().size()};
  }
  return best;
}

Alternatives::Hit Alternatives::earliest(const MatchScope& scope, size_t p,
                                         size_t limit) {
  if (limit == last_limit_ && p >= last_from_ && p <= last_.position) {
    return last_;
  }
  last_from_ = p;
  last_limit_ = limit;
  last_ = together_ ? earliest_of_many(scope, p, limit)
                    : earliest_of_few(scope, p, limit);
  return last_;
}

Alternatives::Hit Alternatives::earliest_of_few(const MatchScope& scope,
                                                size_t p, size_t limit) {
  Hit hit;
  size_t bound = p;
  while (bound < limit) {
    bound += std::min(limit - bound, Occurrences::kWindow);
    hit = earliest_before(scope, p, limit, bound);
    if (hit.position < bound) break;
  }
  return hit;
}

// Searches for a few hits at a time, because the next position asked for may be
// far behind the first.
Alternatives::Hit Alternatives::earliest_of_many(const MatchScope& scope,
                                                 size_t p, size_t limit) {
  constexpr size_t kAtOnce = 4;
  Together& all = *together_;
  if (p < all.from) {
    all.searched = p;
    all.hits.clear();
    all.taken = 0;
  }
  all.from = p;
  while (true) {
    const Hit hit = earliest_known(p, limit);
    if (hit.position != kNoPosition) return hit;
    all.searched = std::max(all.searched, p);
    if (all.searched >= limit) return {};
    all.hits.erase(all.hits.begin(),
                   all.hits.begin() + static_cast<ptrdiff_t>(all.taken));
    all.taken = 0;
    all.searched = all.set.find(scope.text, all.searched, limit, scope.area_end,
                                all.hits, all.hits.size() + kAtOnce);
  }
}

// Passes the hits before p. Those that reach over the limit stay: a later limit
// may be higher.
Alternatives::Hit Alternatives::earliest_known(size_t p, size_t limit) {
  Together& all = *together_;
  while (all.taken < all.hits.size() && all.hits[all.taken].offset < p) {
    ++all.taken;
  }
  Hit best;
  uint32_t last = 0;
  for (size_t i = all.taken; i < all.hits.size(); ++i) {
    const auto [offset, number] = all.hits[i];
    if (offset > best.position || offset >= limit) break;
    const size_t size = all.set.length(number);
    if (limit - offset < size) continue;
    if (best.position == offset && all.last_with[number] < last) continue;
    best = {offset, size};
    last = all.last_with[number];
  }
  return best;
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
