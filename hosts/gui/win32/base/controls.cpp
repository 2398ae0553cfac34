#include "gui/win32/base/controls.h"

#include <algorithm>

#include "gui/win32/base/glyphs.h"
#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {
namespace {

// What painting needs to know of a control; deleted with it.
struct Painted {
  const Look* look;
  ButtonKind kind = ButtonKind::kPush;
  std::wstring face;
  bool hot = false;
};

constexpr UINT_PTR kControlSubclass = 1;

bool looks_like_button(ButtonKind kind) { return kind != ButtonKind::kCheck; }

COLORREF button_ground(HWND button, const Painted& painted) {
  const Theme& theme = painted.look->theme;
  const LRESULT state = SendMessageW(button, BM_GETSTATE, 0, 0);
  if ((state & (BST_PUSHED | BST_CHECKED)) != 0) return theme.button;
  if (painted.hot && IsWindowEnabled(button)) return theme.button_hot;
  return painted.kind == ButtonKind::kTab ? theme.panel : theme.ground;
}

COLORREF button_text(HWND button, const Painted& painted) {
  const Theme& theme = painted.look->theme;
  if (!IsWindowEnabled(button)) return theme.dim_text;
  const LRESULT state = SendMessageW(button, BM_GETSTATE, 0, 0);
  const bool pressed = (state & (BST_PUSHED | BST_CHECKED)) != 0;
  if (pressed && looks_like_button(painted.kind)) return theme.selected_text;
  return theme.panel_text;
}

UINT text_flags(HWND button) {
  const LRESULT cues = SendMessageW(button, WM_QUERYUISTATE, 0, 0);
  return DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS |
         ((cues & UISF_HIDEACCEL) != 0 ? DT_HIDEPREFIX : 0);
}

void paint_check_box(HWND button, HDC device, RECT area,
                     const Painted& painted) {
  const Look& look = *painted.look;
  RECT box = area;
  box.right = box.left + look.scale(15);
  const bool on = is_checked(button);
  draw_check(device, box, on ? Check::kOn : Check::kOff, look);
  area.left = box.right + look.scale(4);
  DrawTextW(device, text_of(button).c_str(), -1, &area, text_flags(button));
}

void paint_button(HWND button, const Painted& painted) {
  const Painting painting(button);
  const HDC device = painting.device();
  const Look& look = *painted.look;
  RECT area = painting.area();
  const HGDIOBJ old = SelectObject(
      device,
      (painted.kind == ButtonKind::kDefault ? look.bold : look.font).get());
  SetBkMode(device, TRANSPARENT);
  fill(device, area, look.theme.panel);
  SetTextColor(device, button_text(button, painted));
  if (painted.kind == ButtonKind::kCheck) {
    paint_check_box(button, device, area, painted);
  } else {
    fill(device, area, button_ground(button, painted));
    draw_frame(device, area, look.theme.border);
    const std::wstring text =
        painted.face.empty() ? text_of(button) : painted.face;
    DrawTextW(device, text.c_str(), -1, &area, DT_CENTER | text_flags(button));
  }
  if (GetFocus() == button) {
    InflateRect(&area, -2, -2);
    SetTextColor(device, look.theme.text);
    SetBkColor(device, look.theme.ground);
    DrawFocusRect(device, &area);
  }
  SelectObject(device, old);
}

void track_mouse(HWND control, Painted& painted) {
  if (painted.hot) return;
  painted.hot = true;
  TRACKMOUSEEVENT wish{sizeof wish, TME_LEAVE, control, 0};
  TrackMouseEvent(&wish);
}

// The system paints its own look when these arrive, outside of WM_PAINT.
bool may_repaint(UINT message) {
  switch (message) {
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_ENABLE:
    case WM_SETTEXT:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_MOUSELEAVE:
    case BM_SETSTATE:
    case BM_SETCHECK:
    case CB_SETCURSEL:
    case WM_UPDATEUISTATE:
      return true;
    default:
      return false;
  }
}

LRESULT after(HWND control, UINT message, WPARAM word, LPARAM value) {
  const LRESULT answer = DefSubclassProc(control, message, word, value);
  if (may_repaint(message)) InvalidateRect(control, nullptr, FALSE);
  return answer;
}

LRESULT CALLBACK on_button(HWND control, UINT message, WPARAM word,
                           LPARAM value, UINT_PTR, DWORD_PTR data) {
  auto* painted = reinterpret_cast<Painted*>(data);
  switch (message) {
    case WM_PAINT:
      paint_button(control, *painted);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_MOUSEMOVE:
      if (!painted->hot) InvalidateRect(control, nullptr, FALSE);
      track_mouse(control, *painted);
      break;
    case WM_MOUSELEAVE:
      painted->hot = false;
      break;
    case WM_NCDESTROY:
      RemoveWindowSubclass(control, on_button, kControlSubclass);
      delete painted;
      return DefSubclassProc(control, message, word, value);
    default:
      break;
  }
  return after(control, message, word, value);
}

// A combo box: its frame and arrow; without an edit field also its text.
void paint_combo(HWND control, const Look& look) {
  COMBOBOXINFO info{};
  info.cbSize = sizeof info;
  GetComboBoxInfo(control, &info);
  const Theme& theme = look.theme;
  const HDC device = GetDC(control);
  RECT area{};
  GetClientRect(control, &area);
  if (info.hwndItem != nullptr && info.hwndItem != control) {
    RECT edit{};
    GetWindowRect(info.hwndItem, &edit);
    MapWindowPoints(nullptr, control, reinterpret_cast<POINT*>(&edit), 2);
    ExcludeClipRect(device, edit.left, edit.top, edit.right, edit.bottom);
  }
  fill(device, area, theme.ground);
  const bool focused = GetFocus() == control || GetFocus() == info.hwndItem;
  draw_frame(device, area, focused ? theme.text : theme.border);
  draw_arrow(device, info.rcButton, Pointing::kDown,
             IsWindowEnabled(control) ? theme.text : theme.dim_text, look);
  if (info.hwndItem == nullptr || info.hwndItem == control) {
    const HGDIOBJ old = SelectObject(device, look.font.get());
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device,
                 IsWindowEnabled(control) ? theme.text : theme.dim_text);
    RECT text = info.rcItem;
    text.left = area.left + look.scale(5);
    DrawTextW(device, text_of(control).c_str(), -1, &text,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(device, old);
  }
  ReleaseDC(control, device);
}

LRESULT CALLBACK on_combo(HWND control, UINT message, WPARAM word, LPARAM value,
                          UINT_PTR, DWORD_PTR data) {
  auto* painted = reinterpret_cast<Painted*>(data);
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(control, on_combo, kControlSubclass);
    delete painted;
    return DefSubclassProc(control, message, word, value);
  }
  const LRESULT answer = after(control, message, word, value);
  if (message == WM_PAINT) paint_combo(control, *painted->look);
  return answer;
}

