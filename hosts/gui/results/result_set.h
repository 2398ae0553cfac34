// The results of one search: files, their matches and which of them are chosen.
// Nothing in it touches the engine or the disk.
//
// Tested by tests/gui/results/result_set_test.cpp
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "gui/query/query.h"
#include "gui/results/match_store.h"
#include "gui/results/outbox.h"
#include "gui/results/result_file.h"

namespace zenfo::host::gui {

// Of the files that were not removed from the results.
struct ResultTotals {
  uint32_t files_found = 0;
  uint32_t files_chosen = 0;  // with any chosen match
  uint32_t files_without = 0;
  uint32_t files_not_searched = 0;
  uint64_t matches = 0;
  uint64_t listed = 0;
  uint64_t chosen = 0;

  bool operator==(const ResultTotals&) const = default;
};

class ResultSet {
 public:
  explicit ResultSet(Query query, MatchCaps caps = {});

  const Query& query() const { return query_; }
  const ResultTotals& totals() const { return totals_; }
  const JobProgress& progress() const { return progress_; }
  // No value while the search runs.
  const std::optional<JobEnd>& end() const { return end_; }

  // Takes what a job told. All matches are chosen at first.
  void add(JobNews news);

  uint32_t count() const { return static_cast<uint32_t>(files_.size()); }
  const ResultFile& file(uint32_t index) const { return files_[index]; }
  const MatchStore& matches() const { return matches_; }
  // The match with this number among the listed ones of a file.
  Match match(uint32_t file, uint32_t number) const {
    return matches_.at(files_[file].first + number);
  }
  // Of a file, the listed ones.
  std::vector<Match> matches_of(uint32_t file) const {
    return matches_.range(files_[file].first, files_[file].listed);
  }
  // Why a file was not searched.
  const std::string& reason(uint32_t file) const {
    return reasons_[files_[file].reason];
  }
  // The number of files that were removed.
  uint32_t removed() const { return removed_; }

  bool is_chosen(uint32_t file, uint32_t number) const {
    return matches_.is_chosen(files_[file].first + number);
  }
  void choose(uint32_t file, uint32_t number, bool on);
  // Also the matches that are not listed.
  void choose_file(uint32_t file, bool on);
  void choose_all(bool on);
  void invert_choice();
  // Takes the file out of the results.
  void remove(uint32_t file);

  // The memory in use, the allocator's own not counted.
  size_t bytes() const;

 private:
  void add_found(FoundFile&& file);
  void add_other(OtherFile&& file);
  uint32_t reason_number(const std::string& reason);
  void count_in(const ResultFile& file);
  void count_out(const ResultFile& file);

  Query query_;
  MatchCaps caps_;
  // Other threads read paths while the list grows, so they must not move.
  std::deque<ResultFile> files_;
  MatchStore matches_;
  std::deque<std::string> reasons_ = {""};
  std::unordered_map<std::string, uint32_t> reason_numbers_;
  ResultTotals totals_;
  JobProgress progress_;
  std::optional<JobEnd> end_;
  uint32_t removed_ = 0;
};

}  // namespace zenfo::host::gui
