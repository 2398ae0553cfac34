#include "gui/results/status_text.h"

#include <algorithm>

#include "gui/words/strings.h"
#include "gui/words/unicode.h"

namespace zenfo::host::gui {
namespace {

constexpr size_t kLongestTitle = 24;  // bytes of the text

std::string seconds_text(uint64_t milliseconds) {
  const uint64_t tenths = (milliseconds + 50) / 100;
  return format(Text::kSeconds,
                {grouped(tenths / 10) + '.' + std::to_string(tenths % 10)});
}

std::string progress_line(const ResultSet& set) {
  const JobProgress& progress = set.progress();
  switch (progress.phase) {
    case JobPhase::kListing:
      return plain_text(Text::kListing);
    case JobPhase::kChecking:
      return plain_text(Text::kChecking);
    case JobPhase::kSearching:
      return format(
          Text::kSearching,
          {grouped(progress.files_done), counted_files(progress.files),
           counted_matches(set.totals().matches),
           counted_files(set.totals().files_found)});
    case JobPhase::kCollecting:
      break;
  }
  return plain_text(Text::kCollecting);
}

std::string chosen_line(const ResultTotals& totals) {
  return format(
      Text::kChosen,
      {grouped(totals.chosen), counted_matches(totals.matches),
       grouped(totals.files_chosen), counted_files(totals.files_found)});
}

}  // namespace

std::string tab_title(const ResultSet& set) {
  std::string shown = set.query().text;
  std::replace_if(
      shown.begin(), shown.end(),
      [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  if (shown.size() > kLongestTitle) {
    shown = shown.substr(0, whole_until(shown, kLongestTitle)) + "...";
  }
  const ResultTotals& totals = set.totals();
  return format(Text::kTabTitle,
                {shown, grouped(totals.matches), grouped(totals.files_found)});
}

std::string status_line(const ResultSet& set) {
  if (!set.end()) return progress_line(set);
  const ResultTotals& totals = set.totals();
  const JobEnd& end = *set.end();
  if (end.outcome == JobOutcome::kFailed) {
    return format(Text::kFailed, {end.reason});
  }
  std::string line =
      totals.files_found > 0
          ? chosen_line(totals)
          : format(Text::kNothingFound, {counted_files(totals.files_without)});
  const auto add = [&](std::string_view part) {
    line += " - ";
    line += part;
  };
  if (totals.listed < totals.matches) {
    add(format(Text::kListedOnly, {grouped(totals.listed)}));
  }
  add(seconds_text(end.milliseconds));
  if (totals.files_not_searched > 0) {
    add(format(Text::kNotSearched, {grouped(totals.files_not_searched)}));
  }
  if (end.outcome == JobOutcome::kStopped) add(text(Text::kStopped));
  return line;
}

}  // namespace zenfo::host::gui
