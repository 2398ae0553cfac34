// News of jobs in small parts, so that taking one is soon done however much a
// job has told.
//
// Tested by tests/gui/results/news_queue_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "gui/results/outbox.h"

namespace zenfo::host::gui {

class NewsQueue {
 public:
  // The most of one part. A file counts with all its matches, so a part may
  // have one file more than its matches allow.
  static constexpr size_t kFiles = 2000;
  static constexpr uint64_t kMatches = 50'000;

  void add(std::vector<JobNews> news);
  bool empty() const { return news_.empty(); }
  // The next part; must not be called while it is empty. A job's end comes with
  // the last one.
  JobNews next();

 private:
  std::deque<JobNews> news_;
  size_t found_ = 0;   // files of the first news that are taken
  size_t others_ = 0;  // likewise
};

}  // namespace zenfo::host::gui
