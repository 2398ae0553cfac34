#include "gui/results/result_set.h"

#include <algorithm>
#include <utility>

namespace zenfo::host::gui {

ResultSet::ResultSet(Query query, MatchCaps caps)
    : query_(std::move(query)), caps_(caps) {}

void ResultSet::add(JobNews news) {
  for (FoundFile& file : news.found) add_found(std::move(file));
  for (OtherFile& file : news.others) add_other(std::move(file));
  progress_ = std::move(news.progress);
  if (news.end) end_ = std::move(news.end);
}

void ResultSet::add_found(FoundFile&& found) {
  const size_t room = caps_.in_all - std::min(caps_.in_all, matches_.size());
  const size_t most = std::min<size_t>({room, caps_.of_file, found.count});
  const size_t listed = std::min(found.matches.size(), most);
  ResultFile file;
  file.path = std::move(found.path);
  file.size = found.size;
  file.modified = found.modified;
  file.count = found.count;
  file.first = matches_.size();
  file.listed = file.chosen = static_cast<uint32_t>(listed);
  matches_.append(std::span(found.matches).first(listed));
  count_in(file);
  files_.push_back(std::move(file));
}

void ResultSet::add_other(OtherFile&& other) {
  ResultFile file;
  file.path = std::move(other.path);
  file.state = other.state;
  file.reason = reason_number(other.reason);
  count_in(file);
  files_.push_back(std::move(file));
}

// Few different reasons stand for very many files.
uint32_t ResultSet::reason_number(const std::string& reason) {
  if (reason.empty()) return 0;
  const auto [place, is_new] =
      reason_numbers_.emplace(reason, static_cast<uint32_t>(reasons_.size()));
  if (is_new) reasons_.push_back(reason);
  return place->second;
}

void ResultSet::count_in(const ResultFile& file) {
  switch (file.state) {
    case ResultState::kFound:
      ++totals_.files_found;
      totals_.files_chosen += file.all_chosen() > 0;
      totals_.matches += file.count;
      totals_.listed += file.listed;
      totals_.chosen += file.all_chosen();
      return;
    case ResultState::kNoMatch:
      ++totals_.files_without;
      return;
    case ResultState::kNotSearched:
      ++totals_.files_not_searched;
      return;
  }
}

void ResultSet::count_out(const ResultFile& file) {
  switch (file.state) {
    case ResultState::kFound:
      --totals_.files_found;
      totals_.files_chosen -= file.all_chosen() > 0;
      totals_.matches -= file.count;
      totals_.listed -= file.listed;
      totals_.chosen -= file.all_chosen();
      return;
    case ResultState::kNoMatch:
      --totals_.files_without;
      return;
    case ResultState::kNotSearched:
      --totals_.files_not_searched;
      return;
  }
}

void ResultSet::choose(uint32_t index, uint32_t number, bool on) {
  ResultFile& file = files_[index];
  if (file.removed || is_chosen(index, number) == on) return;
  count_out(file);
  matches_.choose(file.first + number, 1, on);
  file.chosen += on ? 1 : -1;
  count_in(file);
}

void ResultSet::choose_file(uint32_t index, bool on) {
  ResultFile& file = files_[index];
  if (file.removed || file.state != ResultState::kFound) return;
  count_out(file);
  matches_.choose(file.first, file.listed, on);
  file.chosen = on ? file.listed : 0;
  file.rest_chosen = on;
  count_in(file);
}

void ResultSet::choose_all(bool on) {
  for (uint32_t i = 0; i < count(); ++i) choose_file(i, on);
}

void ResultSet::invert_choice() {
  for (uint32_t i = 0; i < count(); ++i) {
    ResultFile& file = files_[i];
    if (file.removed || file.state != ResultState::kFound) continue;
    count_out(file);
    matches_.invert(file.first, file.listed);
    file.chosen = file.listed - file.chosen;
    file.rest_chosen = !file.rest_chosen;
    count_in(file);
  }
}

void ResultSet::remove(uint32_t index) {
  ResultFile& file = files_[index];
  if (file.removed) return;
  count_out(file);
  file.removed = true;
  ++removed_;
}

size_t ResultSet::bytes() const {
  constexpr size_t kInside = 15;  // bytes that a text holds without more memory
  size_t bytes = matches_.bytes() + files_.size() * sizeof(ResultFile);
  for (const ResultFile& file : files_) {
    if (file.path.capacity() > kInside) bytes += file.path.capacity() + 1;
  }
  return bytes;
}

}  // namespace zenfo::host::gui
