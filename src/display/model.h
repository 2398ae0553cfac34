// The display model: the text of the current file as lines, its marked ranges
// as groups of spans, their colours, and how far the host has scrolled.
//
// Nothing is stored that follows from the text. A line is stored as its start,
// a hex line not at all. Marked ranges are kept as disjoint pieces of the text
// in text order, and the spans of a line are cut from them when needed: 4 bytes
// for each line and 28 bytes for each match, however many lines a match covers.
// All spans of a group always have the same colours, so the group keeps them.
// Rectangles are kept for what was painted last.
//
// The model refers to the loaded text and to the match lists, and must be reset
// before either is freed.
//
// Tested by tests/unit/display/model_test.cpp
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "containers/item_list.h"
#include "containers/progress.h"
#include "platform/canvas.h"

namespace zenfo {

using platform::Colour;

enum class SpanKind : uint32_t { kMatch = 1, kArea = 2, kPlain = 3 };

struct Colours {
  Colour background = 0;
  Colour text = 0;

  bool operator==(const Colours&) const = default;
};

// The twelve colours.
struct ColourTable {
  // The defaults: system colours as they are now, and pure red.
  static ColourTable current();
  // The colours that spans of a kind have at first.
  const Colours& of(SpanKind kind) const;

  Colours plain;
  Colours accent;  // the highlighted group
  Colours match;
  Colours area;
  Colours gutter;  // line numbers; the text colour is also that of the rules
  Colours marked_gutter;  // the numbers of marked lines
};

inline constexpr uint32_t kNoGroup = UINT32_MAX;
// Values that scroll bars take are capped here.
inline constexpr uint32_t kLargestScrollValue = INT32_MAX;

// A part of one line that has one kind.
struct Span {
  std::string_view bytes;  // in the text
  SpanKind kind;
  uint32_t line;    // index
  uint32_t column;  // bytes from the line's start
  uint32_t group;   // index; kNoGroup for plain spans
  Colours colours;
};

// Where a line is in the text; offsets from the text's start.
struct LineBounds {
  uint32_t start;
  uint32_t end;   // of the shown part
  uint32_t next;  // after the line's separator

  uint32_t width() const { return end - start; }
};

// A visible part of a marked range: no two pieces overlap, none is empty.
struct Piece {
  uint32_t offset;
  uint32_t length;
  uint32_t group;

  uint32_t end() const { return offset + length; }
};

// One marked range; its spans are cut from its pieces.
struct SpanGroup {
  Colours colours;
  uint32_t first_piece = UINT32_MAX;  // none when other ranges hide it all
  SpanKind kind;

  bool empty() const { return first_piece == UINT32_MAX; }
};

class DisplayState;

// The spans of one line, in order.
class LineSpans {
 public:
  // Starts at the span that contains the column; spans wholly left of it may
  // come first. The model must outlive the walk unchanged.
  LineSpans(const DisplayState& state, uint32_t line, uint32_t column = 0);

  // False when there are no more.
  bool next(Span* span);

 private:
  void seek(uint32_t column);
  void emit(uint32_t from, uint32_t to, uint32_t group, Span* span) const;

  const DisplayState& state_;
  uint32_t line_;
  LineBounds bounds_;
  uint32_t position_;  // offset from the text's start
  size_t piece_;       // the next one
};

class DisplayState : public ProgressHooks {
 public:
  DisplayState() { reset(); }

  // Empties the display and reads the colours again. Bytes per line, the
  // separator and the window stay.
  void reset();
  // What the next layout shows: the loaded text (empty for none), the matches
  // (null for none) and, when an area pattern took part, the areas.
  void show(std::string_view text, ItemList* matches, ItemList* areas);

  std::string_view text() const { return text_; }
  ItemList* matches() const { return matches_; }
  ItemList* areas() const { return areas_; }

  // Changes with every reset and at the start of every layout.
  uint32_t stamp() const { return stamp_; }

