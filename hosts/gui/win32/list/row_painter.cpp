#include "gui/win32/list/row_painter.h"

#include <algorithm>
#include <string>

#include "gui/win32/base/wide.h"
#include "gui/words/strings.h"

namespace zenfo::host::gui::win32 {
namespace {

Check check_of(const ResultTab& tab, ResultRow row) {
  if (!row.is_file()) {
    return tab.set().is_chosen(row.file, row.match) ? Check::kOn : Check::kOff;
  }
  switch (tab.set().file(row.file).choice()) {
    case Choice::kAll:
      return Check::kOn;
    case Choice::kSome:
      return Check::kSome;
    case Choice::kNone:
      break;
  }
  return Check::kOff;
}

int width_in(HDC device, const std::wstring& text, size_t length) {
  SIZE size{};
  GetTextExtentPoint32W(device, text.c_str(),
                        static_cast<int>(std::min(length, text.size())), &size);
  return size.cx;
}

// Cuts the start of a line whose match would not be in view.
void bring_into_view(HDC device, LineText& line, int width) {
  constexpr uint32_t kKept = 20;  // characters before the match
  if (line.start <= kKept) return;
  if (width_in(device, line.text, line.start + line.length) < width) return;
  const uint32_t cut = line.start - kKept;
  line.text = L"\u2026" + line.text.substr(cut);
  line.start -= cut - 1;
}

void draw_text(HDC device, RECT area, const std::wstring& text, UINT flags) {
  DrawTextW(device, text.c_str(), static_cast<int>(text.size()), &area,
            DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | flags);
}

// A text whose characters stand where they were measured: what the system draws
// by itself may be narrower.
class SpacedText {
 public:
  SpacedText(HDC device, const std::wstring& text) : text_(text) {
    const auto count =
        static_cast<int>(std::min<size_t>(text.size(), kMostCharacters));
    ends_.resize(static_cast<size_t>(count));
    SIZE size{};
    GetTextExtentExPointW(device, text.c_str(), count, 0, nullptr, ends_.data(),
                          &size);
    height_ = size.cy;
    for (size_t i = 0; i < ends_.size(); ++i) {
      widths_.push_back(ends_[i] - (i == 0 ? 0 : ends_[i - 1]));
    }
  }

  // Where the first `count` characters end.
  LONG end_of(size_t count) const {
    if (count == 0 || ends_.empty()) return 0;
    return ends_[std::min(count, ends_.size()) - 1];
  }
  // The part of it that lies in the area.
  void draw(HDC device, const RECT& area, int x) const {
    const int y = (area.top + area.bottom - height_) / 2;
    ExtTextOutW(device, x, y, ETO_CLIPPED, &area, text_.c_str(),
                static_cast<UINT>(widths_.size()), widths_.data());
  }

 private:
  static constexpr size_t kMostCharacters = 1000;  // more than a row shows

