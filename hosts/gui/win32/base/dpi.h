// Sizes for screens of any resolution. All sizes in the code are in pixels of
// 96 dots per inch.
#pragma once

#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

unsigned dpi_of(HWND window);
inline int scaled(int size, unsigned dpi) {
  return MulDiv(size, static_cast<int>(dpi), 96);
}

// A font that deletes itself.
class Font {
 public:
  Font() = default;
  explicit Font(const LOGFONTW& wish) : font_(CreateFontIndirectW(&wish)) {}
  ~Font() { reset(nullptr); }
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;
  Font(Font&& other) noexcept : font_(other.font_) { other.font_ = nullptr; }
  Font& operator=(Font&& other) noexcept {
    if (this != &other) reset(other.font_), other.font_ = nullptr;
    return *this;
  }
  HFONT get() const { return font_; }

 private:
  void reset(HFONT font) {
    if (font_ != nullptr) DeleteObject(font_);
    font_ = font;
  }
  HFONT font_ = nullptr;
};

// The system's font for messages.
Font message_font(unsigned dpi);
// Of equal widths, for text of files; `points` as people give them.
Font fixed_font(const wchar_t* name, int points, unsigned dpi);

// The size of a text in a font.
SIZE text_size(HWND window, HFONT font, const wchar_t* text);

}  // namespace zenfo::host::gui::win32
