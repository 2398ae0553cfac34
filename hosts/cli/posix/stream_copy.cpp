#include "stream_copy.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "system.h"

namespace zenfo::cli {
namespace {

// The library loads no larger file.
constexpr int64_t kMost = INT32_MAX - 1;

class File {
 public:
  File(const std::string& path, int flags)
      : number_(open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY)) {}
  ~File() {
    if (number_ >= 0) close(number_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

// Answers 0 or an error number.
int write_all(int to, const char* bytes, ssize_t size) {
  while (size > 0) {
    const ssize_t written = write(to, bytes, static_cast<size_t>(size));
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    bytes += written;
    size -= written;
  }
  return 0;
}

std::string copy(int from, const std::string& path) {
  const File to(path, O_WRONLY | O_TRUNC);
  if (to.number() < 0) return std::strerror(errno);
  int64_t copied = 0;
  char bytes[64 * 1024];
  for (;;) {
    const ssize_t size = read(from, bytes, sizeof bytes);
    if (system::stop_status() != 0 || size == 0) return "";
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) return std::strerror(errno);
    copied += size;
    if (copied > kMost) return "too large to be loaded";
    if (const int error = write_all(to.number(), bytes, size)) {
      return std::string("cannot be kept in a temporary file: ") +
             std::strerror(error);
    }
  }
}

}  // namespace

std::string copy_standard_input(const std::string& to) {
  return copy(STDIN_FILENO, to);
}

std::string copy_stream(const std::string& from, const std::string& to) {
  const File file(from, O_RDONLY);
  return file.number() < 0 ? std::strerror(errno) : copy(file.number(), to);
}

}  // namespace zenfo::cli
