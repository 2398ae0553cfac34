// Properties of bytes in the C library's current locale, read once per
// operation instead of once per byte.
//
// Tested by tests/unit/text/byte_tables_test.cpp
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace zenfo {

struct ByteTables {
  std::array<uint8_t, 256> fold;          // tolower of every byte
  std::array<bool, 256> letter_or_digit;  // isalnum of every byte

  // For vector filters, which cannot look a byte up: bytes that fold to the
  // same byte are equal once these bits are set in both (0x20 for a pair of
  // letters).
  std::array<uint8_t, 256> fold_bits;
  // Whether the opposite is also true: bytes that are equal with these bits set
  // fold to the same byte. True for every byte of an ordinary locale.
  std::array<bool, 256> fold_bits_suffice;

  // Differs for every different folding; never 0.
  uint32_t fold_version = 1;
};

// The current tables. Built on first use; the reference stays valid for the
// whole process, its contents until the next refresh_byte_tables().
const ByteTables& byte_tables();
// Asks the C library again; every operation that compares texts calls it once
// at its start, so that a host's setlocale takes effect.
void refresh_byte_tables();

// Compares without regard to case: the difference of the first pair of bytes
// that differ after folding, a text that has ended counting as endless zero
// bytes.
int32_t compare_ignoring_case(std::string_view a, std::string_view b);

}  // namespace zenfo