// Notifications of the edit field repaint the frame.
HWND make_combo(HWND parent, int id, const Look& look, DWORD style) {
  const HWND combo = CreateWindowExW(
      0, WC_COMBOBOXW, L"",
      WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | style, 0, 0, 100, 300,
      parent, reinterpret_cast<HMENU>(id), GetModuleHandleW(nullptr), nullptr);
  SetWindowSubclass(combo, on_combo, kControlSubclass,
                    reinterpret_cast<DWORD_PTR>(new Painted{&look, {}, {}}));
  set_font(combo, look);
  return combo;
}

// An edit field writes at its top, so it is made as low as its text and put
// into the middle of the closed combo box.
void centre_text(HWND combo) {
  const HWND edit = GetWindow(combo, GW_CHILD);
  if (edit == nullptr) return;
  RECT field{};
  RECT text{};
  GetWindowRect(combo, &field);
  GetWindowRect(edit, &text);
  const auto font =
      reinterpret_cast<HFONT>(SendMessageW(combo, WM_GETFONT, 0, 0));
  const int high = text_size(edit, font, L"Xg").cy;
  const int top = (field.bottom - field.top - high) / 2;
  SetWindowPos(edit, nullptr, text.left - field.left, top,
               text.right - text.left, high, SWP_NOZORDER | SWP_NOACTIVATE);
}

