#include "gui/words/strings.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace zenfo::host::gui {
namespace {

constexpr std::string_view kAll[] = {
#define ZENFO_TEXT(id, words) words,
#include "gui/words/strings.inc"
#undef ZENFO_TEXT
};

TEST(Strings, EveryTextIsThere) {
  int id = 0;
  for (const std::string_view words : kAll) {
    EXPECT_FALSE(words.empty());
    EXPECT_EQ(text(static_cast<Text>(id)), words);
    EXPECT_FALSE(words.ends_with('&')) << words;
    ++id;
  }
}

TEST(Strings, FillInParts) {
  EXPECT_EQ(format(Text::kTabTitle, {"a{1}", "2", "3"}), "a{1}: 2 in 3");
  EXPECT_EQ(format(Text::kTabTitle, {"a"}), "a:  in ");
  EXPECT_EQ(plain_text(Text::kFind), "Find:");
}

TEST(Strings, GroupDigits) {
  EXPECT_EQ(grouped(0), "0");
  EXPECT_EQ(grouped(999), "999");
  EXPECT_EQ(grouped(1000), "1,000");
  EXPECT_EQ(grouped(1234567), "1,234,567");
  EXPECT_EQ(counted_files(1), "1 file");
  EXPECT_EQ(counted_files(1000), "1,000 files");
  EXPECT_EQ(counted_matches(0), "0 matches");
}

TEST(Strings, ShowSizes) {
  EXPECT_EQ(size_text(0), "0 bytes");
  EXPECT_EQ(size_text(1), "1 byte");
  EXPECT_EQ(size_text(1023), "1023 bytes");
  EXPECT_EQ(size_text(1024), "1.0 KB");
  EXPECT_EQ(size_text(10 * 1024 - 1), "9.9 KB");
  EXPECT_EQ(size_text(10 * 1024), "10 KB");
  EXPECT_EQ(size_text(1024 * 1024 - 1), "1023 KB");
  EXPECT_EQ(size_text(uint64_t{5} << 30), "5.0 GB");
  EXPECT_EQ(size_text(UINT64_MAX), "15 EB");
}

}  // namespace
}  // namespace zenfo::host::gui
