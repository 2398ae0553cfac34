// Finds all matches of a context's pattern in a text in memory.
//
// Tested by tests/unit/pattern/matcher_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>

#include "pattern/context.h"

namespace zenfo {

// kPlain makes every attempt one by one; it defines what is found and reported,
// and kFast must agree with it. For tests.
enum class SearchPath : uint8_t { kFast, kPlain };

struct FindOptions {
  bool case_flag = true;     // true: exact bytes
  bool whole_words = false;  // drop matches that a letter or digit touches
  bool store = true;         // append a record for each match
  uint32_t maximum = 0;      // stop at this many matches; 0 = no limit
  SearchPath path = SearchPath::kFast;
};

// Searches the whole text. Returns the number of matches; 0 for a null text;
// -1 for an empty pattern, a cancellation or a failure. The context's match
// list is emptied first, whatever the result; its records point into the text.
// Letters, digits and case are those of byte_tables(), which the caller
// refreshes.
int32_t find_all(PatternContext& context, const char* text, size_t length,
                 const FindOptions& options);

// Searches inside or outside the areas that the match list of `areas` holds
// (in list order, whatever their state; records of other kinds are skipped).
// When `areas` is null, the same as find_all. No match crosses the bounds of an
// area; areas are cut to the text. Must not be the context itself.
int32_t find_all_by_areas(PatternContext& context, const char* text,
                          size_t length, const FindOptions& options,
                          PatternContext* areas, bool inside);

}  // namespace zenfo
