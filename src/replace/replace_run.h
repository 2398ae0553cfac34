// The per-file procedure of runs that change files: what the search run does,
// then a safe copy and the rewriting.
//
// Every run empties the safe store, even a run without copies, so only the last
// run can be undone. A file gets one safe copy a run, before it is first
// rewritten: a second one would contain the changed text.
//
// A run that is to survive a loss of power (see Safety) makes safe copies
// ahead: one flush serves a batch of them, which grows while all are wanted.
//
// A file that somebody else has changed since it was loaded is left alone: the
// matches are no longer those of its text. This is checked before its safe copy
// counts, and again before its first byte is written.
//
// Tested by tests/contract/replace_run_test.cpp,
// tests/contract/replace_safety_test.cpp,
// tests/contract/replace_changed_test.cpp
#pragma once

#include <cstdint>
#include <optional>

#include "library/library.h"
#include "pattern/context.h"
#include "replace/rewriter.h"
#include "search/file_run.h"

namespace zenfo {

// How the matches of files are rewritten.
class Edit {
 public:
  virtual ~Edit() = default;
  // Called after a search, before the user is asked. False ends the run.
  virtual bool search_done(FileRun&) { return true; }
  virtual Phase phase() const = 0;
  // Rewrites the matches of the current file; returns the number written, or
  // -1.
  virtual int32_t rewrite(PatternContext& context, const Destination& file) = 0;
  // After a file was rewritten.
  virtual After rewritten(FileInHand&) { return After::kNextSearch; }
};

// Runs over the lines of a list file, or the selected entries of list 1.
// Returns the number of matches rewritten, or the result of a run that failed
// or was interrupted.
int32_t run_edit(Library& library, const RunOptions& options,
                 Searches& searches, Edit& edit,
                 const std::optional<LineFiles>& files);

}  // namespace zenfo
