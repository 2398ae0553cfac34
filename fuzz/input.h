// Splits the input of a fuzzer: option bytes first, then texts that each end at
// a zero byte, then the rest. Missing parts read as 0 or empty, so that every
// input is valid.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace zenfo::fuzz {

class Input {
 public:
  Input(const uint8_t* data, size_t size)
      : bytes_(reinterpret_cast<const char*>(data), size) {}

  uint8_t byte() {
    if (bytes_.empty()) return 0;
    const char first = bytes_.front();
    bytes_.remove_prefix(1);
    return static_cast<uint8_t>(first);
  }

  std::string text() {
    const std::string one(bytes_.substr(0, bytes_.find('\0')));
    bytes_.remove_prefix(one.size() < bytes_.size() ? one.size() + 1
                                                    : one.size());
    return one;
  }

  std::string rest() {
    const std::string all(bytes_);
    bytes_ = {};
    return all;
  }

 private:
  std::string_view bytes_;
};

inline bool bit(uint8_t byte, int number) { return (byte >> number & 1) != 0; }

// Ends the process when something differs.
inline void expect_none(const std::string& difference,
                        const std::string& about) {
  if (difference.empty()) return;
  std::fprintf(stderr, "%s\n %s\n", difference.c_str(), about.c_str());
  std::abort();
}

}  // namespace zenfo::fuzz
