// Lines of matches in view, read by a thread. What is not there yet is asked
// for; a notice says that there is more.
#pragma once

#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

#include "gui/results/result_rows.h"
#include "gui/text/line_reader.h"
#include "gui/win32/list/result_tab.h"

namespace zenfo::host::gui::win32 {

class LineCache {
 public:
  explicit LineCache(LineReader::Notice notice) : reader_(std::move(notice)) {}

  // Null if the line was not read yet. Valid until the next call of take().
  const FoundLine* find(const ResultTab& tab, ResultRow row) const;
  // Asks for the lines of these matches that are missing.
  void want(const ResultTab& tab, const std::vector<ResultRow>& rows);
  // Takes what was read; true if there was anything.
  bool take();
  bool waiting() const { return !waited_.empty(); }

 private:
  static constexpr size_t kMost = 4000;

  LineReader reader_;
  std::unordered_map<uint64_t, FoundLine> lines_;
  std::unordered_map<uint64_t, bool> waited_;  // keys of the present wish
};

}  // namespace zenfo::host::gui::win32
