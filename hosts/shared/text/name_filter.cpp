#include "shared/text/name_filter.h"

#include <algorithm>

#include "shared/system/paths.h"
#include "shared/system/system.h"

namespace zenfo::host {
namespace {

#ifdef _WIN32
constexpr bool kHasEscape = false;
#else
constexpr bool kHasEscape = true;
#endif

bool goes_on(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The length of the first character; 1 if it is not UTF-8.
size_t character_length(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0xC2 || first > 0xF4) return 1;
  const size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  const std::string_view rest = text.substr(1, length - 1);
  const bool whole = rest.size() == length - 1 &&
                     std::all_of(rest.begin(), rest.end(), goes_on);
  return whole ? length : 1;
}

std::string_view take_character(std::string_view& text) {
  const std::string_view character = text.substr(0, character_length(text));
  text.remove_prefix(character.size());
  return character;
}

// The length of the set at the start of a pattern; 0 when the bracket is not
// closed and is literal.
size_t set_length(std::string_view pattern) {
  size_t i = 1;
  if (i < pattern.size() && (pattern[i] == '!' || pattern[i] == '^')) ++i;
  const size_t close = pattern.find(']', i + 1);
  return close == std::string_view::npos ? 0 : close + 1;
}

// Characters are ordered by their bytes.
bool set_holds(std::string_view set, std::string_view character) {
  set = set.substr(1, set.size() - 2);
  const bool negated = set.front() == '!' || set.front() == '^';
  if (negated) set.remove_prefix(1);
  bool found = false;
  while (!set.empty()) {
    const std::string_view first = take_character(set);
    std::string_view last = first;
    if (set.size() > 1 && set.front() == '-') {
      set.remove_prefix(1);
      last = take_character(set);
    }
    found = found || (character >= first && character <= last);
  }
  return found != negated;
}

// Takes one element other than "*" off the pattern. Returns whether it matches
// the character.
bool take_element(std::string_view& pattern, std::string_view character) {
  if (pattern.front() == '[' && set_length(pattern) > 0) {
    const std::string_view set = pattern.substr(0, set_length(pattern));
    pattern.remove_prefix(set.size());
    return set_holds(set, character);
  }
  const bool escaped =
      kHasEscape && pattern.front() == '\\' && pattern.size() > 1;
  if (escaped) pattern.remove_prefix(1);
  const std::string_view first = take_character(pattern);
  return (first == "?" && !escaped) || first == character;
}

// On a mismatch only the last star is retried, with one more character, so that
// the time is at most the product of the lengths.
bool fits(std::string_view pattern, std::string_view name) {
  bool any_star = false;
  std::string_view pattern_behind_star;
  std::string_view name_at_star;
  while (!name.empty() || !pattern.empty()) {
    if (!pattern.empty() && pattern.front() == '*') {
      pattern.remove_prefix(1);
      any_star = true;
      pattern_behind_star = pattern;
      name_at_star = name;
      continue;
    }
    if (!name.empty() && !pattern.empty() &&
        take_element(pattern, take_character(name))) {
      continue;
    }
    if (!any_star || name_at_star.empty()) return false;
    take_character(name_at_star);
    name = name_at_star;
    pattern = pattern_behind_star;
  }
  return true;
}

}  // namespace

bool matches_glob(std::string_view pattern, std::string_view name) {
  return fits(without_case(pattern), without_case(name));
}

bool any_matches(const std::vector<std::string>& patterns,
                 std::string_view name) {
  return std::any_of(
      patterns.begin(), patterns.end(),
      [&](const std::string& pattern) { return matches_glob(pattern, name); });
}

bool NameFilter::takes(std::string_view path, bool is_named) const {
  const size_t last = path.rfind(system::kSeparator);
  const std::string_view name =
      last == std::string_view::npos ? path : path.substr(last + 1);
  if (!includes.empty() && !any_matches(includes, name)) return false;
  if (any_matches(excludes, name)) return false;
  if (is_named || excluded_folders.empty()) return true;
  path.remove_suffix(name.size());
  while (!path.empty()) {
    const size_t end = path.find(system::kSeparator);
    if (any_matches(excluded_folders, path.substr(0, end))) return false;
    path.remove_prefix(end + 1);
  }
  return true;
}

}  // namespace zenfo::host
