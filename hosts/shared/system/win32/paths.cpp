#include "shared/system/paths.h"

#include <windows.h>

namespace zenfo::host {
namespace {

// The library's character set: it passes narrow texts to the system.
constexpr UINT kCharacterSet = CP_ACP;

std::wstring widened(std::string_view text) {
  const int size = static_cast<int>(text.size());
  // A text never has more wide characters than bytes.
  std::wstring wide(text.size(), L'\0');
  wide.resize(static_cast<size_t>(MultiByteToWideChar(
      kCharacterSet, 0, text.data(), size, wide.data(), size)));
  return wide;
}

}  // namespace

std::filesystem::path to_path(std::string_view text) { return widened(text); }

std::string narrow(const NativeText& native) {
  const int length = static_cast<int>(native.size());
  const auto convert = [&](char* bytes, int size) {
    return WideCharToMultiByte(kCharacterSet, 0, native.data(), length, bytes,
                               size, nullptr, nullptr);
  };
  std::string text(static_cast<size_t>(convert(nullptr, 0)), '\0');
  convert(text.data(), static_cast<int>(text.size()));
  return text;
}

std::FILE* open_file(const std::string& path, const char* mode) {
  return _wfopen(widened(path).c_str(), widened(mode).c_str());
}

// On Windows pipes are in a namespace of their own.
std::FILE* open_ordinary(const std::string& path) {
  return open_file(path, "rb");
}

std::string without_case(std::string_view name) {
  std::wstring wide = widened(name);
  CharLowerBuffW(wide.data(), static_cast<DWORD>(wide.size()));
  return narrow(wide);
}

std::string environment(const char* name) {
  const wchar_t* value = _wgetenv(widened(name).c_str());
  return value == nullptr ? "" : narrow(value);
}

void set_environment(const char* name, const char* value) {
  SetEnvironmentVariableA(name, value);
}

}  // namespace zenfo::host
