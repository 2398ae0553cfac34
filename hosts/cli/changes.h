// A run that changes files, as replace and case have in common: first a search
// that changes nothing, then a look at the files found, and then a preview, a
// question or a refusal, or the run itself with its safe copies.
//
// A preview lets the library change copies of the files and shows how they
// differ: what is shown is what will be done.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "command_line.h"
#include "commands.h"
#include "file_arguments.h"
#include "library.h"
#include "name_filter.h"
#include "output.h"
#include "search.h"

namespace zenfo::cli {

struct ChangeOptions {
  std::string command;  // as it was typed, for the record of the run
  std::string done;     // "replaced"
  bool cuts_at_zero_byte = false;
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

// Runs the operation over the selected files and answers what it answers.
using Change = std::function<int32_t(bool ask, bool safe_copies)>;

// Answers the exit status. The search is compiled; the change is ready to run.
int run_change(Session& session, Search& search, const ChangeOptions& options,
               const Change& change, Output& output);

}  // namespace zenfo::cli
