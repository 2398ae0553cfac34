#include "text/simd.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "support/fenced_text.h"

namespace zenfo {
namespace {

// The results of every operation on two vectors, byte by byte.
template <class V>
struct Results {
  std::array<uint8_t, 8 * V::kSize> bytes;
  uint32_t mask;
  size_t sum;
};

template <class V>
ZENFO_VECTOR_CODE void put(Results<V>& results, size_t row, const V& vector) {
  std::memcpy(&results.bytes[row * V::kSize], &vector, V::kSize);
}

template <class V>
ZENFO_VECTOR_CODE Results<V> all_operations(const char* a, const char* b) {
  const V x = V::load(a);
  const V y = V::load(b);
  Results<V> results;
  put(results, 0, x == y);
  put(results, 1, x <= y);
  put(results, 2, x & y);
  put(results, 3, x | y);
  put(results, 4, x ^ y);
  put(results, 5, ~x);
  put(results, 6, x - y);
  put(results, 7, V::preceding(y, x));
  results.sum = x.sum();
  return results;
}

Results<Vector16> run(const char* a, const char* b, Vector16*) {
  Results<Vector16> results = all_operations<Vector16>(a, b);
  results.mask = Vector16::load(a).mask();
  return results;
}

ZENFO_AVX2 Results<Vector32> run(const char* a, const char* b, Vector32*) {
  Results<Vector32> results = all_operations<Vector32>(a, b);
  results.mask = Vector32::load(a).mask();
  return results;
}

uint8_t by_operation(size_t row, uint8_t x, uint8_t y, uint8_t preceding) {
  switch (row) {
    case 0:
      return x == y ? 0xFF : 0;
    case 1:
      return x <= y ? 0xFF : 0;
    case 2:
      return x & y;
    case 3:
      return x | y;
    case 4:
      return x ^ y;
    case 5:
      return static_cast<uint8_t>(~x);
    case 6:
      return static_cast<uint8_t>(x - y);
    default:
      return preceding;
  }
}

uint8_t byte(const char* text, size_t i) {
  return static_cast<uint8_t>(text[i]);
}

template <class V>
void expect_each_byte(const char* a, const char* b, const Results<V>& results) {
  uint32_t mask = 0;
  size_t sum = 0;
  for (size_t i = 0; i < V::kSize; ++i) {
    const uint8_t preceding = i > 0 ? byte(a, i - 1) : byte(b, V::kSize - 1);
    for (size_t row = 0; row < 8; ++row) {
      EXPECT_EQ(results.bytes[row * V::kSize + i],
                by_operation(row, byte(a, i), byte(b, i), preceding))
          << "operation " << row << ", byte " << i;
    }
    mask |= uint32_t{byte(a, i) >= 0x80u} << i;
    sum += byte(a, i);
  }
  EXPECT_EQ(results.mask, mask);
  EXPECT_EQ(results.sum, sum);
}

template <class V>
class VectorTest : public testing::Test {
 protected:
  void SetUp() override {
    if (V::kSize == 32 && !processor_has_avx2()) {
      GTEST_SKIP() << "the processor lacks AVX2";
    }
  }
};

using Sizes = testing::Types<Vector16, Vector32>;
TYPED_TEST_SUITE(VectorTest, Sizes);

// Every byte with every other, at every position of a vector.
TYPED_TEST(VectorTest, OperatesOnEachByte) {
  for (int difference = 0; difference < 256; ++difference) {
    std::string a, b;
    for (int i = 0; i < 256; ++i) {
      a += static_cast<char>(i);
      b += static_cast<char>(i + difference);
    }
    for (size_t at = 0; at + TypeParam::kSize <= a.size(); ++at) {
      const auto results =
          run(&a[at], &b[at], static_cast<TypeParam*>(nullptr));
      expect_each_byte<TypeParam>(&a[at], &b[at], results);
      if (this->HasFailure()) return;
    }
  }
}

TYPED_TEST(VectorTest, SumsVectorsOfLargestBytes) {
  const std::string largest(TypeParam::kSize, '\xFF');
  const auto results =
      run(largest.data(), largest.data(), static_cast<TypeParam*>(nullptr));
  EXPECT_EQ(results.sum, TypeParam::kSize * 255);
}

TEST(FetchAhead, MayReachBehindTheText) {
  test::FencedMemory memory(10);
  fetch_ahead(memory.against_end("0123456789").data());
  fetch_ahead(nullptr);
}

}  // namespace
}  // namespace zenfo
