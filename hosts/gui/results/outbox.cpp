#include "gui/results/outbox.h"

#include <utility>

#include "gui/words/unicode.h"

namespace zenfo::host::gui {

// The news of the present job; to be called under the lock.
JobNews& Outbox::last() {
  changed_ = true;
  if (news_.empty() || news_.back().job != job_) {
    news_.emplace_back().job = job_;
  }
  return news_.back();
}

void Outbox::begin(JobId job) {
  const std::lock_guard lock(mutex_);
  job_ = job;
  progress_ = {};
  path_.clear();
  last();
}

void Outbox::add(FoundFile file) {
  const std::lock_guard lock(mutex_);
  last().found.push_back(std::move(file));
}

void Outbox::add(OtherFile file) {
  const std::lock_guard lock(mutex_);
  last().others.push_back(std::move(file));
}

void Outbox::set_phase(JobPhase phase) {
  const std::lock_guard lock(mutex_);
  progress_.phase = phase;
  changed_ = true;
}

void Outbox::set_files(uint32_t files) {
  const std::lock_guard lock(mutex_);
  progress_.files = files;
  changed_ = true;
}

void Outbox::begin_file(const ZenfoWideChar* path) {
  const std::lock_guard lock(mutex_);
  path_.clear();
  for (; *path != 0; ++path) path_ += static_cast<char16_t>(*path);
  ++progress_.files_done;
  changed_ = true;
}

void Outbox::end(JobEnd end) {
  const std::lock_guard lock(mutex_);
  JobNews& news = last();
  progress_.path = to_utf8(path_);
  news.progress = progress_;
  news.end = std::move(end);
  job_ = 0;
}

std::vector<JobNews> Outbox::take() {
  const std::lock_guard lock(mutex_);
  if (!std::exchange(changed_, false)) return {};
  if (job_ != 0) {
    progress_.path = to_utf8(path_);
    last().progress = progress_;
    changed_ = false;
  }
  return std::exchange(news_, {});
}

}  // namespace zenfo::host::gui
