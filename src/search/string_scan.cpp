#include "search/string_scan.h"

#include <algorithm>

namespace zenfo {
namespace {

TextSet make_set(const std::vector<StringScan::Placed>& strings,
                 bool case_flag) {
  std::vector<std::string_view> texts;
  texts.reserve(strings.size());
  for (const auto& string : strings) texts.emplace_back(string.text);
  return {texts, case_flag};
}

}  // namespace

StringScan::StringScan(const std::vector<Placed>& strings, bool case_flag,
                       size_t most_hits)
    : set_(make_set(strings, case_flag)),
      most_hits_(most_hits),
      found_(set_.size()) {
  if (strings.empty()) return;
  last_place_ = strings.back().place;
  number_at_.assign(size_t{last_place_} + 1, TextSet::kNoNumber);
  places_begin_.assign(set_.size() + 1, 0);
  for (size_t i = 0; i < strings.size(); ++i) {
    const uint32_t number = set_.number_of(i);
    number_at_[strings[i].place] = number;
    if (number == TextSet::kNoNumber) {
      always_due_.push_back(strings[i].place);
    } else {
      ++places_begin_[number + 1];
    }
  }
  for (size_t i = 0; i < set_.size(); ++i) {
    places_begin_[i + 1] += places_begin_[i];
  }
  places_.resize(places_begin_.back());
  std::vector<uint32_t> next(places_begin_.begin(), places_begin_.end() - 1);
  for (const Placed& string : strings) {
    const uint32_t number = number_at_[string.place];
    if (number != TextSet::kNoNumber) places_[next[number]++] = string.place;
  }
}

void StringScan::forget() {
  for (const uint32_t number : present_) found_[number] = {};
  present_.clear();
  hits_.clear();
  offsets_.clear();
  due_.clear();
}

bool StringScan::look_through(std::string_view text) {
  constexpr size_t kAtOnce = 4096;
  forget();
  if (text.size() > UINT32_MAX) return false;
  std::vector<TextSet::Hit> hits;
  for (size_t at = 0; at < text.size();) {
    hits.clear();
    at = set_.find(text.data(), at, text.size(), text.size(), hits, kAtOnce);
    keep(hits);
  }
  order_by_text();
  list_due();
  return true;
}

void StringScan::keep(const std::vector<TextSet::Hit>& hits) {
  for (const TextSet::Hit& hit : hits) {
    Found& found = found_[hit.number];
    if (found.alone) continue;
    if (found.count++ == 0) present_.push_back(hit.number);
    hits_.push_back({static_cast<uint32_t>(hit.offset), hit.number});
  }
  if (hits_.size() > most_hits_) drop_frequent();
}

// Leaves less than half of the hits: those of the texts that have less than
// half the average.
void StringScan::drop_frequent() {
  size_t kept = 0;
  for (const uint32_t number : present_) kept += !found_[number].alone;
  for (const uint32_t number : present_) {
    Found& found = found_[number];
    if (2 * kept * found.count >= hits_.size()) found.alone = true;
  }
  std::erase_if(hits_,
                [&](const Hit& hit) { return found_[hit.number].alone; });
}

// The hits are in the order of the text.
void StringScan::order_by_text() {
  uint32_t begin = 0;
  for (const uint32_t number : present_) {
    Found& found = found_[number];
    if (found.alone) continue;
    found.begin = begin;
    begin += found.count;
    found.count = 0;
  }
  offsets_.resize(begin);
  for (const Hit& hit : hits_) {
    Found& found = found_[hit.number];
    offsets_[found.begin + found.count++] = hit.offset;
  }
}

void StringScan::list_due() {
  due_ = always_due_;
  for (const uint32_t number : present_) {
    due_.insert(due_.end(), places_.begin() + places_begin_[number],
                places_.begin() + places_begin_[number + 1]);
  }
  if (last_place_ != kNoPlace) due_.push_back(last_place_);
  std::sort(due_.begin(), due_.end());
}

uint32_t StringScan::next_due(uint32_t place) const {
  const auto at = std::lower_bound(due_.begin(), due_.end(), place);
  return at != due_.end() ? *at : kNoPlace;
}

std::optional<std::span<const uint32_t>> StringScan::offsets(
    uint32_t place) const {
  if (place >= number_at_.size()) return std::nullopt;
  const uint32_t number = number_at_[place];
  if (number == TextSet::kNoNumber) return std::nullopt;
  const Found& found = found_[number];
  if (found.alone) return std::nullopt;
  return std::span(offsets_).subspan(found.begin, found.count);
}

}  // namespace zenfo
