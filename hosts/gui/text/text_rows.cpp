#include "gui/text/text_rows.h"

#include <algorithm>
#include <string_view>

namespace zenfo::host::gui {
namespace {

constexpr size_t kRowsAtOnce = 256;

bool is_word(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return (value >= '0' && value <= '9') || (value >= 'A' && value <= 'Z') ||
         (value >= 'a' && value <= 'z') || value == '_' || value >= 0x80;
}

bool holds(const std::vector<Match>& areas, uint64_t offset) {
  auto area = std::upper_bound(
      areas.begin(), areas.end(), offset,
      [](uint64_t at, const Match& a) { return at < a.offset; });
  if (area == areas.begin()) return false;
  --area;
  return offset < uint64_t{area->offset} + area->length;
}

}  // namespace

bool TextRows::open(const std::string& path, std::vector<Match> matches,
                    std::string* reason) {
  close();
  matches_ = std::move(matches);
  is_open_ = window_->open(path, matches_, reason);
  if (!is_open_) close();
  return is_open_;
}

void TextRows::close() {
  is_open_ = false;
  window_ = std::make_unique<TextWindow>();
  matches_.clear();
  areas_.clear();
  current_ = 0;
  selection_ = {};
  top_ = {};
  left_ = widest_ = 0;
  forget_layout();
}

void TextRows::set_page(const CodePage& page) {
  page_ = &page;
  forget_layout();
}

void TextRows::set_areas(std::vector<Match> areas) {
  areas_ = std::move(areas);
}

void TextRows::set_view(uint32_t columns, uint32_t lines) {
  if (columns == columns_ && lines == count_) return;
  const uint64_t offset = lines_ && !lines_->empty()
                              ? lines_->front().offset_of(lines_->front().first)
                              : top_.row;
  columns_ = std::max<uint32_t>(columns, 1);
  count_ = std::max<uint32_t>(lines, 1);
  forget_layout();
  set_top(place_of(offset));
}

void TextRows::set_wrap(bool on) {
  if (on == wrap_) return;
  const std::vector<ShownLine>& shown = lines();
  const uint64_t offset =
      shown.empty() ? 0 : shown.front().offset_of(shown.front().first);
  wrap_ = on;
  left_ = widest_ = 0;
  forget_layout();
  set_top(place_of(offset));
}

void TextRows::forget_layout() {
  last_top_.reset();
  forget();
}

std::vector<uint32_t> TextRows::starts_of(const LaidText& laid) const {
  if (!wrap_) return {0};
  return line_starts(laid, columns_);
}

uint32_t TextRows::count_of(const TextRow& row) const {
  if (!wrap_) return 1;
  return static_cast<uint32_t>(starts_of(lay_out(row, *page_)).size());
}

// The first line carries the number; pieces of a long line have none.
void TextRows::add_lines(const TextRow& row,
                         std::vector<ShownLine>& lines) const {
  ShownLine line;
  line.row = row.offset;
  line.text = std::make_shared<const LaidText>(lay_out(row, *page_));
  const std::vector<uint32_t> starts = starts_of(*line.text);
  for (size_t i = 0; i < starts.size(); ++i) {
    line.number = i == 0 && row.begins_line ? row.number : 0;
    line.ends_row = i + 1 == starts.size();
    line.first = starts[i];
    line.last = line.ends_row ? line.text->size() : starts[i + 1];
    lines.push_back(line);
  }
}

const std::vector<ShownLine>& TextRows::lines() {
  if (lines_) return *lines_;
  std::vector<ShownLine> lines;
  lacks_numbers_ = false;
  const size_t wanted = count_ + 1;
  if (is_open_) {
    for (const TextRow& row : window_->rows_from(top_.row, wanted)) {
      lacks_numbers_ = lacks_numbers_ || row.number == 0;
      add_lines(row, lines);
      if (lines.size() >= wanted + top_.line) break;
    }
  }
  const size_t skipped = std::min<size_t>(top_.line, lines.size());
  lines.erase(lines.begin(),
              lines.begin() + static_cast<std::ptrdiff_t>(skipped));
  if (lines.size() > wanted) lines.resize(wanted);
  for (const ShownLine& line : lines) {
    widest_ = std::max(widest_, line.columns());
  }
  return lines_.emplace(std::move(lines));
}

// --- Runs --------------------------------------------------------------------

std::vector<TextRun> TextRows::runs(const ShownLine& line, uint32_t first,
                                    uint32_t last) const {
  const LaidText& laid = *line.text;
  struct Stretch {
    uint32_t first, last;
    bool current;
  };
  std::vector<Stretch> marks;
  std::vector<uint32_t> cuts = {first, last};
  const auto cut_at = [&](uint32_t unit) {
    if (unit > first && unit < last) cuts.push_back(unit);
  };
  for (const Mark& mark : laid.marks) {
    const uint32_t end = mark.start + mark.length;
    if (mark.start >= last || end <= first) continue;
    marks.push_back({mark.start, end, mark.match == current_});
    cut_at(mark.start);
    cut_at(end);
  }
  const auto cut_at_offset = [&](uint64_t offset) {
    if (offset >= line.row) cut_at(laid.unit_of_byte(offset - line.row));
  };
  cut_at_offset(selection_.start());
  cut_at_offset(selection_.end());
  auto area =
      std::lower_bound(areas_.begin(), areas_.end(), line.offset_of(first),
                       [](const Match& a, uint64_t at) {
                         return uint64_t{a.offset} + a.length <= at;
                       });
  for (; area != areas_.end() && area->offset < line.offset_of(last); ++area) {
    cut_at_offset(area->offset);
    cut_at_offset(uint64_t{area->offset} + area->length);
  }
  std::sort(cuts.begin(), cuts.end());
  cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());

