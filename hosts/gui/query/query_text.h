// Typed text to the texts that the library searches for, and lists in one
// field: "*.c; *.h".
//
// Tested by tests/gui/query/query_text_test.cpp
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zenfo::host::gui {

// The byte texts to search for. A typed line break stands for both line ends of
// files, so a text with one becomes two: with LF and with CR LF.
std::vector<std::string> texts_to_find(std::string_view typed);
// The typed form of bytes: line ends become LF. texts_to_find() of it finds the
// bytes, unless they mix both line ends.
std::string typed_form(std::string_view bytes);

// A text as a field of one line shows it: "\u21B5" stands for a line break. So
// this character itself cannot be searched for.
std::string field_form(std::string_view text);
std::string text_of_field(std::string_view field);
inline constexpr std::string_view kLineBreakSign = "\u21B5";

// Parts between ";", without the blanks around them; empty parts are dropped. A
// part that contains ";" stands in double quotes.
std::vector<std::string> split_list(std::string_view field);
std::string join_list(const std::vector<std::string>& parts);

}  // namespace zenfo::host::gui