  // Starts a layout: no lines, groups, highlight or rectangles; width and
  // layout word 0.
  void begin_layout();
  // Leaves a layout for later, or takes back what was left; see layout.h.
  void defer_layout(int32_t mode) { deferred_mode_ = mode; }
  std::optional<int32_t> take_deferred() {
    return std::exchange(deferred_mode_, std::nullopt);
  }
  // The result of a layout: the pieces of the groups, in text order...
  void set_marks(std::vector<SpanGroup> groups, std::vector<Piece> pieces);
  // ...and the lines: text lines one by one, each by its start; `separator`
  // is the number of bytes between two...
  void begin_lines(uint32_t separator);
  void add_line(uint32_t start) { line_starts_.push_back(start); }
  // ...or hex lines, all at once.
  void set_hex_lines(uint32_t bytes_per_line);

  uint32_t line_count() const;
  LineBounds line_bounds(uint32_t line) const;
  // The line that an offset below the text's length belongs to.
  uint32_t line_at(uint32_t offset) const;
  // Whether the line's number is highlighted. Intended: never in a hex layout.
  bool line_marked(uint32_t line) const;

  std::span<SpanGroup> groups() { return groups_; }
  std::span<const SpanGroup> groups() const { return groups_; }
  std::span<const Piece> pieces() const { return pieces_; }
  // The first piece that ends after an offset; pieces().size() if none.
  size_t piece_behind(uint32_t offset) const;

  // Bytes per line for the next layout; 0 for text.
  uint32_t bytes_per_line = 0;
  // That of the present lines, or of the next layout while there are none.
  uint32_t shown_bytes_per_line() const;

  bool has_separator() const { return has_separator_; }
  const std::string& separator() const { return separator_; }
  void set_separator(std::string_view separator);

  // In lines and columns; written by the painters.
  uint32_t top_line = 0;
  uint32_t left_column = 0;
  uint32_t page_lines = 0;
  uint32_t page_columns = 0;
  uint32_t width = 0;        // columns of the widest line
  uint32_t layout_word = 0;  // hex layout: the first character column

  // Accent colours for one group at a time; false for a group that does not
  // exist or has no span. An earlier highlight must have been cleared.
  bool highlight(uint32_t group);
  void clear_highlight();
  // For tests. -1 when none.
  int32_t highlighted_group() const { return highlighted_; }
  // For tests: what clear_highlight() gives back to that group.
  const Colours& saved_colours() const { return saved_; }
  // The colours that a group has without the highlight.
  Colours& own_colours(uint32_t group);

  // The start of the first span of a group that is not empty.
  struct Place {
    uint32_t line;
    uint32_t column;
  };
  Place group_place(uint32_t group) const;

  const ColourTable& colours() const { return colours_; }

  // Where matches were drawn by the last paint.
  void clear_painted() { painted_.clear(); }
  void note_painted(const Span& span, const platform::Rectangle& where);
  // The group drawn there, edges included, or kNoGroup; the first span wins.
  // Intended: spans that take no room are never hit.
  uint32_t group_at(int32_t x, int32_t y) const;

  // The host's window or null. Calls into it may run host code that sets
  // another one: keep a copy while using it.
  std::shared_ptr<platform::Canvas> window;
  // Sets both scroll ranges of the window, if there is one.
  void set_scroll_ranges(bool redraw) const;

 private:
  struct Painted {
    platform::Rectangle where;
    uint32_t line;
    uint32_t column;
    uint32_t group;
  };

  void clear_layout();

  std::string separator_;
  bool has_separator_ = false;

  std::string_view text_;
  ItemList* matches_ = nullptr;
  ItemList* areas_ = nullptr;
  uint32_t stamp_ = 0;

  std::optional<int32_t> deferred_mode_;
  std::vector<uint32_t> line_starts_;  // text layout only
  uint32_t line_separator_ = 0;        // bytes, of the current layout
  uint32_t hex_bytes_ = 0;             // per line; 0 in a text layout
  std::vector<SpanGroup> groups_;
  std::vector<Piece> pieces_;
  std::vector<Painted> painted_;

  int32_t highlighted_ = -1;
  Colours saved_;
  ColourTable colours_;
};

}  // namespace zenfo
