// The pattern language, told slowly. Three sections: class definitions, the
// compiler with its four levels, the matcher with its attempts.
//
// Tested by tests/unit/model/pattern_model_test.cpp
#include "model/pattern_model.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace zenfo::model {
namespace {

// The seven operator characters and the negation marker.
constexpr char kRangeSeparator = '-';
constexpr char kOpenBracket = '[';
constexpr char kCloseBracket = ']';
constexpr char kSingleQuote = '\'';
constexpr char kDoubleQuote = '"';
constexpr char kListSeparator = '|';
constexpr char kEscape = '\\';
const std::string kNegationMarker = "!";

// The highest byte that is a space or a control character.
constexpr unsigned char kLastBlank = 32;

unsigned char byte_at(const std::string& text, size_t position) {
  return static_cast<unsigned char>(text[position]);
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool same_byte(unsigned char a, unsigned char b, bool exact_case) {
  return exact_case ? a == b : std::tolower(a) == std::tolower(b);
}

bool equal_at(const std::string& text, size_t position,
              const std::string& needle, bool exact_case) {
  for (size_t i = 0; i < needle.size(); ++i) {
    if (!same_byte(byte_at(text, position + i), byte_at(needle, i),
                   exact_case)) {
      return false;
    }
  }
  return true;
}

bool is_word_byte(const std::string& text, size_t position) {
  return std::isalnum(byte_at(text, position)) != 0;
}

}  // namespace

// An empty haystack or an empty needle finds nothing. After a mismatch the
// search starts again one byte behind the start of the partial match.
size_t find_substring(const std::string& text, size_t from, size_t end,
                      const std::string& needle, bool exact_case) {
  if (needle.empty()) return kNone;
  for (size_t at = from; at < end && needle.size() <= end - at; ++at) {
    if (equal_at(text, at, needle, exact_case)) return at;
  }
  return kNone;
}

int is_whole_word(const std::string& text, size_t first, size_t last) {
  if (last >= text.size()) return -1;
  const bool starts = first == 0 || !is_word_byte(text, first - 1);
  const bool ends = last + 1 == text.size() || !is_word_byte(text, last + 1);
  return starts && ends ? 1 : 0;
}

// ===========================================================================
// Classes
// ===========================================================================

namespace {

// Ranges are walked in order; a range 0-0 ends the walk, so neither it nor
// anything behind it is ever seen.
bool in_ranges(const std::vector<CharRange>& ranges, unsigned char byte) {
  for (const CharRange& range : ranges) {
    if (range.low == 0 && range.high == 0) return false;
    if (range.low <= byte && byte <= range.high) return true;
  }
  return false;
}

bool in_chars(const std::string& chars, unsigned char byte) {
  return chars.find(static_cast<char>(byte)) != std::string::npos;
}

// Classes compare by the length of their names and by nothing else.
int compare_names(const CharClass& a, const CharClass& b) {
  if (a.name.size() == b.name.size()) return 0;
  return a.name.size() < b.name.size() ? -1 : 1;
}

void order_pair(std::vector<CharClass>& list, size_t a, size_t b) {
  if (compare_names(list[a], list[b]) > 0) std::swap(list[a], list[b]);
}

// Quicksort as every list of the library sorts, so that classes whose names
// have the same length end in the same order. Ranges of five or fewer are
// left to the insertion sort.
void quick_sort(std::vector<CharClass>& list, size_t lo, size_t hi) {
  if (hi <= lo || hi - lo <= 4) return;
  const size_t mid = (lo + hi) / 2;
  order_pair(list, lo, mid);
  order_pair(list, lo, hi);
  order_pair(list, mid, hi);
  std::swap(list[mid], list[hi - 1]);
  const CharClass pivot = list[hi - 1];
  size_t i = lo;
  size_t j = hi - 1;
  for (;;) {
    do ++i;
    while (i < hi && compare_names(list[i], pivot) < 0);
    do --j;
    while (j > lo && compare_names(list[j], pivot) > 0);
    if (j < i) break;
    std::swap(list[i], list[j]);
  }
  std::swap(list[i], list[hi - 1]);
  quick_sort(list, lo, j);
  quick_sort(list, i + 1, hi);
}

void insertion_sort(std::vector<CharClass>& list) {
  for (size_t i = 1; i < list.size(); ++i) {
    for (size_t j = i; j > 0 && compare_names(list[j - 1], list[j]) > 0; --j) {
      std::swap(list[j - 1], list[j]);
    }
  }
}

void sort_by_name_length(std::vector<CharClass>& list) {
  if (list.size() < 2) return;
  quick_sort(list, 0, list.size() - 1);
  insertion_sort(list);
}

// The tokens of a text: each runs to the next separator, adjacent separators
// give an empty token, the rest behind the last separator is a token too
// unless it is empty.
std::vector<std::string> split(const std::string& text,
                               const std::string& separator) {
  std::vector<std::string> tokens;
  size_t cursor = 0;
  while (cursor < text.size()) {
    const size_t at =
        find_substring(text, cursor, text.size(), separator, true);
    if (at == kNone) {
      tokens.push_back(text.substr(cursor));
      break;
    }
    tokens.push_back(text.substr(cursor, at - cursor));
    cursor = at + separator.size();
  }
  return tokens;
}

std::string token_or_empty(const std::vector<std::string>& tokens, size_t i) {
  return i < tokens.size() ? tokens[i] : std::string();
}

// A decimal number as the C library reads one: white space, a sign, digits,
// up to the first byte that is no digit; nothing read is 0. Numbers beyond 32
// bits stay at the nearest bound.
int32_t read_number(const std::string& text) {
  size_t i = 0;
  while (i < text.size() && std::isspace(byte_at(text, i)) != 0) ++i;
  const bool minus = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  const int64_t bound = int64_t{1} << 31;
  int64_t value = 0;
  for (; i < text.size() && is_digit(text[i]); ++i) {
    value = std::min(bound, value * 10 + (text[i] - '0'));
  }
  if (minus) return static_cast<int32_t>(-value);
  return static_cast<int32_t>(std::min(value, bound - 1));
}

// Items between commas, each a number cut to a byte. An empty item is passed
// over; an item that begins with no number is the byte 0.
std::string read_chars(const std::string& value) {
  std::string bytes;
  for (const std::string& item : split(value, ",")) {
    if (item.empty()) continue;
    bytes += static_cast<char>(static_cast<uint32_t>(read_number(item)) & 0xFF);
  }
  return bytes;
}

// Items between commas, each two numbers around a minus. An item that lacks
// one of the two is passed over, a third number is not looked at.
void append_ranges(const std::string& value, std::vector<CharRange>& ranges) {
  for (const std::string& item : split(value, ",")) {
    const std::vector<std::string> parts = split(item, "-");
    const std::string low = token_or_empty(parts, 0);
    const std::string high = token_or_empty(parts, 1);
    if (low.empty() || high.empty()) continue;
    ranges.push_back({static_cast<uint32_t>(read_number(low)),
                      static_cast<uint32_t>(read_number(high))});
  }
}

// One line of a definition file. Lines before the first name have no class to
// change; names are zero-terminated.
void apply_line(const std::string& key, const std::string& value,
                std::vector<CharClass>& classes) {
  if (key == "name") {
    CharClass named;
    named.name = value.substr(0, value.find('\0'));
    classes.push_back(named);
    return;
  }
  if (classes.empty()) return;
  CharClass& current = classes.back();
  if (key == "inc_chars") current.include_chars = read_chars(value);
  if (key == "exc_chars") current.exclude_chars = read_chars(value);
  if (key == "inc_ranges") append_ranges(value, current.include_ranges);
  if (key == "exc_ranges") append_ranges(value, current.exclude_ranges);
}

}  // namespace

// Exclusion goes first, ranges before characters.
bool is_member(const CharClass& char_class, unsigned char byte) {
  if (in_ranges(char_class.exclude_ranges, byte)) return false;
  if (in_chars(char_class.exclude_chars, byte)) return false;
  if (in_ranges(char_class.include_ranges, byte)) return true;
  return in_chars(char_class.include_chars, byte);
}

Context::Context() {
  CharClass visible;
  visible.name = "?";
  visible.include_ranges = {{33, 255}};
  predefined_classes.push_back(visible);
  any_character.include_ranges = {{0, 255}};
}

// The sort begins from the order of adding each time.
void add_user_class(Context& context, const CharClass& char_class) {
  context.user_classes.push_back(char_class);
  context.sorted_classes = context.user_classes;
  sort_by_name_length(context.sorted_classes);
}

// Lines end in CR LF; a line is a key, an equals sign and a value that ends at
// a second equals sign. Lines without key or value and lines whose key begins
// with two slashes do nothing, nor do unknown keys.
int set_operators(Context& context, const std::string& file) {
  if (file.empty()) return -1;
  std::vector<CharClass> classes;
  for (const std::string& line : split(file, "\r\n")) {
    const std::vector<std::string> parts = split(line, "=");
    const std::string key = token_or_empty(parts, 0);
    const std::string value = token_or_empty(parts, 1);
    if (key.empty() || value.empty() || key.starts_with("//")) continue;
    apply_line(key, value, classes);
  }
  context.user_classes.clear();
  context.sorted_classes.clear();
  for (const CharClass& loaded : classes) add_user_class(context, loaded);
  return 1;
}

// ===========================================================================
// Compiler
// ===========================================================================

namespace {

// Escaped: an odd number of escapes stands directly in front. Escapes before
// `floor` belong to something else and are not counted.
bool is_escaped(const std::string& text, size_t position, size_t floor) {
  size_t escapes = 0;
  while (position > floor && text[position - 1] == kEscape) {
    --position;
    ++escapes;
  }
  return escapes % 2 == 1;
}

// The name of a control character; 29 shares its name with 27, so that no
// text yields byte 29.
std::string control_name(int code) {
  const char character = code == 29 ? '[' : static_cast<char>('@' + code);
  return std::string("^") + character;
}

// One pass over the text for one control character, left to right: on behind
// a replaced name, one byte on from an escaped one.
void convert_one(std::string& text, int code) {
  const std::string name = control_name(code);
  size_t from = 0;
  for (;;) {
    const size_t at = find_substring(text, from, text.size(), name, true);
    if (at == kNone) return;
    if (!is_escaped(text, at, 0)) {
      text.replace(at, name.size(), 1, static_cast<char>(code));
    }
    from = at + 1;
  }
}

// The marker in front of a construct, or kNone. It may not reach into the
// construct before.
size_t marker_before(const std::string& text, size_t position, size_t floor) {
  const size_t length = kNegationMarker.size();
  if (position < floor + length) return kNone;
  const size_t marker = position - length;
  return equal_at(text, marker, kNegationMarker, true) ? marker : kNone;
}

struct Count {
  uint32_t minimum = 1;
  uint32_t maximum = 0;
  size_t end = 0;  // where the construct ends
};

// Decimal, of any length; stays at the largest count.
uint32_t read_count_number(const std::string& digits) {
  uint64_t value = 0;
  for (const char digit : digits) {
    value = std::min<uint64_t>(kMaxCount,
                               value * 10 + static_cast<uint64_t>(digit - '0'));
  }
  return static_cast<uint32_t>(value);
}

Count accepted_count(const std::string& low, bool has_separator,
                     const std::string& high, size_t end) {
  Count count;
  count.end = end;
  if (!low.empty()) count.minimum = read_count_number(low);
  if (!has_separator && !low.empty()) count.maximum = count.minimum;
  if (has_separator && !high.empty()) count.maximum = read_count_number(high);
  return count;
}

// A repetition count directly behind a construct: digits, at most one
// separator, digits, between brackets. Whatever is not that, or does not end,
// is no count: the defaults hold and the characters are ordinary text.
Count read_count(const std::string& text, size_t position) {
  Count none;
  none.end = position;
  if (position >= text.size() || text[position] != kOpenBracket) return none;
  std::string low;
  std::string high;
  bool has_separator = false;
  for (size_t i = position + 1; i < text.size(); ++i) {
    if (text[i] == kCloseBracket) {
      return accepted_count(low, has_separator, high, i + 1);
    }
    if (is_digit(text[i])) {
      (has_separator ? high : low) += text[i];
    } else if (text[i] == kRangeSeparator && !has_separator) {
      has_separator = true;
    } else {
      return none;
    }
  }
  return none;
}

// Empty text yields no element.
void append_literal(const std::string& text, std::vector<Element>& out) {
  if (text.empty()) return;
  Element element;
  element.kind = Kind::kLiteral;
  element.text = text;
  out.push_back(element);
}

// The next unescaped `quote` at or after `from`, or kNone.
size_t next_quote(const std::string& text, size_t from, char quote,
                  size_t floor) {
  for (size_t i = from; i < text.size(); ++i) {
    if (text[i] == quote && !is_escaped(text, i, floor)) return i;
  }
  return kNone;
}

// Where a quoted list begins and whether it is negated. An escaped marker is
// a literal "!" in front of a list that is not negated.
struct ListStart {
  size_t begin = 0;
  bool negated = false;
};

ListStart list_start(const std::string& text, size_t open, size_t floor) {
  const size_t marker = marker_before(text, open, floor);
  if (marker == kNone || is_escaped(text, marker, floor)) return {open, false};
  return {marker, true};
}

// ---- Level 4: string lists ------------------------------------------------

bool has_blank_between(const std::string& text, size_t first, size_t last) {
  for (size_t i = first + 1; i < last; ++i) {
    if (byte_at(text, i) <= kLastBlank) return true;
  }
  return false;
}

// Cut at unescaped bars, escapes removed, empty alternatives dropped.
std::vector<std::string> read_alternatives(const std::string& content) {
  std::vector<std::string> alternatives;
  size_t begin = 0;
  for (size_t i = 0; i <= content.size(); ++i) {
    const bool ends = i == content.size() || (content[i] == kListSeparator &&
                                              !is_escaped(content, i, 0));
    if (!ends) continue;
    const std::string one = remove_escapes(content.substr(begin, i - begin));
    if (!one.empty()) alternatives.push_back(one);
    begin = i + 1;
  }
  return alternatives;
}

// A closing quote directly behind the opening one, or behind a blank, becomes
// the opening one. Answers false when no pair is left.
bool next_string_pair(const std::string& text, size_t from, size_t floor,
                      size_t& open, size_t& close) {
  open = next_quote(text, from, kDoubleQuote, floor);
  while (open != kNone) {
    close = next_quote(text, open + 1, kDoubleQuote, floor);
    if (close == kNone) return false;
    if (close > open + 1 && !has_blank_between(text, open, close)) return true;
    open = close;
  }
  return false;
}

void parse_string_lists(const std::string& text, std::vector<Element>& out) {
  size_t done = 0;  // end of the construct before
  size_t open = 0;
  size_t close = 0;
  while (next_string_pair(text, done, done, open, close)) {
    const ListStart start = list_start(text, open, done);
    append_literal(remove_escapes(text.substr(done, start.begin - done)), out);
    Element element;
    element.kind = Kind::kStringList;
    element.alternatives =
        read_alternatives(text.substr(open + 1, close - open - 1));
    element.negated = start.negated;
    out.push_back(element);
    done = close + 1;
  }
  append_literal(remove_escapes(text.substr(done)), out);
}

// ---- Level 3: character lists ---------------------------------------------

// Alternatives between bars, each one character or an escape and one
// character. Answers false when the content has another form.
bool read_char_list(const std::string& content, std::string& chars) {
  chars.clear();
  size_t i = 0;
  for (;;) {
    if (i >= content.size()) return false;  // an empty alternative
    if (content[i] == kListSeparator) return false;
    if (content[i] == kEscape) ++i;
    if (i >= content.size()) return false;  // an escape of nothing
    chars += content[i++];
    if (i == content.size()) return true;
    if (content[i++] != kListSeparator) return false;  // two in one alternative
  }
}

// A closing quote directly behind the opening one becomes the opening one.
bool next_char_pair(const std::string& text, size_t from, size_t floor,
                    size_t& open, size_t& close) {
  open = next_quote(text, from, kSingleQuote, floor);
  while (open != kNone) {
    close = next_quote(text, open + 1, kSingleQuote, floor);
    if (close == kNone) return false;
    if (close > open + 1) return true;
    open = close;
  }
  return false;
}

void parse_char_lists(const std::string& text, std::vector<Element>& out) {
  size_t done = 0;  // end of the construct before
  size_t from = 0;
  size_t open = 0;
  size_t close = 0;
  while (next_char_pair(text, from, done, open, close)) {
    Element element;
    element.kind = Kind::kCharList;
    from = close + 1;
    if (!read_char_list(text.substr(open + 1, close - open - 1),
                        element.chars)) {
      continue;  // both quotes stay text
    }
    const ListStart start = list_start(text, open, done);
    const Count count = read_count(text, close + 1);
    parse_string_lists(text.substr(done, start.begin - done), out);
    element.minimum = count.minimum;
    element.maximum = count.maximum;
    element.negated = start.negated;
    out.push_back(element);
    done = from = count.end;
  }
  parse_string_lists(text.substr(done), out);
}

// ---- Levels 1 and 2: named classes ----------------------------------------

struct NameAt {
  size_t position = kNone;
  const CharClass* char_class = nullptr;
};

// The earliest name of any class, case ignored; at equal positions the class
// that stands first in the list. Classes without a name are passed over.
NameAt earliest_name(const std::string& text, size_t from,
                     const std::vector<CharClass>& classes) {
  NameAt earliest;
  for (const CharClass& one : classes) {
    const size_t at = find_substring(text, from, text.size(), one.name, false);
    if (at == kNone) continue;
    if (earliest.position == kNone || at < earliest.position) {
      earliest = {at, &one};
    }
  }
  return earliest;
}

// A name is no reference when it is escaped, or when the marker directly in
// front of it is.
bool name_is_escaped(const std::string& text, size_t position, size_t floor) {
  if (is_escaped(text, position, floor)) return true;
  const size_t marker = marker_before(text, position, floor);
  return marker != kNone && is_escaped(text, marker, floor);
}

// Directly repeated occurrences of a name are one run; answers its end.
size_t run_end(const std::string& text, size_t position,
               const std::string& name) {
  size_t end = position + name.size();
  while (text.size() - end >= name.size() && equal_at(text, end, name, false)) {
    end += name.size();
  }
  return end;
}

void parse_wildcards(const Context& context, const std::string& text,
                     std::vector<Element>& out) {
  size_t done = 0;  // end of the construct before
  size_t from = 0;
  for (;;) {
    const NameAt name = earliest_name(text, from, context.predefined_classes);
    if (name.position == kNone) break;
    const size_t end = run_end(text, name.position, name.char_class->name);
    from = end;
    if (name_is_escaped(text, name.position, done)) continue;
    const size_t marker = marker_before(text, name.position, done);
    const size_t begin = marker == kNone ? name.position : marker;
    parse_char_lists(text.substr(done, begin - done), out);
    Element element;
    element.kind = Kind::kWildcard;
    element.char_class = *name.char_class;
    element.minimum = element.maximum = static_cast<uint32_t>(
        (end - name.position) / name.char_class->name.size());
    element.negated = marker != kNone;
    out.push_back(element);
    done = end;
  }
  parse_char_lists(text.substr(done), out);
}

void parse_pattern(const Context& context, const std::string& text,
                   std::vector<Element>& out) {
  size_t done = 0;  // end of the construct before
  size_t from = 0;
  for (;;) {
    const NameAt name = earliest_name(text, from, context.sorted_classes);
    if (name.position == kNone) break;
    from = name.position + name.char_class->name.size();
    if (name_is_escaped(text, name.position, done)) continue;
    const size_t marker = marker_before(text, name.position, done);
    const size_t begin = marker == kNone ? name.position : marker;
    const Count count = read_count(text, from);
    parse_wildcards(context, text.substr(done, begin - done), out);
    Element element;
    element.kind = Kind::kClass;
    element.char_class = *name.char_class;
    element.minimum = count.minimum;
    element.maximum = count.maximum;
    element.negated = marker != kNone;
    out.push_back(element);
    done = from = count.end;
  }
  parse_wildcards(context, text.substr(done), out);
}

// ---- One text of a search -------------------------------------------------

// A pattern may have its caret names converted before it is parsed; a literal
// has both or neither, names converted and escapes removed.
std::vector<Element> compile_text(const Context& context,
                                  const std::string& text, bool is_pattern,
                                  bool convert) {
  std::vector<Element> out;
  const std::string converted = convert ? convert_carets(text) : text;
  if (is_pattern) {
    parse_pattern(context, converted, out);
  } else {
    append_literal(convert ? remove_escapes(converted) : text, out);
  }
  return out;
}

void append(const std::vector<Element>& from, std::vector<Element>& to) {
  to.insert(to.end(), from.begin(), from.end());
}

void clear_pattern(Context& context) {
  context.elements.clear();
  context.start_count = 0;
  context.last_main = 0;
}

// ---- Printing -------------------------------------------------------------

std::string printed(const std::string& text) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    const unsigned char byte = byte_at(text, i);
    if (byte >= 0x20 && byte < 0x7F) {
      out += text[i];
    } else {
      out += {'<', kHex[byte >> 4], kHex[byte & 15], '>'};
    }
  }
  return out;
}

