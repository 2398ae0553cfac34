#include "gui/engine/display_groups.h"

#include <algorithm>

#include "shared/session/search.h"

namespace zenfo::host::gui {

DisplayGroups::DisplayGroups(const std::vector<Match>& areas, bool inside) {
  size_t end = 0;
  for (const Match& area : areas) {
    if (!inside) marked_.push_back(area.offset);
    if (inside && area.offset > end) {
      marked_.push_back(static_cast<uint32_t>(end));
    }
    end = end_of(area);
  }
}

// What is marked and begins before the match comes before it.
uint32_t DisplayGroups::group_of(uint32_t match, uint32_t offset) const {
  const auto before = std::lower_bound(marked_.begin(), marked_.end(), offset) -
                      marked_.begin();
  return match + static_cast<uint32_t>(before);
}

std::optional<uint32_t> DisplayGroups::group_at(uint32_t offset) const {
  uint32_t first = 0;
  uint32_t last = matches_in_hand();
  while (first < last) {
    const uint32_t middle = first + (last - first) / 2;
    const uint32_t found = match_in_hand(middle).offset;
    if (found == offset) return group_of(middle, offset);
    if (found < offset) {
      first = middle + 1;
    } else {
      last = middle;
    }
  }
  return std::nullopt;
}

std::optional<uint32_t> DisplayGroups::offset_of(uint32_t group) const {
  uint32_t first = 0;
  uint32_t last = matches_in_hand();
  while (first < last) {
    const uint32_t middle = first + (last - first) / 2;
    const uint32_t offset = match_in_hand(middle).offset;
    const uint32_t found = group_of(middle, offset);
    if (found == group) return offset;
    if (found < group) {
      first = middle + 1;
    } else {
      last = middle;
    }
  }
  return std::nullopt;
}

}  // namespace zenfo::host::gui
