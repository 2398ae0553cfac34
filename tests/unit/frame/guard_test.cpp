#include "frame/guard.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

#include "frame/error_log.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

constexpr ExportRow kLoud = {
    1, "Loud", 0, -7, FaultLog::kLogged, Access::kShared};
constexpr ExportRow kQuiet = {2,  "Quiet",           0,
                              -8, FaultLog::kSilent, Access::kShared};
constexpr ExportRow kAlone = {3,  "Alone",           0,
                              -9, FaultLog::kLogged, Access::kAlone};

class GuardTest : public testing::Test {
 protected:
  GuardTest() {
    log.set_file(path.c_str());
    install_error_log(&log);
  }
  ~GuardTest() override { install_error_log(nullptr); }
  bool logged(const std::string& routine) const {
    return test::file_exists(path) &&
           test::read_file(path).find("Runtime error") != std::string::npos &&
           test::read_file(path).find("routine  : " + routine + "\r\n") !=
               std::string::npos;
  }
  test::TempFolder folder;
  std::string path = folder.path("errors");
  ErrorLog log;
};

TEST_F(GuardTest, AnswersWhatTheBodyAnswers) {
  EXPECT_EQ(guarded(kLoud, [] { return 42; }), 42);
  EXPECT_FALSE(test::file_exists(path));
}

TEST_F(GuardTest, AnyExceptionIsLoggedAndAnswersTheRowsFailure) {
  EXPECT_EQ(guarded(kLoud, []() -> int32_t { throw std::bad_alloc(); }), -7);
  EXPECT_TRUE(logged("Loud"));
  EXPECT_EQ(guarded(kAlone, []() -> int32_t { throw 1; }), -9);
  EXPECT_TRUE(logged("Alone"));
}

TEST_F(GuardTest, ASilentRowLogsNothing) {
  EXPECT_EQ(
      guarded(kQuiet, []() -> int32_t { throw std::runtime_error("fault"); }),
      -8);
  EXPECT_FALSE(test::file_exists(path));
}

TEST_F(GuardTest, ARowThatWantsToBeAloneIsRefusedInsideAnotherUnlogged) {
  bool ran = false;
  EXPECT_EQ(guarded(kLoud,
                    [&] {
                      return guarded(kAlone, [&] {
                        ran = true;
                        return 1;
                      });
                    }),
            -9);
  EXPECT_FALSE(ran);
  EXPECT_FALSE(test::file_exists(path));
  EXPECT_EQ(guarded(kAlone, [] { return 1; }), 1);
}

TEST_F(GuardTest, ASharedRowRunsInsideAnyOther) {
  EXPECT_EQ(guarded(kAlone, [] { return guarded(kLoud, [] { return 5; }); }),
            5);
}

TEST_F(GuardTest, CountsTheRunningOperationsThroughFaultsToo) {
  EXPECT_EQ(RunningOperations::count(), 0);
  guarded(kLoud, []() -> int32_t {
    EXPECT_EQ(RunningOperations::count(), 1);
    guarded(kQuiet, [] {
      EXPECT_EQ(RunningOperations::count(), 2);
      return 0;
    });
    throw 1;
  });
  EXPECT_EQ(RunningOperations::count(), 0);
}

TEST_F(GuardTest, WalksAnswerTheirFailureUnlogged) {
  EXPECT_EQ(unlogged(-1, []() -> int32_t { throw 1; }), -1);
  EXPECT_EQ(unlogged(-1, [] { return 3; }), 3);
  EXPECT_FALSE(test::file_exists(path));
}

TEST_F(GuardTest, CaughtLogsUnderAnyName) {
  EXPECT_EQ(caught("a_wrapper", 4, []() -> int32_t { throw 1; }), 4);
  EXPECT_TRUE(logged("a_wrapper"));
}

}  // namespace
}  // namespace zenfo