std::string printed_count(uint32_t count) {
  return count == kMaxCount ? "max" : std::to_string(count);
}

std::string printed_bounds(const Element& element) {
  return "{" + printed_count(element.minimum) + "," +
         printed_count(element.maximum) + "}";
}

// A class without a name goes by its include ranges.
std::string printed_class(const CharClass& char_class) {
  if (!char_class.name.empty()) return printed(char_class.name);
  std::string out;
  for (const CharRange& range : char_class.include_ranges) {
    if (!out.empty()) out += ',';
    out += std::to_string(range.low) + "-" + std::to_string(range.high);
  }
  return out;
}

std::string printed_list(const std::vector<std::string>& texts) {
  std::string out;
  for (size_t i = 0; i < texts.size(); ++i) {
    if (i > 0) out += ',';
    out += printed(texts[i]);
  }
  return out;
}

std::vector<std::string> one_by_one(const std::string& chars) {
  std::vector<std::string> texts;
  for (const char c : chars) texts.emplace_back(1, c);
  return texts;
}

std::string printed_element(const Element& element) {
  const std::string bounds = printed_bounds(element);
  switch (element.kind) {
    case Kind::kLiteral:
      return "L(" + printed(element.text) + ")";
    case Kind::kStringList:
      return "S(" + printed_list(element.alternatives) + ")";
    case Kind::kClass:
      return "C(" + printed_class(element.char_class) + ")" + bounds;
    case Kind::kCharList:
      return "H(" + printed_list(one_by_one(element.chars)) + ")" + bounds;
    case Kind::kWildcard:
      return "W(" + printed_class(element.char_class) + ")" + bounds;
  }
  return "unknown";
}

}  // namespace

