#include "gui/win32/base/ansi_page.h"

#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {
namespace {

UINT system_page() {
  DWORD page = 0;
  GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT,
                 LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                 reinterpret_cast<LPWSTR>(&page), sizeof page / sizeof(WCHAR));
  return page;
}

bool has_single_bytes(UINT page) {
  CPINFO info{};
  return GetCPInfo(page, &info) != 0 && info.MaxCharSize == 1;
}

// 0 for none. Bytes that stand for control characters above 0x7F have none.
char16_t character_of(UINT page, int value) {
  const char byte = static_cast<char>(value);
  WCHAR character = 0;
  if (MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, &byte, 1, &character,
                          1) != 1) {
    return 0;
  }
  const bool control = character >= 0x80 && character < 0xA0;
  return control ? u'\0' : static_cast<char16_t>(character);
}

CodePage made_page() {
  const UINT page = system_page();
  if (page == 0 || !has_single_bytes(page)) return CodePage::western();
  CodePage::Table table{};
  for (int value = 0; value < 256; ++value) {
    table[static_cast<size_t>(value)] = character_of(page, value);
  }
  return CodePage(table);
}

}  // namespace

const CodePage& ansi_page() {
  static const CodePage page = made_page();
  return page;
}

}  // namespace zenfo::host::gui::win32
