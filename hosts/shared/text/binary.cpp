#include "shared/text/binary.h"

#include <cstdio>
#include <cstring>
#include <vector>

#include "shared/system/input_stream.h"

namespace zenfo::host {

size_t first_zero_byte(std::string_view text) {
  if (text.empty()) return 0;
  const void* zero = std::memchr(text.data(), '\0', text.size());
  if (zero == nullptr) return text.size();
  return static_cast<size_t>(static_cast<const char*>(zero) - text.data());
}

bool begins_as_binary(const std::string& path) {
  const InputStream file = open_unbuffered(path);
  if (file == nullptr) return false;
  std::vector<char> block(kFirstBlock);
  const size_t size = std::fread(block.data(), 1, block.size(), file.get());
  return first_zero_byte({block.data(), size}) < size;
}

std::optional<bool> has_zero_byte(const std::string& path) {
  const InputStream file = open_unbuffered(path);
  if (file == nullptr) return std::nullopt;
  std::vector<char> block(8 * kFirstBlock);
  for (;;) {
    const size_t size = std::fread(block.data(), 1, block.size(), file.get());
    if (first_zero_byte({block.data(), size}) < size) return true;
    if (std::ferror(file.get()) != 0) return std::nullopt;
    if (size < block.size()) return false;
  }
}

}  // namespace zenfo::host
