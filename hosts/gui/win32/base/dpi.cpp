#include "gui/win32/base/dpi.h"

#include <cwchar>

namespace zenfo::host::gui::win32 {
namespace {

template <class Function>
Function of_user32(const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(
      GetProcAddress(GetModuleHandleW(L"user32.dll"), name)));
}

unsigned system_dpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return static_cast<unsigned>(dpi);
}

}  // namespace

// Before Windows 10 all screens have the system's resolution.
unsigned dpi_of(HWND window) {
  using Get = UINT(WINAPI*)(HWND);
  static const Get get = of_user32<Get>("GetDpiForWindow");
  const unsigned dpi = get == nullptr ? 0 : get(window);
  return dpi == 0 ? system_dpi() : dpi;
}

// The system gives the font for its own resolution.
Font message_font(unsigned dpi) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  LOGFONTW& font = metrics.lfMessageFont;
  font.lfHeight = MulDiv(font.lfHeight, static_cast<int>(dpi),
                         static_cast<int>(system_dpi()));
  return Font(font);
}

Font fixed_font(const wchar_t* name, int points, unsigned dpi) {
  LOGFONTW font{};
  font.lfHeight = -MulDiv(points, static_cast<int>(dpi), 72);
  font.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
  font.lfCharSet = DEFAULT_CHARSET;
  font.lfQuality = CLEARTYPE_QUALITY;
  std::wcsncpy(font.lfFaceName, name, LF_FACESIZE - 1);
  return Font(font);
}

SIZE text_size(HWND window, HFONT font, const wchar_t* text) {
  const HDC device = GetDC(window);
  const HGDIOBJ old = SelectObject(device, font);
  SIZE size{};
  GetTextExtentPoint32W(device, text, static_cast<int>(std::wcslen(text)),
                        &size);
  SelectObject(device, old);
  ReleaseDC(window, device);
  return size;
}

}  // namespace zenfo::host::gui::win32
