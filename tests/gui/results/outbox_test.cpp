#include "gui/results/outbox.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace zenfo::host::gui {
namespace {

std::basic_string<ZenfoWideChar> wide(const char* text) {
  return {text, text + std::string(text).size()};
}

TEST(Outbox, TellsWhatCameSinceTheLastFetch) {
  Outbox outbox;
  EXPECT_TRUE(outbox.take().empty());
  outbox.begin(4);
  outbox.set_phase(JobPhase::kSearching);
  outbox.set_files(3);
  outbox.begin_file(wide("/a").c_str());
  outbox.add(FoundFile{"/a", 1, 2, 1, {{5, 6}}});
  std::vector<JobNews> news = outbox.take();
  ASSERT_EQ(news.size(), 1u);
  EXPECT_EQ(news[0].job, 4u);
  ASSERT_EQ(news[0].found.size(), 1u);
  EXPECT_EQ(news[0].found[0].path, "/a");
  EXPECT_EQ(news[0].progress.phase, JobPhase::kSearching);
  EXPECT_EQ(news[0].progress.files, 3u);
  EXPECT_EQ(news[0].progress.files_done, 1u);
  EXPECT_EQ(news[0].progress.path, "/a");
  EXPECT_TRUE(outbox.take().empty());

  outbox.begin_file(wide("/b").c_str());
  news = outbox.take();
  ASSERT_EQ(news.size(), 1u);
  EXPECT_TRUE(news[0].found.empty());
  EXPECT_EQ(news[0].progress.path, "/b");
  EXPECT_EQ(news[0].progress.files_done, 2u);
}

TEST(Outbox, KeepsJobsApart) {
  Outbox outbox;
  outbox.begin(1);
  outbox.add(OtherFile{"/x", ResultState::kNotSearched, "binary"});
  outbox.end({JobOutcome::kStopped, "", 5});
  outbox.begin(2);
  outbox.end({JobOutcome::kFailed, "why", 6});
  const std::vector<JobNews> news = outbox.take();
  ASSERT_EQ(news.size(), 2u);
  EXPECT_EQ(news[0].job, 1u);
  EXPECT_EQ(news[0].others.size(), 1u);
  EXPECT_EQ(news[0].end->outcome, JobOutcome::kStopped);
  EXPECT_EQ(news[1].job, 2u);
  EXPECT_EQ(news[1].progress.files_done, 0u);
  EXPECT_EQ(news[1].end->reason, "why");
  EXPECT_TRUE(outbox.take().empty());
}

TEST(Outbox, MayBeReadByAnotherThread) {
  constexpr uint32_t kCount = 2000;
  Outbox outbox;
  std::thread teller([&] {
    outbox.begin(1);
    for (uint32_t i = 0; i < kCount; ++i) {
      outbox.begin_file(wide("/f").c_str());
      outbox.add(FoundFile{"/f", 0, 0, i, {}});
    }
    outbox.end({});
  });
  uint32_t next = 0;
  for (bool ended = false; !ended;) {
    for (const JobNews& news : outbox.take()) {
      for (const FoundFile& file : news.found) EXPECT_EQ(file.count, next++);
      ended = news.end.has_value();
    }
    std::this_thread::yield();
  }
  teller.join();
  EXPECT_EQ(next, kCount);
}

}  // namespace
}  // namespace zenfo::host::gui
