// The vector loop of word and line counting: one pass that finds everything
// about a piece of text.
//
// Cost: that of reading; the next bytes are fetched while these are counted.
//
// Tested by tests/unit/stats/text_tally_test.cpp
#pragma once

#include <cstddef>

namespace zenfo {

// What a piece of text contains.
struct TextTally {
  size_t words = 0;      // first bytes of words
  size_t gaps = 0;       // bytes outside words
  size_t line_ends = 0;  // LFs that follow a CR
};

// A word is a run of these: neither control character, space nor DEL.
inline bool is_word_byte(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value > 32 && value != 127;
}

// Tallies [from, end). `before` is the byte before it; a space at the start of
// a text.
TextTally tally_text(const char* from, const char* end, char before);

// The same on a processor without AVX2. For tests.
TextTally tally_text_sse2(const char* from, const char* end, char before);

}  // namespace zenfo
