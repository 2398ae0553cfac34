// Matches that a change would not alter: "x" replaced by "x", capital letters
// changed to capital letters. They are not counted as changes, and a file that
// has no others is neither written nor copied.
//
// Tested by tests/hosts/shared/unchanged_test.cpp
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "shared/session/search.h"

namespace zenfo::host {

// Whether a match with this text would stay the same. Null: no match could.
using Stays = std::function<bool(std::string_view matched)>;

// For matches that are replaced by this text. Most search texts show at once
// that no match could stay; then the files need not be read.
Stays stays_as(const SearchOptions& search, const std::string& replacement);
// For matches whose letters become capital or small ones.
Stays stays_in_case(const SearchOptions& search, bool upper);

// Deselects the matches of the file in hand that stay, or whose own replacement
// is the same text. To be called inside the question.
void deselect_unchanged(const std::string& path, const Stays& stays);
// For runs in which each match has its own replacement.
bool stays_never(std::string_view matched);

}  // namespace zenfo::host
