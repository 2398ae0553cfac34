#include "shared/system/byte_stream.h"

#include <windows.h>

#include "shared/system/paths.h"
#include "shared/system/stop.h"

namespace zenfo::host {

namespace {

intptr_t open_stream(const std::string& path, DWORD access, DWORD how) {
  return reinterpret_cast<intptr_t>(CreateFileW(
      to_path(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
      nullptr, how, FILE_ATTRIBUTE_NORMAL, nullptr));
}

HANDLE handle(intptr_t file) { return reinterpret_cast<HANDLE>(file); }

}  // namespace

ByteStream ByteStream::standard_input() {
  return {reinterpret_cast<intptr_t>(GetStdHandle(STD_INPUT_HANDLE)), false};
}

ByteStream ByteStream::to_read(const std::string& path) {
  return {open_stream(path, GENERIC_READ, OPEN_EXISTING), true};
}

ByteStream ByteStream::to_rewrite(const std::string& path) {
  return {open_stream(path, GENERIC_WRITE, TRUNCATE_EXISTING), true};
}

ByteStream::~ByteStream() {
  if (owned_ && is_open()) CloseHandle(handle(file_));
}

bool ByteStream::is_open() const {
  return handle(file_) != INVALID_HANDLE_VALUE;
}

std::optional<size_t> ByteStream::read(char* bytes, size_t room) const {
  DWORD size = 0;
  if (!ReadFile(handle(file_), bytes, static_cast<DWORD>(room), &size,
                nullptr)) {
    // The end of a pipe.
    if (GetLastError() != ERROR_BROKEN_PIPE) return std::nullopt;
    size = 0;
  }
  return system::stop_status() != 0 ? 0 : size;
}

bool ByteStream::write(const char* bytes, size_t size) const {
  DWORD written = 0;
  return WriteFile(handle(file_), bytes, static_cast<DWORD>(size), &written,
                   nullptr) != 0;
}

std::string ByteStream::last_error() {
  return "system error " + std::to_string(GetLastError());
}

}  // namespace zenfo::host