// What of the field is around its text.
RECT margins_of(HWND edit, const RECT& area, const Look& look) {
  const auto font =
      reinterpret_cast<HFONT>(SendMessageW(edit, WM_GETFONT, 0, 0));
  const int high = text_size(nullptr, font, L"Xg").cy;
  const int above = std::max<int>((area.bottom - area.top - high) / 2, 1);
  const int side = look.scale(2);
  return {side, above, side,
          std::max<int>(area.bottom - area.top - high - above, 1)};
}

void paint_margins(HWND edit, const Look& look) {
  const Theme& theme = look.theme;
  RECT area{};
  RECT inner{};
  GetWindowRect(edit, &area);
  GetClientRect(edit, &inner);
  MapWindowPoints(edit, nullptr, reinterpret_cast<POINT*>(&inner), 2);
  OffsetRect(&inner, -area.left, -area.top);
  OffsetRect(&area, -area.left, -area.top);
  const HDC device = GetWindowDC(edit);
  ExcludeClipRect(device, inner.left, inner.top, inner.right, inner.bottom);
  fill(device, area, IsWindowEnabled(edit) ? theme.ground : theme.panel);
  draw_frame(device, area, GetFocus() == edit ? theme.text : theme.border);
  ReleaseDC(edit, device);
}

// A field writes at the top of its client area, so this is no higher than the
// text; what is around it is painted here.
LRESULT CALLBACK on_edit(HWND edit, UINT message, WPARAM word, LPARAM value,
                         UINT_PTR, DWORD_PTR data) {
  const Look& look = *reinterpret_cast<const Look*>(data);
  switch (message) {
    case WM_NCCALCSIZE: {
      RECT& area =
          *reinterpret_cast<RECT*>(value);  // also of NCCALCSIZE_PARAMS
      const RECT margins = margins_of(edit, area, look);
      area = {area.left + margins.left, area.top + margins.top,
              area.right - margins.right, area.bottom - margins.bottom};
      return 0;
    }
    case WM_NCPAINT:
      paint_margins(edit, look);
      return 0;
    case WM_NCHITTEST:
      return HTCLIENT;
    case WM_NCDESTROY:
      RemoveWindowSubclass(edit, on_edit, kControlSubclass);
      break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_ENABLE:
      RedrawWindow(edit, nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE);
      break;
    default:
      break;
  }
  return DefSubclassProc(edit, message, word, value);
}

DWORD style_of(ButtonKind kind) {
  switch (kind) {
    case ButtonKind::kDefault:
      return BS_DEFPUSHBUTTON;
    case ButtonKind::kToggle:
      return BS_AUTOCHECKBOX | BS_PUSHLIKE;
    case ButtonKind::kCheck:
      return BS_AUTOCHECKBOX;
    case ButtonKind::kTab:
      return BS_AUTORADIOBUTTON | BS_PUSHLIKE;
    case ButtonKind::kPush:
      break;
  }
  return BS_PUSHBUTTON;
}

}  // namespace

HWND make_button(HWND parent, int id, std::wstring_view name, ButtonKind kind,
                 const Look& look, const wchar_t* face) {
  const HWND button = CreateWindowExW(
      0, WC_BUTTONW, std::wstring(name).c_str(),
      WS_CHILD | WS_VISIBLE | WS_TABSTOP | style_of(kind), 0, 0, 0, 0, parent,
      reinterpret_cast<HMENU>(id), GetModuleHandleW(nullptr), nullptr);
  auto* painted = new Painted{&look, kind, face == nullptr ? L"" : face};
  SetWindowSubclass(button, on_button, kControlSubclass,
                    reinterpret_cast<DWORD_PTR>(painted));
  set_font(button, look);
  return button;
}

HWND make_field(HWND parent, int id, const Look& look) {
  return make_combo(parent, id, look, CBS_DROPDOWN | CBS_AUTOHSCROLL);
}

HWND make_choice(HWND parent, int id, const Look& look,
                 const std::vector<std::wstring>& choices) {
  const HWND combo = make_combo(parent, id, look, CBS_DROPDOWNLIST);
  for (const std::wstring& choice : choices) {
    SendMessageW(combo, CB_ADDSTRING, 0,
                 reinterpret_cast<LPARAM>(choice.c_str()));
  }
  SendMessageW(combo, CB_SETCURSEL, 0, 0);
  return combo;
}

