#include "pattern/char_class.h"

#include <gtest/gtest.h>

#include <string>

namespace zenfo {
namespace {

std::string members_among(const CharClass& one, std::string_view bytes) {
  std::string members;
  for (char c : bytes) {
    if (one.contains(static_cast<uint8_t>(c))) members += c;
  }
  return members;
}

TEST(CharClass, LeavesOutBeforeItTakesIn) {
  CharClass one;
  one.add_include_range('a', 'f');
  one.set_include_chars("xc");
  one.add_exclude_range('c', 'd');
  one.set_exclude_chars("ax");
  // c is left out by range although it is an include character, x by
  // character.
  EXPECT_EQ(members_among(one, "abcdefgxyz"), "bef");
}

TEST(CharClass, SettingCharactersReplacesThem) {
  CharClass one;
  one.set_include_chars("abc");
  one.set_include_chars(std::string_view("\0z", 2));
  EXPECT_TRUE(one.contains(0));
  EXPECT_EQ(members_among(one, "abcz"), "z");
  one.set_include_chars("");
  EXPECT_FALSE(one.contains('z'));
  EXPECT_FALSE(one.contains(0));
}

TEST(CharClass, ARangeOfZeroToZeroEndsTheWalk) {
  CharClass one;
  one.add_include_range('a', 'b');
  one.add_include_range(0, 0);
  one.add_include_range('0', '9');
  EXPECT_EQ(members_among(one, "ab019"), "ab");
  EXPECT_FALSE(one.contains(0));
  CharClass other;
  other.add_include_range(0, 255);
  other.add_exclude_range(0, 0);
  other.add_exclude_range('a', 'z');
  EXPECT_TRUE(other.contains('a'));
  EXPECT_TRUE(other.contains(0));
}

TEST(CharClass, BoundsAreUnsignedAndMayLieAboveAllBytes) {
  CharClass one;
  one.add_include_range(250, 4000000000u);
  one.add_include_range(300, 400);
  one.add_include_range('b', 'a');  // reversed: never matches
  EXPECT_TRUE(one.contains(250));
  EXPECT_TRUE(one.contains(255));
  EXPECT_FALSE(one.contains(44));
  EXPECT_FALSE(one.contains('a'));
  CharClass zero_based;
  zero_based.add_include_range(0, 1);
  EXPECT_TRUE(zero_based.contains(0));
}

TEST(CharClass, FoldsIntoASet) {
  CharClass one;
  one.add_include_range('0', '9');
  one.set_exclude_chars("5");
  ByteSet members = one.members(false);
  ByteSet others = one.members(true);
  for (int byte = 0; byte < 256; ++byte) {
    bool member = one.contains(static_cast<uint8_t>(byte));
    EXPECT_EQ(members.contains(static_cast<char>(byte)), member);
    EXPECT_EQ(others.contains(static_cast<char>(byte)), !member);
  }
}

TEST(CharClass, AnEmptyNameIsAbsent) {
  CharClass one("digits");
  EXPECT_EQ(one.name(), "digits");
  one.set_name(std::string_view("ab\0cd", 5));
  EXPECT_EQ(one.name(), "ab");
  one.set_name("");
  EXPECT_TRUE(one.name().empty());
}

TEST(CompareClassNames, NamesOfEqualLengthAreEqualWhateverTheirBytes) {
  CharClass shorter("zz");
  CharClass longer("aaa");
  CharClass equal("bbb");
  EXPECT_LT(compare_class_names(&shorter, &longer), 0);
  EXPECT_GT(compare_class_names(&longer, &shorter), 0);
  EXPECT_EQ(compare_class_names(&longer, &equal), 0);
  EXPECT_LT(compare_class_names(nullptr, &shorter), 0);
  EXPECT_GT(compare_class_names(&shorter, nullptr), 0);
}

TEST(ClassList, KeepsTheOrderOfItsComparator) {
  ClassList list;
  EXPECT_EQ(list.add(nullptr), -1);
  for (const char* name : {"ccc", "a", "bb", "ddd", "e"}) {
    EXPECT_EQ(list.add(std::make_unique<CharClass>(name)), 1);
  }
  std::string order;
  for (size_t i = 0; i < list.count(); ++i) order += list.at(i).name() + " ";
  // A short list is sorted by insertion, which keeps equal lengths in order.
  EXPECT_EQ(order, "a e bb ccc ddd ");
  EXPECT_EQ(list.clear(), 1);
  EXPECT_EQ(list.count(), 0u);
}

}  // namespace
}  // namespace zenfo
