// Paths as texts. Every question is answered from one plain form of the path,
// so that doubled separators and "." parts are handled once.
//
// Tested by tests/unit/platform/path_text_test.cpp
#include "platform/path_text.h"

#include <cstddef>

namespace zenfo::platform {
namespace {

bool is_separator(char c, PathStyle style) {
  return c == '/' || (c == '\\' && style == PathStyle::kWindows);
}

size_t leading_separators(std::string_view path, PathStyle style) {
  size_t count = 0;
  while (count < path.size() && is_separator(path[count], style)) ++count;
  return count;
}

size_t part_length(std::string_view path, PathStyle style) {
  size_t length = 0;
  while (length < path.size() && !is_separator(path[length], style)) ++length;
  return length;
}

bool is_drive(std::string_view path) {
  const auto letter = [](char c) {
    return (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
  };
  return path.size() == 2 && letter(path[0]) && path[1] == ':';
}

// "\\server\share" has two parts; with the prefix "\\?\UNC" it has four.
bool is_share_or_less(std::string_view plain) {
  if (plain.substr(0, 2) != "\\\\") return false;
  size_t separators = 0;
  for (const char c : plain) separators += c == '\\';
  const std::string_view prefix = plain.substr(0, 8);
  const bool long_form = prefix == "\\\\?\\UNC\\" || prefix == "\\\\.\\UNC\\";
  return separators <= (long_form ? 5u : 3u);
}

}  // namespace

std::string plain_path(std::string_view path, PathStyle style) {
  const char separator = style == PathStyle::kWindows ? '\\' : '/';
  const size_t leading = leading_separators(path, style);
  const size_t most = style == PathStyle::kWindows ? 2 : 1;
  std::string plain(leading < most ? leading : most, separator);
  for (std::string_view rest = path.substr(leading); !rest.empty();
       rest.remove_prefix(leading_separators(rest, style))) {
    const std::string_view part = rest.substr(0, part_length(rest, style));
    rest.remove_prefix(part.size());
    if (part == ".") continue;
    if (!plain.empty() && plain.back() != separator) plain += separator;
    plain += part;
  }
  if (plain.empty() && !path.empty()) plain += '.';
  return plain;
}

bool is_root_text(std::string_view folder, PathStyle style) {
  const std::string plain = plain_path(folder, style);
  if (plain.empty()) return true;
  if (style == PathStyle::kPosix) return plain == "/";
  return plain == "\\" || is_drive(plain) || is_share_or_less(plain);
}

}  // namespace zenfo::platform
