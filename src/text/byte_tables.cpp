// Properties of bytes in the C library's locale.
//
// Tested by tests/unit/text/byte_tables_test.cpp
#include "text/byte_tables.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <cstddef>

namespace zenfo {
namespace {

void ask_c_library(ByteTables& tables) {
  for (int byte = 0; byte < 256; ++byte) {
    tables.fold[byte] = static_cast<uint8_t>(std::tolower(byte));
    tables.letter_or_digit[byte] = std::isalnum(byte) != 0;
  }
}

// `bits` gathers, for each folded byte, in what its sources differ from it. If
// as many bytes fold to it as these bits have values, every value is a source.
void derive_fold_bits(ByteTables& tables) {
  std::array<uint8_t, 256> bits{};
  std::array<unsigned, 256> sources{};
  for (unsigned byte = 0; byte < 256; ++byte) {
    const uint8_t folded = tables.fold[byte];
    bits[folded] |= static_cast<uint8_t>(byte ^ folded);
    ++sources[folded];
  }
  for (unsigned byte = 0; byte < 256; ++byte) {
    const uint8_t folded = tables.fold[byte];
    tables.fold_bits[byte] = bits[folded];
    tables.fold_bits_suffice[byte] =
        sources[folded] == 1u << std::popcount(bits[folded]);
  }
}

ByteTables make_tables() {
  ByteTables tables;
  ask_c_library(tables);
  derive_fold_bits(tables);
  return tables;
}

ByteTables& tables_in_force() {
  static ByteTables tables = make_tables();
  return tables;
}

// The first byte of the longer text's rest that is not zero: the other text,
// having ended, counts as zero bytes.
int32_t compare_rest_with_end(std::string_view rest,
                              const std::array<uint8_t, 256>& fold) {
  for (const char byte : rest) {
    const int32_t folded = fold[static_cast<uint8_t>(byte)];
    if (folded != 0) return folded;
  }
  return 0;
}

}  // namespace

const ByteTables& byte_tables() { return tables_in_force(); }

void refresh_byte_tables() {
  ByteTables& tables = tables_in_force();
  const auto fold = tables.fold;
  ask_c_library(tables);
  if (tables.fold == fold) return;
  derive_fold_bits(tables);
  ++tables.fold_version;
}

int32_t compare_ignoring_case(std::string_view a, std::string_view b) {
  const auto& fold = byte_tables().fold;
  const size_t common = std::min(a.size(), b.size());
  for (size_t i = 0; i < common; ++i) {
    const int32_t difference =
        fold[static_cast<uint8_t>(a[i])] - fold[static_cast<uint8_t>(b[i])];
    if (difference != 0) return difference;
  }
  if (a.size() >= b.size())
    return compare_rest_with_end(a.substr(common), fold);
  return -compare_rest_with_end(b.substr(common), fold);
}

}  // namespace zenfo
