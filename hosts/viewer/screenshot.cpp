#include "viewer/screenshot.h"

#include <cstdint>

#include "viewer/png.h"

namespace zenfo::viewer {
namespace {

// Reads a bitmap as red, green and blue bytes, from the top.
std::string read_pixels(HDC device, HBITMAP bitmap, LONG width, LONG height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // from the top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;  // blue, green, red, unused
  info.bmiHeader.biCompression = BI_RGB;
  const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
  std::string quads(count * 4, '\0');
  if (GetDIBits(device, bitmap, 0, static_cast<UINT>(height), quads.data(),
                &info, DIB_RGB_COLORS) != height) {
    return "";
  }
  std::string pixels;
  pixels.reserve(count * 3);
  for (size_t at = 0; at < quads.size(); at += 4) {
    pixels += {quads[at + 2], quads[at + 1], quads[at]};
  }
  return pixels;
}

std::string client_pixels(HWND window, LONG width, LONG height) {
  HDC shown = GetDC(window);
  HDC copy = CreateCompatibleDC(shown);
  HBITMAP bitmap = CreateCompatibleBitmap(shown, width, height);
  HGDIOBJ old = SelectObject(copy, bitmap);
  const BOOL copied = BitBlt(copy, 0, 0, width, height, shown, 0, 0, SRCCOPY);
  SelectObject(copy, old);  // GetDIBits() requires that.
  std::string pixels;
  if (copied) pixels = read_pixels(shown, bitmap, width, height);
  DeleteObject(bitmap);
  DeleteDC(copy);
  ReleaseDC(window, shown);
  return pixels;
}

bool write_file(const std::wstring& path, const std::string& bytes) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr,
                            CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const auto size = static_cast<DWORD>(bytes.size());
  DWORD written = 0;
  const bool whole =
      WriteFile(file, bytes.data(), size, &written, nullptr) && written == size;
  return CloseHandle(file) && whole;
}

}  // namespace

bool save_screenshot(HWND window, const std::wstring& path) {
  RECT client{};
  GetClientRect(window, &client);
  const std::string pixels = client_pixels(window, client.right, client.bottom);
  if (pixels.empty()) return false;
  return write_file(path,
                    png_file(static_cast<uint32_t>(client.right),
                             static_cast<uint32_t>(client.bottom), pixels));
}

}  // namespace zenfo::viewer
