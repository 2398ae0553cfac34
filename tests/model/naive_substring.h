// Model of find_substring: one comparison at a time, without regard to speed.
// The fast kernels are tested and timed against it.
#pragma once

#include <cctype>
#include <cstddef>
#include <string_view>
#include <vector>

namespace zenfo::model {

struct Found {
  const char* start = nullptr;
  size_t length = 0;
};

inline Found find_substring(const char* haystack, const char* needle,
                            const char* haystack_end, const char* needle_end,
                            bool case_sensitive, bool skip_blanks) {
  if (haystack >= haystack_end || needle >= needle_end) return {};
  const auto is_blank = [](char byte) {
    return static_cast<signed char>(byte) <= 0x20;
  };
  const auto lower = [](char byte) {
    return std::tolower(static_cast<unsigned char>(byte));
  };
  const char* p = haystack;
  const char* q = needle;
  const char* s = nullptr;
  while (q != needle_end) {
    if (skip_blanks) {
      while (p != haystack_end && is_blank(*p)) ++p;
      if (p == haystack_end) break;
      while (q != needle_end && is_blank(*q)) ++q;
      if (q == needle_end) break;
    }
    const bool equal = case_sensitive ? *p == *q : lower(*p) == lower(*q);
    if (equal) {
      if (s == nullptr) s = p;
      ++p;
      ++q;
    } else {
      q = needle;
      p = s != nullptr ? s + 1 : p + 1;
      s = nullptr;
    }
    if (p == haystack_end) break;
  }
  if (q != needle_end || s == nullptr) return {};
  return {s, static_cast<size_t>(p - s)};
}

// The offsets of all occurrences, each at least `step` bytes after the previous
// one.
inline std::vector<size_t> find_all(std::string_view haystack,
                                    std::string_view needle,
                                    bool case_sensitive, size_t step) {
  std::vector<size_t> offsets;
  const char* const end = haystack.data() + haystack.size();
  const char* from = haystack.data();
  while (from < end) {
    const Found found =
        find_substring(from, needle.data(), end, needle.data() + needle.size(),
                       case_sensitive, false);
    if (found.start == nullptr) break;
    offsets.push_back(static_cast<size_t>(found.start - haystack.data()));
    from = found.start + step;
  }
  return offsets;
}

}  // namespace zenfo::model
