#include "display/text_painter.h"

#include <algorithm>

namespace zenfo {
namespace {

constexpr size_t kLongestNoted = 8192;  // bytes of a span
constexpr int32_t kRuleBeforeGutterEnd = 5;

void paint_line(DisplayState& state, Page& page, uint32_t line) {
  page.draw_number(line);
  int32_t x = page.move_to(line, page.gutter);
  const uint32_t left = state.left_column;
  const int32_t top = page.line_top(line);
  const int32_t bottom = pixel(int64_t{top} + page.line_height);
  LineSpans spans(state, line, left);
  Span span;
  while (!page.beyond(x) && spans.next(&span)) {
    const uint32_t hidden = left > span.column ? left - span.column : 0;
    if (hidden >= span.bytes.size()) continue;
    const int32_t start = x;
    x = page.draw(span.bytes.substr(hidden), span.colours, x);
    if (span.bytes.size() <= kLongestNoted) {
      state.note_painted(span, {start, top, x, bottom});
    }
  }
}

}  // namespace

int32_t paint_text(DisplayState& state,
                   const std::shared_ptr<platform::Canvas>& canvas,
                   const PaintOptions& options) {
  Page page(state, canvas, options);
  if (!page.begun()) return -1;
  const uint32_t end = page.end_line();
  for (uint32_t line = state.top_line; line < end; ++line) {
    paint_line(state, page, line);
  }
  if (page.line_numbers()) {
    page.draw_rule(int64_t{page.gutter} - kRuleBeforeGutterEnd);
  }
  return 1;
}

}  // namespace zenfo
