// The system's own list of variables: the C library of a host keeps a copy of
// its own.
//
// Tested by tests/unit/platform/environment_test.cpp
#include "platform/environment.h"

#include "platform/win32/system.h"

namespace zenfo::platform {

std::string environment(const char* name) {
  std::string value(GetEnvironmentVariableA(name, nullptr, 0), '\0');
  if (value.empty()) return value;
  const auto room = static_cast<DWORD>(value.size());
  const DWORD length = GetEnvironmentVariableA(name, value.data(), room);
  value.resize(length < room ? length : 0);
  return value;
}

}  // namespace zenfo::platform
