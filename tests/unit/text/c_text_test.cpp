#include "text/c_text.h"

#include <gtest/gtest.h>

namespace zenfo {
namespace {

using namespace std::string_view_literals;

TEST(UpToNul, EndsAtTheFirstNul) {
  EXPECT_EQ(up_to_nul("abc"), "abc");
  EXPECT_EQ(up_to_nul("ab\0c\0"sv), "ab");
  EXPECT_EQ(up_to_nul("\0abc"sv), "");
  EXPECT_EQ(up_to_nul(""), "");
}

TEST(Printed, WritesAMissingTextAsNull) {
  EXPECT_EQ(printed("a\0b"sv), "a");
  EXPECT_EQ(printed(""), "");
  EXPECT_EQ(printed(std::nullopt), "(null)");
}

}  // namespace
}  // namespace zenfo
