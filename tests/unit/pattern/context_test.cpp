#include "pattern/context.h"

#include <gtest/gtest.h>

#include "frame/callbacks.h"
#include "pattern/match_record.h"
#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::HookLog;

TEST(PatternContext, HasItsDefaults) {
  PatternContext context;
  EXPECT_EQ(context.poll_interval(), 100u);
  EXPECT_EQ(context.control_names.size(), 31u);
  EXPECT_EQ(context.user_classes.count(), 0u);
  ASSERT_EQ(context.predefined_classes.count(), 1u);
  const CharClass& wildcard = context.predefined_classes.at(0);
  EXPECT_EQ(wildcard.name(), "?");
  EXPECT_TRUE(context.any_character.name().empty());
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(wildcard.contains(static_cast<uint8_t>(byte)), byte >= 33);
    EXPECT_TRUE(context.any_character.contains(static_cast<uint8_t>(byte)));
  }
  EXPECT_TRUE(context.pattern.empty());
  EXPECT_EQ(context.matches.count(), 0u);
  EXPECT_EQ(context.text(), nullptr);
  EXPECT_EQ(context.text_end(), nullptr);
}

TEST(PatternContext, PassesItsHooksToTheMatchList) {
  PatternContext context;
  context.set_interrupt_hook(interr);
  context.set_report_hook(report);
  EXPECT_EQ(context.matches.interrupt_hook(), &interr);
  EXPECT_EQ(context.matches.report_hook(), &report);
}

TEST(PatternContext, NobodyListensWhenTheHostHasNoCallback) {
  PatternContext context;
  EXPECT_FALSE(context.polls());
  EXPECT_FALSE(context.reports());
  context.set_interrupt_hook(interr);
  context.set_report_hook(report);
  EXPECT_FALSE(context.polls());
  EXPECT_FALSE(context.reports());
  host_callbacks().interrupt = [] { return 0; };
  host_callbacks().report = [](ProgressRecord*) { return 0; };
  EXPECT_TRUE(context.polls());
  EXPECT_TRUE(context.reports());
  host_callbacks() = {};
}

TEST(PatternContext, CallsTheHookOnEveryIntervalThPoll) {
  PatternContext context;
  HookLog log(context, 3);
  for (int i = 1; i <= 9; ++i) {
    context.poll_cancel();
    EXPECT_EQ(HookLog::polls(), i / 3);
  }
  HookLog again(context, 0);
  for (int i = 1; i <= 250; ++i) context.poll_cancel();
  EXPECT_EQ(HookLog::polls(), 2);
}

TEST(PatternContext, CountsPollsAcrossContexts) {
  PatternContext one;
  PatternContext two;
  HookLog log_one(one, 2);
  HookLog log_two(two, 2);
  one.poll_cancel();
  EXPECT_EQ(HookLog::polls(), 0);
  two.poll_cancel();
  EXPECT_EQ(HookLog::polls(), 1);
}

TEST(PatternContext, ManyPollsMakeTheCallsThatFallDue) {
  PatternContext context;
  HookLog log(context, 10);
  EXPECT_EQ(context.poll_cancel_times(9), 0);
  EXPECT_EQ(HookLog::polls(), 0);
  EXPECT_EQ(context.poll_cancel_times(35), 0);
  EXPECT_EQ(HookLog::polls(), 4);
  EXPECT_EQ(search_counters().polls, 4u);
  EXPECT_EQ(context.poll_cancel_times(0), 0);
}

TEST(PatternContext, StopsCountingAtTheFirstStop) {
  PatternContext context;
  HookLog log(context, 10, 2);
  EXPECT_EQ(context.poll_cancel_times(100), 1);
  EXPECT_EQ(HookLog::polls(), 2);
  EXPECT_EQ(search_counters().polls, 0u);
}

TEST(PatternContext, ReportsFirstLastAndAboutAHundredBetween) {
  PatternContext context;
  HookLog log(context, 0);
  for (size_t i = 0; i <= 4; ++i) context.report_progress(i, 4);
  EXPECT_EQ(HookLog::text(), " 0/4=0% 1/4=25% 2/4=50% 3/4=75% 4/4=100%");
  HookLog again(context, 0);
  for (size_t i = 0; i <= 500; ++i) context.report_progress(i, 500);
  EXPECT_EQ(HookLog::text().substr(0, 35),
            " 0/500=0% 5/500=1% 10/500=2% 15/500");
  HookLog none(context, 0);
  context.report_progress(0, 0);
  EXPECT_EQ(HookLog::text(), "");
}

TEST(PatternContext, ComputesPercentagesInDoublePrecision) {
  PatternContext context;
  HookLog log(context, 0);
  context.report_progress(0, 3000000000u);
  context.report_progress(2900000000u, 3000000000u);
  // Single precision or 32-bit arithmetic would give another result.
  EXPECT_EQ(HookLog::text(), " 0/3000000000=0% 2900000000/3000000000=96%");
  HookLog again(context, 0);
  context.report_progress(29, 100);
  context.report_progress(0, 10);
  context.report_progress(7, 10);
  EXPECT_EQ(HookLog::text(), " 29/100=29% 0/10=0% 7/10=70%");
}

TEST(PatternContext, NextReportIsTheFirstPositionWorthOne) {
  PatternContext context;
  HookLog log(context, 0);
  context.report_progress(0, 1000);
  EXPECT_EQ(PatternContext::next_report(1000), 10u);
  context.report_progress(57, 1000);
  EXPECT_EQ(PatternContext::next_report(1000), 60u);
}

TEST(PatternContext, ClearMatchesForgetsTheText) {
  PatternContext context;
  context.set_text("abc", 3);
  EXPECT_EQ(context.text_end(), context.text() + 3);
  context.matches.append(std::make_unique<MatchRecord>(context.text(), 1, 0));
  context.clear_matches();
  EXPECT_EQ(context.matches.count(), 0u);
  EXPECT_EQ(context.text(), nullptr);
  EXPECT_EQ(context.text_length(), 0u);
}

TEST(PatternContext, AddsAndClearsUserClasses) {
  PatternContext context;
  EXPECT_EQ(context.add_user_class(nullptr), -1);
  EXPECT_EQ(context.add_user_class(std::make_unique<CharClass>("a")), 1);
  EXPECT_EQ(context.user_classes.count(), 1u);
  EXPECT_EQ(context.clear_user_classes(), 1);
  EXPECT_EQ(context.clear_user_classes(), 1);
  EXPECT_EQ(context.user_classes.count(), 0u);
}

TEST(PatternContext, ExpandsControlNamesAndKeepsEscapes) {
  PatternContext context;
  EXPECT_EQ(context.expand_control_names(R"(C:\dir^I\^J)"), "C:\\dir\t\\^J");
}

}  // namespace
}  // namespace zenfo
