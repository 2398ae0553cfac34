#include "gui/words/code_page.h"

namespace zenfo::host::gui {
namespace {

// What differs from ISO 8859-1, whose codes are those of Unicode: 0x80 to 0x9F.
constexpr char16_t kWindowsPart[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

CodePage::Table western_table() {
  CodePage::Table table{};
  for (size_t i = 0; i < table.size(); ++i) {
    const bool differs = i >= 0x80 && i < 0xA0;
    table[i] = differs ? kWindowsPart[i - 0x80] : static_cast<char16_t>(i);
  }
  return table;
}

}  // namespace

const CodePage& CodePage::western() {
  static const CodePage page(western_table());
  return page;
}

}  // namespace zenfo::host::gui
