// Expected results in the form that the command writes.
#pragma once

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace zenfo::test {

// A path with the system's separators.
inline std::string own(std::string path) {
  std::replace(path.begin(), path.end(), '/', kSeparator);
  return path;
}

// Paths, each followed by `end`.
inline std::string lines(const std::vector<std::string>& paths,
                         const std::string& end = "\n") {
  std::string text;
  for (const std::string& path : paths) text += own(path) + end;
  return text;
}

inline std::vector<std::string> split_lines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  for (size_t end; (end = text.find('\n', start)) != text.npos;) {
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

inline std::vector<nlohmann::json> json_lines(const std::string& text) {
  std::vector<nlohmann::json> values;
  for (const std::string& line : split_lines(text)) {
    values.push_back(nlohmann::json::parse(line));
  }
  return values;
}

}  // namespace zenfo::test
