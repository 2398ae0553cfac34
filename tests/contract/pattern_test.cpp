// Compiling patterns and loading classes, through the exports.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/run_fixture.h"
#include "support/temp_folder.h"
#ifndef _WIN32
#include "support/temporary_locale.h"
#endif
#include "zenfofr130.h"

namespace zenfo::test {
namespace {

using SetThree = int32_t(ZENFO_CALL*)(const char*, const char*, const char*,
                                      int32_t, int32_t, int32_t, int32_t,
                                      int32_t, int32_t);
constexpr SetThree kSetters[] = {SetPattern, SetExclusionPattern,
                                 set_replace_pattern};

class PatternTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(Initialize(), 1); }
  void TearDown() override { Terminate(); }
  TempFolder folder;
};

TEST_F(PatternTest, AnswersOneForAPatternZeroForNothingLeft) {
  for (SetThree set : kSetters) {
    EXPECT_EQ(set(nullptr, "abc", nullptr, 0, 0, 0, 0, 0, 0), 1);
    EXPECT_EQ(set("", "abc", "", 1, 1, 1, 1, 1, 1), 1);
    EXPECT_EQ(set(nullptr, "\\", nullptr, 0, 1, 0, 0, 0, 0), 0);
    EXPECT_EQ(set(nullptr, "\\", nullptr, 0, 0, 0, 0, 1, 0), 0);
    EXPECT_EQ(set("a", "\\", nullptr, 0, 1, 0, 0, 0, 0), 1)
        << "the markers are elements too";
  }
}

TEST_F(PatternTest, AnEmptyMainTextIsRefusedEvenWithMarkers) {
  for (SetThree set : kSetters) {
    EXPECT_EQ(set("a", "", "b", 0, 0, 0, 0, 0, 0), -1);
    EXPECT_EQ(set("a", nullptr, "b", 0, 0, 0, 0, 0, 0), -1);
  }
}

TEST_F(PatternTest, ATagNeedsBothTexts) {
  EXPECT_EQ(SetPatternTag("<b>", "</b>", 0, 0, 0), 1);
  EXPECT_EQ(SetPatternTag("", "</b>", 0, 0, 0), -1);
  EXPECT_EQ(SetPatternTag("<b>", nullptr, 0, 0, 0), -1);
}

TEST_F(PatternTest, ClassesComeFromANonEmptyFile) {
  EXPECT_EQ(set_operators(
                folder.file("c", "name=digits\r\ninc_ranges=48-57").c_str()),
            1);
  EXPECT_EQ(set_operators(folder.file("c", "x").c_str()), 1);
  EXPECT_EQ(set_operators(folder.file("c", "").c_str()), -1);
  EXPECT_EQ(set_operators(folder.path("missing").c_str()), -1);
  EXPECT_EQ(set_operators(""), -1);
  EXPECT_EQ(set_operators(nullptr), -1);
}

// What patterns find in files.
class PatternRunTest : public RunTest {
 protected:
  int32_t matches(std::string_view text, const Operation& search = find_block) {
    EXPECT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
    add("f", text);
    return search({}, nullptr);
  }
  void load_digits() {
    ASSERT_EQ(
        set_operators(folder.file("c", "name=dg\r\ninc_ranges=48-57").c_str()),
        1);
  }
};

TEST_F(PatternRunTest, ClassesHoldForAllThreePatterns) {
  load_digits();
  ASSERT_TRUE(exclusion("dg", 1));
  EXPECT_EQ(matches("12 3", find_excluded), 2);
  ASSERT_TRUE(exclusion("zz"));
  ASSERT_TRUE(pattern("dg", 1));
  EXPECT_EQ(matches("12 3"), 2);
  ASSERT_TRUE(pattern(" dg"));
  ASSERT_TRUE(replace_pattern("dg", 1));
  use_store();
  EXPECT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
  const std::string one = add("f", "12 dg");
  EXPECT_EQ(replace_block({.use_pattern = 1}), 1);
  EXPECT_EQ(read_file(one), "1212");
}

TEST_F(PatternRunTest, AFailedLoadKeepsTheClasses) {
  load_digits();
  EXPECT_EQ(set_operators(folder.path("missing").c_str()), -1);
  EXPECT_EQ(set_operators(folder.file("empty", "").c_str()), -1);
  ASSERT_TRUE(pattern("dg", 1));
  EXPECT_EQ(matches("12"), 1);
}

