// What both painters begin with: the font, how many lines and columns fit
// beside the gutter, and where the shown text begins.
//
// A column is as wide as the font's widest character, so a page in a variable
// font shows more bytes than it has columns.
//
// Tested by tests/unit/display/page_test.cpp
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "display/model.h"
#include "platform/canvas.h"

namespace zenfo {

struct PaintOptions {
  uint32_t top_line = 0;     // wanted; the page may begin at 0 instead
  uint32_t left_column = 0;  // likewise
  bool line_numbers = false;
  bool fixed_font = false;
};

// One paint of the visible lines. The destructor ends painting.
class Page {
 public:
  // Begins painting, selects the font and stores page lines, page columns, top
  // line and left column in the state. When the window cannot be painted,
  // begun() is false and the state is as before.
  Page(DisplayState& state, std::shared_ptr<platform::Canvas> canvas,
       const PaintOptions& options);
  ~Page();
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;

  bool begun() const { return begun_; }

  // Pixels.
  platform::Rectangle client;
  int32_t column_width = 1;
  int32_t line_height = 1;
  int32_t gutter = 0;  // 0 without line numbers

  // One past the last line to draw.
  uint32_t end_line() const;
  // The top of a visible line.
  int32_t line_top(uint32_t line) const;

  // Writes a visible line's number at the left, when numbers are on.
  void draw_number(uint32_t line);
  // Moves to a visible line, `right` pixels right of the client's left edge;
  // returns the x position.
  int32_t move_to(uint32_t line, int64_t right);
  // Draws at `x`, the current position, in calls of at most 8192 bytes, as far
  // as the text is visible; returns where it ends.
  int32_t draw(std::string_view text, const Colours& colours, int32_t x);
  // Whether text at `x` is right of everything visible.
  bool beyond(int32_t x) const { return x >= client.right; }
  // A rule from top to bottom.
  void draw_rule(int64_t right);

  bool line_numbers() const { return line_numbers_; }

 private:
  // The font, and how many lines and columns of it fit.
  void measure(platform::Font font);
  // Where the page begins.
  void place(const PaintOptions& options);

  DisplayState& state_;
  std::shared_ptr<platform::Canvas> canvas_;
  bool line_numbers_;
  bool begun_;
};

// Pixel positions stay within what the system can take.
int32_t pixel(int64_t position);

}  // namespace zenfo
