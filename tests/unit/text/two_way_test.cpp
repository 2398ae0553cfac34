#include "text/two_way.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "model/naive_substring.h"
#include "support/fenced_text.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

// Every text over a, b (and, folded, A) up to a length.
template <class Visit>
void for_every_text(std::string_view alphabet, size_t max_length,
                    const Visit& visit) {
  std::string text;
  const auto extend = [&](const auto& self) -> void {
    if (!text.empty()) visit(std::string_view(text));
    if (text.size() == max_length) return;
    for (const char letter : alphabet) {
      text.push_back(letter);
      self(self);
      text.pop_back();
    }
  };
  extend(extend);
}

void expect_as_model(std::string_view text, std::string_view needle,
                     bool case_sensitive) {
  const uint8_t* fold = case_sensitive ? nullptr : byte_tables().fold.data();
  const char* const end = text.data() + text.size();
  const char* const expected =
      model::find_substring(text.data(), needle.data(), end,
                            needle.data() + needle.size(), case_sensitive,
                            false)
          .start;
  ASSERT_EQ(find_two_way(text.data(), end, needle, fold), expected)
      << needle << " in " << text;
}

TEST(FindTwoWay, AgreesWithTheModelOnEverySmallText) {
  for_every_text("ab", 6, [](std::string_view needle) {
    for_every_text("ab", 9, [&](std::string_view text) {
      expect_as_model(text, needle, true);
    });
  });
}

TEST(FindTwoWay, AgreesWithTheModelIgnoringCase) {
  for_every_text("aAb", 4, [](std::string_view needle) {
    for_every_text("aAb", 6, [&](std::string_view text) {
      expect_as_model(text, needle, false);
    });
  });
}

TEST(FindTwoWay, AgreesWithTheModelOnLongPeriodicNeedles) {
  std::mt19937 random(20240611);
  for (int round = 0; round < 2000; ++round) {
    const std::string unit = std::string(random() % 5, 'a') + "b";
    std::string needle;
    while (needle.size() < 20) needle += unit;
    if (random() % 2) needle += "a";
    if (random() % 4 == 0) needle[random() % needle.size()] = '\xFF';
    std::string text;
    while (text.size() < 300) {
      text += random() % 8 ? unit : needle.substr(random() % needle.size());
    }
    expect_as_model(text, needle, true);
    expect_as_model(text, needle, false);
  }
}

TEST(FindTwoWay, ReadsNoByteOutsideTheRange) {
  test::FencedMemory memory(64);
  for (const std::string_view needle : {"a", "ab", "aab", "abab", "baaaab"}) {
    expect_as_model(memory.against_end("aaaaaaab"), needle, true);
    expect_as_model(memory.against_start("baaaaaab"), needle, true);
    expect_as_model(memory.against_end("a"), needle, true);
  }
}

TEST(FindTwoWay, FindsNothingInAShorterText) {
  const std::string_view text = "ab";
  EXPECT_EQ(find_two_way(text.data(), text.data() + 2, "abc", nullptr),
            nullptr);
  EXPECT_EQ(find_two_way(text.data(), text.data(), "a", nullptr), nullptr);
}

TEST(FindTwoWay, StaysLinearOnRepetitiveText) {
  // Compared naively these take 10^11 steps.
  const std::string text(1'000'000, 'a');
  const std::string half(500'000, 'a');
  const char* const end = text.data() + text.size();
  EXPECT_EQ(find_two_way(text.data(), end, half + "b", nullptr), nullptr);
  EXPECT_EQ(find_two_way(text.data(), end, "b" + half, nullptr), nullptr);
  EXPECT_EQ(find_two_way(text.data(), end,
                         half.substr(1) + "b" + half.substr(1), nullptr),
            nullptr);
  EXPECT_EQ(find_two_way(text.data(), end, half, nullptr), text.data());
}

}  // namespace
}  // namespace zenfo
