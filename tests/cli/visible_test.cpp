#include "cli/terminal/visible.h"

#include <gtest/gtest.h>

namespace zenfo::host::cli {
namespace {

TEST(Visible, LeavesTextAsItIs) {
  const std::string text =
      "a\tb\nc\r\n\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80\n";
  EXPECT_EQ(visible_text(text), text);
  // These characters contain bytes that are control characters elsewhere.
  EXPECT_EQ(visible_name("\xD1\x80\xC4\x9B"), "\xD1\x80\xC4\x9B");
  // Text of another character set.
  EXPECT_EQ(visible_text("\xE4\xF6\xFC"), "\xE4\xF6\xFC");
}

TEST(Visible, ShowsControlCharactersByTheirBytes) {
  EXPECT_EQ(visible_text("a\x1B[31mb\x07\x7F"), "a\\x1b[31mb\\x07\\x7f");
  EXPECT_EQ(visible_text(std::string_view("\0\x08", 2)), "\\x00\\x08");
  EXPECT_EQ(visible_text("over\rwritten\r\n"), "over\\x0dwritten\r\n");
}

TEST(Visible, ShowsControlCharactersAbove7FToo) {
  EXPECT_EQ(visible_text("\xC2\x9B"
                         "31m"),
            "\\xc2\\x9b31m");
  EXPECT_EQ(visible_text("\x9B"
                         "31m\x9B"),
            "\\x9b31m\\x9b");
  EXPECT_EQ(visible_text("\xC2\xA0"), "\xC2\xA0");
  // An incomplete character does not hide what follows.
  EXPECT_EQ(visible_text("\xE2\x9B"), "\xE2\\x9b");
  EXPECT_EQ(visible_text("\xE2\x82\x1B"), "\xE2\\x82\\x1b");
}

TEST(Visible, KeepsANameOnOneLine) {
  EXPECT_EQ(visible_name("a\nb\tc\r\n"), "a\\x0ab\\x09c\\x0d\\x0a");
}

TEST(Visible, LeavesJsonTheSameDocument) {
  EXPECT_EQ(visible_json("{\"a\":\"\xC2\x9B\x7F\\n\xC3\xA4\"}\n"),
            "{\"a\":\"\\u009b\\u007f\\n\xC3\xA4\"}\n");
}

TEST(Visible, KnowsPlainText) {
  EXPECT_TRUE(is_visible_text("a\tb~\n"));
  EXPECT_FALSE(is_visible_text("a\x1B"));
  EXPECT_FALSE(is_visible_text("\x7F"));
  EXPECT_FALSE(is_visible_text("\xC2\x9B"));
}

}  // namespace
}  // namespace zenfo::host::cli
