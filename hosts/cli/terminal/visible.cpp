#include "cli/terminal/visible.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace zenfo::host::cli {
namespace {

constexpr unsigned char kDelete = 0x7F;
// U+0080 to U+009F are this byte and one from 0x80 to 0x9F.
constexpr unsigned char kControlLead = 0xC2;

unsigned char byte_at(std::string_view text, size_t i) {
  return static_cast<unsigned char>(text[i]);
}

bool is_continuation(std::string_view text, size_t i) {
  return i < text.size() && (byte_at(text, i) & 0xC0) == 0x80;
}

bool is_high_control(unsigned char byte) { return (byte & 0xE0) == 0x80; }

// The length of the character at `i`; 1 for invalid UTF-8.
size_t character_length(std::string_view text, size_t i) {
  const unsigned char first = byte_at(text, i);
  size_t length = 1;
  if (first >= 0xC2 && first < 0xE0) length = 2;
  if (first >= 0xE0 && first < 0xF0) length = 3;
  if (first >= 0xF0 && first < 0xF5) length = 4;
  for (size_t k = 1; k < length; ++k) {
    if (!is_continuation(text, i + k)) return 1;
  }
  return length;
}

// How many bytes at `i` must be shown in hexadecimal; 0 for a character to
// show.
size_t control_length(std::string_view text, size_t i) {
  const unsigned char byte = byte_at(text, i);
  if (byte < 0x20 || byte == kDelete || is_high_control(byte)) return 1;
  const bool control = byte == kControlLead && i + 1 < text.size() &&
                       is_high_control(byte_at(text, i + 1));
  return control ? 2 : 0;
}

bool is_layout(std::string_view text, size_t i) {
  const char c = text[i];
  return c == '\n' || c == '\t' ||
         (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n');
}

void append_hex(std::string& shown, std::string_view bytes) {
  for (const char c : bytes) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "\\x%02x",
                  static_cast<unsigned>(static_cast<unsigned char>(c)));
    shown += digits;
  }
}

// Escapes control characters, except those for layout if `layout_stays`.
std::string visible(std::string_view text, bool layout_stays) {
  std::string shown;
  shown.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    const size_t control = control_length(text, i);
    const bool stays = control == 0 || (layout_stays && is_layout(text, i));
    const size_t length = stays ? character_length(text, i) : control;
    if (stays) {
      shown += text.substr(i, length);
    } else {
      append_hex(shown, text.substr(i, length));
    }
    i += length;
  }
  return shown;
}

}  // namespace

std::string visible_text(std::string_view text) { return visible(text, true); }

std::string visible_name(std::string_view name) { return visible(name, false); }

std::string visible_json(std::string_view json) {
  std::string shown;
  shown.reserve(json.size());
  for (size_t i = 0; i < json.size();) {
    const unsigned char byte = byte_at(json, i);
    const size_t control = byte >= kDelete ? control_length(json, i) : 0;
    const size_t length = control > 0 ? control : character_length(json, i);
    if (control > 0) {
      // For both lengths the last byte is the character's number.
      char digits[8];
      std::snprintf(digits, sizeof digits, "\\u%04x",
                    static_cast<unsigned>(byte_at(json, i + control - 1)));
      shown += digits;
    } else {
      shown += json.substr(i, length);
    }
    i += length;
  }
  return shown;
}

bool is_visible_text(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte >= 0x20 && byte < kDelete) || c == '\n' || c == '\t';
  });
}

}  // namespace zenfo::host::cli