std::string convert_carets(std::string text) {
  for (int code = 1; code <= 31; ++code) convert_one(text, code);
  return text;
}

// Every escape goes; the character behind it stays, an escape included. An
// escape at the very end goes too.
std::string remove_escapes(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == kEscape && ++i == text.size()) break;
    out += text[i];
  }
  return out;
}

int set_pattern(Context& context, const PatternTexts& texts) {
  clear_pattern(context);
  if (!texts.main || texts.main->empty()) return -1;
  const std::vector<Element> start =
      compile_text(context, texts.start.value_or(""), texts.start_is_pattern,
                   texts.convert_start);
  const std::vector<Element> main = compile_text(
      context, *texts.main, texts.main_is_pattern, texts.convert_main);
  const std::vector<Element> end = compile_text(
      context, texts.end.value_or(""), texts.end_is_pattern, texts.convert_end);
  append(start, context.elements);
  append(main, context.elements);
  append(end, context.elements);
  context.start_count = start.size();
  context.last_main = static_cast<ptrdiff_t>(start.size() + main.size()) - 1;
  return context.elements.empty() ? 0 : 1;
}

// First text, any run, second text; all from the first main element on is the
// match, the second text included.
int set_pattern_tag(Context& context, const std::optional<std::string>& first,
                    const std::optional<std::string>& second, bool count_start,
                    bool is_pattern, bool convert) {
  clear_pattern(context);
  if (!first || first->empty() || !second || second->empty()) return -1;
  append(compile_text(context, *first, is_pattern, convert), context.elements);
  context.start_count = count_start ? context.elements.size() : 0;
  Element any_run;
  any_run.kind = Kind::kClass;
  any_run.char_class = context.any_character;
  context.elements.push_back(any_run);
  append(compile_text(context, *second, is_pattern, convert), context.elements);
  context.last_main = static_cast<ptrdiff_t>(context.elements.size()) - 1;
  return 1;
}

