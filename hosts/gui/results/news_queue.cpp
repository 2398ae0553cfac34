#include "gui/results/news_queue.h"

#include <utility>

namespace zenfo::host::gui {

void NewsQueue::add(std::vector<JobNews> news) {
  for (JobNews& one : news) news_.push_back(std::move(one));
}

JobNews NewsQueue::next() {
  JobNews& first = news_.front();
  JobNews part;
  part.job = first.job;
  part.progress = first.progress;
  uint64_t matches = 0;
  for (; found_ < first.found.size(); ++found_) {
    if (part.found.size() == kFiles || matches >= kMatches) return part;
    matches += first.found[found_].matches.size();
    part.found.push_back(std::move(first.found[found_]));
  }
  for (; others_ < first.others.size(); ++others_) {
    if (part.found.size() + part.others.size() >= kFiles) return part;
    part.others.push_back(std::move(first.others[others_]));
  }
  part.end = std::move(first.end);
  news_.pop_front();
  found_ = others_ = 0;
  return part;
}

}  // namespace zenfo::host::gui
