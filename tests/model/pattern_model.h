// A slow model of the pattern language: class definitions, compiler, matcher.
//
// One function per rule, plain strings and loops, no state between attempts and
// no header of the engine. The engine must return the same as this model; where
// they differ, one of the two has misread a rule.
//
// Tested by tests/unit/model/pattern_model_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace zenfo::model {

// "No position"; 0 is a valid offset.
inline constexpr size_t kNone = std::numeric_limits<size_t>::max();
// The largest count of a pattern; larger numbers become this one.
inline constexpr uint32_t kMaxCount = std::numeric_limits<uint32_t>::max();

struct CharRange {
  uint32_t low = 0;
  uint32_t high = 0;
  bool operator==(const CharRange&) const = default;
};

struct CharClass {
  std::string name;  // empty: no name, never found in a pattern
  std::string include_chars;
  std::string exclude_chars;
  std::vector<CharRange> include_ranges;
  std::vector<CharRange> exclude_ranges;
  bool operator==(const CharClass&) const = default;
};

enum class Kind { kLiteral, kStringList, kClass, kCharList, kWildcard };

// One compiled element; its kind says which fields are used. An element has a
// copy of its class, so loading other classes does not change it.
struct Element {
  Kind kind = Kind::kLiteral;
  std::string text;                       // kLiteral
  std::vector<std::string> alternatives;  // kStringList
  std::string chars;                      // kCharList
  CharClass char_class;                   // kClass, kWildcard
  uint32_t minimum = 0;                   // 0: no lower bound
  uint32_t maximum = 0;                   // 0: no upper bound
  bool negated = false;
  bool operator==(const Element&) const = default;
};

// A pattern context: classes and the pattern compiled last.
struct Context {
  Context();

  std::vector<CharClass> user_classes;        // as added
  std::vector<CharClass> sorted_classes;      // as searched
  std::vector<CharClass> predefined_classes;  // "?"
  CharClass any_character;                    // 0-255, no name

  std::vector<Element> elements;  // start, main and end elements
  size_t start_count = 0;         // elements of the start marker
  ptrdiff_t last_main = 0;        // may be before the first main element
};

struct Match {
  size_t offset = 0;
  size_t length = 0;
  bool operator==(const Match&) const = default;
};

// The result of a run: the number of matches, or -1, and the matches.
struct Found {
  int32_t count = 0;
  std::vector<Match> matches;
  bool operator==(const Found&) const = default;
};

// The three texts and six flags of a search, in the order of the interface.
struct PatternTexts {
  std::optional<std::string> start;  // nullopt: null pointer
  std::optional<std::string> main;
  std::optional<std::string> end;
  bool start_is_pattern = false;
  bool main_is_pattern = false;
  bool end_is_pattern = false;
  bool convert_start = false;
  bool convert_main = false;
  bool convert_end = false;
};

// How one text is to be searched.
struct SearchFlags {
  bool exact_case = true;
  bool whole_words = false;
  uint32_t maximum = 0;  // 0: no limit
};

// --- Text helpers -----------------------------------------------------------

// The first occurrence of the needle at or after `from` that ends by `end`.
size_t find_substring(const std::string& text, size_t from, size_t end,
                      const std::string& needle, bool exact_case);

// 1 when no letter or digit is next to the bytes first..last, 0 when one is, -1
// when last is beyond the text.
int is_whole_word(const std::string& text, size_t first, size_t last);

// --- Classes ----------------------------------------------------------------

bool is_member(const CharClass& char_class, unsigned char byte);

// Appends a class and sorts the list by length of name.
void add_user_class(Context& context, const CharClass& char_class);

// Replaces the user classes by those in the bytes of a definition file. Returns
// 1; -1 for an empty file, which changes nothing.
int set_operators(Context& context, const std::string& file);

// --- Compiler ---------------------------------------------------------------

std::string convert_carets(std::string text);
std::string remove_escapes(const std::string& text);

// Both return 1 when there are elements, 0 when there are none, -1 when a
// required text is missing; the old pattern is dropped in every case.
int set_pattern(Context& context, const PatternTexts& texts);
int set_pattern_tag(Context& context, const std::optional<std::string>& first,
                    const std::optional<std::string>& second, bool count_start,
                    bool is_pattern, bool convert);

// Elements in one line: L(text) C(class){min,max} W(?){min,max}
// H(a,b){min,max} S(foo,bar), a leading ! for negated ones; control bytes and
// bytes from 0x7F as <0D>, the largest count as max.
std::string dump(const std::vector<Element>& elements);

// --- Matcher ----------------------------------------------------------------

Found find_all(const Context& context, const std::string& text,
               const SearchFlags& flags);

// Searches inside the areas or in the gaps between them. nullptr: no area
// context, the whole text is searched.
Found find_all_by_areas(const Context& context, const std::string& text,
                        const SearchFlags& flags,
                        const std::vector<Match>* areas, bool inside);

}  // namespace zenfo::model
