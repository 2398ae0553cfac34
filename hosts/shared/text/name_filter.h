// --include, --exclude and --exclude-dir: which of the listed files are
// searched.
//
// Tested by tests/hosts/shared/name_filter_test.cpp
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zenfo::host {

// Shell patterns: "*", "?", "[a-z]", "[!a-z]"; "\" makes the next character
// literal, except on Windows. A character is one of UTF-8, or a byte that
// belongs to none. Case is ignored where file names ignore it.
bool matches_glob(std::string_view pattern, std::string_view name);

bool any_matches(const std::vector<std::string>& patterns,
                 std::string_view name);

struct NameFilter {
  std::vector<std::string> includes;  // none: all
  std::vector<std::string> excludes;
  std::vector<std::string> excluded_folders;

  bool empty() const {
    return includes.empty() && excludes.empty() && excluded_folders.empty();
  }
  // `is_named`: the user named the file itself, so the folders in its path are
  // not checked.
  bool takes(std::string_view path, bool is_named) const;
};

}  // namespace zenfo::host
