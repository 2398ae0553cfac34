// A row of a text in cells of equal width: in which column each character
// stands, and where the row is broken when lines are wrapped.
//
// Tested by tests/gui/text/text_layout_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gui/text/shown_text.h"
#include "gui/text/text_window.h"
#include "gui/words/code_page.h"

namespace zenfo::host::gui {

// Units are those of UTF-16. `bytes` and `columns` have an entry more than the
// text, for its end.
struct LaidText {
  std::u16string text;
  std::vector<uint32_t> bytes;    // of each unit: where its character begins
  std::vector<uint32_t> columns;  // of each unit
  std::vector<Mark> marks;        // in units

  uint32_t size() const { return static_cast<uint32_t>(text.size()); }
  uint32_t unit_of_byte(uint64_t byte) const;
};

inline constexpr uint32_t kTabColumns = 4;

// How many cells a character takes: 0 for one that is written over the one
// before, 2 for those of East Asia.
uint32_t cells_of(char32_t code);
LaidText lay_out(const TextRow& row, const CodePage& page);
// The units with which lines of so many columns begin; the first is 0. Lines
// are broken after white space, or anywhere in a word that is too long.
std::vector<uint32_t> line_starts(const LaidText& laid, uint32_t columns);
// The unit at whose character the column lies, between two units.
uint32_t unit_at_column(const LaidText& laid, uint32_t first, uint32_t last,
                        uint32_t column);

}  // namespace zenfo::host::gui
