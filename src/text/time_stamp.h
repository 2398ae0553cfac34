// The time as error records and undo files show it.
//
// Tested by tests/unit/text/time_stamp_test.cpp
#pragma once

#include <string>

#include "platform/files.h"

namespace zenfo {

// "2024/05/09-07:03:00"
std::string time_stamp(const platform::LocalTime& time);

}  // namespace zenfo
