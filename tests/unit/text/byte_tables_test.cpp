#include "text/byte_tables.h"

#include <gtest/gtest.h>

#include <string_view>

#include "support/temporary_locale.h"

namespace zenfo {
namespace {

using namespace std::string_view_literals;

TEST(ByteTables, FoldsCapitalsAndLeavesEveryOtherByte) {
  for (int byte = 0; byte < 256; ++byte) {
    const bool capital = byte >= 'A' && byte <= 'Z';
    EXPECT_EQ(byte_tables().fold[byte], capital ? byte + 32 : byte) << byte;
  }
}

TEST(ByteTables, KnowsLettersAndDigits) {
  for (int byte = 0; byte < 256; ++byte) {
    const bool expected = (byte >= '0' && byte <= '9') ||
                          (byte >= 'A' && byte <= 'Z') ||
                          (byte >= 'a' && byte <= 'z');
    EXPECT_EQ(byte_tables().letter_or_digit[byte], expected) << byte;
  }
}

// The promise that the vector filters rely on, for every pair of bytes.
void expect_fold_bits_to_agree_with_fold(const ByteTables& tables) {
  for (int a = 0; a < 256; ++a) {
    const uint8_t bits = tables.fold_bits[a];
    const uint8_t value = tables.fold[a] | bits;
    for (int b = 0; b < 256; ++b) {
      const bool alike = tables.fold[a] == tables.fold[b];
      const bool passes = (b | bits) == value;
      if (alike) {
        EXPECT_TRUE(passes) << a << ' ' << b;
      }
      if (passes && tables.fold_bits_suffice[a]) {
        EXPECT_TRUE(alike) << a << ' ' << b;
      }
    }
  }
}

TEST(ByteTables, FoldBitsMakeBytesAlikeThatFoldAlike) {
  expect_fold_bits_to_agree_with_fold(byte_tables());
}

TEST(ByteTables, FoldBitsAreTheCaseBitOfLettersAndSuffice) {
  const ByteTables& tables = byte_tables();
  EXPECT_EQ(tables.fold_bits['a'], 0x20);
  EXPECT_EQ(tables.fold_bits['Z'], 0x20);
  EXPECT_EQ(tables.fold_bits['@'], 0);
  EXPECT_EQ(tables.fold_bits['1'], 0);
  EXPECT_EQ(tables.fold_bits[0xE4], 0);
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_TRUE(tables.fold_bits_suffice[byte]) << byte;
  }
}

TEST(ByteTables, FollowTheLocaleOnlyWhenRefreshed) {
  const test::LatinLocale locale;
  if (!locale.in_force()) GTEST_SKIP() << "no localedef or locale sources";
  const ByteTables& tables = byte_tables();
  EXPECT_EQ(tables.fold[0xC4], 0xE4);
  EXPECT_TRUE(tables.letter_or_digit[0xE4]);
  EXPECT_FALSE(tables.letter_or_digit[0xA7]);
  expect_fold_bits_to_agree_with_fold(tables);
  std::setlocale(LC_CTYPE, "C");
  EXPECT_EQ(tables.fold[0xC4], 0xE4);
  const uint32_t version = tables.fold_version;
  refresh_byte_tables();
  EXPECT_NE(tables.fold_version, version);
  EXPECT_EQ(tables.fold[0xC4], 0xC4);
  EXPECT_FALSE(tables.letter_or_digit[0xE4]);
}

TEST(ByteTables, KeepTheirVersionWhileTheFoldingStays) {
  const uint32_t version = byte_tables().fold_version;
  refresh_byte_tables();
  EXPECT_EQ(byte_tables().fold_version, version);
}

struct Comparison {
  std::string_view a;
  std::string_view b;
  int32_t difference;
};

TEST(CompareIgnoringCase, AnswersTheFirstDifferenceAfterFolding) {
  const Comparison comparisons[] = {
      {"", "", 0},
      {"abc", "abc", 0},
      {"ABC", "abc", 0},
      {"abC", "aBd", 'c' - 'd'},
      {"b", "A", 'b' - 'a'},
      {"Z", "_", 'z' - '_'},
      {"abc", "ab", 'c'},
      {"ab", "abC", -'c'},
      {"", "A", -'a'},
      {"\x80", "\x7F", 1},
      {"\xFF", "", 0xFF},
      {"", "\xFF", -0xFF},
      {"a\0"sv, "a", 0},
      {"a", "a\0\0"sv, 0},
      {"a\0B"sv, "a", 'b'},
      {"a", "a\0B"sv, -'b'},
      {"a\0b"sv, "a\0C"sv, 'b' - 'c'},
  };
  for (const Comparison& row : comparisons) {
    EXPECT_EQ(compare_ignoring_case(row.a, row.b), row.difference)
        << row.a << " and " << row.b;
  }
}

}  // namespace
}  // namespace zenfo
