// What is a binary file to this command: one with a zero byte, as for grep.
//
// find takes a file for text as long as it has not come across a zero byte: its
// first block decides, and behind that every line up to the one in hand.
// replace and case look at the whole file.
//
// Tested by tests/hosts/shared/binary_test.cpp
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zenfo::host {

// Bytes that are looked at before anything of a file is shown.
inline constexpr size_t kFirstBlock = 32 * 1024;

// The end of the text where there is none.
size_t first_zero_byte(std::string_view text);
// Reads no more than the first block. False for a file that cannot be read.
bool begins_as_binary(const std::string& path);
// Reads the file up to its first zero byte, in pieces. None for a file that
// cannot be read.
std::optional<bool> has_zero_byte(const std::string& path);

}  // namespace zenfo::host
