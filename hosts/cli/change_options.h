// The options that replace and case have in common.
//
// Tested by tests/cli/replace_test.cpp
#pragma once

#include <string>
#include <vector>

#include "command_line.h"
#include "commands.h"
#include "file_arguments.h"
#include "name_filter.h"
#include "search.h"
#include "unchanged.h"

namespace zenfo::cli {

struct ChangeOptions {
  std::string command;  // as it was typed, for the record of the run
  std::string done;     // "replaced"
  bool cuts_at_zero_byte = false;
  Stays stays;  // which matches the change leaves as they are
  SearchOptions search;
  std::vector<std::string> paths;
  FileChoice choice;
  NameFilter filter;
  bool dry_run = false;
  bool yes = false;
  bool ask = false;
  bool no_backup = false;
  bool binary = false;
  bool read_only = false;
  bool keep_date = false;
};

// What both commands declare.
void declare_text_options(CommandLine& line, SearchOptions& search,
                          std::string& outside, std::string& inside);
void declare_change_options(CommandLine& line, ChangeOptions& options);
// Throws Failure for options that do not go together.
void settle_change_options(const CommandLine& line, ChangeOptions& options,
                           const std::string& outside,
                           const std::string& inside);
// "zenfo replace 'a b' c", for a shell.
std::string shell_command(const std::string& name, const Arguments& arguments);

}  // namespace zenfo::cli
