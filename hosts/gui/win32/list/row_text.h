// The texts of rows, for painting, for other programs, and to be copied.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <string>
#include <vector>

#include "gui/results/result_order.h"
#include "gui/text/line_reader.h"
#include "gui/win32/list/result_tab.h"
#include "gui/words/strings.h"

namespace zenfo::host::gui::win32 {

struct Column {
  ResultColumn id;
  Text label;
  int width;  // in pixels of 96 dpi
  bool right = false;
};

const std::vector<Column>& columns_of(ResultState state);
// `reason`: why the file was not searched.
std::wstring cell_text(const ResultFile& file, const std::string& reason,
                       ResultColumn column);
inline std::wstring cell_text(const ResultTab& tab, uint32_t file,
                              ResultColumn column) {
  return cell_text(tab.set().file(file), tab.set().reason(file), column);
}

// A line in a list: without the blanks at its start, tabs as blanks.
struct LineText {
  std::wstring number;  // empty if it is not known
  std::wstring text;
  uint32_t start = 0;  // of the match in the text
  uint32_t length = 0;
};
// `line` may be null: it was not read yet.
LineText line_text(const FoundLine* line);
// The whole row of a match in one text.
std::wstring match_text(const FoundLine* line);

}  // namespace zenfo::host::gui::win32
