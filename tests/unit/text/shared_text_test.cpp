#include "text/shared_text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace zenfo {
namespace {

TEST(SharedText, IsMissingAtFirst) {
  const SharedText text;
  EXPECT_TRUE(text.missing());
  EXPECT_EQ(text.view(), "");
  EXPECT_STREQ(text.c_str(), "");
  EXPECT_EQ(text.text(), std::nullopt);
}

TEST(SharedText, AnEmptyTextIsNotMissing) {
  const SharedText text("");
  EXPECT_FALSE(text.missing());
  EXPECT_EQ(text.text(), std::string_view());
  EXPECT_STREQ(text.c_str(), "");
}

TEST(SharedText, HoldsItsBytesAndANulAfterThem) {
  const std::string bytes("a\0b", 3);
  const SharedText text(bytes);
  EXPECT_EQ(text.view(), bytes);
  EXPECT_EQ(text.c_str()[3], '\0');
  const SharedText large(std::string(100000, 'x'));
  EXPECT_EQ(large.view().size(), 100000u);
  EXPECT_EQ(large.c_str()[100000], '\0');
}

TEST(SharedText, CopiesShareTheBytes) {
  const SharedText first("shared");
  const SharedText second = first;
  SharedText third;
  third = second;
  EXPECT_EQ(first.c_str(), second.c_str());
  EXPECT_EQ(first.c_str(), third.c_str());
}

TEST(SharedText, CopiesOutliveTheirOrigin) {
  std::vector<SharedText> copies;
  {
    const SharedText origin("a text that outlives");
    for (int i = 0; i < 3; ++i) copies.push_back(origin);
  }
  copies.erase(copies.begin());
  EXPECT_EQ(copies.back().view(), "a text that outlives");
}

TEST(SharedText, AMovedTextIsMissing) {
  SharedText from("moved");
  const char* bytes = from.c_str();
  SharedText to = std::move(from);
  EXPECT_TRUE(from.missing());
  EXPECT_EQ(to.c_str(), bytes);
  to = SharedText();
  EXPECT_TRUE(to.missing());
}

TEST(SharedText, AssignmentToItselfKeepsIt) {
  SharedText text("self");
  SharedText& same = text;
  text = same;
  EXPECT_EQ(text.view(), "self");
  text = std::move(same);
  EXPECT_EQ(text.view(), "self");
}

TEST(SharedText, JoinsTwoPiecesWithOneByteBetween) {
  EXPECT_EQ(SharedText::joined("a", '/', "b").view(), "a/b");
  EXPECT_EQ(SharedText::joined("", '/', "").view(), "/");
  EXPECT_EQ(SharedText::joined("folder", '\\', "").view(), "folder\\");
  EXPECT_EQ(SharedText::joined("x", '\0', "y").view(),
            std::string_view("x\0y", 3));
}

}  // namespace
}  // namespace zenfo
