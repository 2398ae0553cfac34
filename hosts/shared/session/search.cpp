#include "shared/session/search.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string_view>
#include <utility>

#include "shared/frame/failure.h"
#include "shared/system/paths.h"
#include "shared/system/temporary_folder.h"
#include "shared/text/text_file.h"
#include "zenfofr130.h"

namespace zenfo::host {
namespace {

// The library would silently continue without a report that it cannot create.
void check_report(const std::string& path) {
  if (path.empty() || can_be_written(path)) return;
  throw Failure{path, "the report cannot be written"};
}

void check_compiled(int32_t result, const std::string& text) {
  if (result != 1) throw Failure{text, "there is nothing in it to search for"};
}

// Constructs that can match a line feed: negation, named classes, wildcards.
constexpr std::string_view kWideConstructs = "!#?";

// No byte check: the library's own would reject every control byte.
constexpr int32_t kAnyBytes = 0;

uint32_t match_number(TextAccessor accessor, uint32_t index,
                      int32_t list = ZENFO_LIST_MATCHES) {
  char text[16];
  text[0] = '\0';
  accessor(list, index, text, sizeof text);
  uint32_t number = 0;
  for (const char* digit = text; *digit != '\0'; ++digit) {
    number = number * 10 + static_cast<uint32_t>(*digit - '0');
  }
  return number;
}

// Pattern for the bytes up to a line feed.
constexpr char kRestOfLine[] = "!'\n'[0-]";

// A class of all bytes: a match that takes any number of them reaches to the
// end of the text, and the library does not read them. Its name, which is found
// anywhere in a pattern, occurs in none.
constexpr char kAnyByte[] = "\x01 any byte \x01";
constexpr char kAnyByteDefinition[] =
    "name=\x01 any byte \x01\r\ninc_ranges=0-255\r\n";
constexpr char kRestOfText[] = "\x01 any byte \x01[0-]";
// The same where the class cannot be defined, up to a byte that texts rarely
// contain.
constexpr char kRestOfUsualText[] = "!'\x01'[0-]";

// The library reads classes from files only. False without a place for one.
bool define_any_byte() {
  std::string path;
  try {
    path = temporary_folder::make_file();
  } catch (const Failure&) {
    return false;
  }
  std::FILE* const file = open_file(path, "wb");
  if (file == nullptr) return false;
  const bool written = std::fputs(kAnyByteDefinition, file) >= 0;
  return std::fclose(file) == 0 && written && set_operators(path.c_str()) == 1;
}

// Escapes everything that may have a meaning in the pattern language.
std::string escaped(const std::string& text) {
  std::string pattern;
  for (const char c : text) {
    if (std::ispunct(static_cast<unsigned char>(c)) != 0) pattern += '\\';
    pattern += c;
  }
  return pattern;
}

// Texts in a list of alternatives cannot contain blanks.
bool can_be_listed(const std::string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return c > ' ' && c < '\x7f';
  });
}

// Combines several texts into one pattern that matches any of them.
void unite_texts(SearchOptions& options) {
  const std::vector<std::string>& texts = options.texts;
  if (texts.size() < 2 || options.is_pattern || options.caret ||
      !std::all_of(texts.begin(), texts.end(), can_be_listed)) {
    return;
  }
  std::string pattern;
  for (const std::string& text : texts) {
    pattern += (pattern.empty() ? '"' : '|') + escaped(text);
  }
  options.texts = {pattern + '"'};
  options.is_pattern = true;
}

// Whether a match may be empty. The library drops empty matches, but with the
// rest of a line added they would not be empty any more.
bool may_be_empty(const SearchOptions& options) {
  constexpr std::string_view kNoneAtLeast = "[0";
  return options.is_pattern &&
         options.texts.front().find(kNoneAtLeast) != std::string::npos;
}

bool names_any_byte(const SearchOptions& options) {
  const auto names = [](const std::string& pattern) {
    return pattern.find(kAnyByte) != std::string::npos;
  };
  return names(options.texts.front()) || names(options.start.text) ||
         names(options.areas.pattern);
}

// A longer match that is dropped because it is not a whole word would hide
// others after it; a report must list every match; the end marker may already
// be in use. A file of classes can redefine the constructs used here.
bool takes_more(const SearchOptions& options) {
  return options.texts.size() == 1 && !options.between &&
         options.end.text.empty() && !options.whole_words &&
         options.classes.empty() && options.report.empty() &&
         !may_be_empty(options);
}

bool has_wide_construct(const std::string& pattern) {
  for (size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '\\') {
      ++i;  // the next character is literal
    } else if (kWideConstructs.find(pattern[i]) != std::string_view::npos) {
      return true;
    }
  }
  return false;
}

bool stays_in_line(const SearchOptions& options, const std::string& text) {
  if (text.find('\n') != std::string::npos) return false;
  if (options.caret && text.find('^') != std::string::npos) return false;
  return !options.is_pattern || !has_wide_construct(text);
}

}  // namespace

