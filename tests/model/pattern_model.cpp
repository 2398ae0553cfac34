// A slow model of the pattern language: text helpers and class definitions.
//
// Tested by tests/unit/model/pattern_model_test.cpp
#include "model/pattern_model.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "model/pattern_bytes.h"

namespace zenfo::model {
namespace {

bool is_word_byte(const std::string& text, size_t position) {
  return std::isalnum(byte_at(text, position)) != 0;
}

}  // namespace

// Finds nothing in an empty haystack or for an empty needle. After a mismatch
// the search starts again one byte after the start of the partial match.
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

namespace {

// Ranges are checked in order; a range 0-0 ends the check, so it and all later
// ones are ignored.
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

// Classes are compared only by the length of their names.
int compare_names(const CharClass& a, const CharClass& b) {
  if (a.name.size() == b.name.size()) return 0;
  return a.name.size() < b.name.size() ? -1 : 1;
}

void order_pair(std::vector<CharClass>& list, size_t a, size_t b) {
  if (compare_names(list[a], list[b]) > 0) std::swap(list[a], list[b]);
}

// The same quicksort as in every list of the library, so that classes with
// names of the same length end in the same order. Ranges of five or fewer are
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

// The tokens of a text: each ends at the next separator, adjacent separators
// give an empty token, and the rest after the last separator is a token unless
// it is empty.
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

// Reads a decimal number like the C library: white space, a sign, digits up to
// the first other byte; without digits it is 0. Numbers beyond 32 bits become
// the nearest bound.
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

// Numbers separated by commas, each reduced to a byte. An empty item is
// skipped; an item that does not begin with a number is the byte 0.
std::string read_chars(const std::string& value) {
  std::string bytes;
  for (const std::string& item : split(value, ",")) {
    if (item.empty()) continue;
    bytes += static_cast<char>(static_cast<uint32_t>(read_number(item)) & 0xFF);
  }
  return bytes;
}

// Pairs of numbers, separated by commas, with a minus inside each pair. An item
// without two numbers is skipped, a third number ignored.
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

// Applies one line of a definition file. Lines before the first name have no
// effect; names end at a zero byte.
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

// Checks exclusion first, and ranges before characters.
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

// Each sort starts from the order in which the classes were added.
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

}  // namespace zenfo::model
