// Paints the lines of a text page: gutter, text, matches, selection.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gui/text/text_rows.h"
#include "gui/win32/base/system.h"
#include "gui/win32/base/theme.h"

namespace zenfo::host::gui::win32 {

// Sizes in pixels of the screen.
struct TextMeasures {
  int cell = 8;     // the width of a character
  int height = 16;  // of a line
  int gutter = 0;   // the width of the part with numbers
  int left = 0;     // where the text begins
  int frame = 1;    // the width of the current match's frame
};

class TextPainter {
 public:
  TextPainter(HDC device, const RECT& area, const TextMeasures& measures,
              const Theme& theme)
      : device_(device), area_(area), m_(measures), theme_(theme) {}

  void show_white_space(bool on) { white_space_ = on; }
  // The font is selected into the device.
  void paint(TextRows& rows);

 private:
  struct Colours {
    COLORREF ground;
    COLORREF text;
  };

  void paint_number(uint64_t number, int top);
  void paint_line(const TextRows& rows, const ShownLine& line, int top);
  void paint_run(const ShownLine& line, const TextRun& run, int top);
  void paint_white_space(const ShownLine& line, const TextRun& run, int top);
  void paint_frames(const ShownLine& line, const std::vector<TextRun>& runs,
                    int top);
  void paint_end(const ShownLine& line, int top);
  Colours colours_of(const TextRun& run) const;
  int x_of(const ShownLine& line, uint32_t unit) const;

  HDC device_;
  RECT area_;
  TextMeasures m_;
  const Theme& theme_;
  bool white_space_ = false;
  uint32_t left_column_ = 0;
  std::wstring units_;  // of a run, kept for its memory
  std::vector<INT> widths_;
};

}  // namespace zenfo::host::gui::win32
