// The lock on a run, and the identity of the system's last start.
#include "shared/system/run_lock.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

class RunLock : public ::testing::Test {
 protected:
  bool is_free() const {
    host::RunLock lock;
    return lock.take(path_);
  }
  TempFolder folder_;
  std::string path_ = folder_.path("a.lock");
};

TEST_F(RunLock, IsHeldByOneAlone) {
  {
    host::RunLock lock;
    EXPECT_TRUE(lock.take(path_));
    EXPECT_FALSE(is_free());
  }
  EXPECT_TRUE(is_free());
}

TEST_F(RunLock, MovesWithItsObject) {
  host::RunLock lock;
  lock.take(path_);
  host::RunLock other = std::move(lock);
  lock.release();
  EXPECT_FALSE(is_free());
  other = host::RunLock();
  EXPECT_TRUE(is_free());
}

TEST_F(RunLock, TakesItsFileAwayForGood) {
  host::RunLock lock;
  lock.take(path_);
  EXPECT_TRUE(file_exists(path_));
  lock.release_for_good();
  EXPECT_FALSE(file_exists(path_));
  EXPECT_TRUE(is_free());
}

TEST_F(RunLock, IsNotTakenWhereItsFileCannotBeOpened) {
  host::RunLock lock;
  EXPECT_FALSE(lock.take(folder_.path("none/a.lock")));
  EXPECT_THAT(lock.why_not(),
              ::testing::StartsWith("its lock cannot be opened: "));
}

TEST_F(RunLock, SaysThatAnotherHoldsIt) {
  host::RunLock first, second;
  EXPECT_TRUE(first.take(path_));
  EXPECT_FALSE(second.take(path_));
  EXPECT_EQ(second.why_not(), "is still going on");
}

TEST(Boot, IsKnownByItsName) {
  EXPECT_TRUE(host::is_this_boot(host::boot_name()));
  EXPECT_FALSE(host::is_this_boot("1"));
  EXPECT_FALSE(host::is_this_boot(""));
}

TEST_F(RunLock, FlushesFilesThatAreThere) {
  EXPECT_TRUE(host::flush_file(folder_.file("a.txt", "x")));
  EXPECT_FALSE(host::flush_file(folder_.path("none")));
}

}  // namespace
}  // namespace zenfo::test
