// Which of the listed files a run works on: names, repeats, binary files.
//
// Tested by tests/cli/find_test.cpp, tests/gui/engine/search_job_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "shared/session/file_arguments.h"
#include "shared/session/session.h"
#include "shared/text/name_filter.h"

namespace zenfo::host {

// Patterns of the library for at least the files that shell patterns take. The
// library's have no brackets and ignore case, so they only preselect the files.
std::vector<std::string> preselecting_patterns(
    const std::vector<std::string>& includes);

// Selects the files that the filter takes, repeats only once.
void select_files(Session& session, const FileList& files,
                  const NameFilter& filter);

// Deselects files that begin as binary; `tell` gets the path of each. Throws
// Stopped.
void deselect_binary(Session& session, const FileList& files,
                     const std::function<void(const std::string& path)>& tell);

}  // namespace zenfo::host
