#include "gui/win32/panels/view_bar.h"

#include <algorithm>

#include "gui/win32/base/controls.h"
#include "gui/win32/base/wide.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr int kFoundButton = 200;
constexpr int kNoMatchButton = 201;
constexpr int kNotSearchedButton = 202;
constexpr int kFilterField = 203;
constexpr int kTextButton = 204;
constexpr int kBytesButton = 205;

}  // namespace

ViewBar::ViewBar(HWND parent, const Look& look) : look_(look) {
  Shape shape;
  shape.class_name = L"zenfo-view-bar";
  shape.style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
  shape.extended_style = WS_EX_CONTROLPARENT;
  shape.parent = parent;
  create(shape);
  const HWND self = window();
  found_ = make_button(self, kFoundButton, L"", ButtonKind::kTab, look);
  no_match_ = make_button(self, kNoMatchButton, L"", ButtonKind::kTab, look);
  not_searched_ =
      make_button(self, kNotSearchedButton, L"", ButtonKind::kTab, look);
  label_ = make_label(self, wide(Text::kFilter), look);
  filter_ = make_edit(self, kFilterField, look);
  text_ = make_button(self, kTextButton, wide(Text::kTextPage),
                      ButtonKind::kTab, look);
  bytes_ = make_button(self, kBytesButton, wide(Text::kBytesPage),
                       ButtonKind::kTab, look);
  for (const HWND first : {found_, label_, text_}) begin_group(first);
  choose_page(PageKind::kText);
  choose(ResultState::kFound);
  show_counts({});
}

void ViewBar::show_counts(const ResultTotals& totals) {
  change_text(found_,
              wide(format(Text::kListFound, {grouped(totals.matches),
                                             grouped(totals.files_found)})));
  change_text(no_match_, wide(format(Text::kListNoMatch,
                                     {grouped(totals.files_without)})));
  change_text(not_searched_,
              wide(format(Text::kListNotSearched,
                          {grouped(totals.files_not_searched)})));
  lay_out();
}

ResultState ViewBar::shown() const {
  if (is_checked(no_match_)) return ResultState::kNoMatch;
  if (is_checked(not_searched_)) return ResultState::kNotSearched;
  return ResultState::kFound;
}

// The Tab key goes to the chosen one of a group.
void ViewBar::choose(ResultState state) {
  set_checked(found_, state == ResultState::kFound);
  set_checked(no_match_, state == ResultState::kNoMatch);
  set_checked(not_searched_, state == ResultState::kNotSearched);
}

PageKind ViewBar::page() const {
  return is_checked(bytes_) ? PageKind::kBytes : PageKind::kText;
}

void ViewBar::choose_page(PageKind page) {
  set_checked(text_, page == PageKind::kText);
  set_checked(bytes_, page == PageKind::kBytes);
}

void ViewBar::show_pages(bool on) {
  for (const HWND button : {text_, bytes_}) {
    ShowWindow(button, on ? SW_SHOWNA : SW_HIDE);
  }
  lay_out();
}

std::string ViewBar::filter() const { return narrow(text_of(filter_)); }

void ViewBar::set_filter(const std::string& text) {
  silent_ = true;
  change_text(filter_, wide(text));
  silent_ = false;
}

void ViewBar::focus_on_filter() {
  SetFocus(filter_);
  SendMessageW(filter_, EM_SETSEL, 0, -1);
}

int ViewBar::height() const { return field_height(look_) + look_.scale(8); }

void ViewBar::restyle() {
  for (const HWND child :
       {found_, no_match_, not_searched_, label_, filter_, text_, bytes_}) {
    set_font(child, look_);
  }
  lay_out();
  RedrawWindow(window(), nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void ViewBar::lay_out() {
  RECT area{};
  GetClientRect(window(), &area);
  const int high = field_height(look_);
  const int gap = look_.scale(6);
  const int y = look_.scale(4);
  int x = look_.scale(8);
  for (const HWND button : {found_, no_match_, not_searched_}) {
    const int width = width_of(button, look_);
    place(button, x, y, width, high);
    x += width - 1;
  }
  const int label = width_of(label_, look_);
  int right = area.right - look_.scale(8);
  if ((GetWindowLongW(text_, GWL_STYLE) & WS_VISIBLE) != 0) {
    for (const HWND button : {bytes_, text_}) {
      const int width = width_of(button, look_);
      right -= width - 1;
      place(button, right, y, width, high);
    }
    right -= 2 * gap;
  }
  const int left = std::max<int>(x + 3 * gap, right - label - look_.scale(220));
  place(label_, left, y, label, high);
  place(filter_, left + label + gap, y, right - left - label - gap, high);
}

LRESULT ViewBar::on_message(UINT message, WPARAM word, LPARAM value) {
  const HWND parent = GetParent(window());
  switch (message) {
    case WM_SIZE:
      lay_out();
      return 0;
    case WM_COMMAND:
      if (LOWORD(word) == kFilterField) {
        if (HIWORD(word) == EN_CHANGE && !silent_) {
          SendMessageW(parent, WM_COMMAND, kFilterChanged, 0);
        }
      } else if (HIWORD(word) == BN_CLICKED) {
        const int button = LOWORD(word);
        const bool page = button == kTextButton || button == kBytesButton;
        SendMessageW(parent, WM_COMMAND, page ? kPageChosen : kListChosen, 0);
      }
      return 0;
    case WM_ERASEBKGND:
      fill_panel(window(), reinterpret_cast<HDC>(word), look_);
      return 1;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      return control_colour(message, reinterpret_cast<HDC>(word), look_);
    default:
      return by_default(message, word, value);
  }
}

}  // namespace zenfo::host::gui::win32
