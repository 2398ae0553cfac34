// Counts the words and the lines of a text, with the calls to the host that two
// searches for them would make: first for a run of word bytes, then for CR LF.
//
// Idea. The text is read once: while the words of a piece are counted, its
// lines are counted too. The search for lines uses these numbers and reads the
// text again only where a report is due.
//
// Tested by tests/unit/stats/word_count_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "pattern/context.h"
#include "pattern/ticks.h"
#include "stats/text_tally.h"

namespace zenfo {

class WordCount {
 public:
  // Polls and reports go to the hooks of the context. Both outlive the count.
  WordCount(PatternContext& context, std::string_view text)
      : context_(context), text_(text) {}

  // Answer the number; -1 when the host stops the count. Call each once, words
  // first.
  int32_t words();
  int32_t lines();

 private:
  struct Piece {
    size_t from;
    size_t to;
  };
  Piece piece_at(size_t from) const;

  bool tick_words(Ticks& ticks, Piece piece, const TextTally& tally) const;
  bool tick_lines(Ticks& ticks, Piece piece, size_t line_ends) const;

  PatternContext& context_;
  std::string_view text_;
  std::vector<uint32_t> line_ends_;  // of each piece
};

}  // namespace zenfo
