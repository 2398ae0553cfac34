// The environment of the process.
//
// Tested by tests/unit/platform/environment_test.cpp
#pragma once

#include <string>

namespace zenfo::platform {

// The value of a variable; empty when there is none.
std::string environment(const char* name);

}  // namespace zenfo::platform
