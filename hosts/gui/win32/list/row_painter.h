// Paints the rows of a list of results.
#pragma once

#include <vector>

#include "gui/win32/base/glyphs.h"
#include "gui/win32/base/look.h"
#include "gui/win32/list/file_icons.h"
#include "gui/win32/list/line_cache.h"
#include "gui/win32/list/result_tab.h"
#include "gui/win32/list/row_text.h"

namespace zenfo::host::gui::win32 {

// What a place in a row is for.
enum class RowPart { kArrow, kCheck, kRest };

class RowPainter {
 public:
  RowPainter(const Look& look, const LineCache& lines, FileIcons& icons)
      : look_(look), lines_(lines), icons_(icons) {}

  // `columns` are the cells of the row, left to right, as the list shows them.
  void paint(HDC device, const RECT& row, const std::vector<RECT>& columns,
             const ResultTab& tab, ResultRow what, bool focused) const;
  // `x` counts from the row's left end.
  RowPart part_at(int x, const ResultTab& tab, ResultRow what) const;

 private:
  void paint_file(HDC device, const std::vector<RECT>& columns,
                  const ResultTab& tab, uint32_t file) const;
  void paint_match(HDC device, const RECT& row, const ResultTab& tab,
                   ResultRow what, bool selected) const;
  void paint_line(HDC device, RECT area, const LineText& line,
                  COLORREF colour) const;
  void paint_icon(HDC device, RECT& cell, const ResultFile& file) const;
  int arrow_width() const { return look_.scale(18); }
  int check_width() const { return look_.scale(20); }
  int indent() const { return look_.scale(18); }

  const Look& look_;
  const LineCache& lines_;
  FileIcons& icons_;
};

}  // namespace zenfo::host::gui::win32
