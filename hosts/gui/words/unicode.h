// UTF-8 and UTF-16.
//
// Tested by tests/gui/words/unicode_test.cpp
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zenfo::host::gui {

// Invalid bytes and lone surrogates become U+FFFD.
std::u16string to_utf16(std::string_view text);
std::string to_utf8(std::u16string_view text);

// The character at the start of a text that is not empty.
struct Character {
  char32_t code = 0;  // of a valid one
  size_t length = 1;  // in bytes; 1 for a byte that belongs to no character
  bool valid = false;
};
Character first_character(std::string_view text);
void append_utf16(std::u16string& text, char32_t code);

// The next place at or after `at`, and the last one at or before it, where no
// character is cut. Bytes that are not UTF-8 may be cut anywhere.
size_t whole_from(std::string_view text, size_t at);
size_t whole_until(std::string_view text, size_t at);

}  // namespace zenfo::host::gui
