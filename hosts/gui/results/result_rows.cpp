#include "gui/results/result_rows.h"

#include <string>
#include <utility>

namespace zenfo::host::gui {
ResultRows::ResultRows(const ResultSet& set, ResultState state)
    : set_(set), state_(state), filter_("") {
  update();
}

bool ResultRows::is_listed(uint32_t file) const {
  return set_.file(file).state == state_ && !set_.file(file).removed;
}

bool ResultRows::belongs(uint32_t file) const {
  return is_listed(file) && filter_.takes(set_.file(file).path);
}

uint32_t ResultRows::rows_of(uint32_t file) const {
  return is_open(file) ? 1 + set_.file(file).listed : 1;
}

void ResultRows::append(uint32_t file) {
  places_[file] = static_cast<uint32_t>(order_.size());
  order_.push_back(file);
  sums_.append(rows_of(file));
}

void ResultRows::update() {
  if (removed_ != set_.removed()) {
    removed_ = set_.removed();
    const auto erased = std::erase_if(
        order_, [&](uint32_t file) { return set_.file(file).removed; });
    if (erased > 0) rebuild();
  }
  places_.resize(set_.count(), kNowhere);
  open_.append(set_.count() - open_.size(), opens_new_);
  for (; seen_ < set_.count(); ++seen_) {
    if (belongs(seen_)) append(seen_);
  }
}

void ResultRows::rebuild() {
  places_.assign(places_.size(), kNowhere);
  sums_.clear();
  for (uint32_t i = 0; i < order_.size(); ++i) {
    places_[order_[i]] = i;
    sums_.append(rows_of(order_[i]));
  }
}

ResultRow ResultRows::at(uint64_t row) const {
  const RowSums::Place place = sums_.find(row);
  const uint32_t file = order_[place.block];
  if (place.row == 0) return {file, ResultRow::kNoMatch};
  return {file, static_cast<uint32_t>(place.row - 1)};
}

std::optional<uint64_t> ResultRows::row_of(ResultRow row) const {
  if (row.file >= places_.size() || places_[row.file] == kNowhere) {
    return std::nullopt;
  }
  const uint64_t first = sums_.before(places_[row.file]);
  if (row.is_file()) return first;
  if (!is_open(row.file) || row.match >= set_.file(row.file).listed) {
    return std::nullopt;
  }
  return first + 1 + row.match;
}

void ResultRows::open(uint32_t file, bool on) {
  if (is_open(file) == on) return;
  open_.set(file, on);
  if (places_[file] == kNowhere) return;
  const int64_t rows = set_.file(file).listed;
  sums_.change(places_[file], on ? rows : -rows);
}

void ResultRows::open_all(bool on) {
  opens_new_ = on;
  open_.set_range(0, open_.size(), on);
  rebuild();
}

void ResultRows::sort(ResultSort sort) {
  wish_for_sort(sort);
  arrange_now();
}

void ResultRows::filter(std::string_view text) {
  wish_for_filter(text);
  arrange_now();
}

void ResultRows::wish_for_sort(ResultSort sort) {
  sort_ = sort;
  arranged_ = false;
}

void ResultRows::wish_for_filter(std::string_view text) {
  filter_ = PathFilter(text);
  arranged_ = false;
}

void ResultRows::arrange_now() {
  Arrangement all = arrangement();
  all.run();
  take(all);
}

Arrangement ResultRows::arrangement() const {
  Arrangement made(sort_, filter_, seen_);
  for (uint32_t file = 0; file < seen_; ++file) {
    if (is_listed(file)) made.add(set_, file);
  }
  return made;
}

// Files that came meanwhile go below.
void ResultRows::take(const Arrangement& arrangement) {
  if (arrangement.sort() != sort_ || arrangement.filter() != filter_) return;
  arranged_ = true;
  std::vector<uint32_t> order;
  order.reserve(arrangement.order().size());
  for (const uint32_t file : arrangement.order()) {
    if (!set_.file(file).removed) order.push_back(file);
  }
  for (uint32_t file = arrangement.seen(); file < seen_; ++file) {
    if (belongs(file)) order.push_back(file);
  }
  order_ = std::move(order);
  rebuild();
}

std::optional<uint64_t> ResultRows::find_name(std::string_view text,
                                              uint64_t from, bool stay) const {
  if (order_.empty() || text.empty()) return std::nullopt;
  const std::string beginning = folded(text);
  const size_t files = order_.size();
  size_t block = 0;
  if (from < count()) {
    const RowSums::Place place = sums_.find(from);
    block = stay && place.row == 0 ? place.block : place.block + 1;
  }
  for (size_t i = 0; i < files; ++i) {
    const size_t at = (block + i) % files;
    if (folded(set_.file(order_[at]).name()).starts_with(beginning)) {
      return sums_.before(at);
    }
  }
  return std::nullopt;
}

std::optional<ResultRow> ResultRows::next_match(ResultRow row) const {
  if (row.file >= places_.size() || places_[row.file] == kNowhere) {
    return std::nullopt;
  }
  const uint32_t next = row.is_file() ? 0 : row.match + 1;
  if (next < set_.file(row.file).listed) return ResultRow{row.file, next};
  for (size_t i = places_[row.file] + size_t{1}; i < order_.size(); ++i) {
    if (set_.file(order_[i]).listed > 0) return ResultRow{order_[i], 0};
  }
  return std::nullopt;
}

std::optional<ResultRow> ResultRows::previous_match(ResultRow row) const {
  if (row.file >= places_.size() || places_[row.file] == kNowhere) {
    return std::nullopt;
  }
  if (!row.is_file() && row.match > 0) {
    return ResultRow{row.file, row.match - 1};
  }
  for (size_t i = places_[row.file]; i-- > 0;) {
    const uint32_t listed = set_.file(order_[i]).listed;
    if (listed > 0) return ResultRow{order_[i], listed - 1};
  }
  return std::nullopt;
}

}  // namespace zenfo::host::gui
