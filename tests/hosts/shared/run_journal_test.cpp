// The journal of a run, written and read.
#include "shared/runs/run_journal.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

host::FileState state(uint64_t size, int64_t modified) {
  host::FileState state;
  state.size = size;
  state.modified = modified;
  return state;
}

class RunJournal : public ::testing::Test {
 protected:
  TempFolder folder_;
  std::string path_ = folder_.path("a.journal");
};

TEST_F(RunJournal, TellsHowFarARunGot) {
  {
    host::RunJournal journal;
    journal.open(path_);
    journal.begin("/a b");
    journal.done("/a b", state(7, -3));
    journal.done("/a b", state(7, 5));
    journal.begin("/c");
    journal.begin("/d");
    journal.leave("/d");
  }
  const host::JournalReader reader(path_);
  EXPECT_TRUE(reader.exists());
  EXPECT_TRUE(reader.is_complete());
  EXPECT_TRUE(reader.any_begun());
  EXPECT_TRUE(reader.entry("/a b").begun);
  EXPECT_TRUE(reader.entry("/a b").was_left_like(state(7, -3)));
  EXPECT_TRUE(reader.entry("/a b").was_left_like(state(7, 5)));
  EXPECT_FALSE(reader.entry("/a b").was_left_like(state(8, 5)));
  EXPECT_TRUE(reader.entry("/c").begun);
  EXPECT_TRUE(reader.entry("/c").states.empty());
  EXPECT_FALSE(reader.entry("/d").begun);
  EXPECT_FALSE(reader.entry("/e").begun);
}

TEST_F(RunJournal, TellsWhereAnUndoWas) {
  for (const char* path : {"/a", "/b"}) {
    host::RunJournal journal;
    journal.open(path_);
    journal.begin_restoring();
    journal.restore(path);
  }
  const host::JournalReader reader(path_);
  EXPECT_TRUE(reader.entry("/a").restored);
  EXPECT_FALSE(reader.was_being_restored("/a"));
  EXPECT_TRUE(reader.was_being_restored("/b"));
  EXPECT_FALSE(reader.any_begun());
}

TEST_F(RunJournal, IsNotCompleteAfterAnotherStartOfTheSystem) {
  write_file(path_, "boot\tanother\nbegin\t/a\n");
  host::RunJournal journal;
  journal.open(path_);
  journal.begin("/b");
  const host::JournalReader reader(path_);
  EXPECT_FALSE(reader.is_complete());
  EXPECT_TRUE(reader.entry("/a").begun);
  EXPECT_TRUE(reader.entry("/b").begun);
}

TEST_F(RunJournal, PassesOverWhatIsNoWholeLine) {
  write_file(path_,
             "done\tx\t1\t/a\ndone\t1\n\nwhat\t/a\ndone\t\t\t/a\n"
             "begin\t/b\nbegin\t/c");
  const host::JournalReader reader(path_);
  EXPECT_FALSE(reader.exists());
  EXPECT_TRUE(reader.entry("/a").states.empty());
  EXPECT_TRUE(reader.entry("/b").begun);
  EXPECT_FALSE(reader.entry("/c").begun);
}

TEST_F(RunJournal, IsNothingWithoutAFile) {
  host::RunJournal journal;
  journal.begin("/a");
  journal.open(folder_.path("none/a.journal"));
  journal.begin("/a");
  EXPECT_FALSE(host::JournalReader(folder_.path("none/a.journal")).exists());
}

}  // namespace
}  // namespace zenfo::test
