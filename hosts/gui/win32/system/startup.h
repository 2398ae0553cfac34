// How the program was started: the command line, with what only tests and
// pictures use.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <string>
#include <vector>

#include "gui/query/program_options.h"
#include "gui/settings/settings.h"
#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

struct Startup {
  ProgramOptions options;
  std::vector<std::string> arguments;  // of the options
  std::string fault;                   // empty: none
  bool automation = false;             // answers tests
  std::string shot;                    // a picture to take, then end
  bool bytes = false;                  // the Bytes page is shown
  std::string settings;                // their file; empty: the usual one
  int width = 0;                       // of the client area, in pixels
  int height = 0;
  unsigned dpi = 0;  // 0: that of the screen
  gui::Theme theme = gui::Theme::kSystem;
  bool theme_given = false;

  // Whether the run leaves no traces: settings, windows of others.
  bool apart() const { return automation || !shot.empty(); }
};

Startup read_startup();
// The options for another window: relative paths begin at this program's
// present folder.
std::vector<std::string> whole_arguments(const Startup& startup);
// Paths that other programs can use: relative ones begin at this program's
// present folder.
Query with_whole_paths(Query query);

}  // namespace zenfo::host::gui::win32
