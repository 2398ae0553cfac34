// Tested by tests/unit/platform/environment_test.cpp
#include "platform/environment.h"

#include <cstdlib>

namespace zenfo::platform {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace zenfo::platform
