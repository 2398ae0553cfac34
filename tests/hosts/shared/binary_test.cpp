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

TEST(ZeroBytes, LookAtTheWholeFile) {
  const TempFolder folder;
  ZeroBytes zero_bytes;
  for (const size_t offset : {size_t{0}, kFirstBlock, 8 * kFirstBlock - 1,
                              8 * kFirstBlock, 9 * kFirstBlock}) {
    const std::string file = folder.file("a", zero_at(offset));
    EXPECT_EQ(zero_bytes.in(file), true) << offset;
  }
  // Nothing of the files before counts, nor of one that cannot be read.
  EXPECT_EQ(zero_bytes.in(folder.path("none")), std::nullopt);
  for (const size_t size : {size_t{0}, size_t{1}, 8 * kFirstBlock,
                            8 * kFirstBlock + 1, 16 * kFirstBlock}) {
    const std::string file = folder.file("a", std::string(size, '\x01'));
    EXPECT_EQ(zero_bytes.in(file), false) << size;
  }
}

}  // namespace
}  // namespace zenfo::host
