// Paints the visible lines of a hex layout span by span: first the bytes as
// digits, three columns for each, beginning at the left column, then all of
// them as characters.
//
// Only what can be seen is touched, however many bytes a line has.
//
// Tested by tests/unit/display/hex_painter_test.cpp
#pragma once

#include <cstdint>
#include <memory>

#include "display/model.h"
#include "display/page.h"

namespace zenfo {

// 1, or -1 when the window cannot be painted; the state is then as before.
// Control bytes are shown as dots among the characters. Intended: the
// characters never scroll out at the left, but stop at the client's edge, and
// the gutter's rule is at its end.
int32_t paint_hex(DisplayState& state,
                  const std::shared_ptr<platform::Canvas>& canvas,
                  const PaintOptions& options);

}  // namespace zenfo
