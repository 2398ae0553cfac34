// The folder of runs.
#include "shared/runs/run_store.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "shared/frame/failure.h"
#include "support/host_messages.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

namespace fs = std::filesystem;

class RunStore : public ::testing::Test {
 protected:
  // Dates the record of a run back by some days.
  void make_older(const host::Run& run, int days) {
    const fs::path record = folder_.path(run.name + ".json");
    fs::last_write_time(record, fs::file_time_type::clock::now() -
                                    std::chrono::hours(24 * days + 1));
  }
  // Makes a run that has ended.
  host::Run begin_run(const std::string& command) {
    host::RunLock lock;
    return store_.begin(command, lock);
  }
  host::Run begin(const std::string& time) {
    host::Run run = begin_run("zenfo replace a b");
    run.time = time;
    store_.save(run);
    return run;
  }
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const host::Run& run : store_.runs()) names.push_back(run.name);
    return names;
  }

  TempFolder folder_;
  KeptMessages messages_;
  host::RunStore store_{folder_.path()};
};

TEST_F(RunStore, GivesEachRunAnEmptyFolderOfItsOwn) {
  const host::Run one = begin_run("a");
  const host::Run two = begin_run("b");
  EXPECT_NE(one.name, two.name);
  EXPECT_TRUE(fs::is_empty(folder_.path(one.name)));
  EXPECT_TRUE(fs::is_empty(folder_.path(two.name)));
}

TEST_F(RunStore, RemembersRunsWithAnyBytesInTheirPaths) {
  host::Run run = begin_run("zenfo replace \xC3\xBC \xFF");
  run.files = {{"/a/\xC3\xBC.txt", 12, -5}, {"/b/\xFF\x80", 1, 1LL << 60}};
  store_.save(run);
  const auto known = store_.find(run.name);
  ASSERT_TRUE(known);
  EXPECT_EQ(known->command, run.command);
  EXPECT_EQ(known->time, run.time);
  ASSERT_EQ(known->files.size(), 2u);
  EXPECT_EQ(known->files[0].path, "/a/\xC3\xBC.txt");
  EXPECT_EQ(known->files[0].size, 12u);
  EXPECT_EQ(known->files[0].modified, -5);
  EXPECT_EQ(known->files[1].path, "/b/\xFF\x80");
  EXPECT_EQ(known->files[1].modified, 1LL << 60);
}

TEST_F(RunStore, PassesOverWhatIsNoRecord) {
  folder_.file("x.json", "{\"time\":");
  folder_.file("y.json", "{}");
  folder_.file("z.txt", "");
  EXPECT_TRUE(names().empty());
  EXPECT_FALSE(store_.find("../x"));
}

TEST_F(RunStore, KnowsARunWithoutARecordByItsListOfCopies) {
  folder_.file("20261114-094256-1234-0/undo.txt", "x");
  folder_.file("20261114-094256-1235-0.json", "");
  folder_.file("20261114-094256-1235-0/undo.txt", "x");
  folder_.file("20261114-094256-1236-0/undo.txt", "");
  folder_.file("mine/undo.txt", "x");
  EXPECT_EQ(names(), (std::vector<std::string>{"mine", "20261114-094256-1234-0",
                                               "20261114-094256-1235-0"}));
  EXPECT_EQ(store_.find("20261114-094256-1234-0")->time, "2026-11-14 09:42:56");
  EXPECT_EQ(store_.find("mine")->time, "");
}

TEST_F(RunStore, RemovesARunWithoutARecordWhenItIsOld) {
  const std::string list = folder_.file("20261114-094256-1234-0/undo.txt", "x");
  const host::Run last = begin("2026-12-31 00:00:00");
  store_.remove_old(messages_);
  EXPECT_EQ(names().size(), 2u);
  fs::last_write_time(
      list, fs::file_time_type::clock::now() - std::chrono::hours(24 * 31));
  store_.remove_old(messages_);
  EXPECT_EQ(names(), (std::vector<std::string>{last.name}));
}

TEST_F(RunStore, DoesNotReadTheRecordOfAKnownRun) {
  const host::Run one = begin("2026-01-01 00:00:00");
  const host::Run two = begin("2026-01-02 00:00:00");
  for (const host::Run& run : {one, two}) {
    folder_.file(run.name + ".json", "damaged");
  }
  EXPECT_TRUE(names().empty());
  const std::vector<host::Run> runs = store_.runs(&two);
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_EQ(runs[0].name, two.name);
  EXPECT_EQ(runs[0].time, two.time);
}

TEST_F(RunStore, KeepsTheRecordThatCannotBeReplaced) {
  host::Run run = begin("2026-01-01 00:00:00");
  run.files = {{"/a", 1, 2, 3}};
  folder_.folder(run.name + ".json.new");
  EXPECT_FALSE(store_.save(run));
  EXPECT_TRUE(store_.find(run.name)->files.empty());
}

