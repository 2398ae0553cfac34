// What a query means for the library.
//
// Tested by tests/gui/query/search_plan_test.cpp
#pragma once

#include <string>
#include <vector>

#include "gui/query/area_kinds.h"
#include "gui/query/query.h"
#include "shared/session/file_arguments.h"
#include "shared/session/search.h"
#include "shared/text/name_filter.h"

namespace zenfo::host::gui {

struct SearchPlan {
  SearchOptions search;
  std::vector<std::string> paths;
  FileChoice choice;
  NameFilter filter;
  bool skip_binary = true;
  // Ready-made areas; null for none. Areas of a pattern are in `search`.
  const AreaKind* kind = nullptr;
  bool inside = false;  // those areas
};

// The query must have no faults.
SearchPlan plan_of(const Query& query);

}  // namespace zenfo::host::gui
