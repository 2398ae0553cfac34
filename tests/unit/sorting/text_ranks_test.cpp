#include "sorting/text_ranks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <string>

#include "support/temporary_locale.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::optional<std::string>>;

std::vector<uint32_t> ranks_of(const Texts& texts) {
  TextRanks ranks(static_cast<uint32_t>(texts.size()));
  for (const auto& text : texts) ranks.add(text);
  return ranks.rank();
}

// Numbers texts by comparing them with each other.
std::vector<uint32_t> model_ranks(const Texts& texts) {
  auto before = [](const std::string& a, const std::string& b) {
    return compare_ignoring_case(a, b) < 0;
  };
  std::map<std::string, uint32_t, decltype(before)> numbers(before);
  for (const auto& text : texts) {
    if (text) numbers.emplace(*text, 0);
  }
  uint32_t rank = 0;
  for (auto& [text, number] : numbers) number = ++rank;
  std::vector<uint32_t> ranks;
  for (const auto& text : texts) ranks.push_back(text ? numbers[*text] : 0);
  return ranks;
}

TEST(TextRanks, NumbersTextsFromOneInTheirOrderWithoutCase) {
  EXPECT_THAT(ranks_of({}), IsEmpty());
  EXPECT_THAT(ranks_of({"b", "A", "a", "B", "c"}), ElementsAre(2, 1, 1, 2, 3));
  EXPECT_THAT(ranks_of({"x"}), ElementsAre(1));
}

TEST(TextRanks, GivesMissingTextsNoRank) {
  EXPECT_THAT(ranks_of({std::nullopt, "b", std::nullopt, "", "a"}),
              ElementsAre(0, 3, 0, 1, 2));
  EXPECT_THAT(ranks_of({std::nullopt, std::nullopt}), ElementsAre(0, 0));
}

TEST(TextRanks, ComparesBytesUnsigned) {
  EXPECT_THAT(ranks_of({"\x80", "\x7f", "\xff", "\x01", "_", "Z", "z"}),
              ElementsAre(5, 4, 6, 1, 2, 3, 3));
}

TEST(TextRanks, DistinguishesTextsAtEveryLengthAroundEightBytes) {
  Texts texts;
  for (size_t length = 0; length <= 40; ++length) {
    texts.push_back(std::string(length, 'a'));
    texts.push_back(std::string(length, 'A'));
    texts.push_back(std::string(length, 'a') + "b");
  }
  EXPECT_EQ(ranks_of(texts), model_ranks(texts));
}

TEST(TextRanks, DropsTheSharedStartWhateverItIs) {
  for (const std::string start : {"", "/h", "/home/u/", "/HOME/USER/project"}) {
    EXPECT_THAT(ranks_of({start + "b", start, start + "a", start + "B"}),
                ElementsAre(3, 1, 2, 3));
  }
  EXPECT_THAT(ranks_of({"same", "same", "SAME"}), ElementsAre(1, 1, 1));
}

// Texts that are short, long, with equal starts, or equal.
std::string random_text(std::mt19937_64& random, int kind) {
  static const std::string kBytes("aAbB/.\x80\xff\x01z", 10);
  std::string text = kind % 2 == 0 ? "/shared/start/of/paths/" : "";
  if (kind % 3 == 0) text += std::string(random() % 4 * 8, 'q');
  const size_t length = random() % (kind % 5 == 0 ? 60 : 4);
  for (size_t i = 0; i < length; ++i) text += kBytes[random() % 10];
  return text;
}

TEST(TextRanks, AgreesWithComparingOnRandomTexts) {
  std::mt19937_64 random(20261121);
  for (int round = 0; round < 300; ++round) {
    Texts texts;
    const size_t count = random() % 400;
    for (size_t i = 0; i < count; ++i) {
      if (random() % 20 == 0) {
        texts.push_back(std::nullopt);
      } else {
        texts.push_back(random_text(random, round));
      }
    }
    ASSERT_EQ(ranks_of(texts), model_ranks(texts)) << "round " << round;
  }
}

TEST(TextRanks, ManagesSortedReversedAndOrganPipeTexts) {
  const int count = 5000;
  const std::function<int(int)> shapes[] = {
      [](int i) { return i; }, [=](int i) { return count - i; },
      [=](int i) { return std::min(i, count - i); },
      [](int i) { return i % 2; }};
  for (const auto& shape : shapes) {
    Texts texts;
    for (int i = 0; i < count; ++i) {
      texts.push_back("file" + std::to_string(1000000 + shape(i)));
    }
    EXPECT_EQ(ranks_of(texts), model_ranks(texts));
  }
}

// One level of recursion for every eight bytes would overrun the stack.
TEST(TextRanks, ManagesLongTextsThatDifferAtTheirEnd) {
  const std::string same(1 << 20, 'x');
  Texts texts(40, "a");
  for (int i = 0; i < 20; ++i) texts.push_back(same + char('a' + i % 10));
  EXPECT_EQ(ranks_of(texts), model_ranks(texts));
}

// Every pivot is one of the smallest texts.
TEST(TextRanks, ManagesTextsThatPeelOffOneByOne) {
  Texts texts;
  std::string text;
  for (int i = 0; i < 3000; ++i) {
    texts.push_back(text + "b");
    if (i % 2 == 0) text += 'a';
  }
  EXPECT_EQ(ranks_of(texts), model_ranks(texts));
}

TEST(TextRanks, FoldsByTheLocaleInForce) {
  test::LatinLocale locale;
  if (!locale.in_force()) GTEST_SKIP() << "no Latin-1 locale can be made";
  EXPECT_THAT(ranks_of({"\xc4", "\xe4", "z"}), ElementsAre(2, 2, 1));
}

}  // namespace
}  // namespace zenfo
