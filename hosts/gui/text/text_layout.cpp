#include "gui/text/text_layout.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zenfo::host::gui {
namespace {

struct Range {
  char32_t first, last;
};

// In order.
constexpr Range kOver[] = {
    {0x0300, 0x036F},   {0x1AB0, 0x1AFF},  {0x1DC0, 0x1DFF}, {0x200B, 0x200F},
    {0x20D0, 0x20FF},   {0xFE00, 0xFE0F},  {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF},
    {0x1F3FB, 0x1F3FF}, {0xE0100, 0xE01EF}};
constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x4DBF},
    {0x4E00, 0xA4CF},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
    {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

template <size_t kCount>
bool is_in(const Range (&ranges)[kCount], char32_t code) {
  const auto* range =
      std::lower_bound(std::begin(ranges), std::end(ranges), code,
                       [](const Range& r, char32_t c) { return r.last < c; });
  return range != std::end(ranges) && range->first <= code;
}

bool is_high(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool is_low(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }
bool is_blank(char16_t unit) { return unit == u' ' || unit == u'\t'; }

// The second unit of a pair stands where the first does, and a character that
// is written over another one where that ends.
void set_columns(LaidText& laid) {
  uint32_t column = 0;
  laid.columns.reserve(laid.text.size() + 1);
  for (size_t at = 0; at < laid.text.size(); ++at) {
    laid.columns.push_back(column);
    const char16_t unit = laid.text[at];
    if (unit == u'\t') {
      column += kTabColumns - column % kTabColumns;
    } else if (is_high(unit) && at + 1 < laid.text.size()) {
      laid.columns.push_back(column);
      column += cells_of(0x10000 + ((unit - 0xD800U) << 10U) +
                         (laid.text[at + 1] - 0xDC00U));
      ++at;
    } else {
      column += cells_of(unit);
    }
  }
  laid.columns.push_back(column);
}

// The first unit that does not fit into a line that begins at `start`.
uint32_t end_of_fitting(const LaidText& laid, uint32_t start,
                        uint32_t columns) {
  const uint32_t limit = laid.columns[start] + columns;
  const auto past = std::upper_bound(laid.columns.begin() + start + 1,
                                     laid.columns.end(), limit);
  auto end = static_cast<uint32_t>(past - laid.columns.begin()) - 1;
  while (end > start && end < laid.size() && is_low(laid.text[end])) --end;
  if (end > start) return end;
  end = start + 1;  // wider than the whole line
  if (end < laid.size() && is_low(laid.text[end])) ++end;
  return end;
}

}  // namespace

uint32_t LaidText::unit_of_byte(uint64_t byte) const {
  const auto unit = std::lower_bound(bytes.begin(), bytes.end(), byte);
  if (unit == bytes.end()) return size();
  if (*unit == byte || unit == bytes.begin()) {
    return static_cast<uint32_t>(unit - bytes.begin());
  }
  // Inside a character: where it begins.
  const auto begin = std::lower_bound(bytes.begin(), unit, *std::prev(unit));
  return static_cast<uint32_t>(begin - bytes.begin());
}

uint32_t cells_of(char32_t code) {
  if (code < 0x300) return 1;
  if (is_in(kOver, code)) return 0;
  return is_in(kWide, code) ? 2 : 1;
}

LaidText lay_out(const TextRow& row, const CodePage& page) {
  LaidText laid;
  ShownText shown = shown_text(row.bytes, row.marks, page);
  laid.text = std::move(shown.text);
  laid.marks = std::move(shown.marks);
  laid.bytes = bytes_of_units(row.bytes, page);
  set_columns(laid);
  return laid;
}

std::vector<uint32_t> line_starts(const LaidText& laid, uint32_t columns) {
  columns = std::max<uint32_t>(columns, 1);
  std::vector<uint32_t> starts = {0};
  while (laid.columns.back() - laid.columns[starts.back()] > columns) {
    const uint32_t start = starts.back();
    const uint32_t end = end_of_fitting(laid, start, columns);
    if (end >= laid.size()) break;
    uint32_t cut = end;
    while (cut > start && !is_blank(laid.text[cut - 1])) --cut;
    starts.push_back(cut > start ? cut : end);
  }
  return starts;
}

uint32_t unit_at_column(const LaidText& laid, uint32_t first, uint32_t last,
                        uint32_t column) {
  const auto begin = laid.columns.begin() + first;
  const auto end = laid.columns.begin() + last;
  const auto unit = std::upper_bound(begin, end, column);
  if (unit == end && column >= laid.columns[last]) return last;
  if (unit == begin) return first;
  auto index = static_cast<uint32_t>(unit - laid.columns.begin()) - 1;
  while (index > first && is_low(laid.text[index])) --index;
  return index;
}

}  // namespace zenfo::host::gui
