// What counts as a binary file: one with a zero byte, as for grep.
//
// find treats a file as text until it meets a zero byte: in the first block, or
// later in a line up to the current one. replace and case check the whole file.
//
// Tested by tests/hosts/shared/binary_test.cpp
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "shared/system/file_reader.h"

namespace zenfo::host {

// Bytes that are checked before anything of a file is shown.
inline constexpr size_t kFirstBlock = 32 * 1024;

// The size of the text when there is none.
size_t first_zero_byte(std::string_view text);
// Reads no more than the first block. False for a file that cannot be read.
bool begins_as_binary(const std::string& path);

// Looks for zero bytes in many files, one after the other.
class ZeroBytes {
 public:
  // Reads the file up to its first zero byte, in pieces. No value for a file
  // that cannot be read.
  std::optional<bool> in(const std::string& path);

 private:
  FileReader reader_;
  std::unique_ptr<char[]> block_;  // made for the first file
};

}  // namespace zenfo::host
