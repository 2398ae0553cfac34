#include "files/file_content.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <signal.h>
#endif

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/temp_folder.h"

namespace zenfo {
namespace {

using test::TempFolder;

std::vector<ProgressRecord> reports;
int polls = 0;
int stop_at_poll = 0;  // 1-based; 0 never

int32_t tell(ProgressRecord* record) {
  reports.push_back(*record);
  return 1;
}
int32_t ask(void*) {
  ++polls;
  return polls == stop_at_poll ? 1 : 0;
}

std::string noise(size_t size) {
  std::string bytes(size, '\0');
  std::mt19937_64 random(size);
  for (char& c : bytes) c = static_cast<char>(random());
  return bytes;
}

using Steps = std::vector<std::pair<uint32_t, uint32_t>>;

class FileContentTest : public testing::Test {
 protected:
  void SetUp() override {
    // Resets the process-wide poll counter.
    stop_at_poll = 0;
    content.set_interrupt_hook(ask);
    polls = 0;
    while (polls == 0) content.poll_interrupt(1);
    polls = 0;
    content.set_interrupt_hook(nullptr);
    reports.clear();
  }
  void listen() {
    content.set_interrupt_hook(ask);
    content.set_progress_hook(tell);
  }
  // Position and total of every report.
  Steps steps() {
    Steps all;
    for (const ProgressRecord& r : reports) {
      all.emplace_back(r.position, r.total);
    }
    return all;
  }
  TempFolder folder;
  FileContent content;
};

TEST_F(FileContentTest, LoadsTheBytesFollowedByANul) {
  for (size_t size : {1u, 49999u, 50000u, 50001u, 99999u, 100000u, 2500001u}) {
    const std::string bytes = noise(size);
    const std::string path = folder.file("f", bytes);
    ASSERT_EQ(content.load_file_content(path.c_str()),
              static_cast<int32_t>(size));
    EXPECT_EQ(content.length(), size);
    EXPECT_EQ(content.file_size(), size);
    EXPECT_TRUE(content.bytes() == bytes) << size;
    EXPECT_EQ(content.data()[size], '\0');
    EXPECT_EQ(content.path(), path);
  }
}

TEST_F(FileContentTest, AViewIsLoadedAsACopyIs) {
  content.allow_views();
  for (size_t size : {999999u, 1048575u, 1048576u, 1048577u, 5000000u, 70000u,
                      2500001u, 4096u * 300}) {
    const std::string bytes = noise(size);
    const std::string path = folder.file("f", bytes);
    ASSERT_EQ(content.load_file_content(path.c_str()),
              static_cast<int32_t>(size));
    EXPECT_EQ(content.file_size(), size);
    EXPECT_TRUE(content.bytes() == bytes) << size;
    EXPECT_EQ(content.data()[size], '\0');
    EXPECT_TRUE(test::read_file(path) == bytes) << size;
  }
  content.clear();
  EXPECT_TRUE(content.bytes().empty());
}

TEST_F(FileContentTest, AViewIsReportedAsACopyIs) {
  const std::string path = folder.file("f", noise(50000 * 30 + 5));
  listen();
  content.load_file_content(path.c_str());
  const Steps copied = steps();
  const int asked = polls;
  reports.clear();
  SetUp();
  listen();
  content.allow_views();
  content.load_file_content(path.c_str());
  EXPECT_EQ(steps(), copied);
  EXPECT_EQ(polls, asked);
}

TEST_F(FileContentTest, AnInterruptedViewIsAnInterruptedCopy) {
  const std::string bytes = noise(50000 * 40 + 7);
  const std::string path = folder.file("f", bytes);
  content.allow_views();
  listen();
  stop_at_poll = 1;
  EXPECT_EQ(content.load_file_content(path.c_str()), 100007);
  EXPECT_EQ(content.file_size(), bytes.size());
  EXPECT_TRUE(content.bytes() ==
              bytes.substr(0, 100000) + std::string(7, '\0'));
  EXPECT_EQ(content.data()[100007], '\0');
  EXPECT_TRUE(test::read_file(path) == bytes);
}

TEST_F(FileContentTest, AnEmptyFileLoadsWithLengthZeroAndNoReport) {
  listen();
  const std::string path = folder.file("empty", "");
  EXPECT_EQ(content.load_file_content(path.c_str()), 0);
  EXPECT_FALSE(content.loaded());
  EXPECT_TRUE(content.bytes().empty());
  EXPECT_TRUE(reports.empty());
  EXPECT_EQ(content.find_non_printable(), 0);
}

TEST_F(FileContentTest, FailsForMissingFilesFoldersAndNoPath) {
  EXPECT_EQ(content.load_file_content(folder.path("missing").c_str()), -1);
  EXPECT_EQ(content.load_file_content(folder.path().c_str()), -1);
  EXPECT_EQ(content.load_file_content(""), -1);
  EXPECT_EQ(content.load_file_content(nullptr), -1);
}

TEST_F(FileContentTest, FilesOf2GigabytesAndMoreFail) {
  const std::string path = folder.file("big", "x");
  for (const uint64_t size :
       {uint64_t{2147483647}, uint64_t{2147483648}, (uint64_t{1} << 32) + 10,
        (uint64_t{1} << 32) + 60000}) {
    std::filesystem::resize_file(path, size);
    EXPECT_EQ(content.load_file_content(path.c_str()), -1) << size;
    EXPECT_FALSE(content.loaded()) << size;
  }
}

TEST_F(FileContentTest, AFailureLeavesNoContentOfTheFileBefore) {
  content.load_file_content(folder.file("a", "text").c_str());
  EXPECT_EQ(content.load_file_content(folder.path("missing").c_str()), -1);
  EXPECT_FALSE(content.loaded());
  EXPECT_TRUE(content.bytes().empty());
  EXPECT_EQ(content.length(), 0u);
}

TEST_F(FileContentTest, ReportsTwoStepsForASmallFile) {
  listen();
  content.load_file_content(folder.file("f", "abc").c_str());
  EXPECT_EQ(steps(), (Steps{{0, 1}, {1, 1}}));
  EXPECT_EQ(reports[0].percent, 0);
  EXPECT_EQ(reports[1].percent, 100);
  EXPECT_EQ(polls, 0);
}

TEST_F(FileContentTest, AFileOfOneBlockHasTwoStepsAndAReadOfNothing) {
  listen();
  content.load_file_content(folder.file("f", noise(50000)).c_str());
  // Reports once before the blocks, once for block 0, once at the end.
  EXPECT_EQ(steps(), (Steps{{0, 2}, {0, 2}, {2, 2}}));
}

TEST_F(FileContentTest, ReportsEachBlockOfASmallNumberOfBlocks) {
  listen();
  content.load_file_content(folder.file("f", noise(150001)).c_str());
  EXPECT_EQ(steps(), (Steps{{0, 4}, {0, 4}, {1, 4}, {2, 4}, {4, 4}}));
  EXPECT_EQ(reports[2].percent, 25);
}

TEST_F(FileContentTest, ReportsAboutAHundredTimesForManyBlocks) {
  listen();
  content.load_file_content(folder.file("f", noise(50000 * 450)).c_str());
  // 451 steps, reported at every fourth: 0 twice, 4, 8, ... 448, and nothing at
  // 451, which belongs to the same fourth.
  EXPECT_EQ(reports.size(), 2u + 112u);
  EXPECT_EQ(reports.back().position, 448u);
}

TEST_F(FileContentTest, PollsTheHostOnEverySecondBlock) {
  listen();
  content.load_file_content(folder.file("f", noise(50000 * 6)).c_str());
  EXPECT_EQ(polls, 3);
}

TEST_F(FileContentTest, EverySecondCallIsCountedAcrossFiles) {
  listen();
  const std::string path = folder.file("f", noise(50000));
  content.load_file_content(path.c_str());
  EXPECT_EQ(polls, 0);
  content.load_file_content(path.c_str());
  EXPECT_EQ(polls, 1);
}

TEST_F(FileContentTest, AnInterruptSkipsToTheRestAndStillSucceeds) {
  listen();
  stop_at_poll = 1;  // after the second block
  const std::string bytes = noise(50000 * 5 + 7);
  const std::string path = folder.file("f", bytes);
  EXPECT_EQ(content.load_file_content(path.c_str()), 100007);
  EXPECT_EQ(content.file_size(), bytes.size());
  std::string expected = bytes.substr(0, 100000);
  expected.append(7, '\0');  // never read
  EXPECT_TRUE(content.bytes() == expected);
  EXPECT_EQ(content.data()[100007], '\0');
  EXPECT_EQ(reports.back().position, 6u);
}

TEST_F(FileContentTest, AnInterruptAfterTheLastBlockLosesNothing) {
  listen();
  stop_at_poll = 1;
  const std::string bytes = noise(100003);
  EXPECT_EQ(content.load_file_content(folder.file("f", bytes).c_str()), 100003);
  EXPECT_TRUE(content.bytes() == bytes);
}

TEST_F(FileContentTest, PercentIsComputedInDoublePrecision) {
  listen();
  content.progress_step(0, 100);
  content.progress_step(29, 100);
  EXPECT_EQ(reports.back().percent, 28);
}

TEST_F(FileContentTest, StepsOfATotalOfZeroAreNotReported) {
  listen();
  content.progress_step(0, 0);
  EXPECT_TRUE(reports.empty());
}

TEST_F(FileContentTest, AStepIsReportedOnlyAfterTheLastOne) {
  listen();
  for (uint32_t i = 0; i <= 1000; ++i) content.progress_step(i, 1000);
  EXPECT_EQ(reports.size(), 101u);
  content.progress_step(1000, 1000);
  EXPECT_EQ(reports.size(), 101u);
}

TEST_F(FileContentTest, TextEndsAtTheFirstNul) {
  content.load_file_content(folder.file("f", std::string("ab\0cd", 5)).c_str());
  EXPECT_EQ(content.text(), "ab");
  content.load_file_content(folder.file("f", "abc").c_str());
  EXPECT_EQ(content.text(), "abc");
}

struct PrintableCase {
  std::string bytes;
  int32_t position;
};

TEST_F(FileContentTest, FindsTheFirstNonPrintableByteAfterPositionZero) {
  const std::string xs(40, 'x');
  const PrintableCase cases[] = {
      {"plain\ttext\r\n", 0}, {"12345\x0b", 5},
      {"a\x7f\x80\xff z", 0}, {std::string("ab\0", 3), 2},
      {xs + '\x1f', 40},      {xs + '\x1f' + xs + '\x01', 40},
  };
  for (const PrintableCase& c : cases) {
    content.load_file_content(folder.file("f", c.bytes).c_str());
    EXPECT_EQ(content.find_non_printable(), c.position);
  }
}

TEST_F(FileContentTest, ANonPrintableByteAtPositionZeroIsNeverFound) {
  content.load_file_content(folder.file("f", "\x01 only").c_str());
  EXPECT_EQ(content.find_non_printable(), 0);
  content.load_file_content(folder.file("f", "\x01\x02").c_str());
  EXPECT_EQ(content.find_non_printable(), 1);
}

TEST_F(FileContentTest, TheCheckReportsItsBeginningAndItsEnd) {
  content.load_file_content(folder.file("f", "abc").c_str());
  listen();
  content.find_non_printable();
  EXPECT_EQ(steps(), (Steps{{0, 3}, {1, 1}}));
}

TEST(FindControlByte, AgreesWithTheRuleForEveryByteAndPosition) {
  for (int byte = 0; byte < 256; ++byte) {
    const bool bad = byte < 0x20 && byte != 9 && byte != 10 && byte != 13;
    for (size_t position :
         {1u, 2u, 17u, 63u, 64u, 65u, 80u, 128u, 129u, 199u}) {
      std::string text(200, 'x');
      text[position] = static_cast<char>(byte);
      EXPECT_EQ(find_control_byte(text, 1), bad ? position : text.size())
          << byte;
    }
  }
}

#ifndef _WIN32
TEST_F(FileContentTest, AFileThatShrinksWhileItIsReadFails) {
  const std::string path = folder.file("f", noise(50000 * 4));
  static std::string shrinking;
  shrinking = path;
  content.set_progress_hook([](ProgressRecord* record) -> int32_t {
    if (record->position == 1) {
      std::filesystem::resize_file(shrinking, 120000);
    }
    return 0;
  });
  EXPECT_EQ(content.load_file_content(path.c_str()), -1);
  EXPECT_FALSE(content.loaded());
}

TEST_F(FileContentTest, AViewedFileThatShrinksWhileItIsLoadedFails) {
  content.allow_views();
  static std::string shrinking;
  static uint64_t left;
  shrinking = folder.path("f");
  content.set_progress_hook([](ProgressRecord* record) -> int32_t {
    if (record->position == 1) std::filesystem::resize_file(shrinking, left);
    return 0;
  });
  // Shrinks by whole pages, and within the last page.
  for (const uint64_t size : {uint64_t{120000}, uint64_t{50000} * 80 - 1}) {
    left = size;
    folder.file("f", noise(50000 * 80));
    struct sigaction before, after;
    sigaction(SIGBUS, nullptr, &before);
    EXPECT_EQ(content.load_file_content(shrinking.c_str()), -1) << size;
    EXPECT_FALSE(content.loaded());
    sigaction(SIGBUS, nullptr, &after);
    EXPECT_EQ(after.sa_sigaction, before.sa_sigaction) << "the view is closed";
  }
}

TEST_F(FileContentTest, AViewedFileThatShrinksLaterReadsAsZeros) {
  content.allow_views();
  const std::string bytes = noise(50000 * 80);
  const std::string path = folder.file("f", bytes);
  ASSERT_EQ(content.load_file_content(path.c_str()), 50000 * 80);
  std::filesystem::resize_file(path, 4096 * 2);
  EXPECT_TRUE(content.bytes() ==
              bytes.substr(0, 4096 * 2) +
                  std::string(bytes.size() - 4096 * 2, '\0'));
}

// Loses whole pages, or a part of the last one.
TEST_F(FileContentTest, AViewReadWhenUsedSaysThatBytesWereLost) {
  content.allow_views();
  content.read_when_used(true);
  const std::string bytes = noise(50000 * 80 - 1);
  for (const size_t left : {bytes.size(), size_t{8192}, bytes.size() - 1}) {
    const std::string path = folder.file("f", bytes);
    ASSERT_EQ(content.load_file_content(path.c_str()),
              static_cast<int32_t>(bytes.size()));
    std::filesystem::resize_file(path, left);
    EXPECT_EQ(content.data()[bytes.size() / 2] == bytes[bytes.size() / 2],
              left > bytes.size() / 2);
    EXPECT_EQ(content.intact(), left == bytes.size()) << left;
  }
  content.clear();
  EXPECT_TRUE(content.intact()) << "nothing is in use";
}

TEST_F(FileContentTest, WhatIsLoadedAtOnceIsIntact) {
  content.read_when_used(true);
  const std::string path = folder.file("f", noise(50000 * 80));
  ASSERT_EQ(content.load_file_content(path.c_str()), 50000 * 80);
  std::filesystem::resize_file(path, 1);
  EXPECT_TRUE(content.intact());
}

TEST_F(FileContentTest, APipeIsNoFileAndIsNotWaitedFor) {
  const std::string path = folder.path("pipe");
  ASSERT_EQ(std::system(("mkfifo " + path).c_str()), 0);
  EXPECT_EQ(content.load_file_content(path.c_str()), -1);
}
#endif

// What is in memory already is taken with the calls of a file that is loaded.
TEST_F(FileContentTest, TakesTheBytesOfAFileAsIfItWereLoaded) {
  for (const size_t size :
       {size_t{1}, size_t{49999}, size_t{50000}, size_t{120001},
        size_t{FileContent::kLargestTaken}}) {
    for (const int stop : {0, 1, 2}) {
      const std::string bytes = noise(size);
      const std::string path = folder.file("f", bytes);
      SetUp();
      listen();
      stop_at_poll = stop;
      const int32_t length = content.load_file_content(path.c_str());
      const std::string expected(content.bytes());
      const Steps steps_of_loading = steps();
      const int polls_of_loading = polls;
      SetUp();
      listen();
      stop_at_poll = stop;
      platform::KeptBuffer memory;
      ASSERT_TRUE(memory.reserve(size + 1, 0));
      std::copy(bytes.begin(), bytes.end(), memory.data());
      EXPECT_EQ(content.take_file_content(path.c_str(), memory,
                                          static_cast<uint32_t>(size)),
                length);
      EXPECT_TRUE(content.bytes() == expected);
      EXPECT_EQ(content.data()[content.length()], '\0');
      EXPECT_EQ(content.path(), path);
      EXPECT_EQ(content.file_size(), size);
      EXPECT_EQ(steps(), steps_of_loading) << size << " " << stop;
      EXPECT_EQ(polls, polls_of_loading);
    }
  }
}

TEST_F(FileContentTest, SaysWhetherTheFileCouldBeOpened) {
  EXPECT_EQ(content.load_file_content(folder.path("none").c_str()), -1);
  EXPECT_FALSE(content.opened());
  EXPECT_EQ(content.load_file_content(folder.file("f", "x").c_str()), 1);
  EXPECT_TRUE(content.opened());
}

}  // namespace
}  // namespace zenfo
