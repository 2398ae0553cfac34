// The folder of runs.
#include "run_store.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

namespace fs = std::filesystem;

class RunStore : public ::testing::Test {
 protected:
  // Another day's run: its record was written then.
  void make_older(const cli::Run& run, int days) {
    const fs::path record = folder_.path(run.name + ".json");
    fs::last_write_time(record, fs::file_time_type::clock::now() -
                                    std::chrono::hours(24 * days + 1));
  }
  cli::Run begin(const std::string& time) {
    cli::Run run = store_.begin("zenfo replace a b");
    run.time = time;
    store_.save(run);
    return run;
  }
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const cli::Run& run : store_.runs()) names.push_back(run.name);
    return names;
  }

  TempFolder folder_;
  cli::RunStore store_{folder_.path()};
};

TEST_F(RunStore, GivesEachRunAnEmptyFolderOfItsOwn) {
  const cli::Run one = store_.begin("a");
  const cli::Run two = store_.begin("b");
  EXPECT_NE(one.name, two.name);
  EXPECT_TRUE(fs::is_empty(folder_.path(one.name)));
  EXPECT_TRUE(fs::is_empty(folder_.path(two.name)));
}

TEST_F(RunStore, RemembersRunsWithAnyBytesInTheirPaths) {
  cli::Run run = store_.begin("zenfo replace \xC3\xBC \xFF");
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
  const cli::Run last = begin("2026-12-31 00:00:00");
  store_.remove_old();
  EXPECT_EQ(names().size(), 2u);
  fs::last_write_time(
      list, fs::file_time_type::clock::now() - std::chrono::hours(24 * 31));
  store_.remove_old();
  EXPECT_EQ(names(), (std::vector<std::string>{last.name}));
}

TEST_F(RunStore, DoesNotReadTheRecordOfAKnownRun) {
  const cli::Run one = begin("2026-01-01 00:00:00");
  const cli::Run two = begin("2026-01-02 00:00:00");
  for (const cli::Run& run : {one, two}) {
    folder_.file(run.name + ".json", "damaged");
  }
  EXPECT_TRUE(names().empty());
  const std::vector<cli::Run> runs = store_.runs(&two);
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_EQ(runs[0].name, two.name);
  EXPECT_EQ(runs[0].time, two.time);
}

TEST_F(RunStore, KeepsTheRecordThatCannotBeReplaced) {
  cli::Run run = begin("2026-01-01 00:00:00");
  run.files = {{"/a", 1, 2, 3}};
  folder_.folder(run.name + ".json.new");
  EXPECT_FALSE(store_.save(run));
  EXPECT_TRUE(store_.find(run.name)->files.empty());
}

TEST_F(RunStore, RemovesRunsOfMoreThanThirtyDays) {
  const cli::Run old = begin("2026-01-01 00:00:00");
  const cli::Run young = begin("2026-01-03 00:00:00");
  const cli::Run last = begin("2026-01-04 00:00:00");
  folder_.file(old.name + "/notes.txt_0", "x");
  make_older(old, 30);
  make_older(young, 29);
  store_.remove_old();
  EXPECT_EQ(names(), (std::vector<std::string>{young.name, last.name}));
  EXPECT_FALSE(fs::exists(folder_.path(old.name)));
}

TEST_F(RunStore, RemovesTheOldestOfTooManyCopiesButNeverTheLastRun) {
  const cli::Run one = begin("2026-01-01 00:00:00");
  const cli::Run two = begin("2026-01-02 00:00:00");
  const cli::Run three = begin("2026-01-03 00:00:00");
  // Sparse files: they take no room.
  fs::resize_file(folder_.file(one.name + "/a_0", ""), 1);
  fs::resize_file(folder_.file(two.name + "/a_0", ""), 400'000'000);
  fs::resize_file(folder_.file(three.name + "/a_0", ""), 600'000'000);
  store_.remove_old();
  EXPECT_EQ(names(), (std::vector<std::string>{two.name, three.name}));
  fs::resize_file(folder_.path(three.name + "/a_0"), 1'100'000'000);
  store_.remove_old(&three);
  EXPECT_EQ(names(), (std::vector<std::string>{three.name}));
}

TEST_F(RunStore, KeepsAFolderThatHoldsWhatNoRunPutThere) {
  const cli::Run run = store_.begin("a");
  folder_.file(run.name + "/mine/file", "x");
  store_.remove(run.name);
  EXPECT_TRUE(fs::exists(folder_.path(run.name + "/mine/file")));
}

}  // namespace
}  // namespace zenfo::test
