#include "gui/win32/glyphs.h"

#include <algorithm>
#include <iterator>

namespace zenfo::host::gui::win32 {
namespace {

class Pen {
 public:
  Pen(HDC device, int width, COLORREF colour)
      : device_(device),
        pen_(CreatePen(PS_SOLID, width, colour)),
        old_(SelectObject(device, pen_)) {}
  ~Pen() {
    SelectObject(device_, old_);
    DeleteObject(pen_);
  }
  Pen(const Pen&) = delete;
  Pen& operator=(const Pen&) = delete;

 private:
  HDC device_;
  HPEN pen_;
  HGDIOBJ old_;
};

RECT square_in(const RECT& area, int side) {
  const int x = (area.left + area.right - side) / 2;
  const int y = (area.top + area.bottom - side) / 2;
  return {x, y, x + side, y + side};
}

}  // namespace

void draw_frame(HDC device, const RECT& area, COLORREF colour) {
  SetDCBrushColor(device, colour);
  FrameRect(device, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void draw_check(HDC device, const RECT& area, Check check, const Look& look) {
  const Theme& theme = look.theme;
  const int side = look.scale(13);
  RECT box = square_in(area, side);
  fill(device, box, theme.ground);
  draw_frame(device, box, theme.dim_text);
  if (check == Check::kSome) {
    InflateRect(&box, -look.scale(3), -look.scale(3));
    fill(device, box, theme.text);
  } else if (check == Check::kOn) {
    const Pen pen(device, std::max(look.scale(2), 1), theme.text);
    const POINT tick[] = {{box.left + side * 3 / 13, box.top + side * 6 / 13},
                          {box.left + side * 5 / 13, box.top + side * 9 / 13},
                          {box.left + side * 10 / 13, box.top + side * 3 / 13}};
    Polyline(device, tick, static_cast<int>(std::size(tick)));
  }
}

void draw_arrow(HDC device, const RECT& area, bool down, COLORREF colour,
                const Look& look) {
  const int half = look.scale(4);
  const int x = (area.left + area.right) / 2;
  const int y = (area.top + area.bottom) / 2;
  const Pen pen(device, std::max(look.scale(1), 1), colour);
  const POINT to_bottom[] = {{x - half, y - half / 2},
                             {x, y + half / 2},
                             {x + half + 1, y - half / 2 - 1}};
  const POINT to_right[] = {{x - half / 2, y - half},
                            {x + half / 2, y},
                            {x - half / 2 - 1, y + half + 1}};
  Polyline(device, down ? to_bottom : to_right, 3);
}

}  // namespace zenfo::host::gui::win32
