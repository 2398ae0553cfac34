#include "shared/system/byte_stream.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "shared/system/stop.h"

namespace zenfo::host {

namespace {

int open_stream(const std::string& path, int flags) {
  return open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY);
}

int number(intptr_t file) { return static_cast<int>(file); }

}  // namespace

ByteStream ByteStream::standard_input() { return {STDIN_FILENO, false}; }

ByteStream ByteStream::to_read(const std::string& path) {
  return {open_stream(path, O_RDONLY), true};
}

ByteStream ByteStream::to_rewrite(const std::string& path) {
  return {open_stream(path, O_WRONLY | O_TRUNC), true};
}

ByteStream::~ByteStream() {
  if (owned_ && is_open()) close(number(file_));
}

bool ByteStream::is_open() const { return file_ >= 0; }

std::optional<size_t> ByteStream::read(char* bytes, size_t room) const {
  for (;;) {
    const ssize_t size = ::read(number(file_), bytes, room);
    if (system::stop_status() != 0) return 0;
    if (size >= 0) return static_cast<size_t>(size);
    if (errno != EINTR) return std::nullopt;
  }
}

bool ByteStream::write(const char* bytes, size_t size) const {
  while (size > 0) {
    const ssize_t written = ::write(number(file_), bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes += written;
    size -= static_cast<size_t>(written);
  }
  return true;
}

std::string ByteStream::last_error() { return std::strerror(errno); }

}  // namespace zenfo::host
