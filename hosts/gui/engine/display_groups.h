// Which group of the library's display is a match: groups count areas too.
//
// The matches are asked for in the library, so group_at() and offset_of() are
// for the time of the question.
//
// Tested by tests/gui/engine/display_job_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "shared/text/found_text.h"

namespace zenfo::host::gui {

class DisplayGroups {
 public:
  DisplayGroups() = default;
  // The areas of the file, in order; `inside` if what lies outside them is
  // marked.
  DisplayGroups(const std::vector<Match>& areas, bool inside);

  // The group of the match at an offset.
  std::optional<uint32_t> group_at(uint32_t offset) const;
  // The offset of a match.
  std::optional<uint32_t> offset_of(uint32_t group) const;

 private:
  uint32_t group_of(uint32_t match, uint32_t offset) const;

  std::vector<uint32_t> marked_;  // starts of what is marked beside matches
};

}  // namespace zenfo::host::gui
