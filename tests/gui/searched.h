// Searches of tests, run by the real engine on this thread.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gui/engine/engine_thread.h"
#include "gui/engine/search_job.h"

namespace zenfo::test {

struct Searched {
  std::vector<host::gui::FoundFile> found;
  std::vector<host::gui::OtherFile> others;
  host::gui::JobProgress progress;
  std::optional<host::gui::JobEnd> end;

  // "NAME OFFSET OFFSET...", sorted; names below the folder.
  std::vector<std::string> found_in(const std::string& folder) const {
    std::vector<std::string> all;
    for (const host::gui::FoundFile& file : found) {
      std::string text = file.path.substr(folder.size() + 1);
      for (const host::Match& match : file.matches) {
        text += ' ' + std::to_string(match.offset);
      }
      all.push_back(std::move(text));
    }
    std::sort(all.begin(), all.end());
    return all;
  }

  // "NAME: REASON", sorted.
  std::vector<std::string> others_in(const std::string& folder,
                                     host::gui::ResultState state) const {
    std::vector<std::string> all;
    for (const host::gui::OtherFile& file : others) {
      if (file.state != state) continue;
      const bool below =
          file.path.starts_with(folder) && file.path.size() > folder.size();
      std::string name =
          below ? file.path.substr(folder.size() + 1) : file.path;
      if (!file.reason.empty()) name += ": " + file.reason;
      all.push_back(std::move(name));
    }
    std::sort(all.begin(), all.end());
    return all;
  }
};

// An engine thread whose notices can be waited for.
class Engine {
 public:
  host::gui::EngineThread& thread() { return thread_; }

  // Waits until this many jobs have ended since the last call.
  void wait_for_ends(int count) {
    std::unique_lock lock(mutex_);
    noticed_.wait(lock, [&] { return ends_ >= count; });
    ends_ -= count;
  }
  // Counts as one more that has ended.
  void notice() {
    const std::lock_guard lock(mutex_);
    ++ends_;
    noticed_.notify_one();
  }

 private:
  std::mutex mutex_;
  std::condition_variable noticed_;
  int ends_ = 0;
  host::gui::EngineThread thread_{[this] { notice(); }};
};

inline Searched joined(std::vector<host::gui::JobNews> all) {
  Searched searched;
  for (host::gui::JobNews& news : all) {
    for (auto& file : news.found) searched.found.push_back(std::move(file));
    for (auto& file : news.others) searched.others.push_back(std::move(file));
    searched.progress = news.progress;
    if (news.end) searched.end = news.end;
  }
  return searched;
}

inline Searched search(const host::gui::Query& query,
                       host::gui::MatchCaps caps = {}) {
  Engine engine;
  engine.thread().start(std::make_unique<host::gui::SearchJob>(query, caps));
  engine.wait_for_ends(1);
  return joined(engine.thread().take());
}

}  // namespace zenfo::test
