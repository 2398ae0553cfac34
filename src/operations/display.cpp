// The operations under "Display" in zenfofr130.h.
//
// During the option question the display contains the file with matches;
// otherwise it is empty. A missing display returns -1. The pointer to the
// window is copied before the window is used, because calls into it may run
// host code that sets another one.
//
// Tested by tests/unit/operations/display_test.cpp
#include <algorithm>
#include <cstring>
#include <memory>

#include "display/hex_painter.h"
#include "display/layout.h"
#include "display/text_painter.h"
#include "operations/operation.h"
#include "platform/canvas.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

using platform::Canvas;
using platform::ScrollBar;
using platform::ScrollValue;

constexpr uint32_t kEveryGroup = UINT32_MAX;

// Runs an operation's steps on the display; -1 when there is none.
template <const ExportRow& kRow, class Steps>
int32_t run_on_display(Steps&& steps) {
  return run<kRow>([&](Library& library) {
    if (library.display == nullptr) return -1;
    make_deferred_layout(*library.display);
    return static_cast<int32_t>(steps(*library.display));
  });
}

// Either pointer may be null.
int32_t read_scroll_bars(const DisplayState& state, ScrollValue kind,
                         int32_t* vertical, int32_t* horizontal) {
  const std::shared_ptr<Canvas> window = state.window;
  if (window == nullptr) return -1;
  const auto read = [&](ScrollBar bar, int32_t* value) {
    return value == nullptr || window->get_scroll_value(bar, kind, value);
  };
  const bool both = read(ScrollBar::kVertical, vertical) &&
                    read(ScrollBar::kHorizontal, horizontal);
  return both ? 1 : -1;
}

int32_t paint(DisplayState& state, const std::shared_ptr<Canvas>& window,
              const PaintOptions& options) {
  return state.shown_bytes_per_line() == 0 ? paint_text(state, window, options)
                                           : paint_hex(state, window, options);
}

int32_t set_scroll_page(Canvas& window, ScrollBar bar, uint32_t page,
                        uint32_t position) {
  const auto capped = [](uint32_t value) {
    return static_cast<int32_t>(std::min(value, kLargestScrollValue));
  };
  return window.set_scroll_page(bar, capped(page), capped(position));
}

// Where the host should scroll to show a place: the present position when it is
// in view.
DisplayState::Place place_in_view(const DisplayState& state,
                                  const DisplayState::Place& place) {
  DisplayState::Place view = place;
  const uint64_t end_line = uint64_t{state.top_line} + state.page_lines;
  if (place.line >= state.top_line && place.line < end_line) {
    view.line = state.top_line;
  }
  // Intended: the column after the last one of the page counts as in view.
  const uint64_t last_column = uint64_t{state.left_column} + state.page_columns;
  if (place.column < state.page_columns) {
    view.column = 0;
  } else if (place.column >= state.left_column && place.column <= last_column) {
    view.column = state.left_column;
  }
  return view;
}

// Intended: toggling gives a plain text the match colour, but never back.
void toggle(const ColourTable& table, Colours& colours) {
  colours.background = colours.background == table.plain.background
                           ? table.match.background
                           : table.plain.background;
  if (colours.text == table.plain.text) colours.text = table.match.text;
}

void mark(const ColourTable& table, int32_t action, Colours& colours) {
  if (action == 0) colours = table.plain;
  if (action == 1) colours = table.match;
  if (action == -1) toggle(table, colours);
}

}  // namespace

ZENFO_ENTRY PrepareDisplay(const char* separator, int32_t mode) {
  return run_on_display<row::PrepareDisplay>([&](DisplayState& state) {
    return prepare_display_now(state, or_empty(separator), mode);
  });
}

ZENFO_ENTRY ResetDisplay() {
  return run_on_display<row::ResetDisplay>([&](DisplayState& state) {
    state.reset();
    return 1;
  });
}

ZENFO_ENTRY SetBytesPerLine(uint32_t bytes) {
  return run_on_display<row::SetBytesPerLine>([&](DisplayState& state) {
    state.bytes_per_line = bytes;
    return 1;
  });
}

ZENFO_ENTRY GetBytesPerLine() {
  return run_on_display<row::GetBytesPerLine>(
      [](const DisplayState& state) { return state.bytes_per_line; });
}

// Intended: a separator as long as the buffer is written one byte past it.
ZENFO_ENTRY GetLineSeparator(char* buffer, uint32_t size) {
  return run_on_display<row::GetLineSeparator>([&](DisplayState& state) {
    if (buffer == nullptr) return -1;
    buffer[0] = '\0';
    const std::string& separator = state.separator();
    if (separator.size() > size) return -1;
    std::memcpy(buffer, separator.c_str(), separator.size() + 1);
    return 1;
  });
}