struct FlagCase {
  const char* before;
  const char* after;
  int32_t flags[6];
  const char* text;
  int32_t matches;
};

TEST_F(PatternRunTest, EachTextTakesItsOwnFlags) {
  const FlagCase cases[] = {
      {"^A", "^A", {0, 0, 0, 1, 0, 0}, "\x01x^A", 1},
      {"^A", "^A", {0, 0, 0, 1, 0, 0}, "^Ax\x01", 0},
      {"^A", "^A", {0, 0, 0, 0, 0, 1}, "^Ax\x01", 1},
      {"^A", "^A", {0, 0, 0, 0, 0, 1}, "\x01x^A", 0},
      {"'a'", "'a'", {1, 0, 0, 0, 0, 0}, "ax'a'", 1},
      {"'a'", "'a'", {1, 0, 0, 0, 0, 0}, "'a'xa", 0},
      {"'a'", "'a'", {0, 0, 1, 0, 0, 0}, "'a'xa", 1},
      {"'a'", "'a'", {0, 0, 1, 0, 0, 0}, "ax'a'", 0},
  };
  for (const FlagCase& c : cases) {
    SCOPED_TRACE(&c - cases);
    const auto set = [&](SetThree setter) {
      return setter(c.before, "x", c.after, c.flags[0], c.flags[1], c.flags[2],
                    c.flags[3], c.flags[4], c.flags[5]);
    };
    ASSERT_TRUE(exclusion("zz"));
    ASSERT_EQ(set(SetPattern), 1);
    EXPECT_EQ(matches(c.text), c.matches);
    ASSERT_EQ(set(SetExclusionPattern), 1);
    EXPECT_EQ(matches(c.text, find_excluded), c.matches);
  }
}

struct TagCase {
  const char* begin;
  int32_t is_pattern;
  int32_t convert;
  const char* text;
  int32_t matches;
};

TEST_F(PatternRunTest, TagsTakeTheirFlags) {
  const TagCase cases[] = {
      {"'a'", 1, 0, "a-b", 1},
      {"'a'", 0, 1, "a-b", 0},
      {"^A", 0, 1, "\x01-b", 1},
      {"^A", 1, 0, "\x01-b", 0},
  };
  for (const TagCase& c : cases) {
    SCOPED_TRACE(&c - cases);
    ASSERT_EQ(SetPatternTag(c.begin, "b", 0, c.is_pattern, c.convert), 1);
    EXPECT_EQ(matches(c.text), c.matches);
  }
}

TEST_F(PatternRunTest, TagsAreKeptOutOfTheMatchWhenAsked) {
  add("f", "<a>");
  for (const char* offset : {"0", "1"}) {
    ASSERT_EQ(SetPatternTag("<", ">", *offset == '1', 0, 0), 1);
    HostRecorder host;
    host.answer_option = [&](const HostRecorder::Question&) {
      char text[20] = "";
      EXPECT_EQ(GetMatchOffset(ZENFO_LIST_MATCHES, 0, text, sizeof text), 1);
      EXPECT_STREQ(text, offset);
      return 1;
    };
    EXPECT_EQ(find_block({.ask = 1}), 1);
    EXPECT_EQ(host.option_questions.size(), 1u);
  }
}

#ifndef _WIN32
TEST_F(PatternRunTest, ClassNamesFollowTheLocaleThatTheHostSets) {
  ASSERT_EQ(
      set_operators(folder.file("c", "name=\xE4\r\ninc_ranges=48-57").c_str()),
      1);
  const auto digits_found = [&] {
    EXPECT_TRUE(pattern("\xC4", 1));
    return matches("12");
  };
  EXPECT_EQ(digits_found(), 0);
  {
    const HostLatinLocale locale;
    if (!locale.in_force()) GTEST_SKIP() << "no Latin-1 locale can be made";
    EXPECT_EQ(digits_found(), 1);
  }
  EXPECT_EQ(digits_found(), 0);
}
#endif

TEST(Pattern, IsRefusedBeforeInitialize) {
  Terminate();
  TempFolder folder;
  for (SetThree set : kSetters) {
    EXPECT_EQ(set(nullptr, "abc", nullptr, 0, 0, 0, 0, 0, 0), -1);
  }
  EXPECT_EQ(SetPatternTag("a", "b", 0, 0, 0), -1);
  EXPECT_EQ(set_operators(folder.file("c", "name=x").c_str()), -1);
}

}  // namespace
}  // namespace zenfo::test
