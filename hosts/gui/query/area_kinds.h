// Ready-made kinds of areas: comments, strings, tags.
//
// A pattern cannot tell a comment from a string with "//" in it. So these areas
// are found by small scanners in the host, which know enough of the language,
// and matches on the wrong side are deselected in the question: the library
// then neither counts nor changes them. A match that lies partly in an area is
// neither outside nor inside.
//
// Tested by tests/gui/query/area_kinds_test.cpp
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "gui/words/strings.h"
#include "shared/text/found_text.h"

namespace zenfo::host::gui {

struct AreaKind {
  std::string_view name;  // in queries
  Text label;
  // The areas of a text, in order, apart from each other.
  std::vector<Match> (*areas_of)(std::string_view text);
};

// In the order in which they are offered.
std::span<const AreaKind> area_kinds();
// Null for an unknown name.
const AreaKind* find_area_kind(std::string_view name);

// What a search outside, or inside, of the areas leaves out: the areas, or all
// between and around them, also behind the end of the text.
std::vector<Match> left_out(std::vector<Match> areas, bool inside);

// Whether a match may stay. The areas are as AreaKind returns them.
bool is_wanted(const Match& match, std::span<const Match> areas, bool inside);

}  // namespace zenfo::host::gui
