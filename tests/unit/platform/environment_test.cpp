#include "platform/environment.h"

#include <gtest/gtest.h>

#include <string>

#include "support/environment.h"

namespace zenfo::platform {
namespace {

TEST(Environment, AnswersTheValueAtTheMoment) {
  constexpr char kName[] = "ZENFO_TEST_VARIABLE";
  zenfo::test::EnvironmentVariable variable(kName, nullptr);
  EXPECT_EQ(environment(kName), "");
  const std::string long_value(3000, 'x');
  for (const std::string& value : {std::string("a,b"), long_value}) {
    variable.set(value.c_str());
    EXPECT_EQ(environment(kName), value);
  }
  variable.set(nullptr);
  EXPECT_EQ(environment(kName), "");
}

}  // namespace
}  // namespace zenfo::platform
