#include "gui/results/result_file.h"

#include "shared/system/system.h"

namespace zenfo::host::gui {

std::string_view ResultFile::name() const {
  const std::string_view whole = path;
  return whole.substr(whole.rfind(system::kSeparator) + 1);
}

std::string_view ResultFile::folder() const {
  const std::string_view whole = path;
  const size_t last = whole.rfind(system::kSeparator);
  if (last == std::string_view::npos) return "";
  const bool root = last == system::drive_length(whole);
  return whole.substr(0, root ? last + 1 : last);
}

std::string_view ResultFile::extension() const {
  const std::string_view last = name();
  const size_t dot = last.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return "";
  return last.substr(dot + 1);
}

Choice ResultFile::choice() const {
  const uint32_t all = all_chosen();
  if (all == 0) return Choice::kNone;
  return all == count ? Choice::kAll : Choice::kSome;
}

}  // namespace zenfo::host::gui
