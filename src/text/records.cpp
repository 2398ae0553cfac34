// Records are short as a rule, so preparing a searcher for each of them would
// cost more than the search itself. Only the separator's first byte is looked
// for; a searcher is prepared only where that byte is frequent outside
// separators.
//
// Tested by tests/unit/text/records_test.cpp
#include "text/records.h"

#include <cstring>

#include "text/substring.h"

namespace zenfo {
namespace {

constexpr int kFalseHitsAllowed = 4;

}  // namespace

const char* RecordReader::find_separator(const char* from, const char* end,
                                         std::string_view separator) {
  if (separator.empty()) return nullptr;
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

}  // namespace zenfo
