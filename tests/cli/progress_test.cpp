#include "progress.h"

#include <gtest/gtest.h>

#include <vector>

namespace zenfo::cli {
namespace {

std::string narrowed(std::vector<ZenfoWideChar> text) {
  text.push_back(0);
  return narrow(text.data());
}

TEST(Narrow, MakesUtf8OfEachLength) {
  EXPECT_EQ(narrowed({}), "");
  EXPECT_EQ(narrowed({'a', 0x7F}), "a\x7F");
  EXPECT_EQ(narrowed({0x80, 0x7FF}), "\xC2\x80\xDF\xBF");
  EXPECT_EQ(narrowed({0x800, 0xFFFD}), "\xE0\xA0\x80\xEF\xBF\xBD");
  EXPECT_EQ(narrowed({0xD83D, 0xDE00}), "\xF0\x9F\x98\x80");
}

TEST(Narrow, MarksHalvesThatStandAlone) {
  EXPECT_EQ(narrowed({0xD83D}), "?");
  EXPECT_EQ(narrowed({0xDE00, 'a'}), "?a");
  EXPECT_EQ(narrowed({0xD83D, 'a'}), "?a");
}

TEST(ProgressLine, ShowsTheShareDone) {
  EXPECT_EQ(progress_line("Looking", 0, 79),
            "[                        ]   0% Looking");
  EXPECT_EQ(progress_line("Looking", 52, 79),
            "[############            ]  52% Looking");
  EXPECT_EQ(progress_line("Looking", 100, 79),
            "[########################] 100% Looking");
}

TEST(ProgressLine, KeepsTheShareWithinItsBounds) {
  EXPECT_EQ(progress_line("", -5, 79), progress_line("", 0, 79));
  EXPECT_EQ(progress_line("", 101, 79), progress_line("", 100, 79));
}

TEST(ProgressLine, IsCutAtTheScreensEdgeBetweenCharacters) {
  EXPECT_EQ(progress_line("ab\xC3\xA4", 5, 36).size(), 36u);
  EXPECT_EQ(progress_line("ab\xC3\xA4", 5, 35).substr(32), "ab");
  EXPECT_EQ(progress_line("ab", 5, 0), "");
}

}  // namespace
}  // namespace zenfo::cli
