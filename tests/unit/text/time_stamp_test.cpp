#include "text/time_stamp.h"

#include <gtest/gtest.h>

#include <climits>

namespace zenfo {
namespace {

TEST(TimeStamp, GivesDateAndTimeInDigits) {
  EXPECT_EQ(time_stamp({2024, 5, 9, 7, 3, 0}), "2024/05/09-07:03:00");
  EXPECT_EQ(time_stamp({1999, 12, 31, 23, 59, 58}), "1999/12/31-23:59:58");
}

TEST(TimeStamp, HasRoomForAnyNumbers) {
  EXPECT_EQ(time_stamp({INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN}),
            "-2147483648/-2147483648/-2147483648"
            "--2147483648:-2147483648:-2147483648");
}

}  // namespace
}  // namespace zenfo
