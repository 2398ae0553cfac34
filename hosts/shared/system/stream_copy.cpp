#include "shared/system/stream_copy.h"

#include <cstdint>

#include "shared/system/byte_stream.h"
#include "shared/system/system.h"

namespace zenfo::host {

namespace {

std::string copy(const ByteStream& from, const std::string& path) {
  const ByteStream to = ByteStream::to_rewrite(path);
  if (!to.is_open()) return ByteStream::last_error();
  int64_t copied = 0;
  char bytes[64 * 1024];
  for (;;) {
    const std::optional<size_t> size = from.read(bytes, sizeof bytes);
    if (!size) return ByteStream::last_error();
    if (*size == 0) return "";
    copied += static_cast<int64_t>(*size);
    if (copied > system::kLargestFile) return "too large to be loaded";
    if (!to.write(bytes, *size)) {
      return "cannot be kept in a temporary file: " + ByteStream::last_error();
    }
  }
}

}  // namespace

std::string copy_standard_input(const std::string& to) {
  return copy(ByteStream::standard_input(), to);
}

std::string copy_stream(const std::string& from, const std::string& to) {
  const ByteStream stream = ByteStream::to_read(from);
  return stream.is_open() ? copy(stream, to) : ByteStream::last_error();
}

}  // namespace zenfo::host
