// The elements that a pattern is compiled to, and how each kind matches at one
// position.
//
// All positions are offsets from the start of the text. Each match operation
// stores what was matched, the first byte not taken, and where a later attempt
// may resume; the search reads its next start from these words.
//
// What an element remembers between attempts (where a literal was located, how
// far a run of class bytes goes, the next hit of each alternative) only saves
// work: results are the same as those of searching again. It is valid for one
// area of one text.
//
// Tested by tests/unit/pattern/element_test.cpp
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pattern/byte_set.h"
#include "pattern/char_class.h"
#include "text/substring.h"
#include "text/text_set.h"

namespace zenfo {

// No position. It is not 0, because "not found" and "stop" must differ from the
// text's start.
inline constexpr size_t kNoPosition = SIZE_MAX;

enum class ElementKind : int32_t {
  kLiteral = 0,
  kStringList = 1,
  kClass = 2,
  kCharList = 3,
  kWildcard = 4,
};

// Where matching takes place: one area of a text, one attempt in it.
struct MatchScope {
  const char* text;      // start of the whole text
  size_t area_end;       // exclusive; nothing after it is read
  size_t attempt_start;  // s
};

class Element {
 public:
  virtual ~Element() = default;
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;
  ElementKind kind() const { return kind_; }
  bool case_flag() const { return case_flag_; }  // true: exact bytes

  // Starts a run: zeroes all words, forgets all positions, stores the run's
  // case flag.
  void reset(bool case_flag);
  // Starts an area: forgets all positions.
  virtual void forget() {}

  // Tries the element at p; nothing at or after `limit` is taken.
  virtual bool match(const MatchScope& scope, size_t p, size_t limit) = 0;

  void clear_match() { start = length = 0; }

  size_t start = 0;   // of the last match
  size_t length = 0;  // of the last match
  size_t next = 0;    // q: the first byte not taken, matched or not
  size_t resume = 0;  // where a later attempt may begin; 0 = nowhere

 protected:
  Element(ElementKind kind, bool case_flag)
      : kind_(kind), case_flag_(case_flag) {}

  // Prepares for comparing with the present case flag and folding; called for a
  // run in which they differ from the run before.
  virtual void prepare() {}
  // Sets the words: a match of `taken` bytes at p, or a failure there.
  bool matched(size_t p, size_t taken) {
    start = p;
    length = taken;
    next = p + taken;
    return true;
  }
  bool failed(size_t p, size_t taken) {
    next = p + taken;
    return false;
  }

 private:
  ElementKind kind_;
  bool case_flag_;
  uint32_t prepared_for_ = 0;  // ByteTables::fold_version; 0: for none
};

using ElementList = std::vector<std::unique_ptr<Element>>;

// The occurrences of one text in an area, found several at a time and handed
// out one by one. The positions asked for mostly rise, so that the area is
// searched once.
class Occurrences {
 public:
  explicit Occurrences(std::string_view text) : text_(text) {}

  const std::string& text() const { return text_; }
  const SubstringSearcher& searcher() const { return searcher_; }

  void prepare(bool case_flag);
  void forget() { from_ = kNoPosition; }
  // The first occurrence at or after p, if it begins before `bound` or is known
  // anyway; else kNoPosition.
  size_t next(const MatchScope& scope, size_t p, size_t bound) {
    if (p < from_) {
      // Nothing is known yet, or `p` went back, which no chain of attempts
      // does.
      searched_ = p;
      taken_ = found_ = 0;
    }
    from_ = p;
    const char* at = scope.text + p;
    while (taken_ < found_ && hits_[taken_] < at) ++taken_;
    if (taken_ == found_) return search_from(scope, p, bound);
    return static_cast<size_t>(hits_[taken_] - scope.text);
  }

  // Positions searched at once: what fits in the nearest cache.
  static constexpr size_t kWindow = size_t{32} * 1024;

 private:
  static constexpr size_t kAtOnce = 64;

  size_t search_from(const MatchScope& scope, size_t p, size_t bound);
  void search(const MatchScope& scope);

  std::string text_;
  SubstringSearcher searcher_;
  // All occurrences that begin in [from_, searched_) and that are not passed
  // are among hits_, from taken_ on.
  size_t from_ = kNoPosition;
  size_t searched_ = 0;
  size_t taken_ = 0;
  size_t found_ = 0;
  size_t window_ = kWindow;
  std::array<const char*, kAtOnce> hits_{};
};

class LiteralElement : public Element {
 public:
  explicit LiteralElement(std::string_view literal)
      : Element(ElementKind::kLiteral, true), occurrences_(literal) {
    prepare();
  }

  const std::string& text() const { return occurrences_.text(); }
  const SubstringSearcher& searcher() const { return occurrences_.searcher(); }
  // Bytes below 33 and from 0x80 are skipped in text and literal; never set by
  // the compiler.
  bool ignore_blanks = false;

  void forget() override { occurrences_.forget(); }
  bool match(const MatchScope& scope, size_t p, size_t limit) override;
  // First occurrence in [from, area end); its length goes to `length`, its
  // position to `start`. False when there is none.
  bool locate(const MatchScope& scope, size_t from);
  // The same where blanks are not skipped; kNoPosition when there is none.
  size_t next_at(const MatchScope& scope, size_t from) {
    const size_t at = occurrences_.next(scope, from, scope.area_end);
    if (at != kNoPosition) matched(at, text().size());
    return at;
  }

