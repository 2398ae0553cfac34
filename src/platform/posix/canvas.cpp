// Natively there are no windows, only colours.
//
// Tested by tests/unit/platform/canvas_test.cpp
#include "platform/canvas.h"

namespace zenfo::platform {

Colour system_colour(SystemColour number) {
  switch (number) {
    case SystemColour::kWindow:
      return 0xFFFFFF;
    case SystemColour::kWindowText:
      return 0x000000;
    case SystemColour::kGrayText:
      return 0x6D6D6D;
    case SystemColour::kInfoBackground:
      return 0xE1FFFF;
  }
  return 0;
}

std::unique_ptr<Canvas> open_window(void* /*handle*/) { return nullptr; }

}  // namespace zenfo::platform
