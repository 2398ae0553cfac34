#include "gui/win32/panels/info_bar.h"

#include <algorithm>

#include "gui/win32/base/command_ids.h"
#include "gui/win32/base/controls.h"
#include "gui/win32/base/wide.h"

namespace zenfo::host::gui::win32 {

InfoBar::InfoBar(HWND parent, const Look& look) : look_(look) {
  Shape shape;
  shape.class_name = L"zenfo-info";
  shape.style = WS_CHILD | WS_CLIPCHILDREN;
  shape.extended_style = WS_EX_CONTROLPARENT;
  shape.parent = parent;
  create(shape);
  text_ = make_label(window(), L"", look);
  SetWindowLongPtrW(text_, GWL_STYLE,
                    GetWindowLongPtrW(text_, GWL_STYLE) | SS_NOPREFIX);
  action_ = make_button(window(), 0, L"", ButtonKind::kPush, look);
  ShowWindow(action_, SW_HIDE);
  close_ = make_button(window(), IDCLOSE, wide(Text::kClose), ButtonKind::kPush,
                       look, L"\u00D7");
}

void InfoBar::show(const std::string& text) {
  if (shown_action_) ShowWindow(action_, SW_HIDE);
  shown_action_.reset();
  show_text(text);
}

void InfoBar::show(const std::string& text, CommandId action) {
  if (shown_action_ != action) {
    shown_action_ = action;
    set_text(action_, wide(plain_text(command(action).label)));
    SetWindowLongPtrW(action_, GWLP_ID, number_of(action));
    ShowWindow(action_, SW_SHOW);
    lay_out();
  }
  show_text(text);
}

void InfoBar::show_text(const std::string& text) {
  change_text(text_, wide(text));
  const bool open = !text.empty();
  if (open == open_) return;
  open_ = open;
  ShowWindow(window(), open ? SW_SHOW : SW_HIDE);
  SendMessageW(GetParent(window()), WM_COMMAND, kResized, 0);
}

std::wstring InfoBar::text() const { return text_of(text_); }

int InfoBar::height() const {
  return open_ ? field_height(look_) + look_.scale(4) : 0;
}

void InfoBar::restyle() {
  set_font(text_, look_);
  set_font(action_, look_);
  set_font(close_, look_);
  lay_out();
  InvalidateRect(window(), nullptr, TRUE);
}

void InfoBar::lay_out() {
  RECT area{};
  GetClientRect(window(), &area);
  const int margin = look_.scale(8);
  const int side = field_height(look_) - look_.scale(4);
  const int y = (area.bottom - side) / 2;
  const int action =
      shown_action_ ? width_of(action_, look_) + look_.scale(16) : -margin;
  const int end = area.right - 2 * margin - side;  // of the action
  place(action_, end - action, y, std::max(action, 0), side);
  place(text_, margin, y, end - action - 2 * margin, side);
  place(close_, area.right - margin - side, y, side, side);
}

LRESULT InfoBar::on_message(UINT message, WPARAM word, LPARAM value) {
  switch (message) {
    case WM_SIZE:
      lay_out();
      return 0;
    case WM_COMMAND:
      if (LOWORD(word) == IDCLOSE) {
        show("");
      } else {
        SendMessageW(GetParent(window()), WM_COMMAND, LOWORD(word), 0);
      }
      return 0;
    case WM_ERASEBKGND: {
      RECT area{};
      GetClientRect(window(), &area);
      fill(reinterpret_cast<HDC>(word), area, look_.theme.info_ground);
      return 1;
    }
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORSTATIC: {
      const auto device = reinterpret_cast<HDC>(word);
      SetTextColor(device, look_.theme.info_text);
      SetBkColor(device, look_.theme.info_ground);
      SetDCBrushColor(device, look_.theme.info_ground);
      return reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
    }
    default:
      return by_default(message, word, value);
  }
}

}  // namespace zenfo::host::gui::win32
