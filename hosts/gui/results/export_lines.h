// The matches of a file with their lines, for export.h.
//
// Tested by tests/gui/results/export_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shared/text/found_text.h"

namespace zenfo::host::gui {

struct ExportedMatch {
  std::string_view path;
  uint64_t line_number = 0;  // from 1
  uint64_t column = 0;       // in bytes, from 1
  uint32_t offset = 0;
  uint32_t length = 0;
  std::string_view text;  // of the match
  std::string_view line;  // in which it begins, without its end
};

// Whether a text is long enough for a match.
bool holds(std::string_view text, const Match& match);
void for_each_match(std::string_view path, std::string_view text,
                    std::span<const Match> matches,
                    const std::function<void(const ExportedMatch&)>& visit);
// The bytes, or what they mean in Windows' western character set.
std::string utf8_of(std::string_view bytes);

}  // namespace zenfo::host::gui