ZENFO_ENTRY GetDisplayLineCount() {
  return run_on_display<row::GetDisplayLineCount>(
      [](const DisplayState& state) { return state.line_count(); });
}

ZENFO_ENTRY GetDisplayWidth() {
  return run_on_display<row::GetDisplayWidth>(
      [](const DisplayState& state) { return state.width; });
}

ZENFO_ENTRY GetDisplayTopLine() {
  return run_on_display<row::GetDisplayTopLine>(
      [](const DisplayState& state) { return state.top_line; });
}

ZENFO_ENTRY GetDisplayLeftColumn() {
  return run_on_display<row::GetDisplayLeftColumn>(
      [](const DisplayState& state) { return state.left_column; });
}

ZENFO_ENTRY GetDisplayPageLines() {
  return run_on_display<row::GetDisplayPageLines>(
      [](const DisplayState& state) { return state.page_lines; });
}

ZENFO_ENTRY SetDisplayWindow(void* handle) {
  return run_on_display<row::SetDisplayWindow>([&](DisplayState& state) {
    const std::shared_ptr<Canvas> window = platform::open_window(handle);
    state.window = window;
    if (window == nullptr) return -1;
    window->show_scroll_bars();
    state.set_scroll_ranges(true);
    return 1;
  });
}

ZENFO_ENTRY GetDisplayScrollPos(int32_t* vertical, int32_t* horizontal) {
  return run_on_display<row::GetDisplayScrollPos>([&](DisplayState& state) {
    return read_scroll_bars(state, ScrollValue::kPosition, vertical,
                            horizontal);
  });
}

ZENFO_ENTRY GetDisplayScrollTrackPos(int32_t* vertical, int32_t* horizontal) {
  return run_on_display<row::GetDisplayScrollTrackPos>(
      [&](DisplayState& state) {
        return read_scroll_bars(state, ScrollValue::kTrackPosition, vertical,
                                horizontal);
      });
}

// Intended: what the painter answers is not passed on.
ZENFO_ENTRY PaintDisplay(uint32_t top_line, uint32_t left_column,
                         int32_t line_numbers, int32_t fixed_font) {
  return run_on_display<row::PaintDisplay>([&](DisplayState& state) {
    const std::shared_ptr<Canvas> window = state.window;
    if (window == nullptr) return -1;
    paint(state, window,
          {top_line, left_column, line_numbers != 0, fixed_font != 0});
    set_scroll_page(*window, ScrollBar::kVertical, state.page_lines,
                    state.top_line);
    return set_scroll_page(*window, ScrollBar::kHorizontal, state.page_columns,
                           state.left_column);
  });
}

ZENFO_ENTRY RepaintDisplay(uint32_t /*unused*/, int32_t line_numbers,
                           int32_t fixed_font) {
  return run_on_display<row::RepaintDisplay>([&](DisplayState& state) {
    const std::shared_ptr<Canvas> window = state.window;
    if (window == nullptr) return -1;
    return paint(state, window,
                 {state.top_line, state.left_column, line_numbers != 0,
                  fixed_font != 0});
  });
}

ZENFO_ENTRY HitTestDisplay(int32_t x, int32_t y) {
  return run_on_display<row::HitTestDisplay>([=](const DisplayState& state) {
    return state.group_at(x, y);  // none is -1
  });
}

ZENFO_ENTRY HighlightGroup(uint32_t group, int32_t* position) {
  return run_on_display<row::HighlightGroup>([&](DisplayState& state) {
    if (position == nullptr) return -1;
    position[1] = 0;
    state.clear_highlight();
    if (!state.highlight(group)) return -1;
    const DisplayState::Place view =
        place_in_view(state, state.group_place(group));
    position[0] = static_cast<int32_t>(view.line);
    position[1] = static_cast<int32_t>(view.column);
    return 1;
  });
}

ZENFO_ENTRY ClearHighlight() {
  return run_on_display<row::ClearHighlight>([&](DisplayState& state) {
    state.clear_highlight();
    return 1;
  });
}

// The highlighted group keeps its accent; the colours that it gets back
// afterwards are those of its mark.
ZENFO_ENTRY MarkGroups(uint32_t group, int32_t action) {
  return run_on_display<row::MarkGroups>([&](DisplayState& state) {
    const auto count = static_cast<uint32_t>(state.groups().size());
    const bool every = group == kEveryGroup;
    if (!every && group >= count) return -1;
    const uint32_t end = every ? count : group + 1;
    for (uint32_t i = every ? 0 : group; i < end; ++i) {
      mark(state.colours(), action, state.own_colours(i));
    }
    return 0;
  });
}

}  // namespace zenfo
