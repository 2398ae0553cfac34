// A picture that the program has saved, as pixels. Its PNG files contain no
// compressed data.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "gui/win32/base/system.h"
#include "support/temp_folder.h"

namespace zenfo::test {

class Shot {
 public:
  // The file shows the client area of the window.
  Shot(HWND window, const std::string& path) : window_(window) {
    const std::string file = read_file(path);
    std::string_view rest = file;
    rest.remove_prefix(8);  // what all such files begin with
    std::string stream;
    while (rest.size() >= 12) {
      const uint32_t length = number(rest);
      const std::string_view kind = rest.substr(4, 4);
      const std::string_view data = rest.substr(8, length);
      if (kind == "IHDR") {
        width_ = static_cast<int>(number(data));
        height_ = static_cast<int>(number(data.substr(4)));
      }
      if (kind == "IDAT") stream += data;
      rest.remove_prefix(length + 12);
    }
    take_blocks(stream);
    if (pixels_.size() != row_size() * static_cast<size_t>(height_)) {
      throw std::runtime_error("no picture");
    }
  }

  int width() const { return width_; }
  int height() const { return height_; }
  COLORREF at(int x, int y) const {
    const size_t place =
        static_cast<size_t>(y) * row_size() + 1 + static_cast<size_t>(x) * 3;
    const auto sample = [&](size_t i) {
      return static_cast<unsigned char>(pixels_[place + i]);
    };
    return RGB(sample(0), sample(1), sample(2));
  }
  RECT whole() const { return {0, 0, width_, height_}; }
  // Where a control stands in the picture, without its scroll bars.
  RECT part(HWND control) const {
    RECT area{};
    GetClientRect(control, &area);
    MapWindowPoints(control, window_, reinterpret_cast<POINT*>(&area), 2);
    return area;
  }
  static int area(const RECT& part) {
    return static_cast<int>((part.right - part.left) *
                            (part.bottom - part.top));
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

  // The pixels of a part, to be compared. In others a caret may blink.
  std::vector<COLORREF> cut(const RECT& part) const {
    std::vector<COLORREF> pixels;
    for (int y = part.top; y < part.bottom; ++y) {
      for (int x = part.left; x < part.right; ++x) pixels.push_back(at(x, y));
    }
    return pixels;
  }

 private:
  static uint32_t number(std::string_view bytes) {
    uint32_t value = 0;
    for (const char c : bytes.substr(0, 4)) {
      value = value << 8 | static_cast<unsigned char>(c);
    }
    return value;
  }
  // Each block begins with five bytes, of which two are its length.
  void take_blocks(std::string_view stream) {
    stream.remove_prefix(2);
    while (stream.size() > 4 + 5) {
      const auto length =
          static_cast<size_t>(static_cast<unsigned char>(stream[1]) |
                              static_cast<unsigned char>(stream[2]) << 8);
      pixels_ += stream.substr(5, length);
      stream.remove_prefix(5 + length);
    }
  }
  size_t row_size() const { return static_cast<size_t>(width_) * 3 + 1; }

  HWND window_;
  int width_ = 0;
  int height_ = 0;
  std::string pixels_;  // rows, each after a byte that means nothing
};

}  // namespace zenfo::test
