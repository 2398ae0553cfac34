#include "text/substring_kernels.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "model/naive_substring.h"
#include "support/fenced_text.h"
#include "support/temporary_locale.h"
#include "text/byte_frequency.h"
#include "text/simd.h"
#include "text/substring.h"

namespace zenfo {
namespace {

using namespace std::string_view_literals;

std::vector<size_t> offsets_found(std::string_view text,
                                  std::string_view needle, bool case_sensitive,
                                  size_t step) {
  std::vector<size_t> offsets;
  const SubstringSearcher searcher(needle, case_sensitive);
  const char* from = text.data();
  const char* found[256];
  while (from < text.data() + text.size()) {
    const size_t count =
        searcher.find_many(from, text.data() + text.size(), step, found, 256);
    for (size_t i = 0; i < count; ++i) {
      offsets.push_back(static_cast<size_t>(found[i] - text.data()));
    }
  }
  return offsets;
}

// Every test runs with every set of kernels that the processor supports.
class Kernels : public testing::TestWithParam<const KernelSet*> {
 protected:
  void SetUp() override {
    if (GetParam() == &kAvx2Kernels && !processor_has_avx2()) {
      GTEST_SKIP() << "the processor lacks AVX2";
    }
    use_kernels(GetParam());
    ASSERT_EQ(&kernels_in_use(), GetParam());
  }
  void TearDown() override { use_kernels(nullptr); }

