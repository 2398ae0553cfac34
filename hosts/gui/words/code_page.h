// A character set of one byte each, for text that is not UTF-8.
//
// Tested by tests/gui/words/code_page_test.cpp
#pragma once

#include <array>
#include <cstddef>

namespace zenfo::host::gui {

class CodePage {
 public:
  // 0 for a byte without a character.
  using Table = std::array<char16_t, 256>;

  explicit CodePage(const Table& table) : table_(table) {}
  // Western European, as Windows has it (1252): for systems without a page of
  // their own, and for those whose page has characters of several bytes.
  static const CodePage& western();

  char16_t at(char byte) const {
    return table_[static_cast<unsigned char>(byte)];
  }

 private:
  Table table_;
};

}  // namespace zenfo::host::gui
