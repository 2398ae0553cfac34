// The command line of the window: all of a query, with the names of "zenfo
// find".
//
// Tested by tests/gui/query/program_options_test.cpp
#pragma once

#include <string>
#include <vector>

#include "gui/query/query.h"

namespace zenfo::host::gui {

struct ProgramOptions {
  Query query;
  bool has_query = false;  // any option or path of one was given
  bool has_text = false;   // --find was given
  bool run = false;        // search at once
  bool new_window = false;
  bool help = false;
  bool version = false;
};

// `reason` is the text of a fault; the options are then not to be used.
ProgramOptions read_program_options(const std::vector<std::string>& arguments,
                                    std::string* reason);
std::string program_help();

}  // namespace zenfo::host::gui
