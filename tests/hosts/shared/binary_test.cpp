// Which files are binary, and how much of them is read.
#include "shared/text/binary.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"

namespace zenfo::host {
namespace {

using test::TempFolder;

std::string zero_at(size_t offset) {
  std::string text(offset + 2, 'x');
  text[offset] = '\0';
  return text;
}

TEST(FirstZeroByte, IsTheEndWhereThereIsNone) {
  EXPECT_EQ(first_zero_byte(""), 0u);
  EXPECT_EQ(first_zero_byte({}), 0u);
  EXPECT_EQ(first_zero_byte("\x01\f\xff"), 3u);
  EXPECT_EQ(first_zero_byte(zero_at(0)), 0u);
  EXPECT_EQ(first_zero_byte(zero_at(70'000)), 70'000u);
}

TEST(BeginsAsBinary, LooksAtTheFirstBlock) {
  const TempFolder folder;
  EXPECT_TRUE(begins_as_binary(folder.file("a", zero_at(0))));
  EXPECT_TRUE(begins_as_binary(folder.file("a", zero_at(kFirstBlock - 1))));
  EXPECT_FALSE(begins_as_binary(folder.file("a", zero_at(kFirstBlock))));
  EXPECT_FALSE(begins_as_binary(folder.file("a", "\x01\f")));
  EXPECT_FALSE(begins_as_binary(folder.file("a", "")));
  EXPECT_FALSE(begins_as_binary(folder.path("none")));
}

TEST(HasZeroByte, LooksAtTheWholeFile) {
  const TempFolder folder;
  for (const size_t offset : {size_t{0}, kFirstBlock, 8 * kFirstBlock - 1,
                              8 * kFirstBlock, 9 * kFirstBlock}) {
    EXPECT_EQ(has_zero_byte(folder.file("a", zero_at(offset))), true) << offset;
  }
  EXPECT_EQ(has_zero_byte(folder.file("a", std::string(300'000, '\x01'))),
            false);
  EXPECT_EQ(has_zero_byte(folder.file("a", "")), false);
  EXPECT_EQ(has_zero_byte(folder.path("none")), std::nullopt);
}

}  // namespace
}  // namespace zenfo::host
