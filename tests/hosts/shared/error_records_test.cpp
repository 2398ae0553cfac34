#include "shared/text/error_records.h"

#include <gtest/gtest.h>

namespace zenfo::host {
namespace {

TEST(ErrorRecords, ReadsEachRecordOfAFile) {
  const std::vector<ErrorRecord> expected = {
      {"Getting local time failed", "Getting local time", "GetCTime"},
      {"", "Error retrieving list handler", "get_list"}};
  EXPECT_EQ(parse_error_records("2026/11/14-09:42:56\r\n\r\n"
                                "  message  : Getting local time failed\r\n"
                                "  context  : Getting local time\r\n"
                                "  module   : Main\r\n"
                                "  routine  : GetCTime\r\n\r\n"
                                "2026/11/14-09:42:57\r\n\r\n"
                                "  message  : \r\n"
                                "  context  : Error retrieving list handler\r\n"
                                "  module   : Main\r\n"
                                "  routine  : get_list\r\n\r\n"),
            expected);
}

TEST(ErrorRecords, TakesBareLineFeeds) {
  EXPECT_EQ(parse_error_records("  message  : a\n  context  : b\n"
                                "  module   : Main\n  routine  : c\n"),
            (std::vector<ErrorRecord>{{"a", "b", "c"}}));
}

TEST(ErrorRecords, LeavesAnUnfinishedRecordOut) {
  EXPECT_TRUE(parse_error_records("").empty());
  EXPECT_TRUE(parse_error_records("  message  : a\r\n  context  : b").empty());
}

TEST(ErrorRecords, NamesTheFileThatCouldNotBeLoaded) {
  const struct {
    ErrorRecord record;
    std::optional<std::string> path;
  } cases[] = {
      {{"a could not be opened", "loading file", "FindBlock_f"}, "a"},
      {{"a could not be opened could not be opened", "loading file", "r"},
       "a could not be opened"},
      {{"a contains a non printable character at position 0 (0x0) ",
        "loading file", "FindBlock"},
       std::nullopt},
      {{"The file could not be opened", "Opening target file", "r"},
       std::nullopt}};
  for (const auto& c : cases) {
    EXPECT_EQ(unloaded_file(c.record), c.path) << c.record.message;
  }
}

}  // namespace
}  // namespace zenfo::host
