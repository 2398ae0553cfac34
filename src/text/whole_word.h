// Whole-word test.
//
// Tested by tests/unit/text/whole_word_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>

namespace zenfo {

// Whether the span from `start` to `end` (index of its last byte) is a whole
// word in a text of `length` bytes: 1 when no letter or digit touches it on
// either side, 0 when one does, -1 when the span reaches beyond the text (in an
// empty text every span does). The span itself may contain any bytes.
int32_t is_whole_word(const char* text, size_t start, size_t end,
                      size_t length);

}  // namespace zenfo
