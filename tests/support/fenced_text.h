// Memory for a text next to an inaccessible page, after its end or before its
// start. Reading a single byte beyond it ends the program.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>

namespace zenfo::test {

class FencedMemory {
 public:
  explicit FencedMemory(size_t capacity)
      : page_(static_cast<size_t>(sysconf(_SC_PAGESIZE))),
        size_((std::max<size_t>(capacity, 1) + page_ - 1) / page_ * page_) {
    void* const all = mmap(nullptr, size_ + 2 * page_, PROT_NONE,
                           MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (all == MAP_FAILED) throw std::bad_alloc();
    start_ = static_cast<char*>(all) + page_;
    if (mprotect(start_, size_, PROT_READ | PROT_WRITE) != 0) {
      munmap(all, size_ + 2 * page_);
      throw std::bad_alloc();
    }
  }
  ~FencedMemory() { munmap(start_ - page_, size_ + 2 * page_); }
  FencedMemory(const FencedMemory&) = delete;
  FencedMemory& operator=(const FencedMemory&) = delete;

  // A copy of the text whose last byte is the last readable one.
  std::string_view against_end(std::string_view text) {
    return copy_to(start_ + size_ - text.size(), text);
  }
  // A copy whose first byte is the first readable one.
  std::string_view against_start(std::string_view text) {
    return copy_to(start_, text);
  }

 private:
  static std::string_view copy_to(char* at, std::string_view text) {
    if (!text.empty()) std::memcpy(at, text.data(), text.size());
    return {at, text.size()};
  }

  size_t page_;
  size_t size_;
  char* start_ = nullptr;
};

}  // namespace zenfo::test
