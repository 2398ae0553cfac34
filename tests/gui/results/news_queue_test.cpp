#include "gui/results/news_queue.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "gui/made_results.h"

namespace zenfo::host::gui {
namespace {

std::vector<JobNews> news_with(size_t found, uint32_t matches, size_t others) {
  JobNews news;
  news.job = 3;
  for (size_t i = 0; i < found; ++i) {
    news.found.push_back(test::found_file("/" + std::to_string(i), matches));
  }
  for (size_t i = 0; i < others; ++i) {
    news.others.push_back({"/other", ResultState::kNoMatch, ""});
  }
  news.progress.files = 9;
  news.end = JobEnd{JobOutcome::kStopped, "", 5};
  std::vector<JobNews> all;
  all.push_back(std::move(news));
  return all;
}

TEST(NewsQueue, FewNewsComeInOnePart) {
  NewsQueue queue;
  EXPECT_TRUE(queue.empty());
  queue.add(news_with(2, 3, 1));
  const JobNews part = queue.next();
  EXPECT_EQ(part.job, 3u);
  EXPECT_EQ(part.found.size(), 2u);
  EXPECT_EQ(part.others.size(), 1u);
  EXPECT_EQ(part.progress.files, 9u);
  ASSERT_TRUE(part.end.has_value());
  EXPECT_EQ(part.end->milliseconds, 5u);
  EXPECT_TRUE(queue.empty());
}

TEST(NewsQueue, ManyFilesComeInPartsWithTheEndInTheLastOne) {
  NewsQueue queue;
  queue.add(news_with(10'000, 1, 6000));
  queue.add(news_with(1, 1, 0));
  size_t found = 0;
  size_t others = 0;
  int parts = 0;
  for (bool ended = false; !ended; ++parts) {
    const JobNews part = queue.next();
    EXPECT_LE(part.found.size() + part.others.size(), NewsQueue::kFiles);
    EXPECT_EQ(part.progress.files, 9u);
    for (const FoundFile& file : part.found) {
      EXPECT_EQ(file.path, test::own_path("/" + std::to_string(found++)));
    }
    others += part.others.size();
    ended = part.end.has_value();
  }
  EXPECT_EQ(parts, 8);
  EXPECT_EQ(found, 10'000u);
  EXPECT_EQ(others, 6000u);
  EXPECT_FALSE(queue.empty());
  EXPECT_EQ(queue.next().found.size(), 1u);
  EXPECT_TRUE(queue.empty());
}

TEST(NewsQueue, AFileComesWithAllItsMatches) {
  constexpr auto kMost = static_cast<uint32_t>(NewsQueue::kMatches);
  NewsQueue queue;
  queue.add(news_with(3, kMost, 0));
  for (int part = 0; part < 3; ++part) {
    const JobNews news = queue.next();
    ASSERT_EQ(news.found.size(), 1u);
    EXPECT_EQ(news.found[0].matches.size(), kMost);
    EXPECT_EQ(news.end.has_value(), part == 2);
  }
  EXPECT_TRUE(queue.empty());
}

}  // namespace
}  // namespace zenfo::host::gui
