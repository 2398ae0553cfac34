// The lines of a text page: which part of which row each line of the screen
// shows, how they scroll, what is selected. Knows columns and lines, no pixels.
//
// Positions in the text are offsets in the file; the scroll range is in bytes
// too, so that a file of any size is shown at once.
//
// Tested by tests/gui/text/text_rows_test.cpp
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gui/text/text_layout.h"
#include "gui/text/text_window.h"
#include "gui/words/code_page.h"

namespace zenfo::host::gui {

// A line of the screen: units `first` to `last` of a row.
struct ShownLine {
  uint64_t row = 0;     // the row's offset in the file
  uint64_t number = 0;  // for the gutter; 0 for none
  bool ends_row = true;
  std::shared_ptr<const LaidText> text;
  uint32_t first = 0;
  uint32_t last = 0;

  uint32_t columns() const { return text->columns[last] - first_column(); }
  uint32_t first_column() const { return text->columns[first]; }
  // In the file, of a unit.
  uint64_t offset_of(uint32_t unit) const { return row + text->bytes[unit]; }
};

// Neighbouring units that look the same.
struct TextRun {
  uint32_t first = 0;
  uint32_t last = 0;
  bool area = false;
  bool marked = false;
  bool current = false;
  bool selected = false;

  bool operator==(const TextRun&) const = default;
};

class TextRows {
 public:
  // Nothing is selected, the first match is the current one, and the view is at
  // the start. False, with a reason, if the file cannot be read.
  bool open(const std::string& path, std::vector<Match> matches,
            std::string* reason);
  void close();
  bool is_open() const { return is_open_; }

  void set_page(const CodePage& page);
  // Areas to be shown in grey, in order, apart from each other.
  void set_areas(std::vector<Match> areas);
  // What fits into the view.
  void set_view(uint32_t columns, uint32_t lines);
  void set_wrap(bool on);
  bool is_wrapped() const { return wrap_; }

  // One line more than fits, for one that is cut at the bottom.
  const std::vector<ShownLine>& lines();
  // The parts of a line, between two units, by their looks.
  std::vector<TextRun> runs(const ShownLine& line, uint32_t first,
                            uint32_t last) const;
  // Whether the selection goes on behind the line.
  bool is_end_selected(const ShownLine& line) const;

  // The view moves: false if it stays where it is.
  bool scroll_lines(int64_t lines);
  bool scroll_columns(int64_t columns);
  bool go_to_offset(uint64_t offset);  // as the top
  bool go_to_end();
  uint32_t left_column() const { return left_; }
  struct Range {
    uint64_t position = 0;
    uint64_t page = 0;
    uint64_t size = 0;
  };
  Range vertical();
  Range horizontal();

  // Makes a match the current one and brings it into view.
  bool go_to_match(size_t match);
  size_t match_count() const { return matches_.size(); }
  size_t current() const { return current_; }
  // Its line, "" if it cannot be read, and the line's number, 0 if unknown.
  std::pair<std::u16string, uint64_t> current_line();

  // The number of the line at an offset, 0 if it was not counted yet.
  uint64_t number_at(uint64_t offset);

  // Whether lines in view lack their numbers. These are counted from the start
  // of the file, a few MB a call: true if there is more to count.
  bool lacks_numbers();
  bool count_numbers(uint32_t megabytes);
  // How many digits the numbers in view need.
  uint32_t digits();

  // The offset nearest to a place of the view, which may lie outside.
  uint64_t offset_at(int64_t line, int64_t column);
  struct Selection {
    uint64_t anchor = 0;
    uint64_t caret = 0;

    uint64_t start() const { return std::min(anchor, caret); }
    uint64_t end() const { return std::max(anchor, caret); }
    bool is_empty() const { return anchor == caret; }
    bool operator==(const Selection&) const = default;
  };
  void select(uint64_t anchor, uint64_t caret) { selection_ = {anchor, caret}; }
  void select_all() { select(0, window_->size()); }
  void select_word(uint64_t offset);
  // By characters or lines from the caret, with the current match to begin
  // with; the caret comes into view.
  void extend(int characters, int lines);
  const Selection& selection() const { return selection_; }
  // With CR LF between lines. No value for more than `most` bytes.
  std::optional<std::u16string> selected_text(uint64_t most);

 private:
  // The top of the view: a line of a row.
  struct Place {
    uint64_t row = 0;
    uint32_t line = 0;
    auto operator<=>(const Place&) const = default;
  };

  void forget() { lines_.reset(); }
  void forget_layout();
  std::vector<uint32_t> starts_of(const LaidText& laid) const;
  uint32_t count_of(const TextRow& row) const;
  Place moved(Place from, int64_t lines);
  Place moved_up(Place from, uint64_t lines);
  Place place_of(uint64_t offset);
  Place last_top();
  bool set_top(Place top);
  bool is_in_view(Place place);
  void reveal_columns(const LaidText& laid, uint32_t first, uint32_t last);
  void reveal(uint64_t offset, uint64_t end);
  void add_lines(const TextRow& row, std::vector<ShownLine>& lines) const;
  uint64_t next_character(uint64_t offset);
  uint64_t character_before(uint64_t offset);
  uint64_t line_away(uint64_t offset, int lines);

  std::unique_ptr<TextWindow> window_ = std::make_unique<TextWindow>();
  bool is_open_ = false;
  std::vector<Match> matches_;
  std::vector<Match> areas_;
  const CodePage* page_ = &CodePage::western();
  uint32_t columns_ = 80;
  uint32_t count_ = 25;  // of lines
  bool wrap_ = false;
  size_t current_ = 0;
  Selection selection_;
  Place top_;
  uint32_t left_ = 0;
  uint32_t widest_ = 0;  // columns of the longest line met
  bool lacks_numbers_ = false;
  std::optional<Place> last_top_;
  std::optional<std::vector<ShownLine>> lines_;
};

}  // namespace zenfo::host::gui
