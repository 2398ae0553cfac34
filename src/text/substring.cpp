// Plain substring search: the entry, and the search that skips blanks.
//
// Tested by tests/unit/text/substring_test.cpp
#include "text/substring.h"

#include "text/byte_tables.h"

namespace zenfo {
namespace {

// Intended: bytes from 0x80 count as blanks, as negative signed values.
bool is_blank(char byte) { return static_cast<int8_t>(byte) <= 0x20; }

const char* skip_blanks_at(const char* text, const char* end) {
  while (text != end && is_blank(*text)) ++text;
  return text;
}

struct ByteEquality {
  const uint8_t* fold;  // null: exact
  bool operator()(char a, char b) const {
    const uint8_t x = static_cast<uint8_t>(a);
    const uint8_t y = static_cast<uint8_t>(b);
    return fold ? fold[x] == fold[y] : x == y;
  }
};

// Both texts are not empty.
// Intended: blanks are skipped before the needle's end is noticed, so a needle
// that ends in blanks needs a byte after the match that is no blank, and the
// match includes the blanks before that byte.
const char* find_skipping_blanks(const char* haystack, const char* needle,
                                 const char* haystack_end,
                                 const char* needle_end, ByteEquality equal,
                                 size_t& matched_length) {
  const char* start = nullptr;
  const char* p = haystack;
  const char* q = needle;
  while (q != needle_end && p != haystack_end) {
    p = skip_blanks_at(p, haystack_end);
    if (p == haystack_end) break;
    q = skip_blanks_at(q, needle_end);
    if (q == needle_end) break;
    if (equal(*p, *q)) {
      if (start == nullptr) start = p;
      ++p;
      ++q;
    } else {
      p = (start ? start : p) + 1;
      q = needle;
      start = nullptr;
    }
  }
  if (q != needle_end || start == nullptr) return nullptr;
  matched_length = static_cast<size_t>(p - start);
  return start;
}

}  // namespace

const char* find_substring(const char* haystack, const char* needle,
                           const char* haystack_end, const char* needle_end,
                           bool case_sensitive, bool skip_blanks,
                           size_t* matched_length) {
  size_t length = 0;
  const char* found = nullptr;
  if (haystack < haystack_end && needle < needle_end) {
    if (skip_blanks) {
      const uint8_t* fold =
          case_sensitive ? nullptr : byte_tables().fold.data();
      found = find_skipping_blanks(haystack, needle, haystack_end, needle_end,
                                   ByteEquality{fold}, length);
    } else {
      const size_t size = static_cast<size_t>(needle_end - needle);
      found = SubstringSearcher({needle, size}, case_sensitive)
                  .find(haystack, haystack_end);
      if (found != nullptr) length = size;
    }
  }
  if (matched_length != nullptr) *matched_length = length;
  return found;
}

}  // namespace zenfo
