#include "gui/words/strings.h"

#include <array>

#include "shared/frame/counted.h"

namespace zenfo::host::gui {
namespace {

constexpr std::string_view kAllTexts[] = {
#define ZENFO_TEXT(id, text) text,
#include "gui/words/strings.inc"
#undef ZENFO_TEXT
};

std::string counted_grouped(uint64_t number, std::string_view one,
                            std::string_view many) {
  return number == 1 ? counted(1, one, many)
                     : grouped(number) + ' ' + std::string(many);
}

}  // namespace

std::string_view text(Text id) { return kAllTexts[static_cast<size_t>(id)]; }

std::string plain_text(Text id) {
  std::string plain(text(id));
  std::erase(plain, '&');
  return plain;
}

std::string format(Text id, std::initializer_list<std::string_view> parts) {
  const std::string_view pattern = text(id);
  std::string result;
  for (size_t i = 0; i < pattern.size(); ++i) {
    const bool is_part = pattern[i] == '{' && i + 2 < pattern.size();
    if (!is_part) {
      result += pattern[i];
      continue;
    }
    const auto number = static_cast<size_t>(pattern[i + 1] - '0');
    if (number < parts.size()) result += *(parts.begin() + number);
    i += 2;
  }
  return result;
}

std::string grouped(uint64_t number) {
  std::string digits = std::to_string(number);
  for (size_t at = digits.size(); at > 3;) {
    at -= 3;
    digits.insert(at, 1, ',');
  }
  return digits;
}

std::string counted_files(uint64_t number) {
  return counted_grouped(number, "file", "files");
}

std::string counted_matches(uint64_t number) {
  return counted_grouped(number, "match", "matches");
}

std::string size_text(uint64_t bytes) {
  if (bytes < 1024) return counted(bytes, "byte", "bytes");
  constexpr std::array<const char*, 6> kUnits = {" KB", " MB", " GB",
                                                 " TB", " PB", " EB"};
  size_t unit = 0;
  uint64_t tenths = bytes * 10 / 1024;
  if (bytes > UINT64_MAX / 10) tenths = bytes / 1024 * 10;
  while (tenths >= 10240) {
    tenths /= 1024;
    ++unit;
  }
  const uint64_t whole = tenths / 10;
  std::string text = std::to_string(whole);
  if (whole < 10) text += '.' + std::to_string(tenths % 10);
  return text + kUnits[unit];
}

}  // namespace zenfo::host::gui
