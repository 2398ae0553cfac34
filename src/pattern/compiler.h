// Turns the texts of a search into the elements of a context.
//
// A text is a literal or a pattern. A pattern is read in four levels, each of
// which finds its own constructs and passes the text between them to the next:
// user classes, wildcard runs, character lists, string lists. Text in which the
// last level finds no construct is literal.
//
//   digits[2-5]"foo|bar"x   ->   class 2 to 5 times, string list, literal
//
// Tested by tests/unit/pattern/compiler_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "pattern/context.h"

namespace zenfo {

// One of the three texts of a search.
struct PatternText {
  const char* text = nullptr;  // zero-terminated; null counts as empty
  bool is_pattern = false;
  bool convert = false;  // caret names become control characters
};

// The bytes that a text which is no pattern is searched for as; empty when
// nothing is left of it.
std::string literal_bytes(const PatternContext& context,
                          const PatternText& source);

// Compiles start marker, main text and end marker into the context, whose old
// pattern is cleared first. Returns 1 when there is an element, 0 when there is
// none, -1 for an empty main text.
int32_t compile_search(PatternContext& context, const PatternText& start,
                       const PatternText& main, const PatternText& end);

// Compiles "first, any run of bytes, second". The match begins after the
// elements of the first text when count_start is set, else with them. Returns
// like compile_search, -1 when either text is empty.
int32_t compile_tag(PatternContext& context, const char* first,
                    const char* second, bool count_start, bool is_pattern,
                    bool convert);

}  // namespace zenfo
