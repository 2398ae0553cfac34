// Record splitter.
//
// Records are short as a rule, so making a searcher ready for each would cost
// more than the search: the separator's first byte is looked for, and only a
// text in which that byte misleads gets a searcher.
//
// Tested by tests/unit/text/records_test.cpp
#include "text/records.h"

#include <cstring>
#include <string_view>

#include "text/substring.h"

namespace zenfo {
namespace {

constexpr int kFalseHitsAllowed = 4;

// First occurrence of a separator that is not empty, or null.
const char* find_separator(const char* from, const char* end,
                           std::string_view separator) {
  for (int tries = 0; tries <= kFalseHitsAllowed; ++tries) {
    if (static_cast<size_t>(end - from) < separator.size()) return nullptr;
    const size_t starts =
        static_cast<size_t>(end - from) - separator.size() + 1;
    from = static_cast<const char*>(std::memchr(from, separator[0], starts));
    if (from == nullptr) return nullptr;
    if (std::memcmp(from, separator.data(), separator.size()) == 0) return from;
    ++from;
  }
  return SubstringSearcher(separator, true).find(from, end);
}

}  // namespace

int32_t get_next_record(const char** cursor, const char* text_end,
                        const char* separator, size_t separator_length,
                        const char** record, size_t* record_length) {
  const char* const start = *cursor;
  *record = start;
  *record_length = 0;
  if (start == nullptr || text_end == nullptr || separator == nullptr) {
    return -1;
  }
  if (start >= text_end) return -1;
  const char* const found =
      separator_length == 0
          ? nullptr
          : find_separator(start, text_end, {separator, separator_length});
  *record_length = static_cast<size_t>((found ? found : text_end) - start);
  *cursor = found ? found + separator_length : nullptr;
  return 1;
}

}  // namespace zenfo
