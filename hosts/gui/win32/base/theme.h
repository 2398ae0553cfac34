// The colours of the window: light, dark, or those of the system's high
// contrast. All parts read one object, which changes when the system does.
#pragma once

#include "gui/settings/settings.h"
#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

struct Theme {
  bool dark = false;
  bool high_contrast = false;

  COLORREF panel = 0;       // behind the fields, tabs and status line
  COLORREF panel_text = 0;  // labels
  COLORREF dim_text = 0;    // what matters less, on the panel or the ground
  COLORREF border = 0;
  COLORREF ground = 0;  // of fields, lists and pages
  COLORREF text = 0;
  COLORREF selected_ground = 0;
  COLORREF selected_text = 0;
  COLORREF button = 0;  // pressed toggles
  COLORREF button_hot = 0;
  COLORREF mark_ground = 0;  // a match
  COLORREF mark_text = 0;
  COLORREF current_ground = 0;  // the match in hand
  COLORREF current_text = 0;
  COLORREF current_frame = 0;  // around it: colour is not its only sign
  COLORREF gutter = 0;         // behind line numbers
  COLORREF number = 0;         // of lines
  COLORREF area_text = 0;      // what is no match because of its area
  COLORREF old_ground = 0;     // a line before a change
  COLORREF new_ground = 0;     // and after
  COLORREF info_ground = 0;    // the bar of messages
  COLORREF info_text = 0;

  bool operator==(const Theme&) const = default;
};

// As wished, or as the system says; high contrast goes before both.
Theme make_theme(gui::Theme wish);

// Gives a top window's frame, and a control's scroll bars, the theme. Systems
// that cannot do it leave them light.
void apply_to_frame(HWND window, const Theme& theme);
void apply_to_control(HWND control, const Theme& theme);

}  // namespace zenfo::host::gui::win32
