#include "pattern/pair_count.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace zenfo {
namespace {

TEST(CountPairs, CountsLikeLookingAtEachPlace) {
  std::mt19937 random(4);
  // The last is longer than counters of one byte hold at 32 bytes a turn.
  for (size_t length : {0, 1, 2, 15, 16, 17, 31, 32, 33, 34, 65, 500, 30000}) {
    for (int round = 0; round < 20; ++round) {
      std::string text;
      for (size_t i = 0; i < length; ++i) text += "\r\n\x80x"[random() % 4];
      size_t expected = 0;
      for (size_t i = 0; i + 1 < length; ++i) {
        expected += text[i] == '\r' && text[i + 1] == '\n';
      }
      // A heap block of its own, so that reads beyond it are seen.
      std::string exact(text.begin(), text.end());
      exact.shrink_to_fit();
      EXPECT_EQ(count_pairs(exact.data(), exact.data() + length, '\r', '\n'),
                expected);
    }
  }
}

TEST(CountPairs, CountsDensePairs) {
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "\r\n";
  EXPECT_EQ(count_pairs(text.data(), text.data() + text.size(), '\r', '\n'),
            20000u);
}

}  // namespace
}  // namespace zenfo
