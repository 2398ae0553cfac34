#include "platform/memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>

namespace zenfo::platform {
namespace {

constexpr size_t kSmallPage = 4096;
constexpr size_t kHugePage = size_t{2} << 20;

size_t round_up(size_t size, size_t unit) {
  return (size + unit - 1) / unit * unit;
}

}  // namespace

bool KeptBuffer::reserve(size_t size, size_t keep) {
  if (size <= capacity_) return true;
  if (size > SIZE_MAX / 2) return false;  // the additions would overflow
  size_t wanted = std::max(size, capacity_ + capacity_ / 2) + 2 * kSlack;
  const bool huge = wanted >= kHugePage;
  wanted = round_up(wanted, huge ? kHugePage : kSmallPage);
  // Huge pages need an aligned start: reserve one page more and begin at the
  // aligned address.
  const size_t mapped = huge ? wanted + kHugePage : wanted;
  void* block = mmap(nullptr, mapped, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (block == MAP_FAILED) return false;
  char* start = static_cast<char*>(block);
  if (huge) {
    auto address = reinterpret_cast<uintptr_t>(start);
    start += round_up(address, kHugePage) - address;
    madvise(start, wanted, MADV_HUGEPAGE);
  }
  char* data = start + kSlack;
  if (keep > 0) std::memcpy(data, data_, keep);
  release();
  block_ = block;
  block_size_ = mapped;
  data_ = data;
  capacity_ = wanted - 2 * kSlack;
  return true;
}

void KeptBuffer::release() {
  if (block_ != nullptr) munmap(block_, block_size_);
  block_ = nullptr;
  data_ = nullptr;
  capacity_ = block_size_ = 0;
}

void* new_slab(size_t size) {
  if (size < kHugePage) return ::operator new(size);
  void* slab = ::operator new (size, std::align_val_t{kHugePage});
  madvise(slab, size, MADV_HUGEPAGE);
  return slab;
}

void delete_slab(void* slab, size_t size) noexcept {
  if (size < kHugePage) {
    ::operator delete(slab);
  } else {
    ::operator delete (slab, std::align_val_t{kHugePage});
  }
}

}  // namespace zenfo::platform
