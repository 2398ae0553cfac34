// How careful runs that change files, and Undo, are beyond what these
// operations promise. A host chooses by the environment variable ZENFO_SAFETY,
// a list of words separated by commas, which is read at the start of every run:
//
//   sync     safe copies are on disk, and flushed, before the first of their
//            files is rewritten; a run and Undo are flushed when they return,
//            and Undo deletes a safe copy only then
//   beside   without safe copies, a file is written beside the old one and
//            replaces it in one step
//   nolinks  runs that change files load no file that is reached through a link
//   skip     a file that cannot be opened for writing is skipped, and the run
//            continues
//
// Unknown words are ignored.
//
// Tested by tests/unit/undo/safety_test.cpp
#pragma once

#include <string_view>

namespace zenfo {

struct Safety {
  bool sync = false;
  bool beside = false;
  bool no_links = false;
  bool skip = false;

  bool operator==(const Safety&) const = default;
};

Safety parse_safety(std::string_view words);
// The present value of the variable.
Safety chosen_safety();

}  // namespace zenfo
