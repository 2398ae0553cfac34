// The replace engines: one way of writing, three sources of replacements, three
// edit modes.
//
// Engines work on a context's text and matches. The text is written up to its
// first NUL byte. Intended: what follows it is lost on rewriting. Everything
// that can fail is checked before the file is opened.
//
// Tested by tests/unit/replace/replace_engine_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "containers/item_list.h"
#include "pattern/context.h"
#include "replace/rewriter.h"

namespace zenfo {

enum class EditMode { kReplace, kInsertBefore, kInsertAfter };
// 1 and 2 insert before and after, anything else replaces.
EditMode edit_mode(int32_t number);

// A running number, which wraps like unsigned arithmetic.
class RunningNumber {
 public:
  RunningNumber(int32_t first, int32_t step) : number_(first), step_(step) {}
  int32_t take() {
    const int32_t taken = number_;
    number_ = static_cast<int32_t>(static_cast<uint32_t>(number_) +
                                   static_cast<uint32_t>(step_));
    return taken;
  }

 private:
  int32_t number_;
  int32_t step_;
};

// All write the destination and answer the number of matches written, or
// -1: no path, an empty text, a file that cannot be written, an interrupt.

// The same text for every selected match; null or empty for none.
int32_t replace_with_text(PatternContext& context,
                          const Destination& destination,
                          std::string_view replacement, EditMode mode,
                          bool expand);
// The text with every placeholder replaced by a number that grows from match to
// match. -1 also for an empty text or placeholder.
int32_t replace_with_numbers(PatternContext& context,
                             const Destination& destination,
                             std::string_view replacement,
                             std::string_view placeholder,
                             RunningNumber& number, EditMode mode, bool expand);
// Each match's own replacement, set by one of the next two functions.
int32_t replace_with_records(PatternContext& context,
                             const Destination& destination, EditMode mode);

// Value i of a list of replace values goes to match i; matches without a value
// are deselected, their flag 0. 1, or -1 for a record that is not a match or
// not a value.
int32_t set_replacements_from_list(PatternContext& context, ItemList& values,
                                   bool expand);
// Index 0: the text of match i of `other` goes to match i, as from a list.
// Index k: the text of its match k - 1 goes to all; none when there is no such
// match. Every match of the context is reported and polled, with a replacement
// or not. 1; -1 for an empty text, an interrupt, a record that is not a match.
int32_t set_replacements_from_matches(PatternContext& context,
                                      PatternContext& other, uint32_t index,
                                      bool expand);

// The text with every occurrence of the placeholder replaced by the number's
// text; false when the text or the placeholder is empty.
bool insert_number(std::string_view text, std::string_view placeholder,
                   std::string_view number, std::string& out);

}  // namespace zenfo
