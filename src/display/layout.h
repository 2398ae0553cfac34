// Lays the display out: which ranges of the text are marked, which of their
// bytes are visible, and where lines begin.
//
// Three passes: gather the matches and areas in their order (the groups), cut
// them into disjoint pieces, split the text into lines. The first asks the host
// whether to stop. The host may call display operations meanwhile; if they
// change what is shown, this layout is abandoned.
//
// A host that never looks at the display is spared the layout: it is made by
// the first display operation, if nobody can notice that.
//
// Example: area (0,4) and match (1,2) in "abcdef", mode 0: groups area, match;
// pieces area (0,1), match (1,2), area (3,1); a plain span after them.
//
// Tested by tests/unit/display/layout_test.cpp
#pragma once

#include <cstdint>
#include <string_view>

#include "display/model.h"

namespace zenfo {

// Lays out what the state shows: as hex lines when bytes_per_line is not 0,
// else as text lines between separators. The window's scroll ranges follow.
//   separator  the new line separator; empty keeps the current one
//   mode       0 marks the areas, other values the text outside them; without
//              areas all matches are marked
// Returns 1; -1 when there is nothing to show, for a match or area that is no
// match record, a stop, or lack of memory; the display then has no groups.
// Intended: the first separator, unless one is given, is LF CR in this order,
// so that in usual texts only empty lines split.
int32_t prepare_display_now(DisplayState& state, std::string_view separator,
                            int32_t mode);
// The same, but while the host has no callback that the layout would call and
// no window, the layout may be left for later. Returns 1 then.
int32_t prepare_display(DisplayState& state, std::string_view separator,
                        int32_t mode);
// Makes a layout that was left for later, without calls to the host.
void make_deferred_layout(DisplayState& state);

}  // namespace zenfo
