// A folder for a test, removed afterwards, and helpers for whole files.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// Macros of windows.h from 16-bit systems, whose names tests use.
#undef far
#undef near
#endif

namespace zenfo::test {

#ifdef _WIN32
inline constexpr char kSeparator = '\\';
// A long name that keeps whole paths below the limit of 259 bytes.
inline constexpr size_t kLongestName = 120;
#else
inline constexpr char kSeparator = '/';
inline constexpr size_t kLongestName = 255;
#endif

// For the standard library, which on Windows would read a narrow text in a
// character set of its own choice; texts of tests are UTF-8.
inline std::filesystem::path native(std::string_view path) {
  return std::u8string(path.begin(), path.end());
}
inline std::string utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

// A text of a test in the library's form: on Windows in the process's own
// character set.
inline std::string as_library_text(const std::string& text) {
#ifdef _WIN32
  const std::wstring wide = native(text).wstring();
  std::string narrow(3 * wide.size(), '\0');
  narrow.resize(static_cast<size_t>(WideCharToMultiByte(
      CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), narrow.data(),
      static_cast<int>(narrow.size()), nullptr, nullptr)));
  return narrow;
#else
  return text;
#endif
}

// Joins with the system's separator; a slash in `name` becomes it too.
inline std::string join(std::string_view folder, std::string_view name) {
  std::string path(folder);
  path += kSeparator;
  for (char c : name) path += c == '/' ? kSeparator : c;
  return path;
}

inline void write_file(const std::string& path, std::string_view bytes) {
  std::ofstream file(native(path), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
}

inline std::string read_file(const std::string& path) {
  std::ifstream file(native(path), std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline bool file_exists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(native(path), error);
}

class TempFolder {
 public:
  // `mark`, in UTF-8, becomes part of the folder's name.
  explicit TempFolder(std::string_view mark = "") {
    static int number = 0;
    std::string base = utf8(std::filesystem::temp_directory_path());
    while (!base.empty() && base.back() == kSeparator) base.pop_back();
    do {
      path_ = base + kSeparator + "zenfo_test_" + std::to_string(unique()) +
              "_" + std::to_string(number++);
      path_ += mark;
    } while (!std::filesystem::create_directory(native(path_)));
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(native(path_), ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string path(std::string_view name) const { return join(path_, name); }

  // Creates the file and its folders; returns its path.
  std::string file(std::string_view name, std::string_view bytes) const {
    const std::string full = path(name);
    std::filesystem::create_directories(
        native(full.substr(0, full.rfind(kSeparator))));
    write_file(full, bytes);
    return full;
  }
  std::string folder(std::string_view name) const {
    const std::string full = path(name);
    std::filesystem::create_directories(native(full));
    return full;
  }

 private:
  // Distinguishes the folders of processes that run at the same time.
  static unsigned unique() {
    static const unsigned number = static_cast<unsigned>(
        std::filesystem::file_time_type::clock::now()
            .time_since_epoch()
            .count() ^
        static_cast<long long>(reinterpret_cast<intptr_t>(&unique)));
    return number;
  }

  std::string path_;
};

}  // namespace zenfo::test