  std::vector<TextRun> runs;
  for (size_t i = 0; i + 1 < cuts.size(); ++i) {
    TextRun run{cuts[i], cuts[i + 1]};
    for (const Stretch& mark : marks) {
      if (mark.first > run.first || mark.last <= run.first) continue;
      run.marked = true;
      run.current = run.current || mark.current;
    }
    const uint64_t offset = line.offset_of(run.first);
    run.area = holds(areas_, offset);
    run.selected = offset >= selection_.start() && offset < selection_.end();
    runs.push_back(run);
  }
  return runs;
}

bool TextRows::is_end_selected(const ShownLine& line) const {
  const uint64_t end = line.offset_of(line.last);
  return line.ends_row && end >= selection_.start() && end < selection_.end();
}

// --- Scrolling ---------------------------------------------------------------

// The last line of the text if there are not so many.
TextRows::Place TextRows::moved(Place from, int64_t lines) {
  if (lines <= 0) return moved_up(from, static_cast<uint64_t>(-lines));
  uint64_t left = static_cast<uint64_t>(lines) + from.line;
  Place last = from;
  while (left > 0) {
    const size_t count =
        static_cast<size_t>(std::min<uint64_t>(left + 1, kRowsAtOnce));
    const std::vector<TextRow> rows = window_->rows_from(last.row, count);
    for (const TextRow& row : rows) {
      const uint32_t own = count_of(row);
      last = {row.offset, own - 1};
      if (left < own) return {row.offset, static_cast<uint32_t>(left)};
      left -= own;
    }
    if (rows.size() < count) break;
    const uint64_t next = rows.back().end;
    if (next >= window_->size()) break;
    last = {next, 0};
  }
  return last;
}

TextRows::Place TextRows::moved_up(Place from, uint64_t lines) {
  if (from.line >= lines) {
    return {from.row, from.line - static_cast<uint32_t>(lines)};
  }
  uint64_t left = lines - from.line;
  uint64_t row = from.row;
  while (row > 0) {
    const size_t count =
        static_cast<size_t>(std::min<uint64_t>(left, kRowsAtOnce));
    const std::vector<TextRow> rows = window_->rows_before(row, count);
    if (rows.empty()) break;
    for (auto above = rows.rbegin(); above != rows.rend(); ++above) {
      const uint32_t own = count_of(*above);
      if (left <= own)
        return {above->offset, own - static_cast<uint32_t>(left)};
      left -= own;
    }
    row = rows.front().offset;
  }
  return {};
}

TextRows::Place TextRows::place_of(uint64_t offset) {
  const std::vector<TextRow> rows = window_->rows_from(offset, 1);
  if (rows.empty()) return {};
  const TextRow& row = rows.front();
  if (!wrap_ || offset < row.offset) return {row.offset, 0};
  const LaidText laid = lay_out(row, *page_);
  const std::vector<uint32_t> starts = starts_of(laid);
  const uint32_t unit = laid.unit_of_byte(offset - row.offset);
  const auto line = std::upper_bound(starts.begin(), starts.end(), unit);
  return {row.offset, static_cast<uint32_t>(line - starts.begin()) - 1};
}

// The view ends with the last line of the text.
TextRows::Place TextRows::last_top() {
  if (!last_top_) {
    Place last = place_of(window_->size());
    last_top_ = moved_up(last, count_ - 1);
  }
  return *last_top_;
}

bool TextRows::set_top(Place top) {
  if (!is_open_) return false;
  top = std::min(top, last_top());
  if (top == top_ && lines_) return false;
  const bool moves = top != top_;
  top_ = top;
  forget();
  return moves;
}

bool TextRows::scroll_lines(int64_t lines) {
  return is_open_ && set_top(moved(top_, lines));
}

