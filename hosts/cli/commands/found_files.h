// The files with matches, written in the form that the options ask for. The
// search keeps no text for its host, so each file is read again.
//
// Tested by tests/cli/find_test.cpp, tests/cli/posix_find_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/options/find_options.h"
#include "cli/printing/hex_printer.h"
#include "cli/printing/line_printer.h"
#include "cli/terminal/output.h"
#include "shared/session/file_arguments.h"
#include "shared/text/found_text.h"
#include "shared/text/match_json.h"

namespace zenfo::host::cli {

// A stop may interrupt the command unless it writes a report or a summary.
bool leaves_nothing_half_done(const FindOptions& options);

struct FoundFile {
  uint32_t index = 0;  // in the list of files
  std::string path;
  std::vector<Match> matches;
};

// Calls no operation of the library, so that it can work on a thread of its
// own.
class FoundFiles {
 public:
  FoundFiles(const FindOptions& options, const FileList& files,
             bool several_texts, Output& output);

  // Whether the text of files is needed.
  bool read_text() const;
  // The text of a file, until that of another is asked for. Complains if it
  // cannot be read.
  std::string_view text(const FoundFile& file);
  void write(FoundFile& file);

  // The number to show for each file of the list, if numbers are shown.
  std::vector<uint64_t>& counts() { return counts_; }
  // For what is written at the end.
  LinePrinter& lines() { return lines_; }
  MatchJson& json() { return json_; }

 private:
  void write_text(const FoundFile& file);
  bool load(const std::string& path);

  const FindOptions& options_;
  const FileList& files_;
  const bool several_texts_;
  Output& output_;
  LinePrinter lines_;
  MatchJson json_;
  HexPrinter hex_;
  std::vector<uint64_t> counts_;
  FileBytes bytes_;
  const FoundFile* loaded_ = nullptr;
};

}  // namespace zenfo::host::cli
