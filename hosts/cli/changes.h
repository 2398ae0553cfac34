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

#include "change_options.h"
#include "library.h"
#include "output.h"
#include "search.h"

namespace zenfo::cli {

// Runs the operation over the selected files and answers what it answers.
using Change = std::function<int32_t(bool ask, bool safe_copies)>;

// Answers the exit status. The search is compiled; the change is ready to run.
int run_change(Session& session, Search& search, const ChangeOptions& options,
               const Change& change, Output& output);

}  // namespace zenfo::cli
