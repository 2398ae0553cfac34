// The options that replace and case have in common.
//
// Tested by tests/cli/replace_test.cpp
#pragma once

#include <string>

#include "cli/options/command_line.h"
#include "cli/options/text_options.h"
#include "shared/runs/change_plan.h"
#include "shared/session/search.h"

namespace zenfo::host::cli {

struct ChangeOptions : ChangePlan {
  std::string done;  // "replaced"
  bool dry_run = false;
  bool yes = false;
  bool ask = false;
};

// What both commands declare.
void declare_text_options(CommandLine& line, SearchOptions& search,
                          AreaTexts& areas);
void declare_change_options(CommandLine& line, ChangeOptions& options);
// Throws Failure for options that exclude each other.
void settle_change_options(const CommandLine& line, ChangeOptions& options,
                           const AreaTexts& areas);
// "zenfo replace 'a b' c", for a shell.
std::string shell_command(const std::string& name, const Arguments& arguments);

}  // namespace zenfo::host::cli
