// A canvas without a window: it tracks the current position as the system does
// and records what is drawn where and the order of the calls.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/canvas.h"

namespace zenfo::testing {

struct DrawnText {
  int32_t x, y;
  std::string text;
  platform::Colour colour, background;

  bool operator==(const DrawnText&) const = default;
};

inline void PrintTo(const DrawnText& drawn, std::ostream* out) {
  *out << '(' << drawn.x << ',' << drawn.y << ") " << drawn.text.substr(0, 80)
       << " in " << drawn.colour << " on " << drawn.background;
}

struct DrawnRule {
  int32_t x, top, bottom;
  platform::Colour colour;

  bool operator==(const DrawnRule&) const = default;
};

inline void PrintTo(const DrawnRule& rule, std::ostream* out) {
  *out << "rule " << rule.x << ' ' << rule.top << '-' << rule.bottom << " in "
       << rule.colour;
}

class RecordingCanvas final : public platform::Canvas {
 public:
  // The properties of the window. Letters in the fixed font are as wide as the
  // widest; in the other font an 'i' is 3 pixels wide.
  platform::Rectangle client{0, 0, 200, 60};
  platform::FontMetrics metrics{20, 10};
  bool can_paint = true;
  bool can_scroll = true;
  std::function<void()> while_beginning;
  int32_t positions[2] = {11, 22};        // horizontal, vertical
  int32_t track_positions[2] = {33, 44};  // horizontal, vertical
  int32_t answer = 0;                     // result of set_scroll_page

  // The recorded calls.
  std::vector<std::string> calls;  // all but measuring, moving and drawing
  std::vector<DrawnText> texts;
  std::vector<DrawnRule> rules;
  size_t longest_call = 0;
  size_t bytes_measured = 0;
  bool clip_is_client = true;
  bool painting = false;

  void forget() {
    calls.clear();
    texts.clear();
    rules.clear();
    longest_call = bytes_measured = 0;
  }

  platform::Rectangle client_rectangle() override { return client; }
  bool begin_paint() override {
    calls.push_back("begin");
    if (while_beginning) while_beginning();
    painting = can_paint;
    return can_paint;
  }
  void end_paint() override {
    calls.push_back(painting ? "end" : "end without begin");
    painting = false;
  }
  platform::FontMetrics select_font(platform::Font font) override {
    fixed_ = font == platform::Font::kFixed;
    calls.push_back(fixed_ ? "fixed font" : "variable font");
    return metrics;
  }
  int32_t text_width(std::string_view text) override {
    bytes_measured += text.size();
    int32_t width = 0;
    for (const char c : text) {
      width += !fixed_ && c == 'i' ? 3 : metrics.widest_character;
    }
    return width;
  }
  void move_to(int32_t x, int32_t y) override {
    x_ = x;
    y_ = y;
  }
  void draw_text(std::string_view text, platform::Colour text_colour,
                 platform::Colour background,
                 const platform::Rectangle& clip) override {
    if (!painting) calls.push_back("text outside of painting");
    texts.push_back({x_, y_, std::string(text), text_colour, background});
    clip_is_client = clip_is_client && clip == client;
    longest_call = std::max(longest_call, text.size());
    const size_t measured = bytes_measured;
    x_ += text_width(text);
    bytes_measured = measured;
  }
  void draw_vertical_rule(int32_t x, int32_t top, int32_t bottom,
                          platform::Colour colour) override {
    if (!painting) calls.push_back("rule outside of painting");
    rules.push_back({x, top, bottom, colour});
  }
  void show_scroll_bars() override { calls.push_back("show bars"); }
  void set_scroll_range(platform::ScrollBar bar, int32_t maximum,
                        bool redraw) override {
    calls.push_back(name(bar) + " range " + std::to_string(maximum) +
                    (redraw ? " redraw" : ""));
  }
  int32_t set_scroll_page(platform::ScrollBar bar, int32_t page,
                          int32_t position) override {
    calls.push_back(name(bar) + " page " + std::to_string(page) + " at " +
                    std::to_string(position));
    return bar == platform::ScrollBar::kHorizontal ? answer : -77;
  }
  bool get_scroll_value(platform::ScrollBar bar, platform::ScrollValue kind,
                        int32_t* value) override {
    calls.push_back("get " + name(bar));
    if (!can_scroll) return false;
    const int32_t* values =
        kind == platform::ScrollValue::kPosition ? positions : track_positions;
    *value = values[bar == platform::ScrollBar::kVertical ? 1 : 0];
    return true;
  }

 private:
  static std::string name(platform::ScrollBar bar) {
    return bar == platform::ScrollBar::kVertical ? "vertical" : "horizontal";
  }

  bool fixed_ = true;
  int32_t x_ = 0;
  int32_t y_ = 0;
};

}  // namespace zenfo::testing
