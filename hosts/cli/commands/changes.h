// A run that changes files, shared by replace and case: a search that changes
// nothing, a check of the files found, and then a preview, a question, a
// refusal, or the run itself with its safe copies.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include "cli/options/change_options.h"
#include "cli/terminal/output.h"
#include "shared/runs/change_plan.h"
#include "shared/session/search.h"
#include "shared/session/session.h"

namespace zenfo::host::cli {

// Returns the exit status. The search must be compiled and the change ready to
// run.
int run_change(Session& session, Search& search, const ChangeOptions& options,
               const Change& change, Output& output);

}  // namespace zenfo::host::cli