bool search_once_a_line(SearchOptions& options) {
  SearchOptions changed = options;
  unite_texts(changed);
  if (!takes_more(changed) || !changed.start.text.empty() ||
      !changed.areas.pattern.empty() ||
      !stays_in_line(changed, changed.texts.front())) {
    return false;
  }
  changed.end = {kRestOfLine, true};
  options = std::move(changed);
  return true;
}

bool search_once_a_file(SearchOptions& options) {
  SearchOptions changed = options;
  unite_texts(changed);
  if (!takes_more(changed) || names_any_byte(changed)) return false;
  changed.end = {kRestOfText, true};
  options = std::move(changed);
  return true;
}

void Search::compile() {
  const SearchOptions& o = options_;
  if (!o.classes.empty() && set_operators(o.classes.c_str()) != 1) {
    throw Failure{o.classes, "no character classes can be read from this file"};
  }
  end_ = o.end.text;
  if (end_ == kRestOfText && !define_any_byte()) end_ = kRestOfUsualText;
  compile_areas();
  if (o.between) {
    const auto& [first, second] = *o.between;
    check_compiled(
        SetPatternTag(first.c_str(), second.c_str(), 0, o.is_pattern, o.caret),
        first + ' ' + second);
  }
  for (const std::string& text : o.texts) {
    if (&text == &o.texts.back() || !surely_compiles(text)) compile(text);
  }
  if (several_texts()) enter_texts();
  check_report(o.report);
}

// Each compilation costs time, and there may be very many texts.
bool Search::surely_compiles(const std::string& text) const {
  return !options_.is_pattern && !options_.caret && !text.empty();
}

void Search::compile(const std::string& text) {
  const int32_t caret = options_.caret;
  check_compiled(
      SetPattern(options_.start.text.c_str(), text.c_str(), end_.c_str(),
                 options_.start.is_pattern, options_.is_pattern,
                 options_.end.is_pattern, caret, caret, caret),
      text);
}

void Search::compile_areas() {
  const Areas& areas = options_.areas;
  const int32_t caret = options_.caret;
  if (areas.pattern.empty()) return;
  check_compiled(
      SetExclusionPattern(areas.start.c_str(), areas.pattern.c_str(),
                          areas.end.c_str(), 0, 1, 0, caret, caret, caret),
      areas.pattern);
}

void Search::enter_texts() {
  for (const std::string& text : options_.texts) {
    if (AddStringPair(text.c_str(), "") < 1) {
      throw Failure{text, "cannot be searched for"};
    }
  }
  SetState(ZENFO_LIST_PAIRS, -1, 1);
}

uint32_t Search::run(const Session::Question& question) {
  const SearchOptions& o = options_;
  const int32_t ask = question != nullptr;
  return session_.run(
      [&] {
        return several_texts()
                   ? FindString(!o.ignore_case, o.whole_words, kAnyBytes,
                                o.report.c_str(), o.is_pattern, o.caret, ask,
                                o.areas.inside)
                   : FindBlock(!o.ignore_case, o.whole_words, kAnyBytes,
                               o.report.c_str(), ask, o.areas.inside);
      },
      question);
}

uint32_t Search::run_over_lines(const std::string& list,
                                const std::string& summary) {
  const SearchOptions& o = options_;
  return session_.run(
      [&] {
        return several_texts()
                   ? FindString_f(!o.ignore_case, o.whole_words, kAnyBytes,
                                  o.report.c_str(), o.is_pattern, o.caret, 0,
                                  list.c_str(), summary.c_str(), 0)
                   : FindBlock_f(!o.ignore_case, o.whole_words, kAnyBytes,
                                 o.report.c_str(), 0, list.c_str(),
                                 summary.c_str(), o.areas.inside);
      },
      nullptr);
}

// A text that is searched for as written.
bool Search::matches_are_equally_long() const {
  const SearchOptions& o = options_;
  return !o.is_pattern && !o.between && o.start.text.empty() &&
         o.end.text.empty() && o.areas.pattern.empty();
}

void Search::append_matches(std::vector<Match>& matches, uint32_t most) const {
  const uint32_t count = std::min(matches_in_hand(), most);
  if (matches.empty()) matches.reserve(count);
  const bool equal = matches_are_equally_long();
  uint32_t length = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const uint32_t offset = match_number(GetMatchOffset, i);
    if (i == 0 || !equal) length = match_number(GetMatchLength, i);
    matches.push_back({offset, length});
  }
}

uint32_t matches_in_hand() {
  return static_cast<uint32_t>(std::max(GetCount(ZENFO_LIST_MATCHES, -1), 0));
}

Match match_in_hand(uint32_t index) {
  return {match_number(GetMatchOffset, index),
          match_number(GetMatchLength, index)};
}

std::vector<Match> areas_in_hand() {
  constexpr int32_t kList = ZENFO_LIST_EXCLUDED;
  const uint32_t count = Session::records_in(kList);
  std::vector<Match> areas;
  areas.reserve(count);
  for (uint32_t i = 0; i < count; ++i) {
    areas.push_back({match_number(GetMatchOffset, i, kList),
                     match_number(GetMatchLength, i, kList)});
  }
  return areas;
}

}  // namespace zenfo::host
