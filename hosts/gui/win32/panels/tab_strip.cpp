#include "gui/win32/panels/tab_strip.h"

#include "gui/win32/base/controls.h"
#include "gui/win32/base/glyphs.h"
#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr UINT_PTR kStripSubclass = 3;
constexpr int kLongest = 200;

std::wstring title_of(HWND strip, int index) {
  wchar_t text[kLongest] = L"";
  TCITEMW item{};
  item.mask = TCIF_TEXT;
  item.pszText = text;
  item.cchTextMax = kLongest;
  SendMessageW(strip, TCM_GETITEMW, static_cast<WPARAM>(index),
               reinterpret_cast<LPARAM>(&item));
  return text;
}

// The arrows that the system adds when the tabs do not fit.
void paint_arrows(HWND arrows, const Look& look) {
  const Painting painting(arrows);
  const HDC device = painting.device();
  RECT half = painting.area();
  fill(device, half, look.theme.panel);
  const LONG middle = half.right / 2;
  half.right = middle;
  for (const Pointing to : {Pointing::kLeft, Pointing::kRight}) {
    draw_frame(device, half, look.theme.border);
    draw_arrow(device, half, to, look.theme.panel_text, look);
    half.left = middle;
    half.right = painting.area().right;
  }
}

LRESULT CALLBACK on_arrows(HWND arrows, UINT message, WPARAM word, LPARAM value,
                           UINT_PTR, DWORD_PTR data) {
  if (message == WM_PAINT) {
    paint_arrows(arrows, *reinterpret_cast<const Look*>(data));
    return 0;
  }
  if (message == WM_ERASEBKGND) return 1;
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(arrows, on_arrows, kStripSubclass);
  }
  return DefSubclassProc(arrows, message, word, value);
}

// The system makes them late and tells nobody.
void take_arrows(HWND strip, const Look& look) {
  const HWND arrows = GetWindow(strip, GW_CHILD);
  DWORD_PTR data = 0;
  if (arrows == nullptr ||
      GetWindowSubclass(arrows, on_arrows, kStripSubclass, &data) != 0) {
    return;
  }
  SetWindowSubclass(arrows, on_arrows, kStripSubclass,
                    reinterpret_cast<DWORD_PTR>(&look));
  InvalidateRect(arrows, nullptr, FALSE);
}

TCITEMW item_with(std::wstring& title) {
  TCITEMW item{};
  item.mask = TCIF_TEXT;
  item.pszText = title.data();
  return item;
}

}  // namespace

TabStrip::TabStrip(HWND parent, int id, const Look& look)
    : look_(look),
      strip_(CreateWindowExW(0, WC_TABCONTROLW, L"",
                             WS_CHILD | WS_VISIBLE | WS_TABSTOP |
                                 WS_CLIPSIBLINGS | WS_CLIPCHILDREN |
                                 TCS_FOCUSONBUTTONDOWN,
                             0, 0, 0, 0, parent, reinterpret_cast<HMENU>(id),
                             GetModuleHandleW(nullptr), nullptr)) {
  SetWindowSubclass(strip_, on_message, kStripSubclass,
                    reinterpret_cast<DWORD_PTR>(this));
}

int TabStrip::height() const { return field_height(look_); }

void TabStrip::restyle() {
  set_font(strip_, look_);
  TabCtrl_SetPadding(strip_, look_.scale(12), look_.scale(4));
  InvalidateRect(strip_, nullptr, TRUE);
}

void TabStrip::add(const std::wstring& title) {
  std::wstring text = title;
  const TCITEMW item = item_with(text);
  SendMessageW(strip_, TCM_INSERTITEMW, static_cast<WPARAM>(count()),
               reinterpret_cast<LPARAM>(&item));
}

void TabStrip::rename(int index, const std::wstring& title) {
  if (title_of(strip_, index) == title) return;
  std::wstring text = title;
  const TCITEMW item = item_with(text);
  SendMessageW(strip_, TCM_SETITEMW, static_cast<WPARAM>(index),
               reinterpret_cast<LPARAM>(&item));
  InvalidateRect(strip_, nullptr, FALSE);
}

int TabStrip::tab_at(POINT point) const {
  TCHITTESTINFO hit{};
  hit.pt = point;
  return TabCtrl_HitTest(strip_, &hit);
}

void TabStrip::paint() {
  take_arrows(strip_, look_);
  const Painting painting(strip_);
  const HDC device = painting.device();
  const Theme& theme = look_.theme;
  const RECT& all = painting.area();
  fill(device, all, theme.panel);
  SetBkMode(device, TRANSPARENT);
  const HGDIOBJ old = SelectObject(device, look_.font.get());
  for (int i = 0; i < count(); ++i) {
    RECT tab{};
    TabCtrl_GetItemRect(strip_, i, &tab);
    tab.bottom = all.bottom;
    const bool chosen = i == current();
    fill(device, tab, chosen ? theme.ground : theme.panel);
    draw_frame(device, tab, theme.border);
    // A bar over the chosen tab, as its ground alone is hard to see.
    RECT bar = tab;
    bar.bottom = bar.top + look_.scale(2);
    if (chosen) fill(device, bar, theme.current_frame);
    SetTextColor(device, chosen ? theme.text : theme.panel_text);
    const std::wstring title = title_of(strip_, i);
    DrawTextW(device, title.c_str(), -1, &tab,
              DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
    if (chosen && GetFocus() == strip_) {
      InflateRect(&tab, -look_.scale(3), -look_.scale(3));
      DrawFocusRect(device, &tab);
    }
  }
  SelectObject(device, old);
}

LRESULT CALLBACK TabStrip::on_message(HWND strip, UINT message, WPARAM word,
                                      LPARAM value, UINT_PTR, DWORD_PTR data) {
  auto* self = reinterpret_cast<TabStrip*>(data);
  switch (message) {
    case WM_PAINT:
      self->paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_MBUTTONUP: {
      const int index =
          self->tab_at({GET_X_LPARAM(value), GET_Y_LPARAM(value)});
      if (index >= 0 && self->on_close) self->on_close(index);
      return 0;
    }
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(strip, nullptr, FALSE);
      break;
    case WM_NCDESTROY:
      RemoveWindowSubclass(strip, on_message, kStripSubclass);
      break;
    default:
      break;
  }
  return DefSubclassProc(strip, message, word, value);
}

}  // namespace zenfo::host::gui::win32
