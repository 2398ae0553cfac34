// Plain substring search, shared by the whole library.
//
// find_substring compares byte by byte where blanks are skipped; everything
// else is the work of SubstringSearcher, which prepares a needle once and finds
// it many times with the vector kernels. Both answer the same first occurrence.
//
// Tested by tests/unit/text/substring_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "text/substring_kernels.h"

namespace zenfo {

// First occurrence of the needle in [haystack, haystack_end), or null.
//   case_sensitive  false compares both bytes after folding (byte_tables)
//   skip_blanks     bytes 0x00-0x20 and 0x80-0xFF are skipped in both; the
//                   match spans the blanks inside it, those after it only when
//                   the needle ends in blanks
//   matched_length  receives the bytes spanned in the haystack, 0 for none;
//                   may be null
// An empty haystack or needle finds nothing.
const char* find_substring(const char* haystack, const char* needle,
                           const char* haystack_end, const char* needle_end,
                           bool case_sensitive, bool skip_blanks,
                           size_t* matched_length = nullptr);

// A needle made ready for many searches without blank skipping. Refers to the
// needle's bytes, which must outlive it; allocates nothing, copies cheaply.
// When ignoring case it uses the fold table of the time it was made: make a new
// one after refresh_byte_tables().
class SubstringSearcher {
 public:
  SubstringSearcher() = default;  // finds nothing
  SubstringSearcher(std::string_view needle, bool case_sensitive)
      : needle_(prepare_needle(needle, case_sensitive)) {}

  // First occurrence within [from, end), or null. Never reads outside that
  // range; an empty or null range contains nothing.
  const char* find(const char* from, const char* end) const {
    const char* found = nullptr;
    find_many(from, end, 1, &found, 1);
    return found;
  }

  // Up to `capacity` (not 0) occurrences in order, each beginning at least
  // `step` (not 0) bytes after the start of the one before: length() for those
  // that do not overlap, 1 for all. Returns how many and moves `from` to where
  // to go on, which is `end` once the range is searched.
  size_t find_many(const char*& from, const char* end, size_t step,
                   const char** found, size_t capacity) const {
    if (needle_.scan == nullptr || from >= end) {
      from = end;
      return 0;
    }
    Matches matches{from, step, found, capacity};
    needle_.scan(needle_, end, matches);
    from = matches.resume;
    return matches.count;
  }

  size_t length() const { return needle_.bytes.size(); }

 private:
  PreparedNeedle needle_;
};

}  // namespace zenfo
