// Numbers of things in messages.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zenfo::host {

// "1 file", "2 files".
inline std::string counted(uint64_t number, std::string_view one,
                           std::string_view many) {
  std::string text = std::to_string(number) + ' ';
  text += number == 1 ? one : many;
  return text;
}

}  // namespace zenfo::host
