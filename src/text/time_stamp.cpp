#include "text/time_stamp.h"

#include <cstdio>

namespace zenfo {

std::string time_stamp(const platform::LocalTime& time) {
  char text[72];
  std::snprintf(text, sizeof text, "%02d/%02d/%02d-%02d:%02d:%02d", time.year,
                time.month, time.day, time.hour, time.minute, time.second);
  return text;
}

}  // namespace zenfo
