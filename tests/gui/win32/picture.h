// What a window paints, as pixels. The window may be hidden: it is asked with
// WM_PRINTCLIENT.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "gui/win32/base/system.h"

namespace zenfo::test {

class Picture {
 public:
  explicit Picture(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    width_ = area.right;
    height_ = area.bottom;
    BITMAPINFO info{};
    info.bmiHeader = header();
    const HDC device = CreateCompatibleDC(nullptr);
    void* bits = nullptr;
    const HBITMAP bitmap =
        CreateDIBSection(device, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ old = SelectObject(device, bitmap);
    SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(device),
                 PRF_CLIENT);
    GdiFlush();
    const auto* first = static_cast<const uint32_t*>(bits);
    pixels_.assign(first, first + static_cast<size_t>(width_) *
                                      static_cast<size_t>(height_));
    SelectObject(device, old);
    DeleteObject(bitmap);
    DeleteDC(device);
  }

  int width() const { return width_; }
  int height() const { return height_; }
  COLORREF at(int x, int y) const {
    const uint32_t pixel =
        pixels_[static_cast<size_t>(y) * static_cast<size_t>(width_) +
                static_cast<size_t>(x)];
    return RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
  }
  // How many pixels of a part have a colour.
  int count(COLORREF colour, const RECT& part) const {
    int found = 0;
    for (int y = part.top; y < part.bottom; ++y) {
      for (int x = part.left; x < part.right; ++x) {
        if (at(x, y) == colour) ++found;
      }
    }
    return found;
  }
  RECT whole() const { return {0, 0, width_, height_}; }
  int count(COLORREF colour) const { return count(colour, whole()); }

  bool operator==(const Picture&) const = default;

  // Into the folder that ZENFO_PICTURES names, to be looked at.
  void keep(const std::string& name) const {
    const char* folder = std::getenv("ZENFO_PICTURES");
    if (folder == nullptr) return;
    const size_t size = pixels_.size() * sizeof(uint32_t);
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof(BITMAPINFOHEADER);
    file.bfSize = file.bfOffBits + static_cast<DWORD>(size);
    const BITMAPINFOHEADER info = header();
    std::FILE* out =
        std::fopen((std::string(folder) + "/" + name + ".bmp").c_str(), "wb");
    if (out == nullptr) return;
    std::fwrite(&file, sizeof file, 1, out);
    std::fwrite(&info, sizeof info, 1, out);
    std::fwrite(pixels_.data(), 1, size, out);
    std::fclose(out);
  }

 private:
  BITMAPINFOHEADER header() const {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width_;
    header.biHeight = -height_;  // from the top
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biCompression = BI_RGB;
    return header;
  }

  int width_ = 0;
  int height_ = 0;
  std::vector<uint32_t> pixels_;
};

}  // namespace zenfo::test
