#include "stats/word_count.h"

#include <algorithm>
#include <array>

#include "pattern/byte_set.h"

namespace zenfo {
namespace {

// Small enough to be still cached when its attempts are counted one by one.
constexpr size_t kPiece = size_t{32} * 1024;

const ByteSet& word_bytes() {
  static const ByteSet bytes = [] {
    std::array<bool, 256> flags;
    for (size_t byte = 0; byte < flags.size(); ++byte) {
      flags[byte] = is_word_byte(static_cast<char>(byte));
    }
    return ByteSet(flags);
  }();
  return bytes;
}

}  // namespace

WordCount::Piece WordCount::piece_at(size_t from) const {
  return {from, from + std::min(text_.size() - from, kPiece)};
}

int32_t WordCount::words() {
  Ticks ticks(context_, text_.size());
  size_t words = 0;
  char before = ' ';
  for (size_t from = 0; from < text_.size();) {
    const Piece piece = piece_at(from);
    const TextTally tally =
        tally_text(text_.data() + from, text_.data() + piece.to, before);
    words += tally.words;
    line_ends_.push_back(static_cast<uint32_t>(tally.line_ends));
    if (tick_words(ticks, piece, tally)) return -1;
    before = text_[piece.to - 1];
    from = piece.to;
  }
  return static_cast<int32_t>(words);
}

// An attempt starts at each first byte of a word and each byte outside words.
// The attempt at offset 0 is not reported.
bool WordCount::tick_words(Ticks& ticks, Piece piece,
                           const TextTally& tally) const {
  const size_t last = piece.from > 0 ? piece.from - 1 : 0;
  if (piece.to > ticks.next_report()) {
    return ticks.attempts_at_breaks(text_.data(), word_bytes(), last,
                                    piece.to - 1);
  }
  const size_t attempts = tally.words + tally.gaps - (piece.from > 0 ? 0 : 1);
  return ticks.attempts(attempts, piece.to - 1);
}

int32_t WordCount::lines() {
  Ticks ticks(context_, text_.size());
  size_t lines = 0;
  size_t from = 0;
  for (const uint32_t line_ends : line_ends_) {
    const Piece piece = piece_at(from);
    lines += line_ends;
    if (tick_lines(ticks, piece, line_ends)) return -1;
    from = piece.to;
  }
  return static_cast<int32_t>(lines);
}

// An attempt starts after each line that does not end the text.
bool WordCount::tick_lines(Ticks& ticks, Piece piece, size_t line_ends) const {
  if (ticks.silent() || line_ends == 0) return false;
  if (piece.to < ticks.next_report()) {
    const bool ends = piece.to == text_.size() && text_.ends_with("\r\n");
    return ticks.attempts(ends ? line_ends - 1 : line_ends, piece.to);
  }
  const std::string_view up_to = text_.substr(0, piece.to);
  for (size_t feed = up_to.find('\n', piece.from);
       feed != std::string_view::npos; feed = up_to.find('\n', feed + 1)) {
    const bool line = feed > 0 && up_to[feed - 1] == '\r';
    if (line && feed + 1 < text_.size() && ticks.attempt_at(feed + 1)) {
      return true;
    }
  }
  return false;
}

}  // namespace zenfo