  const std::wstring& text_;
  std::vector<INT> ends_;
  std::vector<INT> widths_;
  int height_ = 0;
};

}  // namespace

void RowPainter::paint(HDC device, const RECT& row,
                       const std::vector<RECT>& columns, const ResultTab& tab,
                       ResultRow what, bool focused) const {
  const Theme& theme = look_.theme;
  const bool selected = tab.list().selection.has(what);
  fill(device, row, selected ? theme.selected_ground : theme.ground);
  const HGDIOBJ old = SelectObject(device, look_.font.get());
  SetBkMode(device, TRANSPARENT);
  SetTextColor(device, selected ? theme.selected_text : theme.text);
  if (what.is_file()) {
    paint_file(device, columns, tab, what.file);
  } else {
    paint_match(device, row, tab, what, selected);
  }
  if (focused) {
    SetTextColor(device, theme.text);
    SetBkColor(device, theme.ground);
    DrawFocusRect(device, &row);
  }
  SelectObject(device, old);
}

void RowPainter::paint_file(HDC device, const std::vector<RECT>& columns,
                            const ResultTab& tab, uint32_t file) const {
  const std::vector<Column>& ids = columns_of(tab.shown);
  for (size_t i = 0; i < columns.size() && i < ids.size(); ++i) {
    RECT cell = columns[i];
    if (i == 0 && tab.shown == ResultState::kFound) {
      RECT sign = cell;
      sign.right = sign.left + arrow_width();
      draw_arrow(
          device, sign,
          tab.list().rows.is_open(file) ? Pointing::kDown : Pointing::kRight,
          GetTextColor(device), look_);
      sign.left = sign.right;
      sign.right += check_width();
      draw_check(device, sign, check_of(tab, {file, ResultRow::kNoMatch}),
                 look_);
      cell.left = sign.right + look_.scale(2);
    } else {
      cell.left += look_.scale(6);
    }
    if (i == 0) paint_icon(device, cell, tab.set().file(file));
    cell.right -= look_.scale(6);
    const HFONT font = (i == 0 ? look_.bold : look_.font).get();
    SelectObject(device, font);
    std::wstring text = cell_text(tab, file, ids[i].id);
    // How many are listed stands in the status line, too.
    if (ids[i].id == ResultColumn::kMatches &&
        width_in(device, text, text.size()) > cell.right - cell.left) {
      text = wide(grouped(tab.set().file(file).count));
    }
    draw_text(device, cell, text,
              DT_END_ELLIPSIS | (ids[i].right ? DT_RIGHT : DT_LEFT));
  }
}

// Takes its room off the cell, also before there is an icon.
void RowPainter::paint_icon(HDC device, RECT& cell,
                            const ResultFile& file) const {
  const int side = look_.scale(16);
  const int y = (cell.top + cell.bottom - side) / 2;
  const HICON icon = icons_.find(file.extension());
  if (icon != nullptr && cell.left + side <= cell.right) {
    DrawIconEx(device, cell.left, y, icon, side, side, 0, nullptr, DI_NORMAL);
  }
  cell.left += side + look_.scale(5);
}

void RowPainter::paint_match(HDC device, const RECT& row, const ResultTab& tab,
                             ResultRow what, bool selected) const {
  RECT sign = row;
  sign.left += indent() + arrow_width();
  sign.right = sign.left + check_width();
  draw_check(device, sign, check_of(tab, what), look_);
  const LineText line = line_text(lines_.find(tab, what));
  RECT number = row;
  number.left = sign.right;
  number.right = number.left + look_.scale(48);
  const COLORREF colour = GetTextColor(device);
  if (!selected) SetTextColor(device, look_.theme.number);
  draw_text(device, number, line.number, DT_RIGHT);
  SetTextColor(device, colour);
  RECT text = row;
  text.left = number.right + look_.scale(10);
  text.right -= look_.scale(6);
  if (text.left < text.right) paint_line(device, text, line, colour);
}

// The mark is a ground of its own, and a line below, as colour alone is no sign
// for all.
void RowPainter::paint_line(HDC device, RECT area, const LineText& wanted,
                            COLORREF colour) const {
  LineText line = wanted;
  bring_into_view(device, line, area.right - area.left);
  const SpacedText text(device, line.text);
  text.draw(device, area, area.left);
  if (line.length == 0) return;
  RECT mark = area;
  mark.left = std::min(area.right, area.left + text.end_of(line.start));
  mark.right =
      std::min(area.right, area.left + text.end_of(line.start + line.length));
  if (mark.left >= mark.right) return;
  InflateRect(&mark, 0, -look_.scale(2));
  fill(device, mark, look_.theme.mark_ground);
  SetTextColor(device, look_.theme.mark_text);
  RECT inside = area;
  inside.left = mark.left;
  inside.right = mark.right;
  text.draw(device, inside, area.left);
  mark.top = mark.bottom - std::max(1, look_.scale(1));
  fill(device, mark, look_.theme.current_frame);
  SetTextColor(device, colour);
}

RowPart RowPainter::part_at(int x, const ResultTab& tab, ResultRow what) const {
  if (tab.shown != ResultState::kFound) return RowPart::kRest;
  const int arrow = what.is_file() ? 0 : indent();
  if (what.is_file() && x < arrow_width()) return RowPart::kArrow;
  const int check = arrow + arrow_width();
  const bool on_check = x >= check && x < check + check_width();
  return on_check ? RowPart::kCheck : RowPart::kRest;
}

}  // namespace zenfo::host::gui::win32
