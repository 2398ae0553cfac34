#include "gui/words/unicode.h"

#include <cstdint>

namespace zenfo::host::gui {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastOfOneUnit = 0xFFFF;
constexpr char32_t kFirstSurrogate = 0xD800;
constexpr char32_t kFirstLowSurrogate = 0xDC00;
constexpr char32_t kLastSurrogate = 0xDFFF;
constexpr size_t kLongest = 4;

uint32_t byte_at(std::string_view text, size_t at) {
  return static_cast<unsigned char>(text[at]);
}

bool goes_on(std::string_view text, size_t at) {
  return at < text.size() && (byte_at(text, at) & 0xC0) == 0x80;
}

size_t length_by(uint32_t first) {
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4) return 0;
  return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

// Whether the code needs all these bytes and is a character.
bool is_proper(char32_t code, size_t length) {
  if (code >= kFirstSurrogate && code <= kLastSurrogate) return false;
  if (length == 3) return code >= 0x800;
  return length != 4 || (code >= 0x10000 && code <= 0x10FFFF);
}

void append_utf8(std::string& text, char32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
    return;
  }
  const size_t length = code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
  constexpr unsigned char kFirst[] = {0, 0, 0xC0, 0xE0, 0xF0};
  size_t shift = 6 * (length - 1);
  text += static_cast<char>(kFirst[length] | code >> shift);
  while (shift > 0) {
    shift -= 6;
    text += static_cast<char>(0x80 | (code >> shift & 0x3F));
  }
}

// The character that `at` lies inside of, if it does: its start.
size_t start_around(std::string_view text, size_t at, size_t* end) {
  for (size_t back = 1; back < kLongest && back <= at; ++back) {
    const size_t start = at - back;
    const Character character = first_character(text.substr(start));
    if (character.valid && character.length > back) {
      *end = start + character.length;
      return start;
    }
    if (!goes_on(text, start)) break;
  }
  *end = at;
  return at;
}

}  // namespace

Character first_character(std::string_view text) {
  const uint32_t first = byte_at(text, 0);
  const size_t length = length_by(first);
  if (length == 0) return {};
  if (length == 1) return {first, 1, true};
  char32_t code = first & (0x7FU >> length);
  for (size_t i = 1; i < length; ++i) {
    if (!goes_on(text, i)) return {};
    code = code << 6 | (byte_at(text, i) & 0x3F);
  }
  if (!is_proper(code, length)) return {};
  return {code, length, true};
}

void append_utf16(std::u16string& text, char32_t code) {
  if (code <= kLastOfOneUnit) {
    text += static_cast<char16_t>(code);
    return;
  }
  const char32_t rest = code - 0x10000;
  text += static_cast<char16_t>(kFirstSurrogate + (rest >> 10));
  text += static_cast<char16_t>(kFirstLowSurrogate + (rest & 0x3FF));
}

std::u16string to_utf16(std::string_view text) {
  std::u16string wide;
  wide.reserve(text.size());
  while (!text.empty()) {
    const Character character = first_character(text);
    append_utf16(wide, character.valid ? character.code : kReplacement);
    text.remove_prefix(character.length);
  }
  return wide;
}

std::string to_utf8(std::u16string_view text) {
  std::string narrow;
  narrow.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    const bool surrogate = code >= kFirstSurrogate && code <= kLastSurrogate;
    if (surrogate && code < kFirstLowSurrogate && i + 1 < text.size() &&
        text[i + 1] >= kFirstLowSurrogate && text[i + 1] <= kLastSurrogate) {
      code = 0x10000 + ((code - kFirstSurrogate) << 10) +
             (text[++i] - kFirstLowSurrogate);
    } else if (surrogate) {
      code = kReplacement;
    }
    append_utf8(narrow, code);
  }
  return narrow;
}

size_t whole_from(std::string_view text, size_t at) {
  size_t end = at;
  if (at < text.size()) start_around(text, at, &end);
  return end;
}

size_t whole_until(std::string_view text, size_t at) {
  size_t end = at;
  return at < text.size() ? start_around(text, at, &end) : at;
}

}  // namespace zenfo::host::gui
