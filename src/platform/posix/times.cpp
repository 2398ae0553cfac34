// Local time from the system's time zone rules.
//
// Tested by tests/unit/platform/times_test.cpp
#include <time.h>

#include "platform/files.h"
#include "platform/posix/file_times.h"

namespace zenfo::platform {
namespace {

constexpr uint64_t kFirstUnshown = uint64_t{1} << 63;
constexpr int kFirstYear = 1601;

bool to_local_time_of_seconds(time_t seconds, LocalTime& out) {
  struct tm broken;
  if (localtime_r(&seconds, &broken) == nullptr) return false;
  const int year = broken.tm_year + 1900;
  if (year < kFirstYear) return false;  // 1601 UTC, west of Greenwich
  out = {year,           broken.tm_mon + 1, broken.tm_mday,
         broken.tm_hour, broken.tm_min,     broken.tm_sec};
  return true;
}

}  // namespace

LocalTime local_time_now() {
  LocalTime now;
  to_local_time_of_seconds(time(nullptr), now);
  return now;
}

bool to_local_time(uint64_t file_time, LocalTime& out) {
  if (file_time >= kFirstUnshown) return false;
  const int64_t seconds = static_cast<int64_t>(file_time / kStepsPerSecond);
  return to_local_time_of_seconds(seconds - kSecondsFrom1601To1970, out);
}

}  // namespace zenfo::platform
