// Memory for very many objects of one size: slabs cut into pieces, freed
// pieces kept on a free list, all slabs but one given back when the last piece
// has been freed. A piece costs a pointer move instead of a call to malloc.
//
// One pool serves the whole process, since records travel between lists and
// the library has one thread. Under AddressSanitizer every piece is an
// allocation of its own, so that its checks see each object.
//
// Tested by tests/unit/containers/pool_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include "platform/memory.h"

namespace zenfo {

template <size_t kPieceSize>
class Pool {
 public:
  // Process-wide by nature: see above. Never destroyed.
  static Pool& instance() {
    static Pool& pool = *new Pool;
    return pool;
  }

  void* allocate() {
#ifdef ZENFO_ADDRESS_SANITIZER
    return ::operator new(kPieceSize);
#else
    void* piece = free_;
    if (piece != nullptr) {
      free_ = free_->next;
    } else {
      if (next_ == end_) add_slab();
      piece = next_;
      next_ += kPieceSize;
    }
    ++live_;
    return piece;
#endif
  }

  void deallocate(void* piece) noexcept {
#ifdef ZENFO_ADDRESS_SANITIZER
    ::operator delete(piece);
#else
    free_ = ::new (piece) Free{free_};
    if (--live_ == 0) start_over();
#endif
  }

  size_t live() const { return live_; }

 private:
  static constexpr size_t kFirstSlab = 16 * 1024;
  struct Free {
    Free* next;
  };
  struct Slab {
    Slab* previous;
    size_t size;
    alignas(uint64_t) std::byte bytes[1];
  };
  static_assert(kPieceSize >= sizeof(Free) && 2 * kPieceSize <= kFirstSlab);
  static_assert(kPieceSize % alignof(Free) == 0);

  static constexpr size_t kLargestSlab = platform::kHugeSlab;

  void add_slab() {
    auto* slab = static_cast<Slab*>(platform::new_slab(slab_size_));
    slab->previous = slabs_;
    slab->size = slab_size_;
    slabs_ = slab;
    cut_newest_slab();
    if (slab_size_ < kLargestSlab) slab_size_ *= 2;
  }

  void cut_newest_slab() noexcept {
    const size_t room = slabs_->size - offsetof(Slab, bytes);
    next_ = slabs_->bytes;
    end_ = next_ + room / kPieceSize * kPieceSize;
  }

  // Nothing is in use: keeps the newest slab and cuts it again from its start.
  void start_over() noexcept {
    while (slabs_->previous != nullptr) {
      Slab* older = slabs_->previous;
      slabs_->previous = older->previous;
      platform::delete_slab(older, older->size);
    }
    free_ = nullptr;
    cut_newest_slab();
  }

  Free* free_ = nullptr;
  std::byte* next_ = nullptr;
  std::byte* end_ = nullptr;
  Slab* slabs_ = nullptr;
  size_t slab_size_ = kFirstSlab;
  size_t live_ = 0;
};

// Gives a class pooled new and delete; a derived class of another size falls
// back to the general ones.
template <class T>
class Pooled {
 public:
  static void* operator new(size_t size) {
    return size == sizeof(T) ? Pool<sizeof(T)>::instance().allocate()
                             : ::operator new(size);
  }
  static void operator delete(void* piece, size_t size) noexcept {
    if (piece == nullptr) return;
    if (size == sizeof(T)) {
      Pool<sizeof(T)>::instance().deallocate(piece);
    } else {
      ::operator delete(piece);
    }
  }
};

}  // namespace zenfo
