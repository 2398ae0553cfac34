// The line around a match, at most 2 KB of it.
//
// Lines end in LF or CR LF. The line is that in which the match begins.
//
// Tested by tests/gui/text/match_line_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "gui/text/file_part.h"
#include "shared/text/found_text.h"

namespace zenfo::host::gui {

struct MatchLine {
  std::string bytes;       // without the line's end
  uint32_t start = 0;      // of the match in the bytes
  uint32_t length = 0;     // of its part in them
  bool cut_left = false;   // there is more of the line before
  bool cut_right = false;  // and after

  bool operator==(const MatchLine&) const = default;
};

inline constexpr size_t kMostLineBytes = 2048;
// Of these so many stand before the match, if the line is longer.
inline constexpr size_t kBytesBeforeMatch = 512;

// False if the file ends before the match.
bool read_match_line(FilePart& file, const Match& match, MatchLine& line);

}  // namespace zenfo::host::gui
