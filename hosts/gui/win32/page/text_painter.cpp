#include "gui/win32/page/text_painter.h"

#include <algorithm>

#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr wchar_t kSpaceMark = L'\u00B7';
constexpr wchar_t kTabMark = L'\u2192';

void frame(HDC device, RECT box, int width, COLORREF colour) {
  SetDCBrushColor(device, colour);
  const auto brush = static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
  for (int i = 0; i < width; ++i) {
    FrameRect(device, &box, brush);
    InflateRect(&box, -1, -1);
  }
}

}  // namespace

void TextPainter::paint(TextRows& rows) {
  left_column_ = rows.left_column();
  fill(device_, area_, theme_.ground);
  RECT gutter = area_;
  gutter.right = gutter.left + m_.gutter;
  int top = area_.top;
  for (const ShownLine& line : rows.lines()) {
    paint_line(rows, line, top);
    top += m_.height;
  }
  // After the text, whose first character may be cut by the gutter.
  fill(device_, gutter, theme_.gutter);
  top = area_.top;
  for (const ShownLine& line : rows.lines()) {
    if (line.number != 0) paint_number(line.number, top);
    top += m_.height;
  }
}

void TextPainter::paint_number(uint64_t number, int top) {
  const std::wstring digits = std::to_wstring(number);
  SetBkColor(device_, theme_.gutter);
  SetTextColor(device_, theme_.number);
  const int width = static_cast<int>(digits.size()) * m_.cell;
  ExtTextOutW(device_, area_.left + m_.gutter - m_.cell - width, top, 0,
              nullptr, digits.c_str(), static_cast<UINT>(digits.size()),
              nullptr);
}

int TextPainter::x_of(const ShownLine& line, uint32_t unit) const {
  const int64_t column =
      int64_t{line.text->columns[unit]} - line.first_column() - left_column_;
  return area_.left + m_.left + static_cast<int>(column) * m_.cell;
}

// Only what the window shows is looked at, however long the line is.
void TextPainter::paint_line(const TextRows& rows, const ShownLine& line,
                             int top) {
  const uint32_t left = line.first_column() + left_column_;
  const auto width = static_cast<uint32_t>(
      std::max<LONG>(area_.right - area_.left - m_.left, 0) / m_.cell);
  const uint32_t first =
      unit_at_column(*line.text, line.first, line.last, left);
  uint32_t last =
      unit_at_column(*line.text, line.first, line.last, left + width + 1);
  last = std::min(last + 2, line.last);  // a pair is not cut
  if (first < last) {
    const std::vector<TextRun> runs = rows.runs(line, first, last);
    for (const TextRun& run : runs) {
      paint_run(line, run, top);
      if (white_space_) paint_white_space(line, run, top);
    }
    paint_frames(line, runs, top);
  }
  if (rows.is_end_selected(line)) paint_end(line, top);
}

TextPainter::Colours TextPainter::colours_of(const TextRun& run) const {
  if (run.selected) return {theme_.selected_ground, theme_.selected_text};
  if (run.current) return {theme_.current_ground, theme_.current_text};
  if (run.marked) return {theme_.mark_ground, theme_.mark_text};
  return {theme_.ground, run.area ? theme_.area_text : theme_.text};
}

// The width of each unit is given, so the columns are right in any font that
// the system takes a character from.
void TextPainter::paint_run(const ShownLine& line, const TextRun& run,
                            int top) {
  const LaidText& laid = *line.text;
  units_.clear();
  widths_.clear();
  for (uint32_t unit = run.first; unit < run.last; ++unit) {
    const char16_t c = laid.text[unit];
    units_ += c == u'\t' ? L' ' : static_cast<wchar_t>(c);
    widths_.push_back(
        static_cast<int>(laid.columns[unit + 1] - laid.columns[unit]) *
        m_.cell);
  }
  const Colours colours = colours_of(run);
  SetBkColor(device_, colours.ground);
  SetTextColor(device_, colours.text);
  const RECT box{x_of(line, run.first), top, x_of(line, run.last),
                 top + m_.height};
  ExtTextOutW(device_, box.left, top, ETO_OPAQUE | ETO_CLIPPED, &box,
              units_.c_str(), static_cast<UINT>(units_.size()), widths_.data());
}

void TextPainter::paint_white_space(const ShownLine& line, const TextRun& run,
                                    int top) {
  SetTextColor(device_, run.selected || run.marked ? colours_of(run).text
                                                   : theme_.dim_text);
  const int old = SetBkMode(device_, TRANSPARENT);
  for (uint32_t unit = run.first; unit < run.last; ++unit) {
    const char16_t c = line.text->text[unit];
    if (c != u' ' && c != u'\t') continue;
    const wchar_t mark = c == u' ' ? kSpaceMark : kTabMark;
    ExtTextOutW(device_, x_of(line, unit), top, 0, nullptr, &mark, 1, nullptr);
  }
  SetBkMode(device_, old);
}

// Around neighbouring runs of the current match together.
void TextPainter::paint_frames(const ShownLine& line,
                               const std::vector<TextRun>& runs, int top) {
  for (size_t i = 0; i < runs.size(); ++i) {
    if (!runs[i].current) continue;
    const uint32_t first = runs[i].first;
    while (i + 1 < runs.size() && runs[i + 1].current) ++i;
    const RECT box{x_of(line, first), top, x_of(line, runs[i].last),
                   top + m_.height};
    frame(device_, box, m_.frame, theme_.current_frame);
  }
}

// A selected line end looks like half a character.
void TextPainter::paint_end(const ShownLine& line, int top) {
  RECT box{x_of(line, line.last), top, 0, top + m_.height};
  box.right = box.left + (m_.cell + 1) / 2;
  fill(device_, box, theme_.selected_ground);
}

}  // namespace zenfo::host::gui::win32
