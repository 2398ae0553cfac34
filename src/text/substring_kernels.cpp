// Preparing needles, and the choice between the sets.
//
// Tested by tests/unit/text/substring_kernels_test.cpp
#include "text/substring_kernels.h"

#include <algorithm>
#include <cstring>

#include "text/byte_frequency.h"
#include "text/byte_tables.h"
#include "text/simd.h"

namespace zenfo {
namespace {

// Long needles: rare bytes are picked among the first ones, so that preparing
// stays cheap.
constexpr size_t kBytesWeighed = 64;

// In steps of byte_frequency.h: at most one in about 2,000 bytes.
constexpr int kVeryRare = 72;
// Neighbours come together (q and u), and equal bytes do in repetitive text.
// The second byte must be this much rarer to be taken all the same.
constexpr int kNeighbourPenalty = 24;
constexpr int kSameBytePenalty = 32;

struct Filter {
  FilterByte byte;
  int frequency;
};

Filter make_filter(std::string_view needle, size_t offset,
                   const ByteTables* tables) {
  const uint8_t byte = static_cast<uint8_t>(needle[offset]);
  if (tables == nullptr) return {{byte, 0, offset}, kByteFrequency[byte]};
  const uint8_t fold = tables->fold_bits[byte];
  const uint8_t value = tables->fold[byte] | fold;
  const int frequency =
      std::max(kByteFrequency[value],
               kByteFrequency[static_cast<uint8_t>(value & ~fold)]);
  return {{value, fold, offset}, frequency};
}

int penalty(const FilterByte& first, const FilterByte& second) {
  const bool neighbours =
      first.offset + 1 == second.offset || second.offset + 1 == first.offset;
  return (neighbours ? kNeighbourPenalty : 0) +
         (first.value == second.value ? kSameBytePenalty : 0);
}

void pick_rare_bytes(PreparedNeedle& needle, const ByteTables* tables) {
  const size_t weighed = std::min(needle.bytes.size(), kBytesWeighed);
  Filter rarest = make_filter(needle.bytes, 0, tables);
  for (size_t i = 1; i < weighed; ++i) {
    const Filter filter = make_filter(needle.bytes, i, tables);
    if (filter.frequency < rarest.frequency) rarest = filter;
  }
  needle.rarest = rarest.byte;
  needle.one_is_rare = rarest.frequency <= kVeryRare;
  int best = INT32_MAX;
  for (size_t i = 0; i < weighed; ++i) {
    if (i == rarest.byte.offset) continue;
    const Filter filter = make_filter(needle.bytes, i, tables);
    const int cost = filter.frequency + penalty(rarest.byte, filter.byte);
    if (cost > best) continue;  // of equal ones the last: far from the rarest
    best = cost;
    needle.second = filter.byte;
  }
}

void prepare_head(PreparedNeedle& needle, const ByteTables* tables) {
  uint8_t value[8] = {}, fold[8] = {}, mask[8] = {};
  const size_t size = std::min(needle.bytes.size(), sizeof value);
  bool settles = true;
  for (size_t i = 0; i < size; ++i) {
    const uint8_t byte = static_cast<uint8_t>(needle.bytes[i]);
    fold[i] = tables ? tables->fold_bits[byte] : 0;
    value[i] = tables ? tables->fold[byte] | fold[i] : byte;
    mask[i] = 0xFF;
    if (tables && !tables->fold_bits_suffice[byte]) settles = false;
  }
  std::memcpy(&needle.head_value, value, sizeof value);
  std::memcpy(&needle.head_fold, fold, sizeof fold);
  std::memcpy(&needle.head_mask, mask, sizeof mask);
  needle.head_settles = settles ? size : 0;
}

ScanKernel pick_kernel(size_t needle_length, bool case_sensitive) {
  const KernelSet& kernels = kernels_in_use();
  if (needle_length == 0) return nullptr;
  if (needle_length == 1) {
    return case_sensitive ? kernels.one_byte : kernels.one_byte_folded;
  }
  return case_sensitive ? kernels.exact : kernels.folded;
}

const KernelSet* fastest_kernels() {
  return processor_has_avx2() ? &kAvx2Kernels : &kSse2Kernels;
}

const KernelSet*& chosen_kernels() {
  static const KernelSet* kernels = fastest_kernels();
  return kernels;
}

}  // namespace

const KernelSet& kernels_in_use() { return *chosen_kernels(); }

void use_kernels(const KernelSet* kernels) {
  chosen_kernels() = kernels ? kernels : fastest_kernels();
}

PreparedNeedle prepare_needle(std::string_view needle, bool case_sensitive) {
  PreparedNeedle prepared;
  prepared.bytes = needle;
  prepared.scan = pick_kernel(needle.size(), case_sensitive);
  if (needle.empty()) return prepared;
  const ByteTables* tables = case_sensitive ? nullptr : &byte_tables();
  if (tables) prepared.fold = tables->fold.data();
  pick_rare_bytes(prepared, tables);
  prepare_head(prepared, tables);
  return prepared;
}

}  // namespace zenfo
