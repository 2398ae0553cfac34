#include "gui/engine/engine_thread.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "gui/searched.h"
#include "shared/frame/failure.h"
#include "shared/system/stop.h"
#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

using test::Engine;

// Opens once and stays open.
class Gate {
 public:
  void open() {
    const std::lock_guard lock(mutex_);
    is_open_ = true;
    opened_.notify_all();
  }
  void wait() {
    std::unique_lock lock(mutex_);
    opened_.wait(lock, [&] { return is_open_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable opened_;
  bool is_open_ = false;
};

// Begins, and goes on until it is stopped.
class EndlessJob : public Job {
 public:
  explicit EndlessJob(Gate& begun) : begun_(begun) {}
  void run(Session&, Outbox& outbox) override {
    outbox.add(OtherFile{"/begun", ResultState::kNoMatch, ""});
    begun_.open();
    while (system::stop_status() == 0) std::this_thread::yield();
    throw Stopped{};
  }

 private:
  Gate& begun_;
};

class FailingJob : public Job {
 public:
  void run(Session&, Outbox&) override { throw Failure{"this", "is odd"}; }
};

class NamedJob : public Job {
 public:
  explicit NamedJob(std::string name) : name_(std::move(name)) {}
  void run(Session&, Outbox& outbox) override {
    outbox.add(OtherFile{name_, ResultState::kNoMatch, ""});
  }

 private:
  std::string name_;
};

TEST(EngineThread, RunsJobsInTheirOrder) {
  Engine engine;
  std::vector<JobId> ids;
  for (const char* name : {"a", "b", "c"}) {
    ids.push_back(engine.thread().start(std::make_unique<NamedJob>(name)));
  }
  engine.wait_for_ends(3);
  EXPECT_TRUE(engine.thread().idle());
  const std::vector<JobNews> news = engine.thread().take();
  ASSERT_EQ(news.size(), 3u);
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(news[i].job, ids[i]);
    ASSERT_EQ(news[i].others.size(), 1u);
    EXPECT_EQ(news[i].others[0].path, std::string(1, "abc"[i]));
    EXPECT_EQ(news[i].end->outcome, JobOutcome::kDone);
  }
}

TEST(EngineThread, StopsTheRunningJobOnly) {
  Engine engine;
  Gate begun;
  const JobId first =
      engine.thread().start(std::make_unique<EndlessJob>(begun));
  const JobId second = engine.thread().start(std::make_unique<NamedJob>("b"));
  begun.wait();
  EXPECT_FALSE(engine.thread().idle());
  engine.thread().stop(0);
  engine.thread().stop(second + 1);
  engine.thread().stop(first);
  engine.wait_for_ends(2);
  const std::vector<JobNews> news = engine.thread().take();
  ASSERT_EQ(news.size(), 2u);
  EXPECT_EQ(news[0].end->outcome, JobOutcome::kStopped);
  EXPECT_EQ(news[0].others.size(), 1u);
  EXPECT_EQ(news[1].end->outcome, JobOutcome::kDone);
}

TEST(EngineThread, AWaitingJobThatIsStoppedDoesNotBegin) {
  Engine engine;
  Gate begun;
  const JobId first =
      engine.thread().start(std::make_unique<EndlessJob>(begun));
  const JobId second = engine.thread().start(std::make_unique<NamedJob>("b"));
  begun.wait();
  engine.thread().stop(second);
  engine.thread().stop(first);
  engine.wait_for_ends(2);
  const std::vector<JobNews> news = engine.thread().take();
  ASSERT_EQ(news.size(), 2u);
  EXPECT_EQ(news[1].job, second);
  EXPECT_TRUE(news[1].others.empty());
  EXPECT_EQ(news[1].end->outcome, JobOutcome::kStopped);
}

TEST(EngineThread, EndsWithJobsRunningAndWaiting) {
  Gate begun;
  {
    Engine engine;
    engine.thread().start(std::make_unique<EndlessJob>(begun));
    engine.thread().start(std::make_unique<NamedJob>("b"));
    begun.wait();
  }
  EXPECT_EQ(system::stop_status(), 0);
  Engine next;
  next.thread().start(std::make_unique<NamedJob>("c"));
  next.wait_for_ends(1);
  EXPECT_EQ(next.thread().take()[0].end->outcome, JobOutcome::kDone);
}

TEST(EngineThread, StopAllStopsEverything) {
  Engine engine;
  Gate begun;
  engine.thread().start(std::make_unique<EndlessJob>(begun));
  engine.thread().start(std::make_unique<NamedJob>("b"));
  begun.wait();
  engine.thread().stop_all();
  engine.wait_for_ends(2);
  for (const JobNews& news : engine.thread().take()) {
    EXPECT_EQ(news.end->outcome, JobOutcome::kStopped);
  }
}

TEST(EngineThread, TellsWhyAJobFailed) {
  Engine engine;
  engine.thread().start(std::make_unique<FailingJob>());
  engine.wait_for_ends(1);
  const std::vector<JobNews> news = engine.thread().take();
  EXPECT_EQ(news[0].end->outcome, JobOutcome::kFailed);
  EXPECT_EQ(news[0].end->reason, "this: is odd");
}

// Stops itself before it searches.
class StoppedSearch : public Job {
 public:
  explicit StoppedSearch(const Query& query) : search_(query) {}
  void run(Session& session, Outbox& outbox) override {
    system::note_stop(1);
    search_.run(session, outbox);
  }

 private:
  SearchJob search_;
};

TEST(EngineThread, AStopEndsASearchBeforeItsFirstFile) {
  const test::TempFolder folder;
  folder.file("a", "tide");
  Query query;
  query.text = "tide";
  query.folders = {folder.path()};
  Engine engine;
  engine.thread().start(std::make_unique<StoppedSearch>(query));
  engine.thread().start(std::make_unique<SearchJob>(query));
  engine.wait_for_ends(2);
  const std::vector<JobNews> news = engine.thread().take();
  ASSERT_EQ(news.size(), 2u);
  EXPECT_EQ(news[0].end->outcome, JobOutcome::kStopped);
  EXPECT_TRUE(news[0].found.empty());
  EXPECT_EQ(news[1].end->outcome, JobOutcome::kDone);
  EXPECT_EQ(news[1].found.size(), 1u);
}

// What was found before the stop stays, and the next search is whole.
TEST(EngineThread, AStoppedSearchKeepsWhatItFound) {
  constexpr int kFiles = 300;
  const test::TempFolder folder;
  for (int i = 0; i < kFiles; ++i) {
    folder.file("f" + std::to_string(i), "tide tide");
  }
  Query query;
  query.text = "tide";
  query.folders = {folder.path()};
  Engine engine;
  const JobId job = engine.thread().start(std::make_unique<SearchJob>(query));
  // The first news with a match, and then the rest.
  std::vector<JobNews> all;
  for (bool found = false; !found;) {
    for (JobNews& news : engine.thread().take()) {
      found = found || !news.found.empty();
      all.push_back(std::move(news));
    }
    std::this_thread::yield();
  }
  engine.thread().stop(job);
  engine.wait_for_ends(1);
  for (JobNews& news : engine.thread().take()) all.push_back(std::move(news));
  const test::Searched searched = test::joined(std::move(all));
  ASSERT_TRUE(searched.end);
  EXPECT_EQ(searched.others.size(), 0u);
  // The stop may have come when all were found.
  EXPECT_LE(searched.found.size(), size_t{kFiles});
  EXPECT_GT(searched.found.size(), 0u);
  for (const FoundFile& file : searched.found) EXPECT_EQ(file.count, 2u);

  engine.thread().start(std::make_unique<SearchJob>(query));
  engine.wait_for_ends(1);
  EXPECT_EQ(test::joined(engine.thread().take()).found.size(), size_t{kFiles});
}

}  // namespace
}  // namespace zenfo::host::gui
