#include "gui/query/area_kinds.h"

#include <algorithm>

#include "gui/query/area_scanners.h"

namespace zenfo::host::gui {
namespace {

constexpr AreaKind kKinds[] = {
    {"code_comments", Text::kCodeComments, code_comments},
    {"strings", Text::kStringsInQuotes, code_strings},
    {"markup_tags", Text::kMarkupTags, markup_tags},
    {"shell_comments", Text::kShellComments, shell_comments},
};

}  // namespace

std::span<const AreaKind> area_kinds() { return kKinds; }

const AreaKind* find_area_kind(std::string_view name) {
  for (const AreaKind& kind : kKinds) {
    if (kind.name == name) return &kind;
  }
  return nullptr;
}

std::vector<Match> left_out(std::vector<Match> areas, bool inside) {
  if (!inside) return areas;
  std::vector<Match> parts;
  uint32_t end = 0;
  for (const Match& area : areas) {
    if (area.offset > end) parts.push_back({end, area.offset - end});
    end = static_cast<uint32_t>(std::min<size_t>(end_of(area), UINT32_MAX));
  }
  if (end < UINT32_MAX) parts.push_back({end, UINT32_MAX - end});
  return parts;
}

bool is_wanted(const Match& match, std::span<const Match> areas, bool inside) {
  // The first area that ends behind the match's start.
  const auto area = std::upper_bound(
      areas.begin(), areas.end(), size_t{match.offset},
      [](size_t offset, const Match& a) { return offset < end_of(a); });
  if (area == areas.end()) return !inside;
  if (inside) {
    return area->offset <= match.offset && end_of(match) <= end_of(*area);
  }
  return end_of(match) <= area->offset;
}

}  // namespace zenfo::host::gui
