// The command line of zenfo find: its options, what goes with what, and the
// help text.
//
// Tested by tests/cli/find_test.cpp
#pragma once

#include <string>
#include <vector>

#include "commands.h"
#include "file_arguments.h"
#include "line_printer.h"
#include "name_filter.h"
#include "output.h"
#include "search.h"

namespace zenfo::cli {

// What is written of the results; the first that was asked for.
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

// False when only help was asked for. Throws Failure for what is wrong.
bool parse_find(const Arguments& arguments, FindOptions& options,
                Output& output);

}  // namespace zenfo::cli
