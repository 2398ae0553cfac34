#include "gui/query/query_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zenfo::host::gui {
namespace {

using Texts = std::vector<std::string>;

TEST(QueryText, ALineBreakStandsForBothLineEnds) {
  EXPECT_EQ(texts_to_find("abc"), Texts({"abc"}));
  EXPECT_EQ(texts_to_find("a\r"), Texts({"a\r"}));
  EXPECT_EQ(texts_to_find("a\nb\n"), Texts({"a\nb\n", "a\r\nb\r\n"}));
  EXPECT_EQ(texts_to_find("a\r\nb"), Texts({"a\nb", "a\r\nb"}));
  EXPECT_EQ(typed_form("a\r\nb\nc\r"), "a\nb\nc\r");
}

TEST(QueryText, SplitsLists) {
  EXPECT_EQ(split_list(""), Texts());
  EXPECT_EQ(split_list(" ; ;"), Texts());
  EXPECT_EQ(split_list("*.c; *.h ;x y"), Texts({"*.c", "*.h", "x y"}));
  EXPECT_EQ(split_list("\"a;b\"; c"), Texts({"a;b", "c"}));
  EXPECT_EQ(split_list("\" a \""), Texts({" a "}));
  EXPECT_EQ(split_list("\"a;b"), Texts({"a;b"}));
}

TEST(QueryText, JoinsWhatItSplits) {
  for (const Texts& texts : {Texts(), Texts({"a"}), Texts({"a;b", "c", " d"}),
                             Texts({"x y", ";"})}) {
    EXPECT_EQ(split_list(join_list(texts)), texts);
  }
  EXPECT_EQ(join_list({"*.c", "*.h"}), "*.c; *.h");
}

// In a field of one line a sign stands for a line break.
TEST(QueryText, LineBreaksAreSignsInFields) {
  struct Row {
    std::string text, field;
  };
  const Row rows[] = {{"", ""},
                      {"tide", "tide"},
                      {"a\nb", "a\u21B5b"},
                      {"\n\n", "\u21B5\u21B5"},
                      {"\u21B4", "\u21B4"}};
  for (const auto& [text, field] : rows) {
    EXPECT_EQ(field_form(text), field);
    EXPECT_EQ(text_of_field(field), text);
  }
  EXPECT_EQ(field_form("a\r\nb"), "a\u21B5b");
  EXPECT_EQ(text_of_field("\xE2\x86"), "\xE2\x86");
}

}  // namespace
}  // namespace zenfo::host::gui
