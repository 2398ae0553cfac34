// The command line of one subcommand, and options that subcommands share.
//
// Tested by tests/cli/command_test.cpp
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/messages.h"
#include "cli/terminal/output.h"
#include "shared/options/command_line.h"
#include "shared/session/file_arguments.h"

namespace zenfo::host::cli {

class CommandLine : public host::CommandLine {
 public:
  CommandLine(const std::string& subcommand, const HelpTexts& texts,
              const std::string& help_names = "-h,--help")
      : host::CommandLine(subcommand, texts, "zenfo help " + subcommand,
                          help_names) {}

  // The same, with help in the output.
  bool parse(const Arguments& arguments, Output& output);
};

// How the list of results is written.
struct ResultForm {
  bool null = false;
  bool json = false;
};

// Options that subcommands share.
void add_form_options(CommandLine& line, ResultForm& form);
void add_choice_options(CommandLine& line, FileChoice& choice);
// --from-list, for the files of a list instead of arguments.
void add_list_option(CommandLine& line, FileChoice& choice);
// Throws Failure for options that exclude each other or have wrong values.
void check_form(const CommandLine& line, const ResultForm& form);
void check_choice(const CommandLine& line, const FileChoice& choice);
void check_list_option(const CommandLine& line, const FileChoice& choice,
                       const std::vector<std::string>& paths);
// Splits "a,b" at commas.
std::vector<std::string> parts_of(std::string_view list);

}  // namespace zenfo::host::cli
