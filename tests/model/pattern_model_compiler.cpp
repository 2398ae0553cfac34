// A slow model of the pattern language: the compiler. Each level cuts its text
// at its own constructs and passes the pieces to the next.
//
// Tested by tests/unit/model/pattern_model_test.cpp
#include <algorithm>

#include "model/pattern_bytes.h"
#include "model/pattern_model.h"

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

// Whether an odd number of escapes is directly before the position. Escapes
// before `floor` belong to something else and are not counted.
bool is_escaped(const std::string& text, size_t position, size_t floor) {
  size_t escapes = 0;
  while (position > floor && text[position - 1] == kEscape) {
    --position;
    ++escapes;
  }
  return escapes % 2 == 1;
}

// The name of a control character; 29 has the name of 27, so that no text
// yields byte 29.
std::string control_name(int code) {
  const char character = code == 29 ? '[' : static_cast<char>('@' + code);
  return std::string("^") + character;
}

// Replaces one control character in one pass from left to right, which
// continues after a replaced name, or one byte later at an escaped one.
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

// The position of the negation marker before a construct, or kNone. It must not
// overlap the previous construct.
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

// Reads a decimal number of any length, at most the largest count.
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

// A repetition count directly after a construct: digits, at most one separator
// and digits, in brackets. Anything else is no count: the defaults apply and
// the characters are ordinary text.
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

// Where a quoted list begins and whether it is negated. An escaped marker is a
// literal "!" before a list that is not negated.
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

// A closing quote directly after the opening one, or after a blank, becomes the
// opening one. Returns false when no pair is left.
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

// Alternatives separated by bars, each one character, or an escape and one
// character. Returns false for any other content.
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

// A closing quote directly after the opening one becomes the opening one.
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

// The earliest name of any class, ignoring case; at equal positions the first
// class in the list. Classes without a name are skipped.
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

// A name is no reference when it, or the marker directly before it, is escaped.
bool name_is_escaped(const std::string& text, size_t position, size_t floor) {
  if (is_escaped(text, position, floor)) return true;
  const size_t marker = marker_before(text, position, floor);
  return marker != kNone && is_escaped(text, marker, floor);
}

// Directly repeated occurrences of a name are one run; returns its end.
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

// In a pattern, caret names may be converted before it is parsed; in a literal,
// either names are converted and escapes removed, or neither.
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

// A class without a name is shown by its include ranges.
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

// Removes every escape and keeps the character after it, even if that is an
// escape. An escape at the very end is removed too.
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

// First text, any run, second text. The match begins at the first main element
// and includes the second text.
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

}  // namespace zenfo::model
