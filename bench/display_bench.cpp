// The display of a large text: laying out 100 MB, as lines with a million
// matches and as millions of hex lines, compared with plain passes over the
// same bytes; and painting one page of it, which must cost no more than a page
// of a small text.
//
// Run: build/native/bin/display_bench
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <string>

#include "display/hex_painter.h"
#include "display/layout.h"
#include "display/text_painter.h"
#include "pattern/match_record.h"

namespace zenfo {
namespace {

constexpr size_t kLine = 40;
constexpr size_t kLines = 2500000;
constexpr size_t kMatches = 1000000;

// Draws nothing; every letter is ten pixels wide.
class BlindCanvas final : public platform::Canvas {
 public:
  platform::Rectangle client_rectangle() override { return {0, 0, 1600, 1000}; }
  bool begin_paint() override { return true; }
  void end_paint() override {}
  platform::FontMetrics select_font(platform::Font) override {
    return {20, 10};
  }
  int32_t text_width(std::string_view text) override {
    return static_cast<int32_t>(text.size()) * 10;
  }
  void move_to(int32_t, int32_t) override {}
  void draw_text(std::string_view text, platform::Colour, platform::Colour,
                 const platform::Rectangle&) override {
    drawn += text.size();
  }
  void draw_vertical_rule(int32_t, int32_t, int32_t,
                          platform::Colour) override {}
  void show_scroll_bars() override {}
  void set_scroll_range(platform::ScrollBar, int32_t, bool) override {}
  int32_t set_scroll_page(platform::ScrollBar, int32_t, int32_t) override {
    return 0;
  }
  bool get_scroll_value(platform::ScrollBar, platform::ScrollValue,
                        int32_t*) override {
    return false;
  }

  size_t drawn = 0;
};

// A text of lines, of which two in five have a match, cut to one part in
// `share`.
struct Subject {
  explicit Subject(size_t share = 1) {
    const std::string line = std::string(kLine - 2, 'x') + "\r\n";
    text.reserve(kLines / share * kLine);
    for (size_t i = 0; i < kLines / share; ++i) text += line;
    const size_t count = kMatches / share;
    for (size_t i = 0; i < count; ++i) {
      const auto offset = static_cast<uint32_t>(i * (text.size() / count));
      matches.append(
          std::make_unique<MatchRecord>(text.data() + offset, 5, offset));
    }
    matches.build_index();
  }

  std::string text;
  ItemList matches;
};

Subject& subject() {
  static Subject& only = *new Subject;
  return only;
}

void lay_out(benchmark::State& run, DisplayState& display, uint32_t bytes,
             size_t lines) {
  Subject& large = subject();
  display.bytes_per_line = bytes;
  display.show(large.text, &large.matches, nullptr);
  if (prepare_display_now(display, "\r\n", 0) != 1 ||
      display.line_count() != lines || display.groups().size() != kMatches) {
    run.SkipWithError("wrong layout");
  }
}

void count_line_ends(benchmark::State& run) {
  const std::string& text = subject().text;
  for (auto _ : run) {
    size_t ends = 0;
    const char* end = text.data() + text.size();
    for (const char* at = text.data(); at < end; ++at, ++ends) {
      at = static_cast<const char*>(
          std::memchr(at, '\n', static_cast<size_t>(end - at)));
      if (at == nullptr) break;
    }
    if (ends != kLines) run.SkipWithError("wrong count");
  }
}
BENCHMARK(count_line_ends)->Unit(benchmark::kMillisecond);

void lay_out_lines(benchmark::State& run) {
  DisplayState display;
  for (auto _ : run) lay_out(run, display, 0, kLines + 1);
}
BENCHMARK(lay_out_lines)->Unit(benchmark::kMillisecond);

void lay_out_hex(benchmark::State& run) {
  DisplayState display;
  const size_t lines = (kLines * kLine + 15) / 16;
  for (auto _ : run) lay_out(run, display, 16, lines);
}
BENCHMARK(lay_out_hex)->Unit(benchmark::kMillisecond);

using Painter = int32_t (*)(DisplayState&,
                            const std::shared_ptr<platform::Canvas>&,
                            const PaintOptions&);

// Argument: the divisor for the size of the text.
void paint(benchmark::State& run, Painter painter, uint32_t bytes,
           std::string_view separator) {
  Subject part(static_cast<size_t>(run.range(0)));
  DisplayState display;
  display.bytes_per_line = bytes;
  display.show(part.text, &part.matches, nullptr);
  if (prepare_display_now(display, separator, 0) != 1) {
    run.SkipWithError("no layout");
  }
  const auto canvas = std::make_shared<BlindCanvas>();
  const PaintOptions options{.top_line = display.line_count() / 2,
                             .left_column = display.width / 2,
                             .line_numbers = true,
                             .fixed_font = true};
  for (auto _ : run) painter(display, canvas, options);
  if (canvas->drawn == 0) run.SkipWithError("nothing drawn");
}

void paint_lines(benchmark::State& run) { paint(run, paint_text, 0, "\r\n"); }
BENCHMARK(paint_lines)->Arg(1)->Arg(10000);

// The whole text is one line.
void paint_long_line(benchmark::State& run) {
  paint(run, paint_text, 0, "\n\r");
}
BENCHMARK(paint_long_line)->Arg(1)->Arg(1000);

void paint_hex_lines(benchmark::State& run) { paint(run, paint_hex, 16, ""); }
BENCHMARK(paint_hex_lines)->Arg(1)->Arg(10000);

}  // namespace
}  // namespace zenfo

BENCHMARK_MAIN();
