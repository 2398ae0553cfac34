// A test of replacing in one file.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "support/run_fixture.h"

namespace zenfo::test {

class ReplaceTest : public RunTest {
 protected:
  // The new bytes of one file, and the number of matches on request.
  std::string becomes(const Operation& run, const RunArguments& arguments,
                      std::string_view text, int32_t* answer = nullptr) {
    EXPECT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
    const std::string path = add("f", text);
    const int32_t count = run(arguments, nullptr);
    if (answer != nullptr) *answer = count;
    return read_file(path);
  }
};

}  // namespace zenfo::test
