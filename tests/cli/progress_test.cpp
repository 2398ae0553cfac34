#include "cli/terminal/progress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "cli/terminal/messages.h"

namespace zenfo::host::cli {
namespace {

std::string utf8(std::vector<ZenfoWideChar> text) {
  text.push_back(0);
  return utf8_of(text.data());
}

TEST(Utf8Of, MakesUtf8OfEachLength) {
  EXPECT_EQ(utf8({}), "");
  EXPECT_EQ(utf8({'a', 0x7F}), "a\x7F");
  EXPECT_EQ(utf8({0x80, 0x7FF}), "\xC2\x80\xDF\xBF");
  EXPECT_EQ(utf8({0x800, 0xFFFD}), "\xE0\xA0\x80\xEF\xBF\xBD");
  EXPECT_EQ(utf8({0xD83D, 0xDE00}), "\xF0\x9F\x98\x80");
}

TEST(Utf8Of, MarksHalvesThatStandAlone) {
  EXPECT_EQ(utf8({0xD83D}), "?");
  EXPECT_EQ(utf8({0xDE00, 'a'}), "?a");
  EXPECT_EQ(utf8({0xD83D, 'a'}), "?a");
}

TEST(ProgressLine, ShowsTheShareDone) {
  EXPECT_EQ(progress_line("Looking", 0, 79),
            "[                        ]   0% Looking");
  EXPECT_EQ(progress_line("Looking", 52, 79),
            "[############            ]  52% Looking");
  EXPECT_EQ(progress_line("Looking", 100, 79),
            "[########################] 100% Looking");
}

TEST(ProgressLine, KeepsTheShareWithinItsBounds) {
  EXPECT_EQ(progress_line("", -5, 79), progress_line("", 0, 79));
  EXPECT_EQ(progress_line("", 101, 79), progress_line("", 100, 79));
}

TEST(ProgressLine, IsCutAtTheScreensEdgeBetweenCharacters) {
  EXPECT_EQ(progress_line("ab\xC3\xA4", 5, 36).size(), 36u);
  EXPECT_EQ(progress_line("ab\xC3\xA4", 5, 35).substr(32), "ab");
  EXPECT_EQ(progress_line("ab", 5, 0), "");
}

TEST(RunPercent, IsOfTheWholeRun) {
  EXPECT_EQ(run_percent(0, 4, true, 0), 0);
  EXPECT_EQ(run_percent(0, 4, true, 100), 7);
  EXPECT_EQ(run_percent(0, 4, false, 0), 7);
  EXPECT_EQ(run_percent(0, 4, false, 100), 25);
  EXPECT_EQ(run_percent(3, 4, true, 0), 75);
  EXPECT_EQ(run_percent(3, 4, false, 100), 100);
  EXPECT_EQ(run_percent(4, 4, false, 100), 100);
  EXPECT_EQ(run_percent(4'000'000'000, 4'000'000'000, false, 0), 100);
}

// A bar that is due to be drawn.
class DrawnBar : public ::testing::Test {
 protected:
  static void wait() {
    std::this_thread::sleep_for(std::chrono::milliseconds(310));
  }
  static std::vector<ZenfoWideChar> wide(const std::string& text) {
    std::vector<ZenfoWideChar> wide(text.begin(), text.end());
    wide.push_back(0);
    return wide;
  }
};

TEST_F(DrawnBar, ShowsTheWholeRunAndNeverGoesBack) {
  Progress progress;
  // The library reports the progress of that counting, too.
  progress.begin_run(4, [&] {
    progress.show_status(wide("Now counting entries").data());
    progress.show_step({1, 1, 100});
    return 2u;
  });
  progress.show_status(wide("Now parsing file").data());
  wait();
  testing::internal::CaptureStderr();
  progress.show_step({10, 10, 100});
  EXPECT_NE(testing::internal::GetCapturedStderr().find(" 75% Now parsing"),
            std::string::npos);
  wait();
  progress.show_status(wide("Now loading file").data());
  testing::internal::CaptureStderr();
  progress.show_step({10, 0, 0});
  EXPECT_NE(testing::internal::GetCapturedStderr().find(" 75% Now loading"),
            std::string::npos);
}

TEST_F(DrawnBar, IsErasedBeforeAMessageOrAQuestion) {
  for (const bool asks : {false, true}) {
    Progress progress;
    wait();
    testing::internal::CaptureStderr();
    progress.show_step({10, 5, 50});
    if (asks) {
      say("Go on?");
    } else {
      remark("a", "is b");
    }
    const std::string text = testing::internal::GetCapturedStderr();
    const size_t bar = text.find("50% ");
    ASSERT_NE(bar, std::string::npos);
    const size_t erased = text.find("\r  ", bar);
    ASSERT_NE(erased, std::string::npos);
    EXPECT_EQ(text.substr(text.rfind('\r') + 1),
              asks ? "Go on?" : "zenfo: a: is b\n");
  }
}

}  // namespace
}  // namespace zenfo::host::cli
