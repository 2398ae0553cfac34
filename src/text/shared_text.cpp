#include "text/shared_text.h"

#include <cstring>
#include <new>

namespace zenfo {
namespace {

char* put(char* to, std::string_view piece) {
  if (!piece.empty()) std::memcpy(to, piece.data(), piece.size());
  return to + piece.size();
}

}  // namespace

SharedText::SharedText(const Pieces& pieces, uint32_t references) {
  size_t length =
      pieces.first.size() + pieces.second.size() + pieces.third.size();
  if (length > UINT32_MAX - sizeof(Block) - 1) throw std::bad_alloc();
  void* memory = ::operator new(sizeof(Block) + length + 1);
  block_ = ::new (memory) Block{references, static_cast<uint32_t>(length)};
  char* end = put(bytes(), pieces.first);
  end = put(end, pieces.second);
  *put(end, pieces.third) = '\0';
}

SharedText SharedText::joined(std::string_view a, char between,
                              std::string_view b) {
  return SharedText(Pieces{a, std::string_view(&between, 1), b}, 1);
}

void SharedText::release() {
  if (block_ == nullptr || --block_->references > 0) return;
  ::operator delete(block_);
}

}  // namespace zenfo
