#include "gui/win32/list/result_list.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "gui/settings/column_order.h"
#include "gui/win32/base/controls.h"
#include "gui/win32/base/glyphs.h"
#include "gui/win32/base/wide.h"
#include "gui/win32/list/row_text.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr UINT_PTR kListSubclass = 2;
constexpr int kMostRows = 100'000'000;  // of the control

constexpr UINT kColumnsChanged = WM_APP + 20;  // by the user, in the header

// In settings.
const char* list_name(ResultState state) {
  constexpr const char* kNames[] = {"found", "no_match", "not_searched"};
  return kNames[static_cast<size_t>(state)];
}

std::vector<ColumnSetting> known_columns(ResultState state) {
  std::vector<ColumnSetting> known;
  for (const Column& column : columns_of(state)) {
    known.push_back({std::string(column_name(column.id)), column.width});
  }
  return known;
}

bool is_down(int key) { return GetKeyState(key) < 0; }

}  // namespace

ResultList::ResultList(HWND parent, int id, const Look& look, LineCache& lines,
                       FileIcons& icons, KeptColumns& columns, Events events)
    : look_(look),
      lines_(lines),
      kept_columns_(columns),
      events_(std::move(events)),
      painter_(look, lines, icons) {
  list_ = CreateWindowExW(
      0, WC_LISTVIEWW, wide(plain_text(Text::kMenuResults)).c_str(),
      WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPCHILDREN | LVS_REPORT |
          LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS,
      0, 0, 0, 0, parent, reinterpret_cast<HMENU>(id),
      GetModuleHandleW(nullptr), nullptr);
  SetWindowSubclass(list_, on_message, kListSubclass,
                    reinterpret_cast<DWORD_PTR>(this));
  ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT |
                                               LVS_EX_DOUBLEBUFFER |
                                               LVS_EX_HEADERDRAGDROP);
  // The state of check boxes is asked for, see on_text_wanted().
  ListView_SetCallbackMask(list_, LVIS_STATEIMAGEMASK);
}

void ResultList::restyle() {
  set_font(list_, look_);
  set_font(ListView_GetHeader(list_), look_);
  const Theme& theme = look_.theme;
  ListView_SetBkColor(list_, theme.ground);
  ListView_SetTextBkColor(list_, theme.ground);
  ListView_SetTextColor(list_, theme.text);
  apply_to_control(list_, theme);
  change_row_height();
  if (tab_ != nullptr) make_columns();
  InvalidateRect(list_, nullptr, TRUE);
}

// A list makes its rows as high as its images.
void ResultList::change_row_height() {
  const int height =
      text_size(list_, look_.bold.get(), L"Xg").cy + look_.scale(6);
  const HIMAGELIST images = ImageList_Create(1, height, ILC_COLOR, 1, 1);
  ListView_SetImageList(list_, images, LVSIL_SMALL);
  if (row_height_ != nullptr) ImageList_Destroy(row_height_);
  row_height_ = images;
}

void ResultList::make_columns() {
  keep_columns();
  const std::vector<ColumnSetting> settings = ordered_columns(
      known_columns(tab_->shown), kept_columns_[list_name(tab_->shown)]);
  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  while (ListView_DeleteColumn(list_, 0)) {
  }
  columns_of_ = tab_->shown;
  columns_dpi_ = look_.dpi;
  widths_.clear();
  std::vector<int> order(settings.size());
  for (const Column& column : columns_of(tab_->shown)) {
    const auto setting = std::find_if(
        settings.begin(), settings.end(), [&](const ColumnSetting& one) {
          return one.name == column_name(column.id);
        });
    const auto index = static_cast<int>(widths_.size());
    order[static_cast<size_t>(setting - settings.begin())] = index;
    widths_.push_back(setting->width);
    std::wstring label = wide(plain_text(column.label));
    LVCOLUMNW wish{};
    wish.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    wish.cx = look_.scale(setting->width);
    wish.fmt = column.right && index > 0 ? LVCFMT_RIGHT : LVCFMT_LEFT;
    wish.pszText = label.data();
    SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&wish));
  }
  ListView_SetColumnOrderArray(list_, static_cast<int>(order.size()),
                               order.data());
  filler_ = -1;
  fill_width();
  SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
  show_sort();
}

