#include "platform/memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace zenfo::platform {
namespace {

TEST(KeptBuffer, HoldsNothingAtFirst) {
  KeptBuffer buffer;
  EXPECT_EQ(buffer.data(), nullptr);
  EXPECT_EQ(buffer.capacity(), 0u);
  buffer.release();
}

TEST(KeptBuffer, GivesAtLeastWhatIsAskedAndAllOfItIsWritable) {
  for (size_t size : {1u, 63u, 64u, 4096u, 50001u, 2097152u, 5000000u}) {
    KeptBuffer buffer;
    ASSERT_TRUE(buffer.reserve(size, 0)) << size;
    ASSERT_GE(buffer.capacity(), size);
    std::memset(buffer.data(), 'x', buffer.capacity());
    EXPECT_EQ(buffer.data()[buffer.capacity() - 1], 'x');
  }
}

#ifndef _WIN32
TEST(KeptBuffer, HasReadableSlackOnBothSides) {
  for (size_t size : {1u, 50001u, 3000000u}) {
    KeptBuffer buffer;
    ASSERT_TRUE(buffer.reserve(size, 0));
    volatile const char* data = buffer.data();
    unsigned sum = 0;
    for (size_t i = 1; i <= KeptBuffer::kSlack; ++i) {
      sum += static_cast<unsigned char>(*(data - i));
      sum += static_cast<unsigned char>(data[buffer.capacity() + i - 1]);
    }
    EXPECT_EQ(sum, 0u) << "fresh memory is zero";
  }
}
#endif

TEST(KeptBuffer, KeepsItsBlockAndContentWhileItIsLargeEnough) {
  KeptBuffer buffer;
  ASSERT_TRUE(buffer.reserve(1000, 0));
  const char* data = buffer.data();
  std::memcpy(buffer.data(), "text", 4);
  const size_t capacity = buffer.capacity();
  for (size_t size : {size_t{0}, size_t{1}, size_t{1000}, capacity}) {
    ASSERT_TRUE(buffer.reserve(size, 0));
    EXPECT_EQ(buffer.data(), data);
    EXPECT_EQ(buffer.capacity(), capacity);
  }
  EXPECT_EQ(std::string(buffer.data(), 4), "text");
}

TEST(KeptBuffer, GrowingKeepsTheBytesAskedFor) {
  KeptBuffer buffer;
  ASSERT_TRUE(buffer.reserve(100, 0));
  std::string content;
  // Across small blocks, and from small to large.
  for (size_t size : {10000u, 100000u, 1000000u, 4000000u, 20000000u}) {
    const size_t kept = buffer.capacity();
    content.assign(kept, '\0');
    for (size_t i = 0; i < kept; ++i) content[i] = static_cast<char>(i * 7);
    std::memcpy(buffer.data(), content.data(), kept);
    ASSERT_TRUE(buffer.reserve(size, kept));
    EXPECT_EQ(std::memcmp(buffer.data(), content.data(), kept), 0) << size;
  }
}

TEST(KeptBuffer, GrowsByHalfSoThatSmallStepsDoNotCopyEachTime) {
  KeptBuffer buffer;
  ASSERT_TRUE(buffer.reserve(1000000, 0));
  const size_t before = buffer.capacity();
  ASSERT_TRUE(buffer.reserve(before + 1, 0));
  EXPECT_GE(buffer.capacity(), before + before / 2);
}

TEST(KeptBuffer, AnswersFalseWithoutMemoryAndKeepsWhatItHas) {
  KeptBuffer buffer;
  ASSERT_TRUE(buffer.reserve(1000, 0));
  std::memcpy(buffer.data(), "text", 4);
  const char* data = buffer.data();
  for (size_t size : {SIZE_MAX / 2, SIZE_MAX - 4096, SIZE_MAX}) {
    EXPECT_FALSE(buffer.reserve(size, 4));
    EXPECT_EQ(buffer.data(), data);
    EXPECT_EQ(std::string(buffer.data(), 4), "text");
  }
}

TEST(KeptBuffer, ReleaseFreesAllAndReserveStartsAgain) {
  KeptBuffer buffer;
  ASSERT_TRUE(buffer.reserve(1000, 0));
  buffer.release();
  EXPECT_EQ(buffer.data(), nullptr);
  EXPECT_EQ(buffer.capacity(), 0u);
  EXPECT_TRUE(buffer.reserve(10, 0));
  EXPECT_NE(buffer.data(), nullptr);
}

TEST(Slab, HoldsWhatItWasAskedFor) {
  for (const size_t size : {size_t{16} << 10, kHugeSlab, 2 * kHugeSlab}) {
    auto* slab = static_cast<char*>(new_slab(size));
    std::memset(slab, 7, size);
    EXPECT_EQ(slab[0], 7);
    EXPECT_EQ(slab[size - 1], 7);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(slab) % alignof(uint64_t), 0u);
    delete_slab(slab, size);
  }
}

TEST(KeptBuffer, SwapExchangesBytesAndRoom) {
  KeptBuffer full;
  KeptBuffer empty;
  ASSERT_TRUE(full.reserve(1000, 0));
  std::memcpy(full.data(), "text", 4);
  const size_t capacity = full.capacity();
  full.swap(empty);
  EXPECT_EQ(full.data(), nullptr);
  EXPECT_EQ(full.capacity(), 0u);
  EXPECT_EQ(empty.capacity(), capacity);
  EXPECT_EQ(std::string(empty.data(), 4), "text");
}

}  // namespace
}  // namespace zenfo::platform
