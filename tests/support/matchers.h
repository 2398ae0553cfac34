// Names that contract tests use without a namespace: matchers and "text"s.
#pragma once

#include <gmock/gmock.h>

#include <string>

namespace zenfo::test {

using namespace std::string_literals;

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

}  // namespace zenfo::test
