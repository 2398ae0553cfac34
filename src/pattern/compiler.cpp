#include "pattern/compiler.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "pattern/element.h"
#include "pattern/operators.h"
#include "text/byte_tables.h"
#include "text/c_text.h"
#include "text/substring.h"

namespace zenfo {
namespace {

constexpr size_t kNone = std::string_view::npos;

struct Count {
  uint32_t minimum = 1;
  uint32_t maximum = 0;
  size_t end = 0;  // where the construct ends
};

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Decimal of any length; a number that is too large becomes the greatest one.
uint32_t saturated(std::string_view digits) {
  uint64_t value = 0;
  for (char c : digits) {
    value = std::min<uint64_t>(value * 10 + static_cast<uint64_t>(c - '0'),
                               UINT32_MAX);
  }
  return static_cast<uint32_t>(value);
}

// How far one level is in its piece of text. Text from `done` on has not been
// passed to the next level yet.
struct Scanner {
  std::string_view text;
  const Operators& operators;
  size_t done = 0;

  bool escaped(size_t position) const {
    return is_escaped(text, position, done, operators.escape);
  }

  std::string_view up_to(size_t position) const {
    return text.substr(done, position - done);
  }

  // Start of a negation marker directly before a position.
  std::optional<size_t> marker_before(size_t position) const {
    std::string_view marker = operators.negation_marker;
    if (marker.empty() || position - done < marker.size()) return {};
    size_t start = position - marker.size();
    if (text.substr(start, marker.size()) != marker) return {};
    return start;
  }

  size_t digits_end(size_t at) const {
    while (at < text.size() && is_digit(text[at])) ++at;
    return at;
  }

  bool at(size_t position, char c) const {
    return position < text.size() && text[position] == c;
  }

  // Repetition count directly at a position; without a well-formed one the
  // defaults, ending there. `open digits [separator digits] close`, all digits
  // optional.
  Count count_at(size_t position) const {
    Count none;
    none.end = position;
    if (!at(position, operators.open_bracket)) return none;
    size_t low = position + 1;
    size_t low_end = digits_end(low);
    bool range = at(low_end, operators.range_separator);
    size_t high = range ? low_end + 1 : low_end;
    size_t high_end = range ? digits_end(high) : high;
    if (!at(high_end, operators.close_bracket)) return none;

    Count count;
    count.end = high_end + 1;
    if (low_end > low) {
      count.minimum = saturated(text.substr(low, low_end - low));
      if (!range) count.maximum = count.minimum;
    }
    if (high_end > high) {
      count.maximum = saturated(text.substr(high, high_end - high));
    }
    return count;
  }
};

// Finds the names of a list of classes in a piece, ignoring case: each name
// remembers its next occurrence.
class NameFinder {
 public:
  struct Found {
    size_t position = kNone;
    const CharClass* found = nullptr;
  };

  explicit NameFinder(std::string_view text) : text_(text) {}

  // Finds where each name occurs first.
  void add_names(const ClassList& classes) {
    for (size_t i = 0; i < classes.count(); ++i) {
      const CharClass& one = classes.at(i);
      if (!one.name().empty()) names_.push_back({&one, next_in(one, 0)});
    }
  }

  // The earliest at or after `from`, which must not decrease; at equal
  // positions the class that is first in the list.
  Found next(size_t from) {
    Found earliest;
    for (Name& name : names_) {
      if (name.position < from) name.position = next_in(*name.named, from);
      if (name.position < earliest.position) {
        earliest = {name.position, name.named};
      }
    }
    return earliest;
  }

 private:
  struct Name {
    const CharClass* named;
    size_t position;  // kNone: no more
  };

  size_t next_in(const CharClass& one, size_t from) const {
    SubstringSearcher searcher(one.name(), false);
    const char* end = text_.data() + text_.size();
    const char* found = searcher.find(text_.data() + from, end);
    return found != nullptr ? static_cast<size_t>(found - text_.data()) : kNone;
  }

  std::string_view text_;
  std::vector<Name> names_;
};

// Parses one pattern text; the elements go to the end of `out` in the order of
// the text.
class PatternParser {
 public:
  PatternParser(const PatternContext& context, ElementList& out)
      : context_(context), operators_(context.operators), out_(out) {}

  void parse(std::string_view text) { user_classes(text); }

