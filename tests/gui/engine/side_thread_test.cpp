#include "gui/engine/side_thread.h"

#include <gtest/gtest.h>

#include <semaphore>
#include <stdexcept>

namespace zenfo::host::gui {
namespace {

class Side : public testing::Test {
 protected:
  void finish() {
    ended_.acquire();
    thread_.finish();
  }

  std::counting_semaphore<> ended_{0};
  int followed_ = 0;
  SideThread thread_{[this] { ended_.release(); }};
};

TEST_F(Side, TellsWhenItsWorkHasEnded) {
  EXPECT_FALSE(thread_.busy());
  int worked = 0;
  thread_.start(
      [&](SideThread::Control& control) {
        worked = 1;
        control.all = 7;
        control.done = 5;
      },
      [&] { followed_ = worked; });
  EXPECT_TRUE(thread_.busy());
  EXPECT_EQ(followed_, 0);
  finish();
  EXPECT_EQ(followed_, 1);
  EXPECT_FALSE(thread_.busy());
  EXPECT_EQ(thread_.control().done, 5u);
  EXPECT_EQ(thread_.control().all, 7u);
  EXPECT_EQ(thread_.failure(), "");
}

TEST_F(Side, FinishDoesNothingWhileTheWorkGoesOn) {
  std::binary_semaphore go{0};
  thread_.start([&](SideThread::Control&) { go.acquire(); },
                [&] { ++followed_; });
  thread_.finish();
  EXPECT_TRUE(thread_.busy());
  EXPECT_EQ(followed_, 0);
  go.release();
  finish();
  thread_.finish();
  EXPECT_EQ(followed_, 1);
}

TEST_F(Side, TheNextWorkMayBeginWhereTheLastOneEnded) {
  thread_.start(
      [](SideThread::Control&) { throw std::runtime_error("broken"); },
      [&] {
        EXPECT_EQ(thread_.failure(), "broken");
        thread_.start([](SideThread::Control&) {}, [&] { ++followed_; });
      });
  finish();
  EXPECT_EQ(followed_, 0);
  finish();
  EXPECT_EQ(followed_, 1);
  EXPECT_EQ(thread_.failure(), "");
}

TEST_F(Side, ItsEndStopsTheWork) {
  bool stopped = false;
  {
    SideThread thread([] {});
    thread.start(
        [&](SideThread::Control& control) {
          while (!control.stop) std::this_thread::yield();
          stopped = true;
        },
        [&] { ++followed_; });
  }
  EXPECT_TRUE(stopped);
  EXPECT_EQ(followed_, 0);
}

}  // namespace
}  // namespace zenfo::host::gui
