// UTF-8 to UTF-16. A byte that is not part of a well-formed character (cut
// off, overlong, a surrogate, beyond U+10FFFF) becomes the character with its
// number, so that texts in Latin-1 stay readable.
//
// Tested by tests/unit/platform/wide_text_test.cpp
#include "platform/wide_text.h"

#include <cstdint>
#include <new>

namespace zenfo::platform {
namespace {

constexpr size_t kLastPlace = kWideBufferLength - 1;

struct Character {
  uint32_t code;
  size_t length;  // in bytes
};

// By the bits at the start of the first byte; `least` keeps overlong forms
// out.
struct Form {
  unsigned char mask;
  unsigned char mark;
  size_t length;
  uint32_t least;
};
constexpr Form kForms[] = {
    {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};

bool is_character(uint32_t code) {
  return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

// `text` is zero-terminated: the zero is not a continuation byte and ends every
// form early.
bool decode(const unsigned char* text, const Form& form, Character& out) {
  uint32_t code = text[0] & static_cast<unsigned char>(~form.mask);
  for (size_t i = 1; i < form.length; ++i) {
    if ((text[i] & 0xC0) != 0x80) return false;
    code = code << 6 | (text[i] & 0x3F);
  }
  if (code < form.least || !is_character(code)) return false;
  out = {code, form.length};
  return true;
}

Character next_character(const unsigned char* text) {
  Character character{text[0], 1};
  if (text[0] < 0x80) return character;
  for (const Form& form : kForms) {
    if ((text[0] & form.mask) == form.mark) decode(text, form, character);
  }
  return character;
}

}  // namespace

WideChar* allocate_wide_buffer() {
  return new (std::nothrow) WideChar[kWideBufferLength + 1]();
}

void free_wide_buffer(WideChar* buffer) { delete[] buffer; }

void to_wide(const char* text, WideChar* buffer) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  size_t count = 0;
  while (*bytes != 0) {
    const Character character = next_character(bytes);
    const bool pair = character.code > 0xFFFF;
    if (count + (pair ? 2 : 1) > kLastPlace) break;
    if (pair) {
      const uint32_t rest = character.code - 0x10000;
      buffer[count++] = static_cast<WideChar>(0xD800 + (rest >> 10));
      buffer[count++] = static_cast<WideChar>(0xDC00 + (rest & 0x3FF));
    } else {
      buffer[count++] = static_cast<WideChar>(character.code);
    }
    bytes += character.length;
  }
  if (*bytes != 0) buffer[kLastPlace] = 0;
  buffer[count] = 0;
}

}  // namespace zenfo::platform
