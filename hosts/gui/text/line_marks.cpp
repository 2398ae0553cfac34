#include "gui/text/line_marks.h"

#include <algorithm>
#include <string_view>

#include "shared/system/byte_marks.h"

namespace zenfo::host::gui {
namespace {

uint64_t line_ends_in(std::string_view text) {
  size_t at = 0;
  const uint64_t ends = count_marks(text, &at, text.size()).line_ends;
  text.remove_prefix(at);
  return ends +
         static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

std::optional<uint64_t> LineMarks::number_at(FilePart& file, uint64_t offset,
                                             const Stop& stop) {
  while (!knows(offset)) {
    if (stop()) return std::nullopt;
    const uint64_t start = (before_.size() - 1) * kStep;
    const std::string_view part = file.read(start, kStep);
    if (part.size() < kStep) return std::nullopt;
    before_.push_back(before_.back() + line_ends_in(part));
  }
  const uint64_t mark = offset / kStep;
  const auto rest = static_cast<size_t>(offset % kStep);
  const std::string_view part = file.read(mark * kStep, rest);
  if (part.size() < rest) return std::nullopt;
  return before_[mark] + line_ends_in(part) + 1;
}

LineMarks::Mark LineMarks::mark_before_line(uint64_t number) const {
  const uint64_t line_ends = number - 1;  // before the line
  // The last MB before which fewer lines end.
  auto place = std::lower_bound(before_.begin(), before_.end(), line_ends);
  if (place != before_.begin()) --place;
  return {static_cast<uint64_t>(place - before_.begin()) * kStep, *place};
}

}  // namespace zenfo::host::gui
