#include "name_filter.h"

#include <algorithm>
#include <cctype>

#include "system.h"

namespace zenfo::cli {
namespace {

#ifdef _WIN32
constexpr bool kFoldCase = true;
constexpr bool kHasEscape = false;
#else
constexpr bool kFoldCase = false;
constexpr bool kHasEscape = true;
#endif

int folded(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return kFoldCase ? std::tolower(value) : value;
}

// The length of the set that begins a pattern; 0 when the bracket is not
// closed and stands for itself.
size_t set_length(std::string_view pattern) {
  size_t i = 1;
  if (i < pattern.size() && (pattern[i] == '!' || pattern[i] == '^')) ++i;
  const size_t close = pattern.find(']', i + 1);
  return close == std::string_view::npos ? 0 : close + 1;
}

bool set_holds(std::string_view set, char byte) {
  set = set.substr(1, set.size() - 2);
  const bool negated = set.front() == '!' || set.front() == '^';
  if (negated) set.remove_prefix(1);
  bool found = false;
  for (size_t i = 0; i < set.size(); ++i) {
    const bool is_range = i + 2 < set.size() && set[i + 1] == '-';
    const char last = is_range ? set[i + 2] : set[i];
    found = found ||
            (folded(byte) >= folded(set[i]) && folded(byte) <= folded(last));
    if (is_range) i += 2;
  }
  return found != negated;
}

// Takes one element other than "*" off the pattern; whether it fits the byte.
bool take_element(std::string_view& pattern, char byte) {
  const char first = pattern.front();
  size_t length = 1;
  bool fits = first == '?' || folded(first) == folded(byte);
  if (first == '[' && set_length(pattern) > 0) {
    length = set_length(pattern);
    fits = set_holds(pattern.substr(0, length), byte);
  } else if (kHasEscape && first == '\\' && pattern.size() > 1) {
    length = 2;
    fits = pattern[1] == byte;
  }
  pattern.remove_prefix(length);
  return fits;
}

bool any_matches(const std::vector<std::string>& patterns,
                 std::string_view name) {
  return std::any_of(
      patterns.begin(), patterns.end(),
      [&](const std::string& pattern) { return matches_glob(pattern, name); });
}

}  // namespace

// The last star is tried again with one byte more, so that the time is at most
// the product of the lengths.
bool matches_glob(std::string_view pattern, std::string_view name) {
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
        take_element(pattern, name.front())) {
      name.remove_prefix(1);
      continue;
    }
    if (!any_star || name_at_star.empty()) return false;
    name_at_star.remove_prefix(1);
    name = name_at_star;
    pattern = pattern_behind_star;
  }
  return true;
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

}  // namespace zenfo::cli
