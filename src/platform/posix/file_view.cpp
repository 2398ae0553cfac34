// Tested by tests/unit/platform/posix_file_view_test.cpp
#include "platform/file_view.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "platform/posix/bus_guard.h"

#ifndef MADV_POPULATE_READ
#define MADV_POPULATE_READ 22
#endif

namespace zenfo::platform {
namespace {

constexpr size_t kFilledAtOnce = size_t{2} << 20;

size_t page_size() {
  static const auto size = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  return size;
}

// The pages of the bytes and of one byte after them.
size_t mapped_size(size_t size) {
  return (size / page_size() + 1) * page_size();
}

// Maps the pages of the file, followed by zero bytes.
char* map_file(int descriptor, size_t size) {
  constexpr int kProtection = PROT_READ | PROT_WRITE;
  void* whole = mmap(nullptr, mapped_size(size), kProtection,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (whole == MAP_FAILED) return nullptr;
  if (mmap(whole, size, kProtection, MAP_PRIVATE | MAP_FIXED | MAP_NORESERVE,
           descriptor, 0) == MAP_FAILED) {
    munmap(whole, mapped_size(size));
    return nullptr;
  }
  return static_cast<char*>(whole);
}

}  // namespace

bool FileView::open(const InputFile& file, size_t size) {
  close();
  if (size >= SIZE_MAX - page_size()) return false;
  char* data = map_file(static_cast<int>(file.handle_), size);
  if (data == nullptr) return false;
  data_ = data;
  size_ = size;
  filled_ = 0;
  // Where the system cannot fill a view, read errors would go unnoticed.
  if (guard_range(data, mapped_size(size)) && fill(0, 1)) return true;
  close();
  return false;
}

bool FileView::fill(size_t begin, size_t end) {
  filled_ = std::max(filled_, begin / page_size() * page_size());
  while (filled_ < end) {
    const size_t part = std::min(size_ - filled_, kFilledAtOnce);
    if (madvise(data_ + filled_, part, MADV_POPULATE_READ) != 0) return false;
    filled_ += part;
  }
  return true;
}

void FileView::close() {
  if (data_ == nullptr) return;
  release_range(data_);
  munmap(data_, mapped_size(size_));
  data_ = nullptr;
}

}  // namespace zenfo::platform
