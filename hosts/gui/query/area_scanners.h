// The scanners behind area_kinds.h. Each reads a text once, never fails, and
// takes an area without an end to reach to the end of the text; a string in
// quotes ends with its line at the latest.
//
// Tested by tests/gui/query/area_kinds_test.cpp
#pragma once

#include <string_view>
#include <vector>

#include "shared/text/found_text.h"

namespace zenfo::host::gui {

// "//" to the end of the line (without it) and "/*" to "*/", not in strings.
std::vector<Match> code_comments(std::string_view text);
// "..." and '...' with their quotes, with "\" before any byte, not in comments.
std::vector<Match> code_strings(std::string_view text);
// "<" before a letter, "/", "!" or "?", to its ">", which may stand in quotes
// before that; comments and CDATA sections to their own ends.
std::vector<Match> markup_tags(std::string_view text);
// "#" at the start of a word to the end of the line, not in quotes.
std::vector<Match> shell_comments(std::string_view text);

}  // namespace zenfo::host::gui
