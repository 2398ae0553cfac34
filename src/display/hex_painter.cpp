#include "display/hex_painter.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace zenfo {
namespace {

constexpr uint32_t kColumnsPerByte = 3;  // two digits and a blank
// How many bytes are turned into text at a time: all of a usual line, part of a
// long one.
constexpr size_t kBytesAtATime = 2048;

std::string digits(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes.size() * kColumnsPerByte);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
    text += ' ';
  }
  return text;
}

std::string characters(std::string_view bytes) {
  std::string text(bytes);
  for (char& c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 32 || byte == 127) c = '.';
  }
  return text;
}

// Where the character part begins, in pixels from the client's left edge.
struct CharacterPart {
  int64_t start;
  int64_t end;
};

CharacterPart character_part(const DisplayState& state, const Page& page) {
  const int64_t bytes = state.shown_bytes_per_line();
  const int64_t columns = bytes * kColumnsPerByte - state.left_column +
                          (page.line_numbers() ? 1 : 0);
  const int64_t start =
      std::max<int64_t>(page.gutter + columns * page.column_width, 0);
  return {start, start + (bytes + 2) * page.column_width};
}

// Draws the spans of a line in one part, starting at character `left`;
// `to_text` makes the part's `per_byte` characters of each byte.
void paint_part(DisplayState& state, Page& page, uint32_t line, int32_t x,
                uint32_t left, uint32_t per_byte,
                std::string (*to_text)(std::string_view)) {
  const int32_t top = page.line_top(line);
  const int32_t bottom = pixel(int64_t{top} + page.line_height);
  const uint32_t first = left / per_byte;
  uint32_t hidden = left % per_byte;  // characters of the first byte
  LineSpans spans(state, line, first);
  Span span;
  while (!page.beyond(x) && spans.next(&span)) {
    const size_t skipped = first > span.column ? first - span.column : 0;
    if (skipped >= span.bytes.size()) continue;
    std::string_view bytes = span.bytes.substr(skipped);
    const int32_t start = x;
    while (!bytes.empty() && !page.beyond(x)) {
      const std::string text = to_text(bytes.substr(0, kBytesAtATime));
      x = page.draw(std::string_view(text).substr(hidden), span.colours, x);
      hidden = 0;
      bytes.remove_prefix(std::min(bytes.size(), kBytesAtATime));
    }
    state.note_painted(span, {start, top, x, bottom});
  }
}

void paint_line(DisplayState& state, Page& page, uint32_t line,
                const CharacterPart& part) {
  page.draw_number(line);
  int32_t x = page.move_to(line, page.gutter);
  paint_part(state, page, line, x, state.left_column, kColumnsPerByte, digits);
  x = page.move_to(line, part.start);
  paint_part(state, page, line, x, 0, 1, characters);
}

}  // namespace

int32_t paint_hex(DisplayState& state,
                  const std::shared_ptr<platform::Canvas>& canvas,
                  const PaintOptions& options) {
  Page page(state, canvas, options);
  if (!page.begun()) return -1;
  const CharacterPart part = character_part(state, page);
  const uint32_t end = page.end_line();
  for (uint32_t line = state.top_line; line < end; ++line) {
    paint_line(state, page, line, part);
  }
  if (page.line_numbers()) page.draw_rule(page.gutter);
  if (part.start != 0) page.draw_rule(part.start);
  if (part.end != 0) page.draw_rule(part.end);
  return 1;
}

}  // namespace zenfo
