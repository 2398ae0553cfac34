// Sets of texts, against a comparison of every text at every position.
#include "text/text_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace zenfo {
namespace {

using Texts = std::vector<std::string>;
using Places = std::vector<std::pair<size_t, uint32_t>>;

TextSet set_of(const Texts& texts, bool case_sensitive = true) {
  return {{texts.begin(), texts.end()}, case_sensitive};
}

// Sorted by offset and number; the set orders by offset only.
Places found(const TextSet& set, std::string_view text, size_t from,
             size_t starts_end, size_t most) {
  // Of exactly this size, so that a read behind it is noticed.
  const auto exact = std::make_unique<char[]>(text.size());
  std::memcpy(exact.get(), text.data(), text.size());
  Places places;
  while (from < starts_end) {
    std::vector<TextSet::Hit> hits;
    from = set.find(exact.get(), from, starts_end, text.size(), hits, most);
    for (const auto& hit : hits) {
      if (!places.empty() && places.back().first > hit.offset) {
        ADD_FAILURE() << "not by rising offset";
      }
      places.emplace_back(hit.offset, hit.number);
    }
  }
  std::sort(places.begin(), places.end());
  return places;
}

bool occurs(std::string_view text, size_t at, std::string_view one,
            bool case_sensitive) {
  if (text.size() - at < one.size()) return false;
  return std::equal(
      one.begin(), one.end(), text.begin() + at,
      [&](unsigned char a, unsigned char b) {
        return case_sensitive ? a == b : std::tolower(a) == std::tolower(b);
      });
}

Places expected(const TextSet& set, const Texts& texts, std::string_view text,
                size_t from, size_t starts_end, bool case_sensitive) {
  Places places;
  for (size_t at = from; at < std::min(starts_end, text.size()); ++at) {
    for (size_t i = 0; i < texts.size(); ++i) {
      const uint32_t number = set.number_of(i);
      if (number != TextSet::kNoNumber &&
          occurs(text, at, texts[i], case_sensitive)) {
        places.emplace_back(at, number);
      }
    }
  }
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
  return places;
}

class Random {
 public:
  explicit Random(uint64_t seed) : generator_(seed) {}
  size_t below(size_t bound) { return generator_() % bound; }
  std::string text(std::string_view alphabet, size_t length) {
    std::string text;
    while (text.size() < length) text += alphabet[below(alphabet.size())];
    return text;
  }

 private:
  std::mt19937_64 generator_;
};

TEST(TextSet, GivesEqualTextsOneNumber) {
  const TextSet exact = set_of({"abcd", "b", "abcd", "B", "ABCD"});
  EXPECT_EQ(exact.size(), 4u);
  EXPECT_EQ(exact.number_of(0), exact.number_of(2));
  EXPECT_NE(exact.number_of(0), exact.number_of(4));
  const TextSet folded = set_of({"abcd", "b", "abcd", "B", "ABCD"}, false);
  EXPECT_EQ(folded.size(), 2u);
  EXPECT_EQ(folded.number_of(1), folded.number_of(3));
  EXPECT_EQ(folded.number_of(0), folded.number_of(4));
  EXPECT_EQ(folded.length(folded.number_of(4)), 4u);
}

TEST(TextSet, RefusesWhatItCannotContain) {
  const std::string longest(TextSet::kLongest, 'x');
  const TextSet set = set_of({"", longest, longest + "x", {"a\0b", 3}});
  EXPECT_EQ(set.number_of(0), TextSet::kNoNumber);
  EXPECT_EQ(set.number_of(1), 0u);
  EXPECT_EQ(set.number_of(2), TextSet::kNoNumber);
  EXPECT_EQ(set.number_of(3), TextSet::kNoNumber);
  EXPECT_EQ(set.size(), 1u);
  EXPECT_EQ(found(set, longest + "x", 0, 257, 1), (Places{{0, 0}, {1, 0}}));
}

TEST(TextSet, WithoutTextsFindsNothing) {
  EXPECT_EQ(found({}, "abcdefgh", 0, 8, 1), Places{});
  EXPECT_EQ(found(set_of({""}), "abcdefgh", 0, 8, 1), Places{});
}

TEST(TextSet, StopsAfterThePositionThatFillsTheRoom) {
  const TextSet set = set_of({"a", "ab", "abcde", "abcdefgh"});
  std::vector<TextSet::Hit> hits;
  EXPECT_EQ(set.find("xabcdefghij", 0, 11, 11, hits, 2), 2u);
  EXPECT_EQ(hits.size(), 4u);
  EXPECT_EQ(set.find("xabcdefghij", 2, 11, 11, hits, 5), 11u);
  EXPECT_EQ(hits.size(), 4u);
}

TEST(TextSet, TakesZeroBytesOfTheTextAsBytes) {
  const std::string text("abcd\0abcde\0\0\0\0\0\0\0\0", 18);
  const Texts texts = {"abcd", "abcde", "abcdef", "e"};
  const TextSet set = set_of(texts);
  EXPECT_EQ(found(set, text, 0, 18, 9),
            expected(set, texts, text, 0, 18, true));
}

TEST(TextSet, AgreesWithEachTextAloneOnRandomTexts) {
  constexpr std::string_view kAlphabets[] = {"a", "ab", "aB", "abAB@`[{",
                                             "abcdefghijklmnop"};
  Random random(20261);
  for (int round = 0; round < 3000; ++round) {
    const std::string_view alphabet = kAlphabets[random.below(5)];
    const bool case_sensitive = random.below(2) == 0;
    const size_t least = random.below(3) == 0 ? 1 : 1 + random.below(9);
    Texts texts;
    for (size_t i = random.below(40); i-- > 0;) {
      texts.push_back(random.text(alphabet, least + random.below(14)));
    }
    const TextSet set = set_of(texts, case_sensitive);
    const std::string text = random.text(alphabet, random.below(120));
    const size_t from = random.below(text.size() + 1);
    const size_t stop = from + random.below(text.size() - from + 1);
    ASSERT_EQ(found(set, text, from, stop, 1 + random.below(9)),
              expected(set, texts, text, from, stop, case_sensitive))
        << "round " << round << ", text " << text;
  }
}

// Up to 64 of them share a table with the longer ones.
TEST(TextSet, AgreesOnTextsOfThreeBytesFewAndMany) {
  Random random(3);
  for (const size_t number : {1u, 63u, 64u, 65u, 200u}) {
    for (const bool case_sensitive : {true, false}) {
      for (const bool longer_too : {true, false}) {
        Texts texts;
        if (longer_too) texts = {"aBcd", "abcdefgh", "hgf"};
        while (texts.size() < number)
          texts.push_back(random.text("aBcDefgh", 3));
        const TextSet set = set_of(texts, case_sensitive);
        const std::string text = random.text("AbCdefgh", 3000) + "hgf";
        EXPECT_EQ(found(set, text, 0, text.size(), 9),
                  expected(set, texts, text, 0, text.size(), case_sensitive))
            << number;
      }
    }
  }
}

TEST(TextSet, FindsEveryOneOfVeryManyTexts) {
  Random random(5);
  Texts texts;
  std::string all;
  for (int i = 0; i < 20000; ++i) {
    texts.push_back(random.text("abcdefghijklmnopqrstuvwxyz", 3 + i % 17));
    all += texts.back() + ' ';
  }
  const TextSet set = set_of(texts);
  std::vector<bool> seen(set.size());
  for (const auto& [at, number] : found(set, all, 0, all.size(), 1000)) {
    seen[number] = true;
  }
  EXPECT_THAT(seen, testing::Each(true));
}

}  // namespace
}  // namespace zenfo