HWND make_edit(HWND parent, int id, const Look& look) {
  const HWND edit = CreateWindowExW(
      0, WC_EDITW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, 0,
      0, 0, 0, parent, reinterpret_cast<HMENU>(id), GetModuleHandleW(nullptr),
      nullptr);
  SetWindowSubclass(edit, on_edit, kControlSubclass,
                    reinterpret_cast<DWORD_PTR>(&look));
  set_font(edit, look);
  return edit;
}

HWND make_label(HWND parent, std::wstring_view text, const Look& look) {
  const HWND label = CreateWindowExW(
      0, WC_STATICW, std::wstring(text).c_str(),
      WS_CHILD | WS_VISIBLE | SS_LEFT | SS_CENTERIMAGE | SS_ENDELLIPSIS, 0, 0,
      0, 0, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
  set_font(label, look);
  return label;
}

std::wstring text_of(HWND control) {
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(control)) + 1,
                    L'\0');
  text.resize(static_cast<size_t>(
      GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
  return text;
}

void set_text(HWND control, const std::wstring& text) {
  SetWindowTextW(control, text.c_str());
}

void change_text(HWND control, const std::wstring& text) {
  if (text_of(control) != text) set_text(control, text);
}

void set_font(HWND control, const Look& look) {
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(look.font.get()),
               TRUE);
}

bool is_checked(HWND button) {
  return SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void set_checked(HWND button, bool on) {
  SendMessageW(button, BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0);
}

void begin_group(HWND control) {
  SetWindowLongW(control, GWL_STYLE,
                 GetWindowLongW(control, GWL_STYLE) | WS_GROUP);
}

int width_of(HWND control, const Look& look) {
  wchar_t name[16];
  GetClassNameW(control, name, 16);
  const bool label = std::wstring_view(name) == WC_STATICW;
  const HFONT font = (label ? look.font : look.bold).get();
  std::wstring shown = text_of(control);
  std::erase(shown, L'&');  // It only underlines the letter after it.
  const int text = text_size(control, font, shown.c_str()).cx;
  return text + look.scale(label ? 4 : 24);
}

int field_height(const Look& look) {
  return text_size(nullptr, look.font.get(), L"Xg").cy + look.scale(8);
}

// Without its old picture, over which a neighbour may have been painted.
void place(HWND control, int x, int y, int width, int height) {
  wchar_t name[16];
  GetClassNameW(control, name, 16);
  const bool combo = std::wstring_view(name) == WC_COMBOBOXW;
  LRESULT selected = 0;
  if (combo) {
    selected = SendMessageW(control, CB_GETEDITSEL, 0, 0);
    // The height of a closed one follows from that of its text.
    RECT now{};
    GetWindowRect(control, &now);
    const LRESULT item =
        SendMessageW(control, CB_GETITEMHEIGHT, static_cast<WPARAM>(-1), 0);
    const LRESULT wanted = item + height - (now.bottom - now.top);
    if (wanted != item) {
      SendMessageW(control, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), wanted);
    }
  }
  SetWindowPos(
      control, nullptr, x, y, std::max(width, 0), combo ? height * 12 : height,
      SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS | SWP_FRAMECHANGED);
  if (!combo) return;
  centre_text(control);
  SendMessageW(control, CB_SETEDITSEL, 0, selected);  // It selected all.
}

void fill_panel(HWND panel, HDC device, const Look& look) {
  RECT area{};
  GetClientRect(panel, &area);
  fill(device, area, look.theme.panel);
}

LRESULT control_colour(UINT message, HDC device, const Look& look) {
  const bool field =
      message == WM_CTLCOLOREDIT || message == WM_CTLCOLORLISTBOX;
  const COLORREF ground = field ? look.theme.ground : look.theme.panel;
  SetTextColor(device, field ? look.theme.text : look.theme.panel_text);
  SetBkColor(device, ground);
  SetDCBrushColor(device, ground);
  return reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
}

}  // namespace zenfo::host::gui::win32
