#include "pattern/match_record.h"

#include <gtest/gtest.h>

namespace zenfo {
namespace {

TEST(MatchRecord, BeginsSelectedAndFlagged) {
  MatchRecord record;
  EXPECT_EQ(record.kind(), RecordKind::kMatch);
  EXPECT_EQ(record.state, 1u);
  EXPECT_EQ(record.flag, 1);
  EXPECT_EQ(record.begin(), nullptr);
  EXPECT_EQ(record.length, 0u);
  EXPECT_EQ(record.replacement(), nullptr);
  EXPECT_EQ(record.replacement_length(), 0u);
}

TEST(MatchRecord, HasNoRecordTexts) {
  const char text[] = "abc";
  MatchRecord record(text, 3, 0);
  const Record& base = record;
  EXPECT_FALSE(base.text(TextSlot::kFirst).has_value());
  EXPECT_FALSE(base.text(TextSlot::kSecond).has_value());
  EXPECT_FALSE(base.text(TextSlot::kThird).has_value());
}

TEST(MatchRecord, PointsIntoItsText) {
  const char text[] = "xabcx";
  MatchRecord record(text + 1, 3, 1);
  EXPECT_EQ(record.matched(), "abc");
  EXPECT_EQ(record.end(), text + 4);
  EXPECT_EQ(record.offset, 1u);
}

TEST(MatchRecord, ReplacementsStopAtANulAndAreFollowedByZeros) {
  MatchRecord record;
  record.set_replacement("abc");
  EXPECT_EQ(record.replacement_length(), 3u);
  EXPECT_EQ(std::string_view(record.replacement(), 8),
            std::string_view("abc\0\0\0\0\0", 8));
  record.set_replacement("");
  EXPECT_EQ(record.replacement(), nullptr);
  EXPECT_EQ(record.replacement_length(), 0u);
  record.set_replacement("x");
  record.set_replacement(nullptr);
  EXPECT_EQ(record.replacement(), nullptr);
}

TEST(MatchRecord, ReplacementBytesMayHoldNuls) {
  MatchRecord record;
  record.set_replacement_bytes(std::string_view("a\0b", 3));
  EXPECT_EQ(record.replacement_length(), 3u);
  EXPECT_EQ(std::string_view(record.replacement(), 8),
            std::string_view("a\0b\0\0\0\0\0", 8));
  record.set_replacement_bytes({});
  EXPECT_EQ(record.replacement(), nullptr);
}

TEST(MatchRecord, StaysSmall) {
  EXPECT_LE(sizeof(MatchRecord), sizeof(void*) == 8 ? 48u : 32u);
}

}  // namespace
}  // namespace zenfo
