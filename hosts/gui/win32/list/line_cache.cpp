#include "gui/win32/list/line_cache.h"

#include <utility>

namespace zenfo::host::gui::win32 {
namespace {

// A match's number is below 2^17, because so many are listed of a file.
uint64_t key_of(const ResultTab& tab, ResultRow row) {
  return uint64_t{tab.serial()} << 48 | uint64_t{row.file} << 17 | row.match;
}

}  // namespace

const FoundLine* LineCache::find(const ResultTab& tab, ResultRow row) const {
  const auto found = lines_.find(key_of(tab, row));
  return found == lines_.end() ? nullptr : &found->second;
}

void LineCache::want(const ResultTab& tab, const std::vector<ResultRow>& rows) {
  std::vector<LineWish> wishes;
  std::unordered_map<uint64_t, bool> keys;
  bool any_new = false;
  for (const ResultRow row : rows) {
    const uint64_t key = key_of(tab, row);
    if (row.is_file() || lines_.contains(key)) continue;
    any_new |= !waited_.contains(key);
    keys[key] = true;
    wishes.push_back({key, tab.set().file(row.file).path,
                      tab.set().match(row.file, row.match)});
  }
  if (!any_new) return;  // The present wish covers them.
  waited_ = std::move(keys);
  reader_.want(std::move(wishes));
}

bool LineCache::take() {
  std::vector<FoundLine> found = reader_.take();
  if (lines_.size() + found.size() > kMost) lines_.clear();
  for (FoundLine& line : found) {
    waited_.erase(line.key);
    lines_[line.key] = std::move(line);
  }
  return !found.empty();
}

}  // namespace zenfo::host::gui::win32
