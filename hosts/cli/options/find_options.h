// The command line of zenfo find: its options, which of them exclude each
// other, and the help text.
//
// Tested by tests/cli/find_test.cpp
#pragma once

#include <string>
#include <vector>

#include "cli/options/command_line.h"
#include "cli/printing/line_printer.h"
#include "cli/terminal/output.h"
#include "shared/session/file_arguments.h"
#include "shared/session/search.h"
#include "shared/text/name_filter.h"

namespace zenfo::host::cli {

// What is written of the results. If several options are given, the first wins.
enum class Show {
  kNothing,      // -q
  kPaths,        // -l
  kOtherPaths,   // -L
  kLineCounts,   // -c
  kMatchCounts,  // --count-matches
  kJson,
  kHex,
  kLines,
};

struct FindOptions {
  SearchOptions search;
  std::vector<std::string> paths;
  std::string files_from;  // a file with more paths
  std::string summary;
  FileChoice choice;
  NameFilter filter;
  Show show = Show::kLines;
  LineForm form;
  bool ask = false;
  bool skip_binary = false;
  bool matches_are_lines = false;  // see search_once_a_line()
};

// False when the user only asked for help. Throws Failure for an invalid
// command line.
bool parse_find(const Arguments& arguments, FindOptions& options,
                Output& output);

}  // namespace zenfo::host::cli
