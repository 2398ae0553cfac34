// Every text of the interface, in one place. "&" stands before the letter of an
// access key, {0}, {1} for what format() fills in.
//
// Tested by tests/gui/words/strings_test.cpp
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace zenfo::host::gui {

enum class Text : uint16_t {
#define ZENFO_TEXT(id, text) id,
#include "gui/words/strings.inc"
#undef ZENFO_TEXT
};

std::string_view text(Text id);
// Without "&".
std::string plain_text(Text id);
// The text with {0}, {1}, ... replaced.
std::string format(Text id, std::initializer_list<std::string_view> parts);
// Digits in groups of three: "1,234,567".
std::string grouped(uint64_t number);
// "1 file", "1,234 files".
std::string counted_files(uint64_t number);
std::string counted_matches(uint64_t number);
// "2 KB": at most three digits before the unit; "1023 bytes".
std::string size_text(uint64_t bytes);

}  // namespace zenfo::host::gui