  // Both ways of searching, and both kinds of steps.
  void expect_as_model(std::string_view text, std::string_view needle,
                       bool case_sensitive) {
    const auto all = model::find_all(text, needle, case_sensitive, 1);
    ASSERT_EQ(offsets_found(text, needle, case_sensitive, 1), all)
        << needle << " in " << text;
    ASSERT_EQ(offsets_found(text, needle, case_sensitive, needle.size()),
              model::find_all(text, needle, case_sensitive, needle.size()))
        << needle << " in " << text;
    const char* const found = SubstringSearcher(needle, case_sensitive)
                                  .find(text.data(), text.data() + text.size());
    ASSERT_EQ(found, all.empty() ? nullptr : text.data() + all[0])
        << needle << " in " << text;
  }
  void expect_as_model(std::string_view text, std::string_view needle) {
    expect_as_model(text, needle, true);
    expect_as_model(text, needle, false);
  }
};

INSTANTIATE_TEST_SUITE_P(Sets, Kernels,
                         testing::Values(&kSse2Kernels, &kAvx2Kernels),
                         [](const auto& set) { return set.param->name; });

// The needle at every position of texts of every length around the block sizes,
// at every alignment: the text ends at unreadable memory.
TEST_P(Kernels, FindANeedleAtEveryPlaceLengthAndAlignment) {
  const std::string_view needles[] = {
      "Q",       "qu",       "tIm",
      "seven77", "exactly8", "somewhat longer than a register of 32"};
  test::FencedMemory memory(512);
  for (const std::string_view needle : needles) {
    for (size_t length = needle.size(); length < 150; ++length) {
      for (size_t place = 0; place + needle.size() <= length; place += 3) {
        std::string text(length, '.');
        text.replace(place, needle.size(), needle);
        const std::string_view fenced = memory.against_end(text);
        const char* const found =
            SubstringSearcher(needle, true)
                .find(fenced.data(), fenced.data() + length);
        ASSERT_EQ(found, fenced.data() + place) << needle << ' ' << length;
      }
    }
  }
}

TEST_P(Kernels, ReadNoByteOutsideTheRange) {
  test::FencedMemory memory(512), needle_memory(64);
  const std::string_view needles[] = {
      "a", "ab", "ba", "aab", "abbbbbbb", "abbbbbbbb", "bbbbbbbbbbbbbbbbbbba"};
  for (const std::string_view plain : needles) {
    const std::string_view needle = needle_memory.against_end(plain);
    for (size_t length = 0; length < 200; ++length) {
      for (const char* unit : {"a", "b", "ab", "abbbbbbb", "x"}) {
        std::string text;
        while (text.size() < length) text += unit;
        text.resize(length);
        expect_as_model(memory.against_end(text), needle);
        expect_as_model(memory.against_start(text), needle);
      }
    }
  }
}

// The bytes around the range would make a match if they were read.
TEST_P(Kernels, FindOnlyWhatLiesWhollyInTheRange) {
  const std::string around = std::string(100, 'a') + std::string(100, 'b');
  for (size_t from = 60; from < 100; ++from) {
    for (size_t end = from; end <= 102; ++end) {
      const std::string_view text(around.data() + from, end - from);
      expect_as_model(text, "aaabb");
      expect_as_model(text, "aaaaaaaaaabb");
    }
  }
}

struct Alphabet {
  std::string_view bytes;
  size_t longest_needle;
};

TEST_P(Kernels, AgreeWithTheModelOnRandomTexts) {
  const Alphabet alphabets[] = {
      {"ab", 12},
      {"aAb", 6},
      {"abcABC@`[{", 4},
      {"\0\x01"sv, 9},
      {"\xC0\xE0\x7F\xFF", 5},
      {"\r\n", 5},
      {"~|QZ etaoin", 3},
      {"\0a\x80"sv, 20},
  };
  std::mt19937 random(1234);
  test::FencedMemory memory(1024);
  for (const Alphabet& alphabet : alphabets) {
    const auto text_of = [&](size_t length) {
      std::string text(length, 0);
      for (char& byte : text) {
        byte = alphabet.bytes[random() % alphabet.bytes.size()];
      }
      return text;
    };
    for (int round = 0; round < 1500; ++round) {
      std::string text = text_of(random() % 400);
      const std::string needle =
          text_of(1 + random() % alphabet.longest_needle);
      if (random() % 2 && text.size() > needle.size()) {
        text.replace(random() % (text.size() - needle.size()), needle.size(),
                     needle);
      }
      const std::string_view fenced = memory.against_end(text);
      expect_as_model(fenced, needle);
      if (HasFatalFailure()) return;
    }
  }
}

TEST_P(Kernels, AgreeWithTheModelForEveryByteAsNeedle) {
  std::string text;
  for (int round = 0; round < 3; ++round) {
    for (int byte = 0; byte < 256; ++byte) text += static_cast<char>(byte);
  }
  for (int byte = 0; byte < 256; ++byte) {
    const char first = static_cast<char>(byte);
    const char second = static_cast<char>(byte + 1);
    expect_as_model(text, {&first, 1});
    expect_as_model(text, std::string{first, second});
  }
}

TEST_P(Kernels, CheckEveryByteOfTheNeedle) {
  std::mt19937 random(5);
  for (const size_t length : {2, 3, 7, 8, 9, 15, 16, 17, 40, 200, 400}) {
    std::string needle(length, 0);
    for (char& byte : needle) byte = static_cast<char>('a' + random() % 26);
    for (size_t spoilt = 0; spoilt < length; ++spoilt) {
      std::string text = std::string(70, '-') + needle + std::string(70, '-');
      text[70 + spoilt] = '#';
      ASSERT_TRUE(offsets_found(text, needle, true, 1).empty());
      ASSERT_TRUE(offsets_found(text, needle, false, 1).empty());
      text[70 + spoilt] = static_cast<char>(needle[spoilt] - 32);
      ASSERT_TRUE(offsets_found(text, needle, true, 1).empty());
      ASSERT_EQ(offsets_found(text, needle, false, 1), std::vector<size_t>{70});
    }
  }
}

TEST_P(Kernels, FoldBytesOfTheLocale) {
  const test::LatinLocale locale;
  if (!locale.in_force()) GTEST_SKIP() << "no localedef or locale sources";
  const std::string text = std::string(80, ' ') + "M\334LLER m\374ller";
  EXPECT_EQ(offsets_found(text, "m\374ller", false, 1),
            (std::vector<size_t>{80, 87}));
  EXPECT_EQ(offsets_found(text, "\xDC", false, 1),
            (std::vector<size_t>{81, 88}));
  expect_as_model(text, "m\374ller");
  expect_as_model(text, "\xFF");
}

TEST_P(Kernels, CollectFrequentMatchesOfEveryShortLength) {
  std::mt19937 random(31);
  std::string text(20'000, 0);
  for (char& byte : text) byte = "aab~"[random() % 4];
  for (const std::string_view needle :
       {"a", "~", "aa", "ab", "a~a", "aaaa", "abaaba", "aaaaaaaa"}) {
    expect_as_model(text, needle);
    for (const size_t step : {2, 63, 64, 65, 1000}) {
      EXPECT_EQ(offsets_found(text, needle, true, step),
                model::find_all(text, needle, true, step));
    }
  }
}

// A byte that is usually rare but frequent here.
TEST_P(Kernels, ChangeOverWhenTheRareByteIsFrequent) {
  std::mt19937 random(9);
  std::string text;
  while (text.size() < 100'000) {
    text += "~~|~ ~";
    if (random() % 100 == 0) text += "~tail";
  }
  ASSERT_TRUE(prepare_needle("~tail", true).one_is_rare);
  expect_as_model(text, "~tail");
  expect_as_model(text, "~taim");
}

TEST_P(Kernels, ChangeOverAndBackBetweenRepetitiveAndOrdinaryText) {
  const std::string run(20'000, 'a');
  std::string text = "once upon a time ";
  for (int i = 0; i < 4; ++i) {
    text += run + "baaa " + std::string(90'000, '.') + "aaaaaaaaaaaaaaaab ";
  }
  for (const size_t length : {9, 16, 100, 5'000}) {
    for (const bool case_sensitive : {true, false}) {
      const std::string needle = std::string(length, 'a') + "b";
      std::vector<size_t> expected;
      for (size_t at = text.find(needle); at != std::string::npos;
           at = text.find(needle, at + 1)) {
        expected.push_back(at);
      }
      ASSERT_FALSE(expected.empty());
      EXPECT_EQ(offsets_found(text, needle, case_sensitive, 1), expected);
    }
  }
}

// Quadratic searching would take 10^11 steps for each of these.
TEST_P(Kernels, StayLinearOnRepetitiveText) {
  const size_t kSize = 2'000'000;
  const std::string text(kSize, 'a');
  const std::string part(100'000, 'a');
  std::string pairs;
  while (pairs.size() < kSize) pairs += "ab";
  const std::string pairs_part = pairs.substr(0, 100'000);
  for (const bool case_sensitive : {true, false}) {
    const auto count = [&](const std::string& haystack,
                           const std::string& needle) {
      return offsets_found(haystack, needle, case_sensitive, needle.size())
          .size();
    };
    EXPECT_EQ(count(text, part + "b"), 0u);
    EXPECT_EQ(count(text, "b" + part), 0u);
    EXPECT_EQ(count(text, part + "b" + part), 0u);
    EXPECT_EQ(count(text, part), kSize / part.size());
    EXPECT_EQ(count(pairs, pairs_part), kSize / pairs_part.size());
    EXPECT_EQ(count(pairs, pairs_part + "b"), 0u);
    EXPECT_EQ(count(pairs, "a" + pairs_part), 0u);
  }
}

TEST_P(Kernels, FindTheLastNeedleOfALongRepetitiveText) {
  const size_t kSize = 1'000'000;
  std::string text(kSize, 'a');
  text += "b";
  const std::string needle = std::string(30, 'a') + "b";
  EXPECT_EQ(offsets_found(text, needle, true, 1),
            std::vector<size_t>{kSize - 30});
  EXPECT_EQ(offsets_found(text, needle, false, 1),
            std::vector<size_t>{kSize - 30});
}

TEST(KernelChoice, PrefersTheWidestSet) {
  use_kernels(nullptr);
  EXPECT_EQ(&kernels_in_use(),
            processor_has_avx2() ? &kAvx2Kernels : &kSse2Kernels);
}

TEST(PrepareNeedle, PicksTheTwoRarestBytesThatAreNoNeighbours) {
  const PreparedNeedle quick = prepare_needle("equations", true);
  EXPECT_EQ(quick.rarest.offset, 1u);  // q
  EXPECT_NE(quick.second.offset, 1u);
  EXPECT_NE(quick.second.offset, 0u);
  EXPECT_NE(quick.second.offset, 2u);
}

TEST(PrepareNeedle, TakesNeighboursWhenThereIsNothingElse) {
  const PreparedNeedle two = prepare_needle("qu", true);
  EXPECT_EQ(two.rarest.offset, 0u);
  EXPECT_EQ(two.second.offset, 1u);
}

TEST(PrepareNeedle, TakesDistantPlacesOfARepeatedByte) {
  const PreparedNeedle same = prepare_needle("aaaaaaaa", true);
  EXPECT_EQ(same.rarest.offset, 0u);
  EXPECT_EQ(same.second.offset, 7u);
  const PreparedNeedle one_differs = prepare_needle("aaaaab", true);
  EXPECT_EQ(one_differs.rarest.offset, 5u);
  EXPECT_LT(one_differs.second.offset, 4u);
}

TEST(PrepareNeedle, FiltersFoldedBytesByTheCaseBitOfLettersOnly) {
  const PreparedNeedle folded = prepare_needle("Q1", false);
  const FilterByte& letter =
      folded.rarest.offset == 0 ? folded.rarest : folded.second;
  const FilterByte& digit =
      folded.rarest.offset == 0 ? folded.second : folded.rarest;
  EXPECT_EQ(letter.value, 'q');
  EXPECT_EQ(letter.fold, 0x20);
  EXPECT_EQ(digit.value, '1');
  EXPECT_EQ(digit.fold, 0);
}

TEST(PrepareNeedle, WeighsAFoldedLetterByItsMoreFrequentCase) {
  EXPECT_TRUE(prepare_needle("eJe", true).one_is_rare);
  EXPECT_FALSE(prepare_needle("eJe", false).one_is_rare);
}

TEST(PrepareNeedle, HasNoKernelForAnEmptyNeedle) {
  EXPECT_EQ(prepare_needle("", true).scan, nullptr);
  EXPECT_EQ(prepare_needle({}, false).scan, nullptr);
}

TEST(ByteFrequency, RanksTheBytesOfOrdinaryText) {
  const auto of = [](char byte) {
    return kByteFrequency[static_cast<uint8_t>(byte)];
  };
  EXPECT_GT(of(' '), of('e'));
  EXPECT_GT(of('e'), of('q'));
  EXPECT_GT(of('q'), of('~'));
  EXPECT_GT(of('\xE4'), of('~'));
  EXPECT_GT(of('\0'), of('\1'));
}

}  // namespace
}  // namespace zenfo
