// A window to paint in and its scroll bars: the dozen things that the display
// needs from the system.
//
// The painters draw on this interface only, so tests run them on a canvas that
// records its calls. Natively there are no windows: open_window returns null.
//
// Tested by tests/unit/platform/canvas_test.cpp
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace zenfo::platform {

using Colour = uint32_t;  // 0x00BBGGRR

struct Rectangle {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;  // outside, as is bottom
  int32_t bottom = 0;

  bool operator==(const Rectangle&) const = default;
};

// In pixels; 0 when the system does not say.
struct FontMetrics {
  int32_t height = 0;
  int32_t widest_character = 0;
};

enum class Font { kFixed, kVariable };
enum class ScrollBar { kHorizontal, kVertical };
enum class ScrollValue { kPosition, kTrackPosition };

// Numbers of system colours.
enum class SystemColour : int32_t {
  kWindow = 5,
  kWindowText = 8,
  kGrayText = 17,
  kInfoBackground = 24,
};
// Natively the system's usual defaults.
Colour system_colour(SystemColour number);

class Canvas {
 public:
  virtual ~Canvas() = default;

  // Empty when the system does not say.
  virtual Rectangle client_rectangle() = 0;

  // Painting: the following calls work after a begin_paint that answered true,
  // until its end_paint. Text is drawn at the current position, which moves to
  // the end of the text.
  virtual bool begin_paint() = 0;
  virtual void end_paint() = 0;
  virtual FontMetrics select_font(Font font) = 0;
  virtual int32_t text_width(std::string_view text) = 0;
  virtual void move_to(int32_t x, int32_t y) = 0;
  virtual void draw_text(std::string_view text, Colour text_colour,
                         Colour background, const Rectangle& clip) = 0;
  virtual void draw_vertical_rule(int32_t x, int32_t top, int32_t bottom,
                                  Colour colour) = 0;

  // Scroll bars; a bar that is not needed is disabled, not hidden.
  virtual void show_scroll_bars() = 0;
  virtual void set_scroll_range(ScrollBar bar, int32_t maximum,
                                bool redraw) = 0;
  // Redraws; returns the bar's position.
  virtual int32_t set_scroll_page(ScrollBar bar, int32_t page,
                                  int32_t position) = 0;
  virtual bool get_scroll_value(ScrollBar bar, ScrollValue kind,
                                int32_t* value) = 0;
};

// The host's window of a system handle; null for a null handle. The handle
// stays the host's and is not checked.
std::unique_ptr<Canvas> open_window(void* handle);

}  // namespace zenfo::platform