 private:
  // Level 1: references to user classes.
  void user_classes(std::string_view text) {
    Scanner scan{text, operators_};
    NameFinder names(text);
    names.add_names(context_.user_classes);
    size_t from = 0;
    while (true) {
      auto [position, found] = names.next(from);
      if (position == kNone) break;
      const size_t name_end = position + found->name().size();
      from = name_end;
      if (escaped_with_marker(scan, position)) continue;
      auto marker = scan.marker_before(position);
      Count count = scan.count_at(name_end);
      wildcards(scan.up_to(marker.value_or(position)));
      out_.push_back(std::make_unique<ClassElement>(
          *found, count.minimum, count.maximum, marker.has_value()));
      from = scan.done = count.end;
    }
    wildcards(scan.up_to(text.size()));
  }

  // Level 2: runs of the name of a predefined class. They take no count.
  void wildcards(std::string_view text) {
    Scanner scan{text, operators_};
    NameFinder names(text);
    names.add_names(context_.predefined_classes);
    size_t from = 0;
    while (true) {
      auto [position, found] = names.next(from);
      if (position == kNone) break;
      const size_t run_end = repeats_end(text, position, found->name());
      from = run_end;
      if (escaped_with_marker(scan, position)) continue;
      auto marker = scan.marker_before(position);
      char_lists(scan.up_to(marker.value_or(position)));
      size_t count = (run_end - position) / found->name().size();
      out_.push_back(std::make_unique<WildcardElement>(
          *found, static_cast<uint32_t>(count), marker.has_value()));
      scan.done = run_end;
    }
    char_lists(scan.up_to(text.size()));
  }

  // Level 3: character lists in single quotes.
  void char_lists(std::string_view text) {
    Scanner scan{text, operators_};
    size_t from = 0;
    while (auto pair = quotes(scan, from, operators_.single_quote, false)) {
      from = pair->close + 1;
      auto chars = listed_chars(
          text.substr(pair->open + 1, pair->close - pair->open - 1));
      if (!chars) continue;
      auto marker = plain_marker_before(scan, pair->open);
      Count count = scan.count_at(pair->close + 1);
      string_lists(scan.up_to(marker.value_or(pair->open)));
      out_.push_back(std::make_unique<CharListElement>(
          *chars, count.minimum, count.maximum, marker.has_value()));
      from = scan.done = count.end;
    }
    string_lists(scan.up_to(text.size()));
  }

  // Level 4: string lists in double quotes; the rest is literal.
  void string_lists(std::string_view text) {
    Scanner scan{text, operators_};
    size_t from = 0;
    while (auto pair = quotes(scan, from, operators_.double_quote, true)) {
      auto marker = plain_marker_before(scan, pair->open);
      literal(scan.up_to(marker.value_or(pair->open)));
      auto list = std::make_unique<StringListElement>();
      list->negated = marker.has_value();
      add_alternatives(
          *list, text.substr(pair->open + 1, pair->close - pair->open - 1));
      out_.push_back(std::move(list));
      from = scan.done = pair->close + 1;
    }
    literal(scan.up_to(text.size()));
  }

  void literal(std::string_view text) {
    std::string unescaped = remove_escapes(text, operators_.escape);
    if (unescaped.empty()) return;
    out_.push_back(std::make_unique<LiteralElement>(unescaped));
  }

  // Levels 1 and 2: an escape before the name, or before its marker, makes the
  // whole construct literal.
  static bool escaped_with_marker(const Scanner& scan, size_t position) {
    if (scan.escaped(position)) return true;
    auto marker = scan.marker_before(position);
    return marker && scan.escaped(*marker);
  }

  // Levels 3 and 4. Intended: an escape makes only the marker literal, the list
  // after it is not negated.
  static std::optional<size_t> plain_marker_before(const Scanner& scan,
                                                   size_t position) {
    auto marker = scan.marker_before(position);
    if (marker && scan.escaped(*marker)) return {};
    return marker;
  }

  static size_t repeats_end(std::string_view text, size_t position,
                            std::string_view name) {
    size_t end = position + name.size();
    while (text.size() - end >= name.size() &&
           compare_ignoring_case(text.substr(end, name.size()), name) == 0) {
      end += name.size();
    }
    return end;
  }

  struct Quotes {
    size_t open;
    size_t close;
  };

