// Local times, on both systems; exact values natively, where the zone can be
// chosen.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "platform/files.h"

namespace zenfo::platform {
namespace {

constexpr uint64_t kFirstUnshown = uint64_t{1} << 63;

std::string text_of(const LocalTime& t) {
  char text[64];
  std::snprintf(text, sizeof text, "%d-%02d-%02d %02d:%02d:%02d", t.year,
                t.month, t.day, t.hour, t.minute, t.second);
  return text;
}

TEST(ToLocalTime, FailsFromTwoToThe63OnAndLeavesTheTimeAlone) {
  LocalTime time{1, 2, 3, 4, 5, 6};
  constexpr uint64_t kDay = 864000000000;  // more than any zone's offset
  for (const uint64_t unshown : {kFirstUnshown + kDay, ~uint64_t{0} - kDay}) {
    EXPECT_FALSE(to_local_time(unshown, time));
  }
  EXPECT_EQ("1-02-03 04:05:06", text_of(time));
}

TEST(LocalTimeNow, IsTheTimeOfTheCLibrary) {
  const std::time_t before = std::time(nullptr);
  const std::string now = text_of(local_time_now());
  const std::time_t after = std::time(nullptr);
  std::string expected[2];
  const std::time_t times[] = {before, after};
  for (int i = 0; i < 2; ++i) {
    const std::tm* t = std::localtime(&times[i]);
    expected[i] = text_of({t->tm_year + 1900, t->tm_mon + 1, t->tm_mday,
                           t->tm_hour, t->tm_min, t->tm_sec});
  }
  EXPECT_LE(expected[0], now);
  EXPECT_GE(expected[1], now);
}

#ifndef _WIN32
class Zone {
 public:
  explicit Zone(const char* name) {
    if (const char* old = getenv("TZ")) old_ = old;
    setenv("TZ", name, 1);
    tzset();
  }
  ~Zone() {
    if (old_.empty()) {
      unsetenv("TZ");
    } else {
      setenv("TZ", old_.c_str(), 1);
    }
    tzset();
  }

 private:
  std::string old_;
};

std::string shown(uint64_t file_time) {
  LocalTime time;
  return to_local_time(file_time, time) ? text_of(time) : "none";
}

TEST(ToLocalTime, CountsFrom1601) {
  const Zone utc("UTC0");
  EXPECT_EQ("1601-01-01 00:00:00", shown(0));
  EXPECT_EQ("1601-01-01 00:00:00", shown(9999999));
  EXPECT_EQ("1601-01-01 00:00:01", shown(10000000));
  EXPECT_EQ("1970-01-01 00:00:00", shown(116444736000000000));
  EXPECT_EQ("2000-02-29 23:59:59", shown(125963423990000000));
  EXPECT_EQ("2023-11-14 22:13:20", shown(133444736000000000));
  EXPECT_EQ("30828-09-14 02:48:05", shown(kFirstUnshown - 1));
  EXPECT_EQ("none", shown(kFirstUnshown));
}

TEST(ToLocalTime, FollowsTheZone) {
  const Zone west("WST5");
  EXPECT_EQ("2023-11-14 17:13:20", shown(133444736000000000));
  EXPECT_EQ("none", shown(0));  // still 1600 there
  const Zone east("EST-9:30");
  EXPECT_EQ("2023-11-15 07:43:20", shown(133444736000000000));
  EXPECT_EQ("1601-01-01 09:30:00", shown(0));
}
#endif

}  // namespace
}  // namespace zenfo::platform
