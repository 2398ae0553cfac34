// Bytes as the pattern model sees them: unsigned, case folded by the C library.
//
// Tested by tests/unit/model/pattern_model_test.cpp
#pragma once

#include <cctype>
#include <cstddef>
#include <string>

namespace zenfo::model {

// The highest byte that is a space or a control character.
inline constexpr unsigned char kLastBlank = 32;

inline unsigned char byte_at(const std::string& text, size_t position) {
  return static_cast<unsigned char>(text[position]);
}

inline bool is_digit(char c) { return c >= '0' && c <= '9'; }

inline bool same_byte(unsigned char a, unsigned char b, bool exact_case) {
  return exact_case ? a == b : std::tolower(a) == std::tolower(b);
}

// The needle must fit into the text at that position.
inline bool equal_at(const std::string& text, size_t position,
                     const std::string& needle, bool exact_case) {
  for (size_t i = 0; i < needle.size(); ++i) {
    if (!same_byte(byte_at(text, position + i), byte_at(needle, i),
                   exact_case)) {
      return false;
    }
  }
  return true;
}

}  // namespace zenfo::model
