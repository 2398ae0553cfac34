// Items in order, bounded, and exceptions passed on.
#include "shared/system/work_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

namespace zenfo::host {
namespace {

TEST(WorkThread, WorksOnAllItemsInOrder) {
  for (const int count : {0, 1, 31, 32, 33, 5000}) {
    std::vector<int> done, expected(static_cast<size_t>(count));
    std::iota(expected.begin(), expected.end(), 0);
    WorkThread<int> thread([&](int& item) { done.push_back(item); });
    for (int i = 0; i < count; ++i) thread.give(i, 1);
    thread.finish();
    EXPECT_EQ(done, expected);
    EXPECT_FALSE(thread.failed());
  }
}

TEST(WorkThread, WorksOnAllItemsBeforeItEnds) {
  int sum = 0;
  {
    WorkThread<int> thread([&](int& item) { sum += item; });
    for (int i = 0; i < 100; ++i) thread.give(1, 1);
  }
  EXPECT_EQ(sum, 100);
}

TEST(WorkThread, LetsFewLargeItemsWait) {
  constexpr size_t kLarge = size_t{4} << 20;
  std::atomic<int> given = 0, done = 0;
  int most = 0;
  WorkThread<int> thread([&](int&) {
    most = std::max(most, given - done);
    std::this_thread::yield();
    ++done;
  });
  for (int i = 0; i < 200; ++i) {
    ++given;
    thread.give(i, kLarge);
  }
  thread.finish();
  EXPECT_EQ(done, 200);
  EXPECT_LE(most, 5) << "two waiting, two being worked on, one being given";
}

TEST(WorkThread, ThrowsWhatTheWorkThrewAndDropsTheRest) {
  int done = 0;
  WorkThread<int> thread([&](int& item) {
    if (item == 3) throw std::runtime_error("three");
    ++done;
  });
  for (int i = 0; i < 1000; ++i) thread.give(i, 1);
  EXPECT_THROW(thread.finish(), std::runtime_error);
  EXPECT_TRUE(thread.failed());
  EXPECT_EQ(done, 3);
}

}  // namespace
}  // namespace zenfo::host
