#include "search/report_file.h"

#include <gtest/gtest.h>

#include <string>

#include "containers/string_pair.h"
#include "pattern/match_record.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

using test::read_file;
using test::TempFolder;

const std::string kHeader =
    "\r\nNumber\tOffset\tLength\r\n------\t------\t------\r\n";

std::string block(const std::string& numbers, const std::string& text) {
  return numbers + "\r\n-------------MATCH-------------\r\n" + text +
         "\r\n-----------END MATCH-----------\r\n";
}

class ReportFileTest : public testing::Test {
 protected:
  void add(uint32_t offset, uint32_t length, uint32_t state = 1) {
    auto match = std::make_unique<MatchRecord>(kText + offset, length, offset);
    match->state = state;
    matches.append(std::move(match));
  }
  std::string written() {
    EXPECT_TRUE(report.close());
    return read_file(path);
  }

  static constexpr char kText[] = "abcdefghij";
  TempFolder folder;
  const std::string path = folder.path("report");
  ReportFile report;
  ItemList matches;
};

TEST_F(ReportFileTest, OpensNothingWithoutAPath) {
  report.open(nullptr);
  EXPECT_FALSE(report.is_open());
  report.open("");
  EXPECT_FALSE(report.is_open());
  report.open(folder.path("no/report").c_str());
  EXPECT_FALSE(report.is_open());
  EXPECT_TRUE(report.close());
}

TEST_F(ReportFileTest, AFileWithoutSelectedMatchesLeavesItsPath) {
  report.open(path.c_str());
  EXPECT_TRUE(report.begin_file("one"));
  EXPECT_TRUE(report.write_matches(matches, 0));
  EXPECT_TRUE(report.end_file());
  EXPECT_EQ(written(), "one\r\n");
}

TEST_F(ReportFileTest, NumbersCountDeselectedMatchesToo) {
  add(0, 1);
  add(2, 1, 0);
  add(4, 2);
  report.open(path.c_str());
  report.begin_file("one");
  EXPECT_TRUE(report.write_matches(matches, 2));
  report.end_file();
  report.begin_file("two");
  EXPECT_TRUE(report.write_matches(matches, 2));
  report.end_file();
  EXPECT_EQ(written(), "one\r\n" + kHeader + block("1\t0\t1", "a") +
                           block("3\t4\t2", "ef") + "\r\ntwo\r\n" + kHeader +
                           block("3\t0\t1", "a") + block("5\t4\t2", "ef") +
                           "\r\n");
}

TEST_F(ReportFileTest, SeveralListsOfAFileShareOneHeader) {
  add(0, 1);
  report.open(path.c_str());
  report.begin_file("one");
  report.write_matches(matches, 1);
  report.write_matches(matches, 1);
  report.end_file();
  EXPECT_EQ(written(), "one\r\n" + kHeader + block("1\t0\t1", "a") +
                           block("2\t0\t1", "a") + "\r\n");
}

TEST_F(ReportFileTest, ARecordThatIsNoMatchFails) {
  add(0, 1);
  matches.append(std::make_unique<StringPair>("a", "b"));
  report.open(path.c_str());
  report.begin_file("one");
  EXPECT_FALSE(report.write_matches(matches, 1));
}

TEST_F(ReportFileTest, AnInterruptFails) {
  for (int i = 0; i < 101; ++i) add(0, 1);
  matches.set_interrupt_hook([](void*) { return 1; });
  report.open(path.c_str());
  report.begin_file("one");
  EXPECT_FALSE(report.write_matches(matches, 101));
}

TEST_F(ReportFileTest, WritingToAFullDiskFailsAtLastWhenClosed) {
  report.open("/dev/full");
  report.begin_file("one");
  EXPECT_FALSE(report.close());
}

}  // namespace
}  // namespace zenfo
