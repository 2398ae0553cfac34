// Bytes of a file as text on the screen, with marks that move along.
//
// Bytes that are UTF-8 as a whole are shown as that, others by a code page. A
// byte without a character is shown as ".", a control character as its picture
// (U+2400 and on); a tab stays a tab.
//
// Tested by tests/gui/text/shown_text_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "gui/words/code_page.h"

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
// For each unit of that text where the bytes of its character begin, and at the
// end how many bytes there are.
std::vector<uint32_t> bytes_of_units(std::string_view bytes,
                                     const CodePage& page);
// The text as it is, for other programs: control characters stay what they are,
// except for a zero byte, which would end the text there.
std::u16string plain_text_of(std::string_view bytes, const CodePage& page);

}  // namespace zenfo::host::gui
