#include "text/records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/fenced_text.h"

namespace zenfo {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;

// Every record of a text, until none is left.
std::vector<std::string> split(std::string_view text,
                               std::string_view separator) {
  std::vector<std::string> records;
  const char* cursor = text.data();
  const char* const end = text.data() + text.size();
  const char* record = nullptr;
  size_t length = 0;
  while (get_next_record(&cursor, end, separator.data(), separator.size(),
                         &record, &length) == 1) {
    records.emplace_back(record, length);
  }
  return records;
}

TEST(GetNextRecord, CutsAtEverySeparator) {
  EXPECT_THAT(split("a;b", ";"), ElementsAre("a", "b"));
  EXPECT_THAT(split("one", ";"), ElementsAre("one"));
  EXPECT_THAT(split(";;a", ";"), ElementsAre("", "", "a"));
  EXPECT_THAT(split("a\r\nb\nc\r\n", "\r\n"), ElementsAre("a", "b\nc"));
  EXPECT_THAT(split("a\r\r\nb", "\r\n"), ElementsAre("a\r", "b"));
  EXPECT_THAT(split("a\0b\0\0c"sv, "\0\0"sv), ElementsAre("a\0b"sv, "c"));
  EXPECT_THAT(split("aXbxc", "x"), ElementsAre("aXb", "c"));
  EXPECT_THAT(split("a b", " "), ElementsAre("a", "b"));
  EXPECT_THAT(split("\xFF-\x80-", "-"), ElementsAre("\xFF", "\x80"));
}

TEST(GetNextRecord, GivesNoRecordBehindASeparatorAtTheEnd) {
  EXPECT_THAT(split("a;", ";"), ElementsAre("a"));
  EXPECT_THAT(split(";", ";"), ElementsAre(""));
}

TEST(GetNextRecord, GivesTheRestForAnEmptySeparator) {
  EXPECT_THAT(split("a;b", ""), ElementsAre("a;b"));
}

TEST(GetNextRecord, GivesTheRestForASeparatorThatDoesNotFit) {
  EXPECT_THAT(split("ab", "abc"), ElementsAre("ab"));
  EXPECT_THAT(split("a\r", "\r\n"), ElementsAre("a\r"));
}

TEST(GetNextRecord, FindsASeparatorWhoseFirstByteMisleads) {
  const std::string dashes(1000, '-');
  EXPECT_THAT(split(dashes + "->x->y", "->"), ElementsAre(dashes, "x", "y"));
  EXPECT_THAT(split("---->", "->"), ElementsAre("---"));
  EXPECT_THAT(split("----->", "->"), ElementsAre("----"));
  EXPECT_THAT(split("------>", "->"), ElementsAre("-----"));
}

TEST(GetNextRecord, MovesTheCursorAndEndsItWithTheRest) {
  const std::string_view text = "a;b";
  const char* cursor = text.data();
  const char* const end = text.data() + 3;
  const char* record = nullptr;
  size_t length = 9;
  ASSERT_EQ(get_next_record(&cursor, end, ";", 1, &record, &length), 1);
  EXPECT_EQ(cursor, text.data() + 2);
  EXPECT_EQ(record, text.data());
  EXPECT_EQ(length, 1u);
  ASSERT_EQ(get_next_record(&cursor, end, ";", 1, &record, &length), 1);
  EXPECT_EQ(cursor, nullptr);
  EXPECT_EQ(record, text.data() + 2);
  EXPECT_EQ(length, 1u);
  EXPECT_EQ(get_next_record(&cursor, end, ";", 1, &record, &length), -1);
  EXPECT_EQ(record, nullptr);
  EXPECT_EQ(length, 0u);
}

struct Refusal {
  const char* cursor;
  const char* end;
  const char* separator;
};

TEST(GetNextRecord, RefusesMissingAndEmptyTexts) {
  const char* const text = "a;b";
  const Refusal refusals[] = {
      {nullptr, text + 3, ";"},  {text, nullptr, ";"},
      {text, text + 3, nullptr}, {text + 3, text + 3, ";"},
      {text + 2, text + 1, ";"}, {nullptr, nullptr, nullptr},
  };
  for (const Refusal& row : refusals) {
    const char* cursor = row.cursor;
    const char* record = "untouched";
    size_t length = 9;
    EXPECT_EQ(
        get_next_record(&cursor, row.end, row.separator, 1, &record, &length),
        -1);
    EXPECT_EQ(cursor, row.cursor);
    EXPECT_EQ(record, row.cursor);
    EXPECT_EQ(length, 0u);
  }
}

TEST(GetNextRecord, ReadsNoByteOutsideTheText) {
  test::FencedMemory memory(64);
  EXPECT_THAT(split(memory.against_end("a\r\nb\r"), "\r\n"),
              ElementsAre("a", "b\r"));
  EXPECT_THAT(split(memory.against_end("--------"), "->"),
              ElementsAre("--------"));
}

TEST(RecordReader, GivesEveryRecordThenNone) {
  RecordReader reader("a;;b;", ";");
  EXPECT_EQ(reader.next(), "a");
  EXPECT_EQ(reader.next(), "");
  EXPECT_EQ(reader.next_or_empty(), "b");
  EXPECT_EQ(reader.next(), std::nullopt);
  EXPECT_EQ(reader.next_or_empty(), "");
  EXPECT_EQ(RecordReader({}, ";").next(), std::nullopt);
}

}  // namespace
}  // namespace zenfo
