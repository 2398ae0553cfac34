#include "containers/progress.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "containers/item_list.h"
#include "containers/record.h"

namespace zenfo {
namespace {

int asked = 0;
int32_t answer = 0;
std::vector<ProgressRecord> reports;

int32_t ask(void* argument) {
  EXPECT_NE(argument, nullptr);
  ++asked;
  return answer;
}

int32_t note_report(ProgressRecord* record) {
  reports.push_back(*record);
  return 5;
}

struct Empty final : Record {
  RecordKind kind() const override { return RecordKind::kFileEntry; }
};

class ProgressTest : public testing::Test {
 protected:
  void SetUp() override {
    hooks.set_interrupt_hook(ask);
    hooks.set_report_hook(note_report);
    // The counters are the process's: bring each to its start.
    answer = 1;
    while (hooks.poll_interrupt() == 0) {
    }
    while (hooks.poll_interrupt_every(100) == 0) {
    }
    reports.clear();
    while (reports.empty()) hooks.report_reset();
    hooks.report_position_of(0, 1);
    reports.clear();
    answer = 0;
    asked = 0;
  }
  ProgressHooks hooks;
};

TEST_F(ProgressTest, SkippedCallsCountAsIfTheyWereMade) {
  for (uint32_t skipped : {0u, 1u, 50u, 100u, 101u, 102u, 1000u, 4294967295u}) {
    SetUp();
    hooks.skip(skipped);
    const uint32_t left = 101 - skipped % 101;
    for (uint32_t i = 1; i < left; ++i) hooks.goes_on();
    EXPECT_EQ(asked, 0) << skipped;
    EXPECT_TRUE(reports.empty()) << skipped;
    hooks.goes_on();
    EXPECT_EQ(asked, 1) << skipped;
    EXPECT_EQ(reports.size(), 1u) << skipped;
  }
}

TEST_F(ProgressTest, PollsAskTheHookOnEvery101stCall) {
  for (int round = 1; round <= 3; ++round) {
    for (int i = 0; i < 100; ++i) EXPECT_EQ(hooks.poll_interrupt(), 0);
    EXPECT_EQ(asked, round - 1);
    hooks.poll_interrupt();
    EXPECT_EQ(asked, round);
  }
}

TEST_F(ProgressTest, PollsAnswerTheHooksAnswer) {
  answer = 7;
  for (int i = 0; i < 100; ++i) EXPECT_EQ(hooks.poll_interrupt(), 0);
  EXPECT_EQ(hooks.poll_interrupt(), 7);
}

TEST_F(ProgressTest, PollsWithAPeriodHaveACounterOfTheirOwn) {
  for (int i = 0; i < 50; ++i) hooks.poll_interrupt();
  EXPECT_EQ(hooks.poll_interrupt_every(1), 0);
  answer = 1;
  EXPECT_EQ(hooks.poll_interrupt_every(1), 1);
  EXPECT_EQ(asked, 1);
}

TEST_F(ProgressTest, CountersAreSharedByAllLists) {
  ProgressHooks other;
  other.set_interrupt_hook(ask);
  for (int i = 0; i < 60; ++i) hooks.poll_interrupt();
  for (int i = 0; i < 40; ++i) other.poll_interrupt();
  EXPECT_EQ(asked, 0);
  other.poll_interrupt();
  EXPECT_EQ(asked, 1);
}

TEST_F(ProgressTest, WithoutHooksNothingIsAskedOrReported) {
  ProgressHooks silent;
  EXPECT_TRUE(silent.silent());
  for (int i = 0; i < 300; ++i) {
    EXPECT_EQ(silent.poll_interrupt(), 0);
    EXPECT_EQ(silent.poll_interrupt_every(0), 0);
    EXPECT_EQ(silent.report_reset(), 0);
    EXPECT_EQ(silent.report_position_of(0, 10), 0);
  }
  EXPECT_EQ(asked, 0);
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressTest, ResetReportsZerosOnEvery101stCall) {
  for (int i = 0; i < 100; ++i) EXPECT_EQ(hooks.report_reset(), 0);
  EXPECT_EQ(hooks.report_reset(), 5);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].total, 0u);
  EXPECT_EQ(reports[0].position, 0u);
  EXPECT_EQ(reports[0].percent, 0);
}

TEST_F(ProgressTest, PositionsAreReportedAboutAHundredTimesAndAtTheEnd) {
  for (uint32_t i = 0; i <= 1050; ++i) hooks.report_position_of(i, 1050);
  // Step 10: 0, 10, 20, ... 1050.
  ASSERT_EQ(reports.size(), 106u);
  for (size_t i = 0; i < reports.size(); ++i) {
    EXPECT_EQ(reports[i].position, i * 10);
    EXPECT_EQ(reports[i].total, 1050u);
  }
  EXPECT_EQ(reports.back().percent, 100);
}

TEST_F(ProgressTest, AWalkThatBeginsAfterZeroContinuesFromTheLastStep) {
  hooks.report_position_of(0, 10);
  hooks.report_position_of(5, 10);
  reports.clear();
  hooks.report_position_of(1, 10);
  hooks.report_position_of(5, 10);
  EXPECT_TRUE(reports.empty());
  hooks.report_position_of(6, 10);
  EXPECT_EQ(reports.size(), 1u);
}

// Each kind of walk remembers its own last step.
TEST_F(ProgressTest, WalksOverListsAndOthersRememberTheirOwnSteps) {
  ItemList list;
  for (int i = 0; i < 10; ++i) list.append(std::make_unique<Empty>());
  list.set_report_hook(note_report);
  list.report_position(0);
  list.report_position_of(0, 10);
  list.report_position_of(9, 10);
  reports.clear();
  list.report_position(1);
  EXPECT_EQ(reports.size(), 1u);
  list.report_position(9);
  list.report_position_of(0, 10);
  reports.clear();
  list.report_position_of(1, 10);
  EXPECT_EQ(reports.size(), 1u);
}

TEST_F(ProgressTest, PollsAndResetsAreCountedApart) {
  for (int i = 0; i < 60; ++i) hooks.poll_interrupt();
  for (int i = 0; i < 100; ++i) hooks.report_reset();
  EXPECT_TRUE(reports.empty());
  hooks.report_reset();
  EXPECT_EQ(reports.size(), 1u);
  EXPECT_EQ(asked, 0);
}

TEST_F(ProgressTest, NothingIsReportedOfATotalOfZero) {
  EXPECT_EQ(hooks.report_position_of(0, 0), 0);
  EXPECT_TRUE(reports.empty());
}

TEST(SinglePrecisionPercent, RoundsQuotientAndProductToFloat) {
  struct Case {
    uint32_t position, total;
    int32_t percent;
  };
  // A double product of the float quotient would give 69 for the first.
  for (const Case& c : {Case{7, 10, 70}, Case{29, 100, 29}, Case{53, 100, 52},
                        Case{0, 3, 0}, Case{1, 3, 33}, Case{3, 3, 100}}) {
    EXPECT_EQ(single_precision_percent(c.position, c.total), c.percent)
        << c.position << " of " << c.total;
  }
}

}  // namespace
}  // namespace zenfo
