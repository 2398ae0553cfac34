#include "gui/win32/base/glyphs.h"

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

void draw_arrow(HDC device, const RECT& area, Pointing to, COLORREF colour,
                const Look& look) {
  const bool upright = to == Pointing::kDown || to == Pointing::kUp;
  const int way = to == Pointing::kDown || to == Pointing::kRight ? 1 : -1;
  const int half = look.scale(4);
  const int x = (area.left + area.right) / 2;
  const int y = (area.top + area.bottom) / 2;
  const Pen pen(device, std::max(look.scale(1), 1), colour);
  // Along the way, and across it; a line does not paint its last point.
  const int places[][2] = {
      {-half / 2, -half}, {half / 2, 0}, {-half / 2 - 1, half + 1}};
  POINT points[3] = {};
  for (int i = 0; i < 3; ++i) {
    const int along = places[i][0] * way;
    const int across = places[i][1];
    points[i] =
        upright ? POINT{x + across, y + along} : POINT{x + along, y + across};
  }
  Polyline(device, points, 3);
}

}  // namespace zenfo::host::gui::win32
