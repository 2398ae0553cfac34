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
  RecordReader reader(text, separator);
  while (const auto record = reader.next()) records.emplace_back(*record);
  return records;
}

TEST(RecordReader, CutsAtEverySeparator) {
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

TEST(RecordReader, GivesNoRecordAfterASeparatorAtTheEnd) {
  EXPECT_THAT(split("a;", ";"), ElementsAre("a"));
  EXPECT_THAT(split(";", ";"), ElementsAre(""));
}

TEST(RecordReader, GivesTheRestForAnEmptySeparator) {
  EXPECT_THAT(split("a;b", ""), ElementsAre("a;b"));
}

TEST(RecordReader, GivesTheRestForASeparatorThatDoesNotFit) {
  EXPECT_THAT(split("ab", "abc"), ElementsAre("ab"));
  EXPECT_THAT(split("a\r", "\r\n"), ElementsAre("a\r"));
}

TEST(RecordReader, FindsASeparatorWhoseFirstByteMisleads) {
  const std::string dashes(1000, '-');
  EXPECT_THAT(split(dashes + "->x->y", "->"), ElementsAre(dashes, "x", "y"));
  EXPECT_THAT(split("---->", "->"), ElementsAre("---"));
  EXPECT_THAT(split("----->", "->"), ElementsAre("----"));
  EXPECT_THAT(split("------>", "->"), ElementsAre("-----"));
}

TEST(RecordReader, HasNoneInAnEmptyText) {
  EXPECT_THAT(split("", ";"), ElementsAre());
  EXPECT_THAT(split({}, ";"), ElementsAre());
  EXPECT_THAT(split({}, {}), ElementsAre());
}

TEST(RecordReader, ReadsNoByteOutsideTheText) {
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
}

TEST(RecordReader, SaysWhatEndedARecordAndWhatIsBehindIt) {
  RecordReader reader("a; b", "; ");
  EXPECT_EQ(reader.rest(), "a; b");
  reader.next();
  EXPECT_TRUE(reader.separated());
  EXPECT_EQ(reader.rest(), "b");
  reader.next();
  EXPECT_FALSE(reader.separated());
  EXPECT_EQ(reader.rest(), "");
}

}  // namespace
}  // namespace zenfo
