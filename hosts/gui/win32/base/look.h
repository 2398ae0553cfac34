// How all parts look: colours, resolution, fonts. The main window owns one and
// changes it in place when the system's settings change.
#pragma once

#include "gui/win32/base/dpi.h"
#include "gui/win32/base/theme.h"

namespace zenfo::host::gui::win32 {

struct Look {
  Theme theme;
  unsigned dpi = 96;
  Font font;  // the system's for messages
  Font bold;

  int scale(int size) const { return scaled(size, dpi); }
};

// Fonts for the resolution, colours as wished.
void update(Look& look, unsigned dpi, gui::Theme wish);

}  // namespace zenfo::host::gui::win32