// The columns from left to right.
std::vector<int> ResultList::column_order() const {
  std::vector<int> order(widths_.size());
  ListView_GetColumnOrderArray(list_, static_cast<int>(order.size()),
                               order.data());
  return order;
}

// The width of the column that takes what is left is nobody's wish.
void ResultList::note_widths() {
  for (size_t i = 0; i < widths_.size(); ++i) {
    const int index = static_cast<int>(i);
    if (index == filler_) continue;
    const int width = ListView_GetColumnWidth(list_, index);
    // Rounding must not change it.
    if (width == scaled(widths_[i], columns_dpi_)) continue;
    widths_[i] = std::max(MulDiv(width, 96, static_cast<int>(columns_dpi_)),
                          kLeastColumn);
  }
}

void ResultList::keep_columns() {
  if (widths_.empty()) return;
  note_widths();
  const std::vector<Column>& columns = columns_of(columns_of_);
  std::vector<ColumnSetting> shown;
  for (const int index : column_order()) {
    const auto i = static_cast<size_t>(index);
    shown.push_back({std::string(column_name(columns[i].id)), widths_[i]});
  }
  std::vector<ColumnSetting>& kept = kept_columns_[list_name(columns_of_)];
  kept = columns_to_keep(shown, kept);
}

// The first column bears the signs of a row, so it stays where it is.
bool ResultList::may_move(const NMHEADERW& drag) const {
  return drag.iItem != 0 && drag.pitem != nullptr && drag.pitem->iOrder != 0;
}

void ResultList::show_sort() {
  const ResultSort sort = tab_->list().rows.sort();
  const HWND header = ListView_GetHeader(list_);
  int index = 0;
  for (const Column& column : columns_of(tab_->shown)) {
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&item));
    item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
    if (column.id == sort.column) {
      item.fmt |= sort.descending ? HDF_SORTDOWN : HDF_SORTUP;
    }
    SendMessageW(header, HDM_SETITEMW, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&item));
    ++index;
  }
}

void ResultList::leave() {
  if (tab_ == nullptr) return;
  tab_->list().top = static_cast<uint64_t>(ListView_GetTopIndex(list_));
}

void ResultList::show(ResultTab& tab) {
  tab_ = &tab;
  make_columns();
  refresh();
  const auto rows =
      static_cast<int>(std::min<uint64_t>(tab.list().rows.count(), kMostRows));
  if (rows > 0) {
    // The last row first, so that the first wanted one comes to the top.
    const auto top = static_cast<int>(
        std::min<uint64_t>(tab.list().top, static_cast<uint64_t>(rows) - 1));
    ListView_EnsureVisible(list_, rows - 1, FALSE);
    ListView_EnsureVisible(list_, top, FALSE);
  }
  put_focus();
  InvalidateRect(list_, nullptr, FALSE);
}

// The last column takes what is left, so the header has no empty end.
void ResultList::fill_width() {
  if (tab_ == nullptr || widths_.empty()) return;
  const std::vector<int> order = column_order();
  const int last = order.back();
  const auto width = [&](int index) {
    return scaled(widths_[static_cast<size_t>(index)], columns_dpi_);
  };
  if (filler_ >= 0 && filler_ != last) {
    ListView_SetColumnWidth(list_, filler_, width(filler_));
  }
  filler_ = last;
  RECT client{};
  GetClientRect(list_, &client);
  int others = 0;
  for (const int index : order) {
    if (index != last) others += ListView_GetColumnWidth(list_, index);
  }
  ListView_SetColumnWidth(list_, last,
                          std::max<int>(width(last), client.right - others));
}

