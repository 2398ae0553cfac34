// A run that changes files, as replace and case have in common: first a search
// that changes nothing, then a look at the files found, and then a preview, a
// question or a refusal, or the run itself with its safe copies.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include "cli/options/change_options.h"
#include "cli/terminal/output.h"
#include "shared/runs/change_plan.h"
#include "shared/session/search.h"
#include "shared/session/session.h"

namespace zenfo::host::cli {

// Answers the exit status. The search is compiled; the change is ready to run.
int run_change(Session& session, Search& search, const ChangeOptions& options,
               const Change& change, Output& output);

}  // namespace zenfo::host::cli
