#include "display/page.h"

#include <algorithm>
#include <string>
#include <utility>

namespace zenfo {
namespace {

// The longest text that is passed to the system in one call.
constexpr size_t kLongestCall = 8192;

uint32_t how_many(int64_t room, int32_t size) {
  return room <= 0 ? 0 : static_cast<uint32_t>(room / size);
}

}  // namespace

int32_t pixel(int64_t position) {
  constexpr int64_t kFarthest = INT32_MAX;
  return static_cast<int32_t>(std::clamp(position, -kFarthest, kFarthest));
}

Page::Page(DisplayState& state, std::shared_ptr<platform::Canvas> canvas,
           const PaintOptions& options)
    : state_(state),
      canvas_(std::move(canvas)),
      line_numbers_(options.line_numbers) {
  client = canvas_->client_rectangle();
  begun_ = canvas_->begin_paint();
  if (!begun_) return;
  measure(options.fixed_font ? platform::Font::kFixed
                             : platform::Font::kVariable);
  place(options);
  state_.clear_painted();
}

void Page::measure(platform::Font font) {
  const platform::FontMetrics metrics = canvas_->select_font(font);
  column_width = std::max(metrics.widest_character, 1);
  line_height = std::max(metrics.height, 1);
  if (line_numbers_) {
    const std::string last = std::to_string(state_.line_count());
    gutter = pixel(int64_t{canvas_->text_width(last)} + column_width);
  }
  state_.page_lines =
      how_many(int64_t{client.bottom} - client.top, line_height);
  state_.page_columns =
      how_many(int64_t{client.right} - client.left - gutter, column_width);
}

void Page::place(const PaintOptions& options) {
  state_.top_line =
      state_.page_lines < state_.line_count() ? options.top_line : 0;
  state_.left_column =
      state_.page_columns < state_.width ? options.left_column : 0;
}

Page::~Page() {
  if (begun_) canvas_->end_paint();
}

uint32_t Page::end_line() const {
  const uint64_t end = uint64_t{state_.top_line} + state_.page_lines;
  return static_cast<uint32_t>(std::min<uint64_t>(end, state_.line_count()));
}

int32_t Page::line_top(uint32_t line) const {
  return pixel(client.top + int64_t{line - state_.top_line} * line_height);
}

void Page::draw_number(uint32_t line) {
  if (!line_numbers_) return;
  const ColourTable& table = state_.colours();
  const Colours& colours =
      state_.line_marked(line) ? table.marked_gutter : table.gutter;
  move_to(line, 0);
  canvas_->draw_text(std::to_string(uint64_t{line} + 1), colours.text,
                     colours.background, client);
}

int32_t Page::move_to(uint32_t line, int64_t right) {
  const int32_t x = pixel(client.left + right);
  canvas_->move_to(x, line_top(line));
  return x;
}

int32_t Page::draw(std::string_view text, const Colours& colours, int32_t x) {
  while (!text.empty() && !beyond(x)) {
    const std::string_view part = text.substr(0, kLongestCall);
    canvas_->draw_text(part, colours.text, colours.background, client);
    x = pixel(int64_t{x} + canvas_->text_width(part));
    text.remove_prefix(part.size());
  }
  return x;
}

void Page::draw_rule(int64_t right) {
  canvas_->draw_vertical_rule(pixel(client.left + right), client.top,
                              client.bottom, state_.colours().gutter.text);
}

}  // namespace zenfo
