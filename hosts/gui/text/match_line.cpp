#include "gui/text/match_line.h"

#include <algorithm>
#include <string_view>

#include "gui/words/unicode.h"

namespace zenfo::host::gui {
namespace {

struct Left {
  uint64_t start = 0;
  bool cut = false;
};

// Where the shown part of the line begins. Looks back no further than a whole
// line's bytes.
Left left_of(FilePart& file, uint64_t offset) {
  const uint64_t back = std::min<uint64_t>(offset, kMostLineBytes);
  const std::string_view before =
      file.read(offset - back, static_cast<size_t>(back));
  const size_t line_end = before.rfind('\n');
  const uint64_t in_line =
      line_end == std::string_view::npos ? back : before.size() - line_end - 1;
  const bool whole = line_end != std::string_view::npos || back == offset;
  if (whole && in_line <= kBytesBeforeMatch) return {offset - in_line, false};
  const size_t shown = std::min<size_t>(before.size(), kBytesBeforeMatch);
  const size_t cut = whole_from(before, before.size() - shown);
  return {offset - (before.size() - cut), true};
}

}  // namespace

bool read_match_line(FilePart& file, const Match& match, MatchLine& line) {
  if (uint64_t{match.offset} + match.length > file.size()) return false;
  const Left left = left_of(file, match.offset);
  const auto start = static_cast<size_t>(match.offset - left.start);
  // One byte more, to see whether the line ends there.
  std::string_view bytes = file.read(left.start, kMostLineBytes + 2);
  if (bytes.size() < start) return false;
  const size_t line_end = bytes.find('\n', start);
  line.cut_left = left.cut;
  line.cut_right = line_end == std::string_view::npos &&
                   left.start + bytes.size() < file.size();
  bytes = bytes.substr(0, line_end);
  if (line_end != std::string_view::npos && bytes.ends_with('\r')) {
    bytes.remove_suffix(1);
  }
  if (bytes.size() > kMostLineBytes) {
    line.cut_right = true;
    bytes = bytes.substr(0, whole_until(bytes, kMostLineBytes));
  }
  line.bytes = bytes;
  line.start = static_cast<uint32_t>(std::min(start, bytes.size()));
  line.length = static_cast<uint32_t>(
      std::min<size_t>(match.length, bytes.size() - line.start));
  return true;
}

}  // namespace zenfo::host::gui
