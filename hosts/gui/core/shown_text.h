// Bytes of a file as text on the screen, with marks that move along.
//
// Bytes that are UTF-8 as a whole are shown as that, others by a code page. A
// byte without a character is shown as ".", a control character as its picture
// (U+2400 and on); a tab stays a tab.
//
// Tested by tests/gui/core/shown_text_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "gui/core/code_page.h"

namespace zenfo::host::gui {

// A stretch of a text: of bytes before, of UTF-16 units after.
struct Mark {
  uint32_t start = 0;
  uint32_t length = 0;
  uint32_t match = 0;  // its number; not looked at here

  bool operator==(const Mark&) const = default;
};

struct ShownText {
  std::u16string text;
  std::vector<Mark> marks;

  bool operator==(const ShownText&) const = default;
};

// The marks must be in order of their starts; those that reach beyond the text
// are cut. A mark that begins or ends inside a character covers all of it.
ShownText shown_text(std::string_view bytes, const std::vector<Mark>& marks,
                     const CodePage& page);

}  // namespace zenfo::host::gui