  // The next pair of unescaped quotes with something between. A quote that
  // directly follows the opening one becomes the opening one, and (no_blanks)
  // so does one with a byte below 33 before it.
  static std::optional<Quotes> quotes(const Scanner& scan, size_t from,
                                      char quote, bool no_blanks) {
    size_t open = next_quote(scan, from, quote);
    while (open != kNone) {
      size_t close = next_quote(scan, open + 1, quote);
      if (close == kNone) break;
      bool pair = close > open + 1;
      if (no_blanks && pair) {
        pair = !has_blank(scan.text.substr(open + 1, close - open - 1));
      }
      if (pair) return Quotes{open, close};
      open = close;
    }
    return {};
  }

  static size_t next_quote(const Scanner& scan, size_t from, char quote) {
    size_t at = scan.text.find(quote, from);
    while (at != kNone && scan.escaped(at)) at = scan.text.find(quote, at + 1);
    return at;
  }

  static bool has_blank(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
      return static_cast<unsigned char>(c) < 33;
    });
  }

  // The characters of a list, or none when the content does not have the form
  // of a list: single characters, escaped or not, between separators.
  std::optional<std::string> listed_chars(std::string_view content) const {
    std::string chars;
    for (size_t at = 0;; ++at) {
      bool escape = at < content.size() && content[at] == operators_.escape;
      if (escape) ++at;
      if (at >= content.size()) return {};
      if (!escape && content[at] == operators_.list_separator) return {};
      chars += content[at++];
      if (at == content.size()) return chars;
      if (content[at] != operators_.list_separator) return {};
    }
  }

  void add_alternatives(StringListElement& list,
                        std::string_view content) const {
    size_t start = 0;
    for (size_t at = 0; at <= content.size(); ++at) {
      bool ends = at == content.size();
      if (at + 1 < content.size() && content[at] == operators_.escape) {
        ++at;  // and the character after it
        continue;
      }
      if (!ends && content[at] != operators_.list_separator) continue;
      std::string alternative =
          remove_escapes(content.substr(start, at - start), operators_.escape);
      if (!alternative.empty()) list.alternatives.add(alternative);
      start = at + 1;
    }
  }

  const PatternContext& context_;
  const Operators& operators_;
  ElementList& out_;
};

// Appends the elements of one text.
void compile_text(const PatternContext& context, const PatternText& source,
                  ElementList& out) {
  if (is_empty(source.text)) return;
  if (source.is_pattern) {
    std::string text = source.text;
    if (source.convert) text = context.expand_control_names(text);
    PatternParser(context, out).parse(text);
    return;
  }
  const std::string text = literal_bytes(context, source);
  if (!text.empty()) out.push_back(std::make_unique<LiteralElement>(text));
}

int32_t answer(const CompiledPattern& pattern) {
  return pattern.empty() ? 0 : 1;
}

}  // namespace

std::string literal_bytes(const PatternContext& context,
                          const PatternText& source) {
  if (is_empty(source.text)) return {};
  std::string text = source.text;
  if (!source.convert) return text;
  text = context.expand_control_names(text);
  return remove_escapes(text, context.operators.escape);
}

int32_t compile_search(PatternContext& context, const PatternText& start,
                       const PatternText& main, const PatternText& end) {
  CompiledPattern& pattern = context.pattern;
  pattern.clear();
  if (is_empty(main.text)) return -1;
  compile_text(context, start, pattern.elements);
  pattern.start_count = pattern.elements.size();
  compile_text(context, main, pattern.elements);
  pattern.last_main = static_cast<ptrdiff_t>(pattern.elements.size()) - 1;
  compile_text(context, end, pattern.elements);
  return answer(pattern);
}

int32_t compile_tag(PatternContext& context, const char* first,
                    const char* second, bool count_start, bool is_pattern,
                    bool convert) {
  CompiledPattern& pattern = context.pattern;
  pattern.clear();
  if (is_empty(first) || is_empty(second)) return -1;
  compile_text(context, {first, is_pattern, convert}, pattern.elements);
  if (count_start) pattern.start_count = pattern.elements.size();
  pattern.elements.push_back(
      std::make_unique<ClassElement>(context.any_character, 0, 0, false));
  compile_text(context, {second, is_pattern, convert}, pattern.elements);
  pattern.last_main = static_cast<ptrdiff_t>(pattern.elements.size()) - 1;
  return answer(pattern);
}

}  // namespace zenfo