bool TextRows::scroll_columns(int64_t columns) {
  const Range range = horizontal();
  const uint64_t most = range.size - std::min(range.size, range.page);
  const int64_t wanted = static_cast<int64_t>(left_) + columns;
  const auto left = static_cast<uint32_t>(
      std::clamp<int64_t>(wanted, 0, static_cast<int64_t>(most)));
  const bool moves = left != left_;
  left_ = left;
  return moves;
}

bool TextRows::go_to_offset(uint64_t offset) {
  return is_open_ && set_top(place_of(offset));
}

bool TextRows::go_to_end() { return is_open_ && set_top(last_top()); }

TextRows::Range TextRows::vertical() {
  const std::vector<ShownLine>& shown = lines();
  if (shown.empty()) return {};
  Range range;
  range.size = window_->size();
  range.position = shown.front().offset_of(shown.front().first);
  // At the last top the position is the greatest that the page leaves.
  const uint64_t last = last_top().row;
  range.page = range.size - std::min(range.size, last);
  if (top_ == last_top()) range.position = last;
  range.position = std::min(range.position, last);
  return range;
}

TextRows::Range TextRows::horizontal() {
  lines();
  if (wrap_) return {0, columns_, columns_};
  const uint64_t size = std::max<uint64_t>(widest_ + 1, left_ + columns_);
  return {left_, columns_, widest_ < columns_ && left_ == 0 ? columns_ : size};
}

bool TextRows::is_in_view(Place place) {
  const std::vector<ShownLine>& shown = lines();
  uint32_t line = top_.line;
  const size_t whole = std::min<size_t>(shown.size(), count_);
  for (size_t i = 0; i < whole; ++i) {
    if (i > 0) line = shown[i].row == shown[i - 1].row ? line + 1 : 0;
    if (Place{shown[i].row, line} == place) return true;
  }
  return false;
}

void TextRows::reveal_columns(const LaidText& laid, uint32_t first,
                              uint32_t last) {
  if (wrap_) return;
  constexpr uint32_t kAround = 8;  // columns seen before and after
  const uint32_t start = laid.columns[first];
  const uint32_t end = laid.columns[last];
  if (start >= left_ && end <= left_ + columns_) return;
  if (end + kAround <= columns_) {
    left_ = 0;
    return;
  }
  const uint32_t around = std::min(kAround, columns_ / 4);
  left_ = end + around > columns_ ? end + around - columns_ : 0;
  left_ = std::min(left_, start - std::min(start, around));
}

// A third of the view is above.
void TextRows::reveal(uint64_t offset, uint64_t end) {
  const Place place = place_of(offset);
  if (!is_in_view(place)) {
    set_top(moved_up(place, count_ / 3));
  }
  const std::vector<TextRow> rows = window_->rows_from(offset, 1);
  if (rows.empty() || offset < rows.front().offset) return;
  const LaidText laid = lay_out(rows.front(), *page_);
  reveal_columns(laid, laid.unit_of_byte(offset - rows.front().offset),
                 laid.unit_of_byte(end - rows.front().offset));
}

bool TextRows::go_to_match(size_t match) {
  if (!is_open_ || match >= matches_.size()) return false;
  current_ = match;
  const Match& place = matches_[match];
  reveal(place.offset, uint64_t{place.offset} + place.length);
  return true;
}

std::pair<std::u16string, uint64_t> TextRows::current_line() {
  if (!is_open_ || current_ >= matches_.size()) return {};
  const std::vector<TextRow> rows =
      window_->rows_from(matches_[current_].offset, 1);
  if (rows.empty()) return {};
  return {lay_out(rows.front(), *page_).text, rows.front().number};
}

// --- Numbers -----------------------------------------------------------------

uint64_t TextRows::number_at(uint64_t offset) {
  const std::vector<TextRow> rows = window_->rows_from(offset, 1);
  return rows.empty() ? 0 : rows.front().number;
}

bool TextRows::lacks_numbers() {
  lines();
  return lacks_numbers_;
}

bool TextRows::count_numbers(uint32_t megabytes) {
  const std::vector<ShownLine>& shown = lines();
  if (!lacks_numbers_ || shown.empty()) return false;
  const std::optional<uint64_t> number =
      window_->count_to(shown.front().row, [&] { return megabytes-- == 0; });
  if (!number) return !window_->has_changed();
  forget();
  return false;
}

uint32_t TextRows::digits() {
  uint64_t most = 0;
  for (const ShownLine& line : lines()) most = std::max(most, line.number);
  uint32_t digits = 1;
  for (; most >= 10; most /= 10) ++digits;
  constexpr uint32_t kFewest = 4;
  return std::max(digits, kFewest);
}

// --- Selection ---------------------------------------------------------------

