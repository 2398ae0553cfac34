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

// A file of known size is read to its end without asking once more.
std::optional<bool> ZeroBytes::in(const std::string& path) {
  constexpr size_t kBlock = 8 * kFirstBlock;
  if (!reader_.open(path)) return std::nullopt;
  if (block_ == nullptr) block_.reset(new char[kBlock]);
  std::optional<bool> found;
  uint64_t read = 0;
  while (!found) {
    const std::optional<size_t> size = reader_.read(block_.get(), kBlock);
    if (!size) break;
    read += *size;
    const bool ends = *size == 0 || read == reader_.size();
    if (first_zero_byte({block_.get(), *size}) < *size) {
      found = true;
    } else if (ends) {
      found = false;
    }
  }
  reader_.close();
  return found;
}

}  // namespace zenfo::host
