// An immutable text shared by reference count, or a missing one: paths are
// kept once however many lists contain their entries.
//
// One allocation contains count, length and bytes. Not for use by several
// threads; the library has one.
//
// Tested by tests/unit/text/shared_text_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace zenfo {

class SharedText {
 public:
  SharedText() = default;  // missing
  explicit SharedText(std::string_view text) : SharedText({text}, 1) {}
  // The pieces joined in order.
  static SharedText joined(std::string_view a, char between,
                           std::string_view b);

  SharedText(const SharedText& other) : block_(other.block_) {
    if (block_ != nullptr) ++block_->references;
  }
  SharedText(SharedText&& other) noexcept
      : block_(std::exchange(other.block_, nullptr)) {}
  SharedText& operator=(SharedText other) noexcept {
    std::swap(block_, other.block_);
    return *this;
  }
  ~SharedText() { release(); }

  bool missing() const { return block_ == nullptr; }
  // Empty when missing. The bytes are followed by a NUL.
  std::string_view view() const {
    return block_ != nullptr ? std::string_view(bytes(), block_->length)
                             : std::string_view();
  }
  const char* c_str() const { return block_ != nullptr ? bytes() : ""; }
  std::optional<std::string_view> text() const {
    if (block_ == nullptr) return std::nullopt;
    return view();
  }

 private:
  struct Block {
    uint32_t references;
    uint32_t length;
  };
  struct Pieces {
    std::string_view first;
    std::string_view second = {};
    std::string_view third = {};
  };

  SharedText(const Pieces& pieces, uint32_t references);
  char* bytes() const { return reinterpret_cast<char*>(block_ + 1); }
  void release();

  Block* block_ = nullptr;
};

}  // namespace zenfo
