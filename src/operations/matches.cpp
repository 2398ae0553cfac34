// The operations under "Matches" in zenfofr130.h.
//
// Tested by tests/contract/match_test.cpp
#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

#include "operations/arguments.h"
#include "operations/operation.h"
#include "pattern/match_record.h"

namespace zenfo {
namespace {

int32_t put_number(char* buffer, uint32_t number) {
  constexpr int kMostDigits = std::numeric_limits<uint32_t>::digits10 + 1;
  *std::to_chars(buffer, buffer + kMostDigits, number).ptr = '\0';
  return 1;
}

// How many bytes are copied of a text of `length`: all, when the mark would
// still fit after it, else as many as the buffer's size says.
size_t shortened(uint32_t length, uint32_t size) {
  return uint64_t{length} + 5 <= size ? length : size;
}

// Ends the copy and marks it when it is shorter than the match.
// Intended: the mark runs over the stated size by up to five bytes.
int32_t finish_copy(char* buffer, size_t copied, uint32_t match_length) {
  buffer[copied] = '\0';
  if (copied > 0 && copied < match_length) std::strcat(buffer, " ...");
  return 1;
}

// The bytes that may be read, starting at the match.
size_t readable(Library& library, int32_t number, const MatchRecord& match) {
  const PatternContext* context = library.get_context(number);
  const char* end = context != nullptr ? context->text_end() : nullptr;
  if (end == nullptr || match.begin() == nullptr) return 0;
  return end > match.begin() ? static_cast<size_t>(end - match.begin()) : 0;
}

}  // namespace

ZENFO_ENTRY GetMatchOffset(int32_t list, uint32_t index, char* buffer,
                           uint32_t) {
  return run<row::GetMatchOffset>([&](Library& library) {
    const auto* match = begin_text<MatchRecord>(library, list, index, buffer);
    return match != nullptr ? put_number(buffer, match->offset) : -1;
  });
}

ZENFO_ENTRY GetMatchLength(int32_t list, uint32_t index, char* buffer,
                           uint32_t) {
  return run<row::GetMatchLength>([&](Library& library) {
    const auto* match = begin_text<MatchRecord>(library, list, index, buffer);
    return match != nullptr ? put_number(buffer, match->length) : -1;
  });
}

// Intended: a size of the length to the length + 4 copies bytes after the match
// too, as far as the content goes.
ZENFO_ENTRY GetMatchText(int32_t list, uint32_t index, char* buffer,
                         uint32_t size) {
  return run<row::GetMatchText>([&](Library& library) {
    const auto* match = begin_text<MatchRecord>(library, list, index, buffer);
    if (match == nullptr) return -1;
    const size_t copied = std::min(shortened(match->length, size),
                                   readable(library, list, *match));
    if (copied > 0) std::memcpy(buffer, match->begin(), copied);
    return finish_copy(buffer, copied, match->length);
  });
}

// Intended: the mark depends on the match's length, not the replacement's.
ZENFO_ENTRY GetMatchReplace(int32_t list, uint32_t index, char* buffer,
                            uint32_t size) {
  return run<row::GetMatchReplace>([&](Library& library) {
    const auto* match = begin_text<MatchRecord>(library, list, index, buffer);
    if (match == nullptr) return -1;
    const char* replacement = match->replacement();
    if (replacement == nullptr) return finish_copy(buffer, 0, match->length);
    const size_t copied = shortened(match->replacement_length(), size);
    // Up to four of the zero bytes after the replacement are copied too.
    std::memcpy(buffer, replacement, copied);
    return finish_copy(buffer, copied, match->length);
  });
}

ZENFO_ENTRY get_match_flag(int32_t list, uint32_t index) {
  return run<row::get_match_flag>([&](Library& library) {
    const MatchRecord* match = record_at<MatchRecord>(library, list, index);
    return match != nullptr ? match->flag : -1;
  });
}

}  // namespace zenfo
