// The inner loops of the substring search, one set per instruction set.
//
// A kernel looks at two rare bytes of the needle at once, 64 positions a turn
// with one branch, and checks the positions that survive: the first 8 bytes by
// one masked load, the rest byte for byte. If the needle has a very rare byte,
// only that byte is looked for until it shows up too often.
//
// Suits text in which the two bytes seldom occur at the needle's distance.
// Where they often do and whole needles nearly match ("aaaaab" among a's), the
// cost of the failed checks is metered. When it grows too large, a stretch of
// the text is searched by the two-way algorithm instead, so that time stays
// linear.
//
// Tested by tests/unit/text/substring_kernels_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zenfo {

struct PreparedNeedle;

// What a kernel has to find and how far it has got.
struct Matches {
  const char* resume;  // in: where to begin, not after the range's end;
                       // out: where to continue, that end when all is searched
  size_t step;         // bytes from a match to where the next may begin, not 0
  const char** found;  // receives the matches, in order
  size_t capacity;     // places in `found`, not 0
  size_t count = 0;    // places filled
};

// Fills `matches` from [matches.resume, end) until no further match lies wholly
// in that range, or it is full; from 64 places on, it may count as full when
// fewer than 64 are left. Reads no byte outside the range. Time is linear in
// the bytes passed over, plus the needle's length for every match.
using ScanKernel = void (*)(const PreparedNeedle& needle, const char* end,
                            Matches& matches);

// One byte of the needle as a filter: a byte b of the text passes when
// (b | fold) == value.
struct FilterByte {
  uint8_t value = 0;
  uint8_t fold = 0;   // 0 in an exact search
  size_t offset = 0;  // in the needle
};

struct PreparedNeedle {
  std::string_view bytes;
  ScanKernel scan = nullptr;      // null for an empty needle
  const uint8_t* fold = nullptr;  // table of 256 bytes; null: exact search
  FilterByte rarest;
  FilterByte second;         // another offset, for needles of 2 bytes or more
  bool one_is_rare = false;  // the rarest byte alone is worth looking for

  // The first 8 bytes as they lie in memory: alike when
  // ((text | head_fold) & head_mask) == head_value.
  uint64_t head_value = 0;
  uint64_t head_fold = 0;
  uint64_t head_mask = 0;
  // How many bytes that test covers; the check continues after them.
  size_t head_settles = 0;
};

struct KernelSet {
  const char* name;
  ScanKernel one_byte;
  ScanKernel one_byte_folded;
  ScanKernel exact;
  ScanKernel folded;
};

extern const KernelSet kSse2Kernels;  // what every target has
extern const KernelSet kAvx2Kernels;

// The set in use: the fastest that the processor has, until another is chosen.
const KernelSet& kernels_in_use();
// For tests and benchmarks: applies to needles prepared from now on. The
// processor must have what the set needs. Null goes back to the fastest.
void use_kernels(const KernelSet* kernels);

// Makes a needle ready for the set in use. The needle's bytes must outlive the
// result; time does not depend on a needle's length beyond its first bytes.
PreparedNeedle prepare_needle(std::string_view needle, bool case_sensitive);

}  // namespace zenfo
