// Rewrites a file with the case of its selected matches changed.
//
// Unlike the replace engines it writes the whole text, NUL bytes included, and
// changes the letters of each match up to the match's first NUL.
//
// Tested by tests/unit/replace/case_engine_test.cpp
#pragma once

#include <cstdint>

#include "pattern/context.h"
#include "replace/rewriter.h"

namespace zenfo {

// Changes a-z to upper case (or A-Z to lower case) and no other byte. Returns
// the number of matches changed; -1 for no path, no text, a file that cannot be
// written, or an interrupt.
int32_t change_case(PatternContext& context, const Destination& destination,
                    bool upper);

}  // namespace zenfo
