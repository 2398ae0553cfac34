// Results as text for other programs: chosen matches of files that were not
// removed. Reads each file again for its lines.
//
// Tested by tests/gui/core/export_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "gui/core/result_set.h"

namespace zenfo::host::gui {

enum class ExportForm {
  kCsv,        // with a header; RFC 4180: quotes doubled, lines end in CR LF
  kTsv,        // the same columns for a spreadsheet; tabs and line ends in them
               // become blanks, because this form cannot quote
  kJsonLines,  // as "zenfo find --json" writes, see docs/json-output.md
  kText,       // "PATH:LINE: TEXT"
  kPaths       // one path a line
};

struct ExportResult {
  uint64_t files = 0;
  uint64_t matches = 0;
  // Files that are gone, cannot be read or are shorter now: their matches are
  // left out, except by kPaths.
  std::vector<std::string> unread;
  bool stopped = false;
};

// Receives whole lines in UTF-8. False ends the export.
using ExportSink = std::function<bool(std::string_view lines)>;

// Writes files in the order of the numbers given.
ExportResult export_results(const ResultSet& set,
                            std::span<const uint32_t> files, ExportForm form,
                            const ExportSink& sink);

// One field of a line.
std::string csv_field(std::string_view text);
std::string tsv_field(std::string_view text);

}  // namespace zenfo::host::gui
