#include "pattern/byte_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace zenfo {
namespace {

using Flags = std::array<bool, 256>;

Flags flags_of(const std::vector<std::pair<int, int>>& ranges) {
  Flags flags{};
  for (auto [low, high] : ranges) {
    std::fill(flags.begin() + low, flags.begin() + high + 1, true);
  }
  return flags;
}

// No byte, all, one to five ranges, the ends of the byte range, and the
// complement of each.
std::vector<Flags> sets() {
  std::vector<Flags> all = {
      flags_of({}),
      flags_of({{0, 255}}),
      flags_of({{48, 57}}),
      flags_of({{0, 0}}),
      flags_of({{10, 10}}),
      flags_of({{255, 255}}),
      flags_of({{33, 126}, {128, 255}}),
      flags_of({{65, 90}, {97, 122}}),
      flags_of({{0, 10}, {20, 30}, {127, 129}}),
      flags_of({{1, 1}, {3, 3}, {5, 5}, {200, 255}}),
      flags_of({{1, 1}, {3, 3}, {5, 5}, {7, 7}, {9, 200}}),
  };
  for (size_t i = 0, n = all.size(); i < n; ++i) {
    Flags other = all[i];
    for (bool& flag : other) flag = !flag;
    all.push_back(other);
  }
  return all;
}

std::string random_text(std::mt19937& random, const Flags& flags,
                        size_t length) {
  // Long stretches of one kind, to cover vectors and their ends.
  std::string text;
  while (text.size() < length) {
    bool member = random() % 2 == 0;
    for (size_t n = random() % 40; n > 0 && text.size() < length; --n) {
      auto byte = static_cast<uint8_t>(random());
      for (int i = 0; i < 256 && flags[byte] != member; ++i) ++byte;
      text += static_cast<char>(byte);
    }
  }
  return text;
}

TEST(ByteSet, ContainsWhatItsFlagsSay) {
  for (const Flags& flags : sets()) {
    ByteSet set(flags);
    for (size_t byte = 0; byte < 256; ++byte) {
      EXPECT_EQ(set.contains(static_cast<char>(byte)), flags[byte]);
    }
    EXPECT_EQ(set.contains_all(), std::all_of(flags.begin(), flags.end(),
                                              [](bool f) { return f; }));
  }
  EXPECT_FALSE(ByteSet().contains('a'));
}

TEST(ByteSet, LoopsAnswerLikeLookingAtEachByte) {
  std::mt19937 random(7);
  for (const Flags& flags : sets()) {
    const ByteSet set(flags);
    for (int round = 0; round < 60; ++round) {
      const std::string text = random_text(random, flags, random() % 200);
      const char* begin =
          text.data() + (text.empty() ? 0 : random() % 17 % text.size());
      const char* end = text.data() + text.size();
      auto member = [&](char c) { return set.contains(c); };
      EXPECT_EQ(set.find(begin, end), std::find_if(begin, end, member));
      EXPECT_EQ(set.find_other(begin, end),
                std::find_if_not(begin, end, member));
      const char* start = end;
      while (start != begin && member(start[-1])) --start;
      EXPECT_EQ(set.run_start(begin, end), start);
    }
  }
}

// Runs that end in each part of the longest loops, and at the text's end.
TEST(ByteSet, LoopsFindTheEndOfLongRuns) {
  for (const Flags& flags : sets()) {
    const ByteSet set(flags);
    for (const bool member : {false, true}) {
      const auto one = std::find(flags.begin(), flags.end(), member);
      const auto other = std::find(flags.begin(), flags.end(), !member);
      if (one == flags.end()) continue;
      const char run_byte = static_cast<char>(one - flags.begin());
      const std::string run(300, run_byte);
      for (size_t length = 0; length < run.size(); ++length) {
        std::string text = run.substr(0, length);
        if (other != flags.end()) {
          text += static_cast<char>(other - flags.begin());
          text += run;
        }
        const char* end = text.data() + text.size();
        const char* found = member ? set.find_other(text.data(), end)
                                   : set.find(text.data(), end);
        ASSERT_EQ(found - text.data(), static_cast<ptrdiff_t>(length));
      }
    }
  }
}

TEST(ByteSet, TalliesMembersAndRuns) {
  std::mt19937 random(8);
  for (const Flags& flags : sets()) {
    const ByteSet set(flags);
    // The last text overflows the byte counters of the vectors.
    for (size_t length : {0, 1, 15, 16, 17, 100, 1000, 20000}) {
      const std::string text = random_text(random, flags, length);
      for (bool in_run : {false, true}) {
        ByteSet::Tally expected;
        bool before = in_run;
        for (char c : text) {
          bool member = set.contains(c);
          expected.members += member;
          expected.runs += member && !before;
          before = member;
        }
        auto tally = set.tally(text.data(), text.data() + text.size(), in_run);
        EXPECT_EQ(tally.members, expected.members) << length;
        EXPECT_EQ(tally.runs, expected.runs) << length;
      }
    }
  }
}

}  // namespace
}  // namespace zenfo