// Without repainting, which is slow when it is done for each of many changes;
// the rows in view are painted once afterwards.
void ResultList::refresh() {
  const uint64_t count = tab_->list().rows.count();
  const auto rows = static_cast<WPARAM>(std::min<uint64_t>(count, kMostRows));
  silent_ = true;
  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  SendMessageW(list_, LVM_SETITEMCOUNT, rows,
               LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
  SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
  silent_ = false;
  if (!tab_->list().any_focus && count > 0) {
    tab_->list().any_focus = true;
    tab_->list().focus = tab_->list().anchor = tab_->list().rows.at(0);
    tab_->list().selection.select(tab_->list().focus, true);
    put_focus();
    events_.focus_moved();
  } else {
    put_focus();
  }
  InvalidateRect(list_, nullptr, FALSE);
}

void ResultList::lines_read() { InvalidateRect(list_, nullptr, FALSE); }

// The control has its focus by row number; ours belongs to a file or match.
void ResultList::put_focus() {
  if (!any_row()) return;
  const auto row = tab_->list().rows.row_of(tab_->list().focus);
  if (!row) return;
  leave_focus(static_cast<int>(*row));
  silent_ = true;
  ListView_SetItemState(list_, static_cast<int>(*row),
                        LVIS_FOCUSED | LVIS_SELECTED,
                        LVIS_FOCUSED | LVIS_SELECTED);
  silent_ = false;
}

// Before another row is selected: some systems would look at every row for what
// else is.
void ResultList::leave_focus(int next) {
  const int before = ListView_GetNextItem(list_, -1, LVNI_FOCUSED);
  if (before < 0 || before == next) return;
  silent_ = true;
  ListView_SetItemState(list_, before, 0, LVIS_SELECTED);
  silent_ = false;
}

bool ResultList::any_row() const {
  return tab_ != nullptr && tab_->list().any_focus &&
         tab_->list().rows.row_of(tab_->list().focus).has_value();
}

void ResultList::go_to(ResultRow row) {
  ListState& list = tab_->list();
  if (!row.is_file() && !list.rows.is_open(row.file)) {
    list.rows.open(row.file, true);
    refresh();
  }
  const auto index = list.rows.row_of(row);
  if (!index) return;
  list.any_focus = true;
  list.focus = list.anchor = row;
  list.selection.clear();
  list.selection.select(row, true);
  put_focus();
  ListView_EnsureVisible(list_, static_cast<int>(*index), FALSE);
  InvalidateRect(list_, nullptr, FALSE);
  events_.focus_moved();
}

void ResultList::select_all() {
  tab_->list().selection.select_all(tab_->list().rows);
  InvalidateRect(list_, nullptr, FALSE);
}

void ResultList::toggle_chosen() {
  if (tab_->shown != ResultState::kFound || !any_row()) return;
  toggle_selected(tab_->list().selection, tab_->list().rows, tab_->set());
  InvalidateRect(list_, nullptr, FALSE);
  events_.choice_changed();
}

void ResultList::open_row(bool on) {
  if (!any_row() || tab_->shown != ResultState::kFound) return;
  ListState& list = tab_->list();
  const ResultRow file{list.focus.file, ResultRow::kNoMatch};
  if (!on && !list.focus.is_file()) go_to(file);
  list.rows.open(file.file, on);
  refresh();
}

// What a key or another program did to the focus.
void ResultList::on_focus(uint64_t row) {
  if (silent_ || row >= tab_->list().rows.count()) return;
  select_by_keys(row, is_down(VK_SHIFT), is_down(VK_CONTROL));
}

void ResultList::select_by_keys(uint64_t row, bool shift, bool control) {
  ListState& list = tab_->list();
  const ResultRow at = list.rows.at(row);
  const auto anchor = list.rows.row_of(list.anchor);
  if (!control) list.selection.clear();
  if (shift && anchor) {
    list.selection.select_rows(list.rows, *anchor, row, true);
  } else {
    list.selection.select(at, !control || !list.selection.has(at));
    list.anchor = at;
  }
  list.any_focus = true;
  list.focus = at;
  InvalidateRect(list_, nullptr, FALSE);
  events_.focus_moved();
}

bool ResultList::on_click(UINT message, WPARAM keys, POINT at) {
  SetFocus(list_);
  LVHITTESTINFO hit{};
  hit.pt = at;
  const auto row = static_cast<int>(SendMessageW(
      list_, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
  if (tab_ == nullptr || row < 0 ||
      static_cast<uint64_t>(row) >= tab_->list().rows.count()) {
    return true;
  }
  RECT area{};
  ListView_GetItemRect(list_, row, &area, LVIR_BOUNDS);
  if (message == WM_RBUTTONDOWN) {
    const ResultRow what = tab_->list().rows.at(static_cast<uint64_t>(row));
    if (tab_->list().selection.has(what)) keys |= MK_RBUTTON;
  }
  if ((keys & MK_RBUTTON) == 0 || message != WM_RBUTTONDOWN ||
      !tab_->list().selection.has(
          tab_->list().rows.at(static_cast<uint64_t>(row)))) {
    click_row(static_cast<uint64_t>(row), at.x - area.left, keys,
              message == WM_LBUTTONDBLCLK);
  }
  return true;
}

void ResultList::click_row(uint64_t row, int x, WPARAM keys, bool twice) {
  const ResultRow what = tab_->list().rows.at(row);
  const RowPart part = painter_.part_at(x, *tab_, what);
  if (part == RowPart::kArrow) {
    tab_->list().rows.open(what.file, !tab_->list().rows.is_open(what.file));
    refresh();
    return;
  }
  if (part == RowPart::kCheck && tab_->list().selection.has(what)) {
    toggle_chosen();
    return;
  }
  select_by_keys(row, (keys & MK_SHIFT) != 0, (keys & MK_CONTROL) != 0);
  put_focus();
  if (part == RowPart::kCheck) {
    toggle_chosen();
  } else if (twice) {
    events_.activated();
  }
}

// Clicks are handled here: the control would select by itself.
LRESULT CALLBACK ResultList::on_message(HWND list, UINT message, WPARAM word,
                                        LPARAM value, UINT_PTR,
                                        DWORD_PTR data) {
  auto* self = reinterpret_cast<ResultList*>(data);
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
      if (self->on_click(message, word,
                         {GET_X_LPARAM(value), GET_Y_LPARAM(value)})) {
        return 0;
      }
      break;
    case WM_KEYDOWN:
    case WM_CHAR: {  // They may move the focus.
      self->leave_focus(-1);
      const LRESULT answer = DefSubclassProc(list, message, word, value);
      self->put_focus();
      return answer;
    }
    case WM_SIZE: {
      const LRESULT answer = DefSubclassProc(list, message, word, value);
      self->fill_width();
      return answer;
    }
    case WM_RBUTTONUP:
      SendMessageW(GetParent(list), WM_CONTEXTMENU,
                   reinterpret_cast<WPARAM>(list), GetMessagePos());
      return 0;
    case kColumnsChanged:
      self->note_widths();
      self->fill_width();
      InvalidateRect(list, nullptr, FALSE);
      return 0;
    case WM_NOTIFY: {
      const auto& change = *reinterpret_cast<const NMHEADERW*>(value);
      if (change.hdr.code == static_cast<UINT>(HDN_ENDDRAG) &&
          !self->may_move(change)) {
        return TRUE;
      }
      if (change.hdr.code == static_cast<UINT>(HDN_ENDDRAG) ||
          change.hdr.code == static_cast<UINT>(HDN_ENDTRACKW)) {
        PostMessageW(list, kColumnsChanged, 0, 0);  // not done yet
      }
      const auto& draw = *reinterpret_cast<const NMCUSTOMDRAW*>(value);
      if (draw.hdr.code == static_cast<UINT>(NM_CUSTOMDRAW) &&
          draw.hdr.hwndFrom == ListView_GetHeader(list)) {
        return self->on_draw_header(draw);
      }
      break;
    }
    case WM_NCDESTROY:
      RemoveWindowSubclass(list, on_message, kListSubclass);
      break;
    default:
      break;
  }
  return DefSubclassProc(list, message, word, value);
}

bool ResultList::on_notify(const NMHDR* header, LRESULT* answer) {
  *answer = 0;
  if (tab_ == nullptr || header->hwndFrom != list_) return false;
  switch (header->code) {
    case NM_CUSTOMDRAW:
      *answer = on_draw(*reinterpret_cast<const NMLVCUSTOMDRAW*>(header));
      return true;
    case LVN_GETDISPINFOW:
      on_text_wanted(
          *reinterpret_cast<NMLVDISPINFOW*>(const_cast<NMHDR*>(header)));
      return true;
    case LVN_ODFINDITEMW:
      *answer = on_find(*reinterpret_cast<const NMLVFINDITEMW*>(header));
      return true;
    case LVN_COLUMNCLICK:
      on_column(reinterpret_cast<const NMLISTVIEW*>(header)->iSubItem);
      return true;
    case LVN_ITEMCHANGED: {
      const auto& change = *reinterpret_cast<const NMLISTVIEW*>(header);
      const bool got_focus = (change.uNewState & LVIS_FOCUSED) != 0 &&
                             (change.uOldState & LVIS_FOCUSED) == 0;
      if (got_focus && change.iItem >= 0) {
        on_focus(static_cast<uint64_t>(change.iItem));
      }
      return true;
    }
    default:
      return false;
  }
}

void ResultList::on_text_wanted(NMLVDISPINFOW& info) {
  LVITEMW& item = info.item;
  const auto row = static_cast<uint64_t>(item.iItem);
  if (item.iItem < 0 || row >= tab_->list().rows.count()) return;
  const ResultRow what = tab_->list().rows.at(row);
  if ((item.mask & LVIF_TEXT) != 0 && item.cchTextMax > 0) {
    std::wstring text;
    if (what.is_file()) {
      const std::vector<Column>& columns = columns_of(tab_->shown);
      const auto column = static_cast<size_t>(item.iSubItem);
      if (column < columns.size()) {
        text = cell_text(*tab_, what.file, columns[column].id);
      }
    } else if (item.iSubItem == 0) {
      text = match_text(lines_.find(*tab_, what));
    }
    lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
  }
  // As lists with check boxes have it: 1 off, 2 on; 3 for some of a file.
  if ((item.mask & LVIF_STATE) != 0 && tab_->shown == ResultState::kFound) {
    UINT state = 1;
    if (!what.is_file()) {
      state = tab_->set().is_chosen(what.file, what.match) ? 2 : 1;
    } else if (tab_->set().file(what.file).choice() != Choice::kNone) {
      state = tab_->set().file(what.file).choice() == Choice::kAll ? 2 : 3;
    }
    item.state = INDEXTOSTATEIMAGEMASK(state);
  }
}

LRESULT ResultList::on_find(const NMLVFINDITEMW& wish) {
  if ((wish.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0) return -1;
  const auto row = tab_->list().rows.find_name(
      narrow(wish.lvfi.psz), static_cast<uint64_t>(std::max(wish.iStart, 0)),
      true);
  return row ? static_cast<LRESULT>(*row) : -1;
}

// The first click sorts, the second turns the order round, the third brings
// back the order in which files were found.
void ResultList::on_column(int index) {
  const auto column = columns_of(tab_->shown)[static_cast<size_t>(index)].id;
  ResultSort sort = tab_->list().rows.sort();
  if (sort.column != column) {
    sort = {column, false};
  } else if (!sort.descending) {
    sort.descending = true;
  } else {
    sort = {};
  }
  tab_->list().rows.wish_for_sort(sort);
  show_sort();
  events_.sorted();
}

LRESULT ResultList::on_draw(const NMLVCUSTOMDRAW& draw) {
  switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      want_lines();
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      paint_row(draw);
      return CDRF_SKIPDEFAULT;
    default:
      return CDRF_DODEFAULT;
  }
}

void ResultList::paint_row(const NMLVCUSTOMDRAW& draw) {
  const auto row = static_cast<uint64_t>(draw.nmcd.dwItemSpec);
  if (row >= tab_->list().rows.count()) return;
  const ResultRow what = tab_->list().rows.at(row);
  RECT area{};
  ListView_GetItemRect(list_, static_cast<int>(row), &area, LVIR_BOUNDS);
  std::vector<RECT> cells;
  const HWND header = ListView_GetHeader(list_);
  for (int i = 0; i < Header_GetItemCount(header); ++i) {
    RECT cell{};
    Header_GetItemRect(header, i, &cell);
    cells.push_back(
        {cell.left + area.left, area.top, cell.right + area.left, area.bottom});
  }
  RECT client{};
  GetClientRect(list_, &client);
  // Of a line, the match must be in view without scrolling.
  if (what.is_file()) {
    area.right = std::max(area.right, client.right);
  } else {
    area.right = client.right;
  }
  const bool focused = has_focus() && any_row() && what == tab_->list().focus;
  painter_.paint(draw.nmcd.hdc, area, cells, *tab_, what, focused);
}

LRESULT ResultList::on_draw_header(const NMCUSTOMDRAW& draw) {
  const Theme& theme = look_.theme;
  if (draw.dwDrawStage == CDDS_PREPAINT) {
    RECT area{};
    GetClientRect(draw.hdr.hwndFrom, &area);
    fill(draw.hdc, area, theme.panel);
    return CDRF_NOTIFYITEMDRAW;
  }
  if (draw.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  wchar_t label[80] = L"";
  HDITEMW item{};
  item.mask = HDI_TEXT | HDI_FORMAT;
  item.pszText = label;
  item.cchTextMax = 80;
  SendMessageW(draw.hdr.hwndFrom, HDM_GETITEMW, draw.dwItemSpec,
               reinterpret_cast<LPARAM>(&item));
  RECT area = draw.rc;
  fill(draw.hdc, area, theme.panel);
  RECT line = area;
  line.left = line.right - 1;
  fill(draw.hdc, line, theme.border);
  line = area;
  line.top = line.bottom - 1;
  fill(draw.hdc, line, theme.border);
  area.left += look_.scale(6);
  area.right -= look_.scale(6);
  SetBkMode(draw.hdc, TRANSPARENT);
  SetTextColor(draw.hdc, theme.panel_text);
  const HGDIOBJ old = SelectObject(draw.hdc, look_.font.get());
  if ((item.fmt & (HDF_SORTUP | HDF_SORTDOWN)) != 0) {
    RECT sign = area;
    sign.left = area.right -= look_.scale(12);
    const bool up = (item.fmt & HDF_SORTUP) != 0;
    draw_arrow(draw.hdc, sign, up ? Pointing::kUp : Pointing::kDown,
               theme.panel_text, look_);
  }
  DrawTextW(draw.hdc, label, -1, &area,
            DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX |
                ((item.fmt & HDF_JUSTIFYMASK) == HDF_RIGHT ? DT_RIGHT : 0));
  SelectObject(draw.hdc, old);
  return CDRF_SKIPDEFAULT;
}

// The lines of the rows in view.
void ResultList::want_lines() {
  const auto top = static_cast<uint64_t>(ListView_GetTopIndex(list_));
  const auto page = static_cast<uint64_t>(ListView_GetCountPerPage(list_)) + 1;
  const ResultRows& rows = tab_->list().rows;
  std::vector<ResultRow> wanted;
  for (uint64_t row = top; row < std::min(top + page, rows.count()); ++row) {
    const ResultRow what = rows.at(row);
    if (!what.is_file()) wanted.push_back(what);
  }
  if (!wanted.empty()) lines_.want(*tab_, wanted);
}

}  // namespace zenfo::host::gui::win32
