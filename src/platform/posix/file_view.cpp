// Tested by tests/unit/platform/posix_file_view_test.cpp
#include "platform/file_view.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>

#include "platform/posix/bus_guard.h"

namespace zenfo::platform {
namespace {

size_t page_size() {
  static const auto size = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  return size;
}

// From an address that this divides, the system can map what it holds in large
// pieces as such.
constexpr size_t kLargePage = size_t{2} << 20;

// The pages of the bytes and of one byte after them.
size_t mapped_size(size_t size) {
  return (size / page_size() + 1) * page_size();
}

// With room to begin at such an address.
size_t reserved_size(size_t size) { return mapped_size(size) + kLargePage; }

char* first_large_page(char* reserved) {
  const size_t over = reinterpret_cast<uintptr_t>(reserved) % kLargePage;
  return over == 0 ? reserved : reserved + (kLargePage - over);
}

}  // namespace

bool FileView::open(const InputFile& file, size_t size) {
  close();
  if (size >= SIZE_MAX - page_size() - kLargePage) return false;
  constexpr int kProtection = PROT_READ | PROT_WRITE;
  void* reserved = mmap(nullptr, reserved_size(size), kProtection,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (reserved == MAP_FAILED) return false;
  reserved_ = static_cast<char*>(reserved);
  size_ = size;
  filled_ = 0;
  lost_ = false;
  char* const data = first_large_page(reserved_);
  if (mmap(data, size, kProtection, MAP_PRIVATE | MAP_FIXED | MAP_NORESERVE,
           static_cast<int>(file.handle_), 0) == data &&
      guard_range(data, mapped_size(size), lost_)) {
    data_ = data;
    return true;
  }
  close();
  return false;
}

// One byte of each page is used: the system maps several pages at a time then,
// which costs less than asking it to map them all (MADV_POPULATE_READ).
bool FileView::fill(size_t begin, size_t end) {
  filled_ = std::max(filled_, begin / page_size() * page_size());
  const volatile char* const bytes = data_;
  for (; filled_ < end; filled_ += page_size()) {
    static_cast<void>(bytes[filled_]);
  }
  return !lost_;
}

void FileView::close() {
  if (data_ != nullptr) release_range(data_);
  if (reserved_ != nullptr) munmap(reserved_, reserved_size(size_));
  data_ = reserved_ = nullptr;
}

}  // namespace zenfo::platform
