// Results as text for other programs: chosen matches of files that were not
// removed. Reads each file again for its lines, one file at a time.
//
// Tested by tests/gui/results/export_test.cpp
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "gui/results/result_set.h"

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

// What an export takes, as it is chosen now: another thread may write it while
// the result grows and its choices change. The set must live as long.
class ExportSource {
 public:
  // The files are written in the order of the numbers given.
  ExportSource(const ResultSet& set, std::span<const uint32_t> files,
               ExportForm form);

  struct File {
    const std::string* path;
    uint32_t first;  // of its matches
    uint32_t listed;
  };
  const std::vector<File>& files() const { return files_; }
  // The chosen ones, by offset.
  std::vector<Match> matches_of(const File& file) const;
  ExportForm form() const { return form_; }

 private:
  ExportForm form_;
  std::vector<File> files_;
  MatchStore matches_;
};

ExportResult export_results(const ExportSource& source, const ExportSink& sink,
                            std::atomic<uint64_t>* files_done = nullptr);

// One field of a line.
std::string csv_field(std::string_view text);
std::string tsv_field(std::string_view text);

}  // namespace zenfo::host::gui
