// Compiling patterns and loading classes, through the exports.
#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace {

using zenfo::test::TempFolder;

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
