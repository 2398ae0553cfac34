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

// A place for these pages.
char* reserve(size_t mapped) {
  void* whole = mmap(nullptr, mapped + kLargePage, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (whole == MAP_FAILED) return nullptr;
  auto* const place = static_cast<char*>(whole);
  const size_t over = reinterpret_cast<uintptr_t>(place) % kLargePage;
  const size_t before = over == 0 ? 0 : kLargePage - over;
  if (before > 0) munmap(place, before);
  munmap(place + before + mapped, kLargePage - before);
  return place + before;
}

// Maps the pages of the file, followed by zero bytes.
char* map_file(int descriptor, size_t size) {
  char* const place = reserve(mapped_size(size));
  if (place == nullptr) return nullptr;
  if (mmap(place, size, PROT_READ | PROT_WRITE,
           MAP_PRIVATE | MAP_FIXED | MAP_NORESERVE, descriptor,
           0) == MAP_FAILED) {
    munmap(place, mapped_size(size));
    return nullptr;
  }
  return place;
}

}  // namespace

bool FileView::open(const InputFile& file, size_t size) {
  close();
  if (size >= SIZE_MAX - page_size() - kLargePage) return false;
  char* data = map_file(static_cast<int>(file.handle_), size);
  if (data == nullptr) return false;
  data_ = data;
  size_ = size;
  filled_ = 0;
  lost_ = false;
  if (guard_range(data, mapped_size(size), lost_)) return true;
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
  if (data_ == nullptr) return;
  release_range(data_);
  munmap(data_, mapped_size(size_));
  data_ = nullptr;
}

}  // namespace zenfo::platform
