// Whole-word test.
//
// Tested by tests/unit/text/whole_word_test.cpp
#include "text/whole_word.h"

#include "text/byte_tables.h"

namespace zenfo {

int32_t is_whole_word(const char* text, size_t start, size_t end,
                      size_t length) {
  if (end >= length || start > length) return -1;
  const auto& in_word = byte_tables().letter_or_digit;
  if (start > 0 && in_word[static_cast<uint8_t>(text[start - 1])]) return 0;
  if (end + 1 < length && in_word[static_cast<uint8_t>(text[end + 1])]) {
    return 0;
  }
  return 1;
}

}  // namespace zenfo
