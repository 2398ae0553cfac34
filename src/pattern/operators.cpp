#include "pattern/operators.h"

namespace zenfo {

std::vector<ControlName> default_control_names() {
  // In code order from 1. Intended: place 29 repeats the bracket of 27.
  constexpr std::string_view kSecond = "ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\[^_";
  static_assert(kSecond.size() == 31);
  std::vector<ControlName> names;
  for (size_t i = 0; i < kSecond.size(); ++i) {
    names.push_back({{'^', kSecond[i]}, static_cast<uint8_t>(i + 1)});
  }
  return names;
}

bool is_escaped(std::string_view text, size_t position, size_t from,
                char escape) {
  size_t start = position;
  while (start > from && text[start - 1] == escape) --start;
  return (position - start) % 2 == 1;
}

namespace {

std::string convert_name(const std::string& text, const ControlName& control,
                         char escape) {
  std::string converted;
  size_t from = 0;
  while (true) {
    size_t found = text.find(control.name, from);
    if (found == std::string::npos) break;
    converted.append(text, from, found - from);
    // Text that is converted already counts as it is now.
    if (is_escaped(converted, converted.size(), 0, escape)) {
      converted += text[found];
      from = found + 1;
    } else {
      converted += static_cast<char>(control.code);
      from = found + control.name.size();
    }
  }
  return converted.append(text, from);
}

}  // namespace

std::string convert_carets(std::string_view text,
                           const std::vector<ControlName>& names, char escape) {
  std::string converted(text);
  for (const ControlName& control : names) {
    if (control.name.empty()) continue;
    if (converted.find(control.name) == std::string::npos) continue;
    converted = convert_name(converted, control, escape);
  }
  return converted;
}

std::string remove_escapes(std::string_view text, char escape) {
  std::string kept;
  kept.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == escape && ++i == text.size()) break;
    kept += text[i];
  }
  return kept;
}

}  // namespace zenfo
