#include "gui/win32/system/clipboard.h"

#include <cstring>

namespace zenfo::host::gui::win32 {

bool copy_text(HWND owner, const std::wstring& text) {
  if (!OpenClipboard(owner)) return false;
  EmptyClipboard();
  const size_t bytes = (text.size() + 1) * sizeof(wchar_t);
  HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
  if (memory != nullptr) {
    std::memcpy(GlobalLock(memory), text.c_str(), bytes);
    GlobalUnlock(memory);
    // The clipboard owns it from now on.
    if (SetClipboardData(CF_UNICODETEXT, memory) == nullptr) {
      GlobalFree(memory);
      memory = nullptr;
    }
  }
  CloseClipboard();
  return memory != nullptr;
}

std::wstring copied_text(HWND owner) {
  std::wstring text;
  if (!OpenClipboard(owner)) return text;
  if (const HANDLE memory = GetClipboardData(CF_UNICODETEXT)) {
    if (const auto* start = static_cast<const wchar_t*>(GlobalLock(memory))) {
      const size_t most = GlobalSize(memory) / sizeof(wchar_t);
      text.assign(start, wcsnlen(start, most));
      GlobalUnlock(memory);
    }
  }
  CloseClipboard();
  return text;
}

}  // namespace zenfo::host::gui::win32
