// The slow model of replacing on worked examples.
#include "model/replace_model.h"

#include <gtest/gtest.h>

namespace zenfo::model {
namespace {

using namespace std::string_literals;

std::vector<Mark> marks(std::initializer_list<Match> matches) {
  std::vector<Mark> all;
  for (const Match& match : matches) {
    Mark mark;
    mark.offset = match.offset;
    mark.length = match.length;
    all.push_back(mark);
  }
  return all;
}

TEST(ReplaceModel, EditModes) {
  const auto b = marks({{1, 1}});
  EXPECT_EQ(replace_with_text("abc", b, "X", 0, false).file, "aXc");
  EXPECT_EQ(replace_with_text("abc", b, "X", 1, false).file, "aXbc");
  EXPECT_EQ(replace_with_text("abc", b, "X", 2, false).file, "abXc");
  EXPECT_EQ(replace_with_text("abc", b, "", 0, false), (Rewritten{1, "ac"}));
  EXPECT_EQ(replace_with_text("abc", b, "^M", 0, true).file, "a\rc");
}

TEST(ReplaceModel, TheTextEndsAtItsFirstNul) {
  EXPECT_EQ(
      replace_with_text("ab\0cab"s, marks({{0, 2}, {4, 2}}), "Z", 0, false),
      (Rewritten{1, "Z"}));
  EXPECT_EQ(replace_with_text("\0a"s, {}, "Z", 0, false), Rewritten{});
}

TEST(ReplaceModel, Numbers) {
  auto three = marks({{0, 1}, {2, 1}, {4, 1}});
  EXPECT_EQ(
      replace_with_numbers("b.b.b", three, "item#", "#", 5, 10, 0, false).file,
      "item5.item15.item25");
  three[1].selected = false;
  EXPECT_EQ(
      replace_with_numbers("b.b.b", three, "item#", "#", 5, 10, 0, false).file,
      "item5.b.item15");
  EXPECT_EQ(replace_with_numbers("b", {}, "", "#", 1, 1, 0, false).answer, -1);
}

TEST(ReplaceModel, Sources) {
  auto three = marks({{0, 1}, {1, 1}, {2, 1}});
  set_from_list(three, {"1", ""}, false);
  EXPECT_EQ(replace_with_records("abc", three, 0), (Rewritten{2, "1c"}));
  three = marks({{0, 1}, {1, 1}, {2, 1}});
  set_from_matches(three, {"x", "y"}, 2, false);
  EXPECT_EQ(replace_with_records("abc", three, 0), (Rewritten{3, "yyy"}));
  set_from_matches(three, {"x", "y"}, 3, false);
  EXPECT_EQ(replace_with_records("abc", three, 0), (Rewritten{0, "abc"}));
}

TEST(ReplaceModel, Case) {
  EXPECT_EQ(change_case("aa\0aZ"s, marks({{1, 3}}), true).file, "aA\0aZ"s);
  EXPECT_EQ(change_case("AZ", marks({{0, 1}, {1, 1}}), false).file, "az");
}

}  // namespace
}  // namespace zenfo::model
