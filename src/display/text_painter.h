// Paints the visible lines of a text layout, span by span, beginning at the
// left column, and notes where each match was drawn.
//
// Only what can be seen is touched: a paint costs the same in a line of a
// million bytes and in a text of a million lines.
//
// Tested by tests/unit/display/text_painter_test.cpp
#pragma once

#include <cstdint>
#include <memory>

#include "display/model.h"
#include "display/page.h"

namespace zenfo {

// 1, or -1 when the window cannot be painted; the state is then as before.
// Intended: a span longer than 8192 bytes is drawn but never hit, and the rule
// is 5 pixels left of the gutter's end.
int32_t paint_text(DisplayState& state,
                   const std::shared_ptr<platform::Canvas>& canvas,
                   const PaintOptions& options);

}  // namespace zenfo
