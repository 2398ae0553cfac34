// Matches that a change would leave as they are: "x" replaced by "x", capital
// letters turned to capital ones. They are no changes: they are not counted,
// and a file that has no others is neither written nor kept safe.
//
// Tested by tests/hosts/shared/unchanged_test.cpp
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "shared/session/search.h"

namespace zenfo::host {

// Whether a match would stay as it is, by its text. Null: no match could.
using Stays = std::function<bool(std::string_view matched)>;

// Of matches that become this text. Most texts that are sought tell at once
// that no match could stay; the files need not be read for it then.
Stays stays_as(const SearchOptions& search, const std::string& replacement);
// Of matches whose letters are turned to capital or small ones.
Stays stays_in_case(const SearchOptions& search, bool upper);

// To be called inside the question: deselects those matches of the file in hand
// that stay, or whose own replacement is what they are.
void deselect_unchanged(const std::string& path, const Stays& stays);
// For matches with replacements of their own and nothing else.
bool stays_never(std::string_view matched);

}  // namespace zenfo::host
