#include "gui/text/line_reader.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

// Waits for notices instead of for time.
class Reader {
 public:
  void want(std::vector<LineWish> wishes) { reader_.want(std::move(wishes)); }

  std::vector<FoundLine> wait_for(size_t count) {
    std::vector<FoundLine> lines;
    while (lines.size() < count) {
      std::unique_lock lock(mutex_);
      noticed_.wait(lock, [&] { return notices_ > 0; });
      notices_ = 0;
      lock.unlock();
      for (FoundLine& line : reader_.take()) lines.push_back(std::move(line));
    }
    return lines;
  }

  // Until the line with this key is there.
  std::vector<FoundLine> wait_until(uint64_t key) {
    std::vector<FoundLine> lines;
    while (lines.empty() || lines.back().key != key) {
      for (FoundLine& line : wait_for(1)) lines.push_back(std::move(line));
    }
    return lines;
  }

 private:
  void notice() {
    const std::lock_guard lock(mutex_);
    ++notices_;
    noticed_.notify_one();
  }

  std::mutex mutex_;
  std::condition_variable noticed_;
  int notices_ = 0;
  LineReader reader_{[this] { notice(); }};
};

TEST(LineReader, ReadsLinesAndTheirNumbers) {
  const test::TempFolder folder;
  const std::string a = folder.file("a", "one\ntwo\nthree\n");
  const std::string b = folder.file("b", "x");
  Reader reader;
  reader.want({{7, a, {4, 3}}, {8, a, {0, 1}}, {9, b, {0, 1}}});
  const std::vector<FoundLine> lines = reader.wait_for(3);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].key, 7u);
  EXPECT_TRUE(lines[0].read);
  EXPECT_EQ(lines[0].number, 2u);
  EXPECT_EQ(lines[0].line.bytes, "two");
  EXPECT_EQ(lines[1].number, 1u);
  EXPECT_EQ(lines[2].line.bytes, "x");
}

TEST(LineReader, SaysWhatCannotBeRead) {
  const test::TempFolder folder;
  const std::string a = folder.file("a", "one");
  Reader reader;
  reader.want(
      {{1, folder.path("gone"), {0, 1}}, {2, a, {3, 1}}, {3, a, {2, 1}}});
  const std::vector<FoundLine> lines = reader.wait_for(3);
  EXPECT_FALSE(lines[0].read);
  EXPECT_FALSE(lines[1].read);
  EXPECT_TRUE(lines[2].read);
}

TEST(LineReader, SeesThatAFileHasChanged) {
  const test::TempFolder folder;
  // So far in the file that the number comes from a mark.
  constexpr uint32_t kFar = 1'500'000;
  const std::string a = folder.file("a", std::string(kFar, 'x') + "\nyz");
  Reader reader;
  reader.want({{1, a, {kFar + 1, 1}}});
  EXPECT_EQ(reader.wait_for(1)[0].number, 2u);
  folder.file("a", std::string(kFar, '\n') + "\nyzz");
  reader.want({{2, a, {kFar + 1, 1}}});
  EXPECT_EQ(reader.wait_for(1)[0].number, kFar + 2);
}

TEST(LineReader, NewWishesReplaceOldOnes) {
  const test::TempFolder folder;
  const std::string a = folder.file("a", "one\n");
  Reader reader;
  std::vector<LineWish> many(10'000, {1, a, {0, 1}});
  reader.want(many);
  reader.want({{2, a, {0, 1}}});
  const std::vector<FoundLine> lines = reader.wait_until(2);
  // Some may have been read before the second wish came, but not all.
  EXPECT_LT(lines.size(), many.size());
}

TEST(LineReader, EndsWhileItReads) {
  const test::TempFolder folder;
  const std::string a = folder.file("a", std::string(5'000'000, '\n'));
  Reader reader;
  reader.want(std::vector<LineWish>(1000, {1, a, {4'999'999, 1}}));
}

}  // namespace
}  // namespace zenfo::host::gui