uint64_t TextRows::offset_at(int64_t line, int64_t column) {
  const std::vector<ShownLine>& shown = lines();
  if (shown.empty()) return 0;
  if (line < 0) return shown.front().offset_of(shown.front().first);
  if (line >= static_cast<int64_t>(shown.size())) {
    return shown.back().offset_of(shown.back().last);
  }
  const ShownLine& at = shown[static_cast<size_t>(line)];
  const int64_t target = int64_t{at.first_column()} + left_ + column;
  if (target <= at.first_column()) return at.offset_of(at.first);
  const auto most = int64_t{at.text->columns[at.last]};
  return at.offset_of(
      unit_at_column(*at.text, at.first, at.last,
                     static_cast<uint32_t>(std::min(target, most))));
}

void TextRows::select_word(uint64_t offset) {
  const std::vector<TextRow> rows = window_->rows_from(offset, 1);
  if (rows.empty() || offset < rows.front().offset) return;
  const std::string& bytes = rows.front().bytes;
  auto first = static_cast<size_t>(offset - rows.front().offset);
  if (first >= bytes.size()) return;
  size_t last = first;
  if (is_word(bytes[first])) {
    while (first > 0 && is_word(bytes[first - 1])) --first;
    while (last < bytes.size() && is_word(bytes[last])) ++last;
  } else {
    ++last;
  }
  select(rows.front().offset + first, rows.front().offset + last);
}

uint64_t TextRows::next_character(uint64_t offset) {
  const std::vector<TextRow> rows = window_->rows_from(offset, 1);
  if (rows.empty() || offset >= window_->size()) return window_->size();
  const TextRow& row = rows.front();
  if (offset - row.offset >= row.bytes.size()) return row.end;
  const std::vector<uint32_t> places = bytes_of_units(row.bytes, *page_);
  const auto inside = static_cast<uint32_t>(offset - row.offset);
  return row.offset + *std::upper_bound(places.begin(), places.end(), inside);
}

uint64_t TextRows::character_before(uint64_t offset) {
  if (offset == 0) return 0;
  const std::vector<TextRow> rows = window_->rows_from(offset - 1, 1);
  if (rows.empty()) return 0;
  const TextRow& row = rows.front();
  const uint64_t inside = offset - row.offset;
  if (inside > row.bytes.size()) return row.offset + row.bytes.size();
  const std::vector<uint32_t> places = bytes_of_units(row.bytes, *page_);
  const auto at = std::lower_bound(places.begin(), places.end(), inside);
  return row.offset + (at == places.begin() ? 0 : *std::prev(at));
}

// In the same column of a row above or below, one row at a time.
uint64_t TextRows::line_away(uint64_t offset, int lines) {
  const std::vector<TextRow> own = window_->rows_from(offset, 1);
  if (own.empty()) return offset;
  const bool down = lines > 0;
  if (down && own.front().end >= window_->size()) return window_->size();
  const std::vector<TextRow> other =
      down ? window_->rows_from(own.front().end, 1)
           : window_->rows_before(own.front().offset, 1);
  if (other.empty()) return 0;
  const LaidText from = lay_out(own.front(), *page_);
  const LaidText to = lay_out(other.front(), *page_);
  const uint32_t column =
      from.columns[from.unit_of_byte(offset - own.front().offset)];
  const uint32_t unit = unit_at_column(to, 0, to.size(), column);
  return other.front().offset + to.bytes[unit];
}

void TextRows::extend(int characters, int lines) {
  if (!is_open_) return;
  if (selection_.is_empty() && current_ < matches_.size()) {
    const Match& match = matches_[current_];
    select(match.offset, uint64_t{match.offset} + match.length);
  }
  uint64_t caret = selection_.caret;
  if (characters > 0) caret = next_character(caret);
  if (characters < 0) caret = character_before(caret);
  if (lines != 0) caret = line_away(caret, lines);
  selection_.caret = caret;
  reveal(caret, caret);
}

std::optional<std::u16string> TextRows::selected_text(uint64_t most) {
  const uint64_t start = selection_.start();
  const uint64_t end = std::min(selection_.end(), window_->size());
  if (end > start && end - start > most) return std::nullopt;
  std::u16string text;
  for (uint64_t at = start; at < end;) {
    const std::vector<TextRow> rows = window_->rows_from(at, kRowsAtOnce);
    if (rows.empty()) break;
    for (const TextRow& row : rows) {
      if (row.offset >= end || row.end <= at) return text;
      const auto first = static_cast<size_t>(
          std::min<uint64_t>(at - std::min(at, row.offset), row.bytes.size()));
      const auto last = static_cast<size_t>(
          std::min<uint64_t>(end - row.offset, row.bytes.size()));
      text += plain_text_of(
          row.bytes.substr(first, last - std::min(first, last)), *page_);
      const bool has_end = row.end > row.offset + row.bytes.size();
      if (has_end && end > row.offset + row.bytes.size()) text += u"\r\n";
      at = row.end;
    }
  }
  return text;
}

}  // namespace zenfo::host::gui