std::string dump(const std::vector<Element>& elements) {
  std::string out;
  for (const Element& element : elements) {
    if (!out.empty()) out += ' ';
    if (element.negated) out += '!';
    out += printed_element(element);
  }
  return out;
}

// ===========================================================================
// Matcher
// ===========================================================================

namespace {

// What the last attempt left in an element.
struct State {
  size_t start = 0;
  size_t length = 0;
  size_t next = kNone;    // first byte not taken
  size_t resume = kNone;  // where a run cut by its maximum may begin again
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

  // Searches [from, end). Answers false once the maximum is reached.
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

// Greedy. Too few bytes left for the minimum: fails at once. A run that would
// go beyond the maximum matches with the maximum, whatever the minimum.
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
// two that begin at one place the later in the list counts. Negated: the run
// of visible bytes up to the earliest occurrence, not empty.
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

// Literals are located first, each the nearest behind the one before. One
// that is missing ends the search; two neighbours in the pattern must touch,
// else the search goes on behind the first literal of the pattern.
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

// The elements first..last-1 stand before the literal `last` and must fill
// the bytes from `current` to it exactly.
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

// Leaves `current` behind the last literal.
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

// The elements behind the last literal. A failure at the very end goes on
// behind it. Else the search goes on where the element before may begin
// again; or where the failing element stood, when that is an advance; or one
// byte behind where it stopped.
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

// The main elements are the match; the next attempt starts behind the last
// element of the pattern. One of length 0 pushes it one byte on, a wildcard
// does not.
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

// Every attempt that does not end the search moves on by a byte at least.
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

// The whole-word test looks at the whole text, beyond the area searched.
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

// Answers that need no attempt: nothing in an empty text, failure without a
// pattern, nothing without a main element.
std::optional<Found> early_answer(const Context& context,
                                  const std::string& text) {
  if (text.empty()) return Found{0, {}};
  if (context.elements.empty()) return Found{-1, {}};
  const auto first_main = static_cast<ptrdiff_t>(context.start_count);
  if (context.last_main < first_main) return Found{0, {}};
  return std::nullopt;
}

// Areas are not trusted: cut to the text.
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
