// Memory in large pieces: the block that is kept and grown, never cleared, for
// the text of the current file; and slabs for very many small objects.
//
// Tested by tests/unit/platform/memory_test.cpp
#pragma once

#include <cstddef>
#include <utility>

namespace zenfo::platform {

// Large blocks come in huge pages where the system has them: touching a new
// gigabyte in small pages costs half a second.
class KeptBuffer {
 public:
  // Bytes that may be read, but have no meaning, on either side of data().
  static constexpr size_t kSlack = 64;

  KeptBuffer() = default;
  ~KeptBuffer() { release(); }
  KeptBuffer(const KeptBuffer&) = delete;
  KeptBuffer& operator=(const KeptBuffer&) = delete;

  char* data() const { return data_; }
  size_t capacity() const { return capacity_; }

  // Room for `size` bytes, growing by at least half where there is room; the
  // first `keep` bytes stay. False when there is no memory.
  bool reserve(size_t size, size_t keep);
  void release();
  void swap(KeptBuffer& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(capacity_, other.capacity_);
    std::swap(block_, other.block_);
    std::swap(block_size_, other.block_size_);
  }

 private:
  char* data_ = nullptr;
  size_t capacity_ = 0;
  void* block_ = nullptr;
  size_t block_size_ = 0;
};

// A slab of the C++ heap, which throws std::bad_alloc as that does. Slabs of
// kHugeSlab bytes come in huge pages where the system has them.
inline constexpr size_t kHugeSlab = size_t{2} << 20;
void* new_slab(size_t size);
void delete_slab(void* slab, size_t size) noexcept;

}  // namespace zenfo::platform
