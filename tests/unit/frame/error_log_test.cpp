#include "frame/error_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"

namespace zenfo {
namespace {

using test::file_exists;
using test::read_file;
using test::TempFolder;

constexpr size_t kStampLength = 19;  // yyyy/mm/dd-hh:mm:ss

class ErrorLogTest : public testing::Test {
 protected:
  ErrorLogTest() { install_error_log(&log); }
  ~ErrorLogTest() override { install_error_log(nullptr); }
  // The file without the first record's time stamp.
  std::string unstamped() const { return read_file(path).substr(kStampLength); }

  TempFolder folder;
  std::string path = folder.path("errors");
  ErrorLog log;
};

TEST_F(ErrorLogTest, WritesNothingUntilAFileIsSet) {
  EXPECT_EQ(log.write("m", "c", "o", "r"), -1);
  EXPECT_EQ(report_error("m", "c", "r"), -1);
  EXPECT_FALSE(file_exists(path));
}

TEST_F(ErrorLogTest, WritesTheFourTextsBelowAStamp) {
  ASSERT_EQ(log.set_file(path.c_str()), 1);
  EXPECT_EQ(log.write("a message", "a context", "Module", "Routine"), 1);
  EXPECT_EQ(unstamped(),
            "\r\n\r\n"
            "  message  : a message\r\n"
            "  context  : a context\r\n"
            "  module   : Module\r\n"
            "  routine  : Routine\r\n\r\n");
}

TEST_F(ErrorLogTest, EmptyTextsAreWrittenAndMissingOnesRefused) {
  log.set_file(path.c_str());
  EXPECT_EQ(log.write(nullptr, "", "", ""), -1);
  EXPECT_EQ(log.write("", nullptr, "", ""), -1);
  EXPECT_EQ(log.write("", "", nullptr, ""), -1);
  EXPECT_EQ(log.write("", "", "", nullptr), -1);
  EXPECT_FALSE(file_exists(path));
  EXPECT_EQ(log.write("", "", "", ""), 1);
  EXPECT_EQ(unstamped(),
            "\r\n\r\n  message  : \r\n  context  : \r\n  module   : \r\n"
            "  routine  : \r\n\r\n");
}

TEST_F(ErrorLogTest, LongTextsAreWrittenWholeAndLineFeedsExpanded) {
  log.set_file(path.c_str());
  const std::string text = "two\nlines" + std::string(5000, 'x');
  EXPECT_EQ(log.write(text.c_str(), "", "", ""), 1);
  EXPECT_THAT(unstamped(), testing::HasSubstr("message  : two\r\nlines" +
                                              std::string(5000, 'x') + "\r\n"));
}

TEST_F(ErrorLogTest, SetFileAnswersOneWhateverItIsGiven) {
  EXPECT_EQ(log.set_file(path.c_str()), 1);
  EXPECT_EQ(log.set_file(nullptr), 1);
  EXPECT_EQ(log.write("", "", "", ""), 1);
  EXPECT_EQ(log.set_file(""), 1);
  EXPECT_EQ(log.write("", "", "", ""), -1);
}

TEST_F(ErrorLogTest, AFileThatCannotBeOpenedAnswersMinusOne) {
  log.set_file(folder.path().c_str());
  EXPECT_EQ(log.write("", "", "", ""), -1);
}

TEST_F(ErrorLogTest, ReportErrorWritesUnderTheModuleMain) {
  log.set_file(path.c_str());
  EXPECT_EQ(report_error("m", "c", "r"), 1);
  EXPECT_THAT(unstamped(), testing::HasSubstr("  module   : Main\r\n"));
}

TEST_F(ErrorLogTest, ReportErrorAnswersMinusOneWithoutALog) {
  log.set_file(path.c_str());
  install_error_log(nullptr);
  EXPECT_EQ(report_error("m", "c", "r"), -1);
  EXPECT_FALSE(file_exists(path));
}

TEST_F(ErrorLogTest, ARuntimeErrorHasItsFixedTexts) {
  log.set_file(path.c_str());
  report_runtime_error("AnyRoutine");
  EXPECT_EQ(unstamped(),
            "\r\n\r\n"
            "  message  : Runtime error\r\n"
            "  context  : Default error handler\r\n"
            "  module   : Main\r\n"
            "  routine  : AnyRoutine\r\n\r\n");
}

#ifndef _WIN32
TEST_F(ErrorLogTest, AFullDeviceAnswersMinusOne) {
  log.set_file("/dev/full");
  EXPECT_EQ(log.write("m", "c", "o", "r"), -1);
}
#endif

}  // namespace
}  // namespace zenfo
