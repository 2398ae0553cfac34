#include "stats/text_tally.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "support/fenced_text.h"

namespace zenfo {

static bool operator==(const TextTally& a, const TextTally& b) {
  return a.words == b.words && a.gaps == b.gaps && a.line_ends == b.line_ends;
}

static void PrintTo(const TextTally& tally, std::ostream* out) {
  *out << tally.words << " words " << tally.gaps << " gaps " << tally.line_ends
       << " line ends";
}

namespace {

using test::FencedMemory;

TextTally byte_by_byte(std::string_view text, char before) {
  TextTally tally;
  for (const char here : text) {
    tally.words += is_word_byte(here) && !is_word_byte(before);
    tally.gaps += !is_word_byte(here);
    tally.line_ends += before == '\r' && here == '\n';
    before = here;
  }
  return tally;
}

void expect_tally(std::string_view text, char before) {
  const TextTally expected = byte_by_byte(text, before);
  const char* end = text.data() + text.size();
  EXPECT_EQ(tally_text(text.data(), end, before), expected) << text.size();
  EXPECT_EQ(tally_text_sse2(text.data(), end, before), expected) << text.size();
}

TEST(WordBytes, AreAllButControlBytesSpaceAndDel) {
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(is_word_byte(static_cast<char>(byte)), byte > 32 && byte != 127)
        << byte;
  }
}

// Each byte at each position of a vector, alone and next to another of its
// kind.
TEST(TallyText, KnowsEveryByteAtEveryPlace) {
  for (int byte = 0; byte < 256; ++byte) {
    for (size_t at = 0; at < 70; ++at) {
      for (const char around : {'a', ' '}) {
        std::string text(140, around);
        text[at] = static_cast<char>(byte);
        expect_tally(text, ' ');
        text[at + 1] = static_cast<char>(byte);
        expect_tally(text, ' ');
      }
    }
  }
}

TEST(TallyText, CountsLikeLookingAtEachByteAndReadsNoOther) {
  std::mt19937 random(4);
  const std::string_view alphabet("a\x80 \r\n\x7f", 6);
  FencedMemory memory(40000);
  for (size_t length = 0; length < 40000; length += length < 300 ? 1 : 9973) {
    for (int round = 0; round < 8; ++round) {
      std::string text(length, ' ');
      for (char& c : text) c = alphabet[random() % alphabet.size()];
      const char before = alphabet[random() % alphabet.size()];
      expect_tally(memory.against_start(text), before);
      expect_tally(memory.against_end(text), before);
    }
  }
}

// Texts that overflow the one-byte counters.
TEST(TallyText, CountsDenseTexts) {
  for (const std::string_view unit : {"\r\n", "a ", " a", "a", " ", "\n\r"}) {
    std::string text;
    while (text.size() < 70000) text += unit;
    expect_tally(text, ' ');
  }
}

}  // namespace
}  // namespace zenfo
