#include "platform/memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace zenfo::platform {

bool KeptBuffer::reserve(size_t size, size_t keep) {
  if (size <= capacity_) return true;
  if (size > SIZE_MAX / 2 - 2 * kSlack) return false;
  // Growing by half keeps growth cheap, but a 32-bit process may only have room
  // for the size itself.
  char* block = nullptr;
  size_t wanted = std::max(size, capacity_ + capacity_ / 2);
  for (;;) {
    block = static_cast<char*>(std::malloc(wanted + 2 * kSlack));
    if (block != nullptr || wanted == size) break;
    wanted = size;
  }
  // Nothing to keep: the old block may make room for the new one.
  if (block == nullptr && keep == 0 && block_ != nullptr) {
    release();
    block = static_cast<char*>(std::malloc(size + 2 * kSlack));
  }
  if (block == nullptr) return false;
  if (keep > 0) std::memcpy(block + kSlack, data_, keep);
  release();
  block_ = block;
  block_size_ = wanted + 2 * kSlack;
  data_ = block + kSlack;
  capacity_ = wanted;
  return true;
}

void KeptBuffer::release() {
  std::free(block_);
  block_ = nullptr;
  data_ = nullptr;
  capacity_ = block_size_ = 0;
}

void* new_slab(size_t size) { return ::operator new(size); }

void delete_slab(void* slab, size_t) noexcept { ::operator delete(slab); }

}  // namespace zenfo::platform