 private:
  void prepare() override { occurrences_.prepare(case_flag()); }
  bool locate_past_blanks(const MatchScope& scope, size_t from);

  Occurrences occurrences_;
};

// The strings of a string list. A few are searched for window by window, so
// that a long text is read from memory once for all of them, many by one pass
// over all (text_set.h).
class Alternatives {
 public:
  struct Hit {
    size_t position = kNoPosition;
    size_t length = 0;
  };

  void add(std::string_view alternative) { texts_.emplace_back(alternative); }
  size_t count() const { return texts_.size(); }
  const std::string& at(size_t i) const { return texts_.at(i); }

  void prepare(bool case_flag);
  void forget();
  // The earliest occurrence of any within [p, limit); at equal positions the
  // later alternative.
  Hit earliest(const MatchScope& scope, size_t p, size_t limit);

 private:
  // The occurrences of many strings in an area. All that begin in
  // [from, searched) and that are not passed are among the hits, from `taken`
  // on.
  struct Together {
    TextSet set;
    std::vector<uint32_t> last_with;  // alternative, by its number in the set
    size_t from = kNoPosition;
    size_t searched = 0;
    size_t taken = 0;
    std::vector<TextSet::Hit> hits;
  };

  // From so many on, one pass over all is faster.
  static constexpr size_t kMany = 16;

  bool search_together(bool case_flag);
  Hit earliest_of_few(const MatchScope& scope, size_t p, size_t limit);
  Hit earliest_before(const MatchScope& scope, size_t p, size_t limit,
                      size_t bound);
  Hit earliest_of_many(const MatchScope& scope, size_t p, size_t limit);
  Hit earliest_known(size_t p, size_t limit);

  std::vector<std::string> texts_;
  std::vector<Occurrences> entries_;  // of few
  std::optional<Together> together_;  // of many
  // The last answer, valid for positions from last_from_ up to its hit.
  size_t last_from_ = kNoPosition;
  size_t last_limit_ = 0;
  Hit last_;
};

class StringListElement : public Element {
 public:
  StringListElement() : Element(ElementKind::kStringList, true) { prepare(); }

  Alternatives alternatives;
  bool negated = false;

  void forget() override { alternatives.forget(); }
  bool match(const MatchScope& scope, size_t p, size_t limit) override;

 private:
  void prepare() override { alternatives.prepare(case_flag()); }
};

// Classes and character lists: a greedy run of bytes of one set.
class RunElement : public Element {
 public:
  uint32_t minimum = 1;  // 0 = no lower bound
  uint32_t maximum = 0;  // 0 = no upper bound
  bool negated = false;

  // The bytes that count, negation included.
  const ByteSet& counted() const { return counted_; }

  void forget() override { run_from_ = run_to_ = 0; }
  bool match(const MatchScope& scope, size_t p, size_t limit) override {
    return fit(scope, p, limit);
  }
  // The same, for callers that know the kind.
  bool fit(const MatchScope& scope, size_t p, size_t limit);

 protected:
  using Element::Element;
  ByteSet counted_;

 private:
  // The first byte of [p, limit) that does not count, or limit. A run that
  // several attempts come across is scanned once.
  size_t run_end(const char* text, size_t p, size_t limit) {
    if (counted_.contains_all()) return limit;
    if (p < run_from_ || p > run_to_) run_from_ = run_to_ = p;
    if (run_to_ < limit) {
      const char* end = counted_.find_other(text + run_to_, text + limit);
      run_to_ = static_cast<size_t>(end - text);
    }
    return std::min(run_to_, limit);
  }

  // [run_from_, run_to_) is known to count.
  size_t run_from_ = 0;
  size_t run_to_ = 0;
};

inline bool RunElement::fit(const MatchScope& scope, size_t p, size_t limit) {
  resume = 0;
  const size_t room = limit - p;
  if (room < minimum) return failed(p, 0);
  const bool bounded = maximum != 0 && maximum < room;
  const size_t look = bounded ? p + maximum + 1 : limit;
  const size_t run = run_end(scope.text, p, look) - p;
  if (bounded && run > maximum) {
    // Cut by the maximum: the run may also begin one byte later.
    resume = std::max(p, scope.attempt_start + 1);
    return matched(p, maximum);
  }
  return run >= minimum ? matched(p, run) : failed(p, run);
}

class ClassElement : public RunElement {
 public:
  // Copies the class, so that later changes to it do not affect the pattern.
  ClassElement(const CharClass& source, uint32_t least, uint32_t most,
               bool is_negated)
      : ClassElement(ElementKind::kClass, source, least, most, is_negated) {}

  const CharClass& char_class() const { return class_; }

 protected:
  ClassElement(ElementKind kind, const CharClass& source, uint32_t least,
               uint32_t most, bool is_negated);

 private:
  CharClass class_;
};

class WildcardElement : public ClassElement {
 public:
  WildcardElement(const CharClass& source, uint32_t count, bool is_negated)
      : ClassElement(ElementKind::kWildcard, source, count, count, is_negated) {
  }

  // Intended: matches everywhere and takes nothing, whatever its bounds.
  bool match(const MatchScope& scope, size_t p, size_t limit) override;
};

class CharListElement : public RunElement {
 public:
  CharListElement(std::string_view characters, uint32_t least, uint32_t most,
                  bool is_negated);

  const std::string& chars() const { return chars_; }

 private:
  // Unlike classes, lists follow the case flag.
  void prepare() override;

  std::string chars_;
};

}  // namespace zenfo
