#include "display/model.h"

#include <algorithm>

namespace zenfo {
namespace {

using platform::Rectangle;
using platform::SystemColour;

constexpr Colour kPureRed = 255;

int32_t scroll_value(uint32_t value) {
  return static_cast<int32_t>(std::min(value, kLargestScrollValue));
}

bool holds(const Rectangle& where, int32_t x, int32_t y) {
  if (where.left >= where.right || where.top >= where.bottom) return false;
  return x >= where.left && x <= where.right && y >= where.top &&
         y <= where.bottom;
}

}  // namespace

ColourTable ColourTable::current() {
  const Colour window = platform::system_colour(SystemColour::kWindow);
  const Colour text = platform::system_colour(SystemColour::kWindowText);
  const Colour gray = platform::system_colour(SystemColour::kGrayText);
  const Colour info = platform::system_colour(SystemColour::kInfoBackground);
  return {
      .plain = {window, text},
      .accent = {kPureRed, window},
      .match = {gray, window},
      .area = {info, gray},
      .gutter = {window, gray},
      .marked_gutter = {gray, window},
  };
}

const Colours& ColourTable::of(SpanKind kind) const {
  if (kind == SpanKind::kPlain) return plain;
  return kind == SpanKind::kMatch ? match : area;
}

LineSpans::LineSpans(const DisplayState& state, uint32_t line, uint32_t column)
    : state_(state), line_(line), bounds_(state.line_bounds(line)) {
  seek(column);
}

void LineSpans::seek(uint32_t column) {
  const auto pieces = state_.pieces();
  const uint32_t from = bounds_.start + std::min(column, bounds_.width());
  piece_ = state_.piece_behind(from);
  position_ = bounds_.start;
  if (piece_ > 0) position_ = std::max(position_, pieces[piece_ - 1].end());
  if (piece_ < pieces.size() && pieces[piece_].offset <= from) {
    position_ = std::max(position_, pieces[piece_].offset);
  }
}

bool LineSpans::next(Span* span) {
  const auto pieces = state_.pieces();
  const uint32_t end = bounds_.end;
  if (piece_ == pieces.size() || pieces[piece_].offset >= bounds_.next) {
    if (position_ >= end) return false;
    emit(position_, end, kNoGroup, span);
    position_ = end;
    return true;
  }
  const Piece& piece = pieces[piece_];
  const uint32_t first = std::min(std::max(piece.offset, bounds_.start), end);
  if (position_ < first) {
    emit(position_, first, kNoGroup, span);
    position_ = first;
    return true;
  }
  // A piece that touches only the separator gives a span of length 0.
  position_ = std::min(piece.end(), end);
  emit(first, position_, piece.group, span);
  ++piece_;
  return true;
}

void LineSpans::emit(uint32_t from, uint32_t to, uint32_t group,
                     Span* span) const {
  const bool plain = group == kNoGroup;
  span->bytes = state_.text().substr(from, to - from);
  span->kind = plain ? SpanKind::kPlain : state_.groups()[group].kind;
  span->line = line_;
  span->column = from - bounds_.start;
  span->group = group;
  span->colours =
      plain ? state_.colours().plain : state_.groups()[group].colours;
}

void DisplayState::reset() {
  clear_layout();
  text_ = {};
  matches_ = nullptr;
  areas_ = nullptr;
  top_line = 0;
  left_column = 0;
  page_lines = 0;
  page_columns = 0;
  colours_ = ColourTable::current();
}

void DisplayState::show(std::string_view text, ItemList* matches,
                        ItemList* areas) {
  clear_layout();
  text_ = text;
  matches_ = matches;
  areas_ = areas;
}

void DisplayState::begin_layout() { clear_layout(); }

// Frees the memory, because a display can be much larger than the next one.
void DisplayState::clear_layout() {
  ++stamp_;
  deferred_mode_.reset();
  line_starts_ = {};
  line_separator_ = 0;
  hex_bytes_ = 0;
  groups_ = {};
  pieces_ = {};
  painted_ = {};
  highlighted_ = -1;
  saved_ = {};
  width = 0;
  layout_word = 0;
}

void DisplayState::set_marks(std::vector<SpanGroup> groups,
                             std::vector<Piece> pieces) {
  groups_ = std::move(groups);
  pieces_ = std::move(pieces);
}

void DisplayState::begin_lines(uint32_t separator) {
  line_starts_.clear();
  line_separator_ = separator;
  hex_bytes_ = 0;
}

void DisplayState::set_hex_lines(uint32_t bytes_per_line_shown) {
  line_starts_.clear();
  hex_bytes_ = bytes_per_line_shown;
}

uint32_t DisplayState::line_count() const {
  if (hex_bytes_ == 0) return static_cast<uint32_t>(line_starts_.size());
  const uint64_t length = text_.size();
  return static_cast<uint32_t>((length + hex_bytes_ - 1) / hex_bytes_);
}

LineBounds DisplayState::line_bounds(uint32_t line) const {
  const auto length = static_cast<uint32_t>(text_.size());
  if (hex_bytes_ != 0) {
    const uint32_t start = line * hex_bytes_;
    const uint32_t end = start + std::min(hex_bytes_, length - start);
    return {start, end, end};
  }
  const uint32_t start = line_starts_[line];
  if (line + 1 == line_starts_.size()) return {start, length, length};
  const uint32_t next = line_starts_[line + 1];
  return {start, next - line_separator_, next};
}

uint32_t DisplayState::line_at(uint32_t offset) const {
  if (hex_bytes_ != 0) return offset / hex_bytes_;
  const auto behind =
      std::upper_bound(line_starts_.begin(), line_starts_.end(), offset);
  return static_cast<uint32_t>(behind - line_starts_.begin()) - 1;
}

bool DisplayState::line_marked(uint32_t line) const {
  if (hex_bytes_ != 0) return false;
  const LineBounds bounds = line_bounds(line);
  const size_t piece = piece_behind(bounds.start);
  return piece < pieces_.size() && pieces_[piece].offset < bounds.next;
}

size_t DisplayState::piece_behind(uint32_t offset) const {
  const auto piece = std::partition_point(
      pieces_.begin(), pieces_.end(),
      [offset](const Piece& candidate) { return candidate.end() <= offset; });
  return static_cast<size_t>(piece - pieces_.begin());
}

uint32_t DisplayState::shown_bytes_per_line() const {
  return line_count() == 0 ? bytes_per_line : hex_bytes_;
}

void DisplayState::set_separator(std::string_view separator) {
  separator_ = separator;
  has_separator_ = true;
}

bool DisplayState::highlight(uint32_t group) {
  if (group >= groups_.size() || groups_[group].empty()) return false;
  saved_ = groups_[group].colours;
  groups_[group].colours = colours_.accent;
  highlighted_ = static_cast<int32_t>(group);
  return true;
}

void DisplayState::clear_highlight() {
  if (highlighted_ >= 0) {
    groups_[static_cast<uint32_t>(highlighted_)].colours = saved_;
  }
  highlighted_ = -1;
  saved_ = {};
}

Colours& DisplayState::own_colours(uint32_t group) {
  const bool highlighted =
      highlighted_ >= 0 && group == static_cast<uint32_t>(highlighted_);
  return highlighted ? saved_ : groups_[group].colours;
}

DisplayState::Place DisplayState::group_place(uint32_t group) const {
  const uint32_t offset = pieces_[groups_[group].first_piece].offset;
  const uint32_t line = line_at(offset);
  const LineBounds bounds = line_bounds(line);
  return {line, std::min(offset - bounds.start, bounds.width())};
}

void DisplayState::note_painted(const Span& span, const Rectangle& where) {
  if (span.kind != SpanKind::kMatch) return;
  painted_.push_back({where, span.line, span.column, span.group});
}

uint32_t DisplayState::group_at(int32_t x, int32_t y) const {
  const Painted* hit = nullptr;
  for (const Painted& painted : painted_) {
    if (!holds(painted.where, x, y)) continue;
    // Hex lines are noted twice, all digits before all characters.
    if (hit == nullptr || painted.line < hit->line ||
        (painted.line == hit->line && painted.column < hit->column)) {
      hit = &painted;
    }
  }
  return hit != nullptr ? hit->group : kNoGroup;
}

void DisplayState::set_scroll_ranges(bool redraw) const {
  using platform::ScrollBar;
  const std::shared_ptr<platform::Canvas> canvas = window;
  if (canvas == nullptr) return;
  canvas->set_scroll_range(ScrollBar::kHorizontal, scroll_value(width), redraw);
  canvas->set_scroll_range(ScrollBar::kVertical, scroll_value(line_count()),
                           redraw);
}

}  // namespace zenfo
