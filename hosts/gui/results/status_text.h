// The state of a search in words: for its tab, and for the status line.
//
// Tested by tests/gui/results/status_text_test.cpp
#pragma once

#include <string>

#include "gui/results/result_set.h"

namespace zenfo::host::gui {

// The text that was looked for, cut if it is long, and the numbers.
std::string tab_title(const ResultSet& set);
// How far the search is, or what it found.
std::string status_line(const ResultSet& set);

}  // namespace zenfo::host::gui
