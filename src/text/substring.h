// Plain substring search, shared by the whole library.
//
// find_substring is the definition: its simple loop is kept for blank skipping
// and, in tests, as the oracle of the fast kernels. SubstringSearcher prepares
// a needle once and finds it many times.
//
// Tested by tests/unit/text/substring_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zenfo {

// First occurrence of the needle in [haystack, haystack_end), or null.
//   case_sensitive  false compares both bytes after folding (byte_tables)
//   skip_blanks     bytes 0x00-0x20 and 0x80-0xFF are passed over in both
//   matched_length  receives the bytes spanned in the haystack, 0 for none;
//                   may be null
// An empty haystack or needle finds nothing.
const char* find_substring(const char* haystack, const char* needle,
                           const char* haystack_end, const char* needle_end,
                           bool case_sensitive, bool skip_blanks,
                           size_t* matched_length = nullptr);

// A needle made ready for many searches without blank skipping. Refers to the
// needle's bytes, which must outlive it; allocates nothing. Fold tables are
// those in force at construction.
class SubstringSearcher {
 public:
  SubstringSearcher() = default;  // finds nothing
  SubstringSearcher(std::string_view needle, bool case_sensitive);

  // First occurrence that lies within [from, end), or null. Never reads
  // outside that range.
  const char* find(const char* from, const char* end) const;

  size_t length() const { return needle_.size(); }

 private:
  std::string_view needle_;
  bool case_sensitive_ = true;
};

}  // namespace zenfo
