// Local time as the system converts it: with the present offset from UTC,
// whatever the season of the time shown.
//
// Tested by tests/unit/platform/times_test.cpp
#include "platform/files.h"
#include "platform/win32/system.h"

namespace zenfo::platform {
namespace {

LocalTime from_system_time(const SYSTEMTIME& time) {
  return {time.wYear, time.wMonth,  time.wDay,
          time.wHour, time.wMinute, time.wSecond};
}

}  // namespace

LocalTime local_time_now() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return from_system_time(now);
}

bool to_local_time(uint64_t file_time, LocalTime& out) {
  const FILETIME utc = {static_cast<DWORD>(file_time),
                        static_cast<DWORD>(file_time >> 32)};
  FILETIME local;
  SYSTEMTIME broken;
  if (!FileTimeToLocalFileTime(&utc, &local) ||
      !FileTimeToSystemTime(&local, &broken)) {
    return false;
  }
  out = from_system_time(broken);
  return true;
}

}  // namespace zenfo::platform
