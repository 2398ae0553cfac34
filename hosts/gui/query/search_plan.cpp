#include "gui/query/search_plan.h"

#include "gui/query/query_text.h"
#include "shared/session/file_selection.h"

namespace zenfo::host::gui {
namespace {

void plan_areas(const AreaChoice& areas, SearchPlan& plan) {
  if (areas.use == AreaUse::kEverywhere) return;
  const bool inside = areas.use == AreaUse::kInside;
  if (!areas.kind.empty()) {
    plan.kind = find_area_kind(areas.kind);
    plan.inside = inside;
    return;
  }
  plan.search.areas = {areas.pattern, inside, areas.start, areas.end};
}

}  // namespace

SearchPlan plan_of(const Query& query) {
  SearchPlan plan;
  plan.search.texts = texts_to_find(query.text);
  plan.search.is_pattern = query.is_pattern;
  plan.search.caret = query.caret;
  plan.search.ignore_case = !query.match_case;
  plan.search.whole_words = query.whole_words;
  plan_areas(query.areas, plan);
  plan.paths = query.folders;
  plan.filter = {query.include_names, query.exclude_names, query.exclude_names};
  plan.choice.subfolders = query.subfolders;
  plan.choice.here_by_default = false;
  plan.choice.patterns = preselecting_patterns(query.include_names);
  plan.choice.excluded_folders = query.exclude_names;
  plan.skip_binary = query.binary == BinaryFiles::kSkip;
  return plan;
}

}  // namespace zenfo::host::gui
