// What a run that changes files is to do.
//
// Tested by tests/cli/replace_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "shared/session/file_arguments.h"
#include "shared/session/search.h"
#include "shared/session/unchanged.h"
#include "shared/text/name_filter.h"

namespace zenfo::host {

struct ChangePlan {
  std::string command;  // as typed, for the record of the run
  bool cuts_at_zero_byte = false;
  Stays stays;  // matches that the change would not alter
  SearchOptions search;
  std::vector<std::string> paths;
  FileChoice choice;
  NameFilter filter;
  bool no_backup = false;
  bool no_sync = false;
  bool binary = false;
  bool read_only = false;
  bool keep_date = false;
};

// Runs the operation over the selected files and returns its result.
using Change = std::function<int32_t(bool ask, bool safe_copies)>;

}  // namespace zenfo::host
