#include "pattern/class_file.h"

#include <gtest/gtest.h>

#include <string>

namespace zenfo {
namespace {

struct Contexts {
  PatternContext find, exclusion, replace;
  PatternContext* all[3] = {&find, &exclusion, &replace};

  int32_t apply(std::string_view bytes) {
    return apply_class_definitions(bytes, all);
  }
  // The given bytes that are members of the class at a position.
  std::string members(size_t position, std::string_view bytes) {
    std::string found;
    for (char c : bytes) {
      if (find.user_classes.at(position).contains(static_cast<uint8_t>(c))) {
        found += c;
      }
    }
    return found;
  }
};

TEST(ClassFile, DefinesTheSameClassesInAllContexts) {
  Contexts contexts;
  EXPECT_EQ(contexts.apply("name=digits\r\ninc_ranges=48-57\r\n"), 1);
  for (PatternContext* context : contexts.all) {
    ASSERT_EQ(context->user_classes.count(), 1u);
    EXPECT_EQ(context->user_classes.at(0).name(), "digits");
    EXPECT_TRUE(context->user_classes.at(0).contains('5'));
    EXPECT_FALSE(context->user_classes.at(0).contains('a'));
  }
  EXPECT_NE(&contexts.find.user_classes.at(0),
            &contexts.replace.user_classes.at(0));
}

TEST(ClassFile, ReadsAllKeysAndALastLineWithoutLineEnd) {
  Contexts contexts;
  contexts.apply(
      "name=one\r\ncomment=x\r\ninc_chars=120,121\r\ninc_ranges=97-102,48-"
      "50\r\n"
      "exc_chars=98\r\nexc_ranges=101-102");
  EXPECT_EQ(contexts.members(0, "abcdefxyz0123"), "acdxy012");
}

TEST(ClassFile, CharactersAreReplacedAndRangesAdded) {
  Contexts contexts;
  contexts.apply(
      "name=one\r\ninc_chars=97\r\ninc_chars=98\r\ninc_ranges=48-48\r\n"
      "inc_ranges=50-50");
  EXPECT_EQ(contexts.members(0, "ab012"), "b02");
}

TEST(ClassFile, SkipsLinesThatSayNothing) {
  Contexts contexts;
  contexts.apply(
      "inc_chars=97\r\n//name=no\r\nname=\r\n=x\r\nname\r\n\r\nNAME=no\r\n"
      "name=one=two\r\nINC_CHARS=97\r\ninc_chars =97\r\nother=1");
  ASSERT_EQ(contexts.find.user_classes.count(), 1u);
  EXPECT_EQ(contexts.find.user_classes.at(0).name(), "one");
  EXPECT_EQ(contexts.members(0, "abc"), "");
}

TEST(ClassFile, ReadsNumbersUpToTheFirstOtherCharacter) {
  struct {
    const char* items;
    std::string chars;
  } cases[] = {
      {"300", "\x2C"},                              // truncated to a byte
      {" +97x", "a"},                               // white space, sign, rest
      {"-1", "\xFF"},           {"97,,98,", "ab"},  // empty items are skipped
      {"x", std::string(1, 0)},                     // no digit: byte 0
      {"99999999999", "\xFF"},
  };
  for (const auto& one : cases) {
    Contexts contexts;
    contexts.apply("name=one\r\ninc_chars=" + std::string(one.items));
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    std::string expected = one.chars;
    EXPECT_EQ(contexts.members(0, all), expected) << one.items;
  }
}

TEST(ClassFile, RangesNeedBothParts) {
  Contexts contexts;
  // A third part is ignored, a reversed range matches nothing, bounds above
  // 255 are kept.
  contexts.apply("name=one\r\ninc_ranges=48,49-,-50,51-52-60,58-57,97-1000");
  EXPECT_EQ(contexts.members(0, "0123456789:az"), "34az");
}

TEST(ClassFile, ARangeOfZeroToZeroHidesThoseAfterIt) {
  Contexts contexts;
  contexts.apply("name=one\r\ninc_ranges=0-0,48-57");
  EXPECT_EQ(contexts.members(0, std::string_view("\0"
                                                 "059",
                                                 4)),
            "");
}

TEST(ClassFile, ReplacesTheClassesOfTheLoadBefore) {
  Contexts contexts;
  contexts.apply("name=one\r\nname=two");
  EXPECT_EQ(contexts.find.user_classes.count(), 2u);
  // No class is current at first.
  EXPECT_EQ(contexts.apply("inc_chars=97"), 1);
  EXPECT_EQ(contexts.find.user_classes.count(), 0u);
}

TEST(ClassFile, NoBytesChangeNothing) {
  Contexts contexts;
  contexts.apply("name=one");
  EXPECT_EQ(contexts.apply(""), -1);
  EXPECT_EQ(contexts.find.user_classes.count(), 1u);
}

TEST(ClassFile, LinesThatEndInLfAloneAreOneLine) {
  Contexts contexts;
  contexts.apply("name=one\ninc_chars=97\n");
  ASSERT_EQ(contexts.find.user_classes.count(), 1u);
  EXPECT_EQ(contexts.find.user_classes.at(0).name(), "one\ninc_chars");
}

TEST(ClassFile, OrdersClassesByLengthOfName) {
  Contexts contexts;
  contexts.apply("name=ccc\r\nname=a\r\nname=bb");
  EXPECT_EQ(contexts.find.user_classes.at(0).name(), "a");
  EXPECT_EQ(contexts.find.user_classes.at(2).name(), "ccc");
}

}  // namespace
}  // namespace zenfo
