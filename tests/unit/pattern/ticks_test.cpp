#include "pattern/ticks.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::HookLog;

TEST(Ticks, ReportsTheStartAndIsSilentWhenNobodyListens) {
  PatternContext context;
  HookLog log(context, 1, 0, false, true);
  Ticks reported(context, 10);
  EXPECT_FALSE(reported.silent());
  EXPECT_EQ(HookLog::text(), " 0/10=0%");
  HookLog none(context, 1, 0, false, false);
  Ticks silent(context, 10);
  EXPECT_TRUE(silent.silent());
  EXPECT_FALSE(silent.attempt_at(5));
  EXPECT_FALSE(silent.attempts_at_all(0, 9));
  EXPECT_EQ(search_counters().polls, 0u);
}

TEST(Ticks, ReportsBeforeItPolls) {
  PatternContext context;
  HookLog log(context, 1);
  Ticks ticks(context, 4);
  EXPECT_FALSE(ticks.attempt_at(2));
  ticks.finish();
  EXPECT_EQ(HookLog::text(), " 0/4=0% 2/4=50% poll 4/4=100%");
}

// Reporting many attempts at once makes the same calls as reporting each.
TEST(Ticks, ManyAttemptsMakeTheSameCallsAsEach) {
  std::mt19937 random(3);
  std::array<bool, 256> flags{};
  flags['a'] = true;
  const ByteSet set(flags);
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (size_t n = 2 + random() % 400; n > 0; --n) {
      text += random() % 3 == 0 ? 'b' : 'a';
    }
    const size_t from = random() % (text.size() - 1);
    const size_t to = from + random() % (text.size() - from);
    const uint32_t interval = 1 + random() % 20;
    const int cancel_at = static_cast<int>(random() % 6);
    const bool breaks = random() % 2 == 0;
    const bool polls = random() % 4 != 0;
    const bool reports = random() % 4 != 0;
    PatternContext context;

    HookLog each(context, interval, cancel_at, polls, reports);
    bool stopped = false;
    {
      Ticks ticks(context, text.size());
      for (size_t x = from + 1; x <= to && !stopped; ++x) {
        if (breaks && text[x] == 'a' && text[x - 1] == 'a') continue;
        stopped = ticks.attempt_at(x);
      }
    }
    const std::string expected = HookLog::text();

    HookLog many(context, interval, cancel_at, polls, reports);
    Ticks ticks(context, text.size());
    EXPECT_EQ(breaks ? ticks.attempts_at_breaks(text.data(), set, from, to)
                     : ticks.attempts_at_all(from, to),
              stopped);
    EXPECT_EQ(HookLog::text(), expected);
  }
}

}  // namespace
}  // namespace zenfo
