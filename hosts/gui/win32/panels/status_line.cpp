#include "gui/win32/panels/status_line.h"

#include "gui/win32/base/controls.h"
#include "gui/win32/base/wide.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr int kBarSteps = 1000;

void set_endless(HWND bar, bool on) {
  const LONG_PTR style = GetWindowLongPtrW(bar, GWL_STYLE);
  SetWindowLongPtrW(bar, GWL_STYLE,
                    on ? style | PBS_MARQUEE : style & ~LONG_PTR{PBS_MARQUEE});
  SendMessageW(bar, PBM_SETMARQUEE, on, 0);
}

}  // namespace

StatusLine::StatusLine(HWND parent, const Look& look) : look_(look) {
  Shape shape;
  shape.class_name = L"zenfo-status";
  shape.style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
  shape.parent = parent;
  create(shape);
  text_ = make_label(window(), L"", look);
  path_ = make_label(window(), L"", look);
  for (const HWND label : {text_, path_}) {
    SetWindowLongPtrW(label, GWL_STYLE,
                      GetWindowLongPtrW(label, GWL_STYLE) | SS_NOPREFIX);
  }
  SetWindowLongPtrW(path_, GWL_STYLE,
                    (GetWindowLongPtrW(path_, GWL_STYLE) & ~SS_ELLIPSISMASK) |
                        SS_PATHELLIPSIS);
  bar_ = CreateWindowExW(0, PROGRESS_CLASSW, L"", WS_CHILD, 0, 0, 0, 0,
                         window(), nullptr, GetModuleHandleW(nullptr), nullptr);
  SendMessageW(bar_, PBM_SETRANGE32, 0, kBarSteps);
}

void StatusLine::show(const std::wstring& text) { change_text(text_, text); }

std::wstring StatusLine::text() const { return text_of(text_); }

void StatusLine::show_progress(const JobProgress& progress) {
  change_text(path_, wide(progress.path));
  const bool endless = progress.files == 0;
  if (endless != endless_) set_endless(bar_, endless_ = endless);
  if (!endless) {
    const uint64_t done = uint64_t{progress.files_done} * kBarSteps;
    SendMessageW(bar_, PBM_SETPOS, static_cast<WPARAM>(done / progress.files),
                 0);
  }
  if (IsWindowVisible(bar_)) return;
  ShowWindow(bar_, SW_SHOW);
  lay_out();
}

void StatusLine::hide_progress() {
  if ((GetWindowLongPtrW(bar_, GWL_STYLE) & WS_VISIBLE) == 0) return;
  ShowWindow(bar_, SW_HIDE);
  change_text(path_, L"");
  lay_out();
}

int StatusLine::height() const { return field_height(look_); }

void StatusLine::restyle() {
  for (const HWND label : {text_, path_}) set_font(label, look_);
  lay_out();
  InvalidateRect(window(), nullptr, TRUE);
}

void StatusLine::lay_out() {
  RECT area{};
  GetClientRect(window(), &area);
  const int margin = look_.scale(8);
  const int high = area.bottom;
  const bool busy = (GetWindowLongPtrW(bar_, GWL_STYLE) & WS_VISIBLE) != 0;
  const int bar = busy ? look_.scale(120) : 0;
  const int path = busy ? (area.right - bar) / 3 : 0;
  const int text =
      area.right - 2 * margin - bar - path - (busy ? 2 * margin : 0);
  place(text_, margin, 0, text, high);
  const int pad = look_.scale(6);
  place(bar_, margin + text + margin, pad, bar, high - 2 * pad);
  place(path_, area.right - margin - path, 0, path, high);
}

LRESULT StatusLine::on_message(UINT message, WPARAM word, LPARAM value) {
  switch (message) {
    case WM_SIZE:
      lay_out();
      return 0;
    case WM_ERASEBKGND:
      fill_panel(window(), reinterpret_cast<HDC>(word), look_);
      return 1;
    case WM_CTLCOLORSTATIC:
      return control_colour(message, reinterpret_cast<HDC>(word), look_);
    default:
      return by_default(message, word, value);
  }
}

}  // namespace zenfo::host::gui::win32
