#include "cli/printing/hex_printer.h"

#include <algorithm>
#include <cstdio>

#include "cli/printing/line_printer.h"

namespace zenfo::host::cli {
namespace {

constexpr size_t kNoRow = static_cast<size_t>(-1);

// Whether a byte belongs to one of the matches.
bool is_marked(size_t position, std::span<const Match> matches) {
  return std::any_of(matches.begin(), matches.end(), [&](const Match& match) {
    return match.offset <= position && position < end_of(match);
  });
}

// A terminal cannot show a single byte of a multi-byte character.
char shown(char byte, bool on_terminal) {
  const auto value = static_cast<unsigned char>(byte);
  const bool lone = on_terminal && value > 127;
  return value < 32 || value == 127 || lone ? '.' : byte;
}

}  // namespace

void HexPrinter::print_file(std::string_view path, std::string_view text,
                            std::span<const Match> matches) {
  if (matches.empty()) return;
  if (paths_) {
    output_.put_name(path);
    output_.put('\n');
  }
  size_t last_row = kNoRow;
  size_t first = 0;  // the earliest match that may reach the row in hand
  for (size_t i = 0; i < matches.size(); ++i) {
    // If the file was shortened after the search, shows what is left.
    const size_t end = std::min(end_of(matches[i]), text.size());
    for (size_t row = matches[i].offset / kRow; row * kRow < end; ++row) {
      if (last_row != kNoRow && row <= last_row) continue;
      if (last_row != kNoRow && row != last_row + 1) output_.put("--\n");
      while (first < i && end_of(matches[first]) <= row * kRow) ++first;
      size_t last = i;
      while (last < matches.size() && matches[last].offset < (row + 1) * kRow) {
        ++last;
      }
      print_row(text, row * kRow, matches.subspan(first, last - first));
      last_row = row;
    }
  }
}

void HexPrinter::print_row(std::string_view text, size_t start,
                           std::span<const Match> matches) {
  char field[24];
  std::snprintf(field, sizeof field, "%08zX ", start);
  output_.put(field);
  const std::string_view row = text.substr(start, kRow);
  for (size_t i = 0; i < row.size(); ++i) {
    std::snprintf(field, sizeof field, "%02X",
                  static_cast<unsigned>(static_cast<unsigned char>(row[i])));
    output_.put(' ');
    put_marked(is_marked(start + i, matches), field);
  }
  output_.put(std::string(3 * (kRow - row.size()) + 3, ' '));
  for (size_t i = 0; i < row.size(); ++i) {
    const char character = shown(row[i], output_.on_terminal());
    put_marked(is_marked(start + i, matches), {&character, 1});
  }
  output_.put('\n');
}

void HexPrinter::put_marked(bool marked, std::string_view text) {
  if (marked && colours_) output_.put_bytes(kMatchColour);
  output_.put(text);
  if (marked && colours_) output_.put_bytes(kPlainColour);
}

}  // namespace zenfo::host::cli