TEST_F(RunStore, RemovesRunsOfMoreThanThirtyDays) {
  const host::Run old = begin("2026-01-01 00:00:00");
  const host::Run young = begin("2026-01-03 00:00:00");
  const host::Run last = begin("2026-01-04 00:00:00");
  folder_.file(old.name + "/notes.txt_0", "x");
  make_older(old, 30);
  make_older(young, 29);
  store_.remove_old(messages_);
  EXPECT_EQ(names(), (std::vector<std::string>{young.name, last.name}));
  EXPECT_FALSE(fs::exists(folder_.path(old.name)));
}

TEST_F(RunStore, RemovesTheOldestOfTooManyCopiesButNeverTheLastRun) {
  const host::Run one = begin("2026-01-01 00:00:00");
  const host::Run two = begin("2026-01-02 00:00:00");
  const host::Run three = begin("2026-01-03 00:00:00");
  // Sparse files need no space.
  fs::resize_file(folder_.file(one.name + "/a_0", ""), 1);
  fs::resize_file(folder_.file(two.name + "/a_0", ""), 400'000'000);
  fs::resize_file(folder_.file(three.name + "/a_0", ""), 600'000'000);
  make_older(one, 2);
  make_older(two, 1);
  EXPECT_EQ(store_.remove_old(messages_), 0u);
  EXPECT_EQ(names(), (std::vector<std::string>{two.name, three.name}));
  fs::resize_file(folder_.path(three.name + "/a_0"), 1'100'000'000);
  EXPECT_EQ(store_.remove_old(messages_, &three), 1'100'000'000u);
  EXPECT_EQ(names(), (std::vector<std::string>{three.name}));
}

TEST_F(RunStore, OrdersRunsByTheirNumbersNotByTheClock) {
  const host::Run one = begin("2026-12-31 23:59:59");
  const host::Run two = begin("2026-01-01 00:00:00");
  EXPECT_TRUE(one.name.ends_with("Z-1"));
  EXPECT_TRUE(two.name.ends_with("Z-2"));
  EXPECT_EQ(names(), (std::vector<std::string>{one.name, two.name}));
  folder_.file("20991231-235959-4711-0/undo.txt", "x");  // an older version's
  EXPECT_EQ(names().back(), two.name);
}

TEST_F(RunStore, RemovesNoRunThatIsAlive) {
  host::RunLock lock;
  const host::Run alive = store_.begin("a", lock);
  const host::Run last = begin("2026-01-04 00:00:00");
  make_older(alive, 31);
  store_.remove_old(messages_);
  EXPECT_EQ(names(), (std::vector<std::string>{alive.name, last.name}));
  host::RunLock other;
  EXPECT_FALSE(store_.take(alive.name, other));
  lock.release();
  store_.remove_old(messages_);
  EXPECT_EQ(names(), (std::vector<std::string>{last.name}));
  EXPECT_FALSE(fs::exists(folder_.path(alive.name + ".lock")));
}

TEST_F(RunStore, RemovesNoCopiesYoungerThanADayForTheirSize) {
  const host::Run young = begin("2026-01-01 00:00:00");
  const host::Run last = begin("2026-01-02 00:00:00");
  fs::resize_file(folder_.file(young.name + "/a_0", ""), 1'100'000'000);
  store_.remove_old(messages_);
  EXPECT_EQ(names().size(), 2u);
  make_older(young, 1);
  store_.remove_old(messages_);
  EXPECT_EQ(names(), (std::vector<std::string>{last.name}));
}

TEST_F(RunStore, IsNoEmptyStoreWhenItCannotBeRead) {
  EXPECT_TRUE(host::RunStore(folder_.path("none")).runs().empty());
  folder_.file("file", "");
  EXPECT_THROW(host::RunStore(folder_.path("file")).runs(), host::Failure);
}

TEST_F(RunStore, KnowsARunThatHasNothingToBringBack) {
  const host::Run run = begin("2026-01-01 00:00:00");
  EXPECT_TRUE(store_.is_known_empty(run.name));
  folder_.file(run.name + "/undo.txt", "");
  EXPECT_TRUE(store_.is_known_empty(run.name));
  folder_.file(run.name + "/a.txt_0", "");
  EXPECT_FALSE(store_.is_known_empty(run.name));
  fs::remove(folder_.path(run.name + "/a.txt_0"));
  folder_.file(run.name + "/undo.txt", "x");
  EXPECT_FALSE(store_.is_known_empty(run.name));
}

TEST_F(RunStore, KeepsAFolderThatHoldsWhatNoRunPutThere) {
  const host::Run run = begin_run("a");
  folder_.file(run.name + "/mine/file", "x");
  host::RunLock lock;
  store_.take(run.name, lock);
  store_.remove(run.name, lock);
  EXPECT_TRUE(fs::exists(folder_.path(run.name + "/mine/file")));
}

}  // namespace
}  // namespace zenfo::test
