#include "gui/win32/base/look.h"

namespace zenfo::host::gui::win32 {

void update(Look& look, unsigned dpi, gui::Theme wish) {
  look.dpi = dpi;
  look.theme = make_theme(wish);
  look.font = message_font(dpi);
  LOGFONTW bold{};
  GetObjectW(look.font.get(), sizeof bold, &bold);
  bold.lfWeight = FW_BOLD;
  look.bold = Font(bold);
}

}  // namespace zenfo::host::gui::win32
