// Replace runs while somebody else changes their files: files that changed
// after they were loaded are skipped, and the run continues.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "support/matchers.h"
#include "support/replace_fixture.h"
#ifndef _WIN32
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace zenfo::test {
namespace {

namespace fs = std::filesystem;

struct Change {
  const char* what;
  std::function<void(const std::string& path)> make;
  std::string left;  // the file's bytes afterwards
};

void append(const std::string& path) {
  std::ofstream(path, std::ios::binary | std::ios::app) << "!";
}
void overwrite(const std::string& path) { write_file(path, "b1"); }
void exchange_keeping_time(const std::string& path) {
  const auto time = fs::last_write_time(path);
  write_file(path + ".new", "c1");
  fs::last_write_time(path + ".new", time);
  fs::rename(path + ".new", path);
}
void touch(const std::string& path) {
  fs::last_write_time(path,
                      fs::last_write_time(path) + std::chrono::seconds(1));
}

// Every way in which a file can stop being the one that was loaded.
std::vector<Change> changes() {
  return {
      {"longer", append, "a1!"},
      {"of the same size", overwrite, "b1"},
      {"another file of the same size and time", exchange_keeping_time, "c1"},
      {"only its time", touch, "a1"},
  };
}

std::string message(const std::string& path) {
  return path + " was changed meanwhile. File has been skipped";
}

class ReplaceChangedTest : public ReplaceTest {
 protected:
  // Starts a run and makes the change when the run reports `phase` of the first
  // file.
  void expect_skipped(const Change& change, const std::string& phase,
                      int32_t safe, bool lines) {
    SCOPED_TRACE(change.what + ", "s + phase + (safe ? " kept" : "") +
                 (lines ? " lines" : ""));
    const std::string one = folder.file("1", "a1");
    const std::string two = folder.file("2", "a2");
    Clear(ZENFO_LIST_RUN_FILES);
    add_path(one);
    add_path(two);
    HostRecorder host;
    host.on_status_text = [&](const std::string& status) {
      if (status == phase + " " + one) change.make(one);
    };
    const int32_t answer =
        lines ? over_lines(replace_block, {.safe = safe}, line_list({one, two}))
              : replace_block({.safe = safe});
    EXPECT_EQ(answer, 1);
    EXPECT_EQ(read_file(one), change.left);
    EXPECT_EQ(read_file(two), "X2");
    expect_results(one, two, lines);
    expect_store(two, safe);
  }

  void expect_results(const std::string& one, const std::string& two,
                      bool lines) {
    const auto records = errors();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].message, message(one));
    EXPECT_EQ(records[0].context, "Error writing file");
    if (lines) {
      EXPECT_EQ(summary(),
                one + ", found 1 ERROR, refer to error log file for details" +
                    two + ", found 1, replaced 1\r\r\n");
    } else {
      EXPECT_THAT(rejected(), ElementsAre(one));
      EXPECT_THAT(found(), ElementsAre(two));
    }
  }

  // Only the file that was changed has a copy, a line and a record.
  void expect_store(const std::string& two, int32_t safe) {
    EXPECT_THAT(originals(), safe ? Texts{two} : Texts{});
    if (!safe) return;
    EXPECT_THAT(read_file(undo_file()), HasSubstr(two));
    EXPECT_EQ(contents(work().path("store")).size(), 2u);
    EXPECT_EQ(GetUndoList(), 1);
    EXPECT_EQ(Undo(), 0);
    EXPECT_EQ(read_file(two), "a2");
  }
};

TEST_F(ReplaceChangedTest, AFileThatChangedBeforeItWasCopiedOrOpenedIsSkipped) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  for (const Change& change : changes()) {
    for (const int32_t safe : {0, 1}) {
      for (const bool lines : {false, true}) {
        expect_skipped(change, "Now parsing file", safe, lines);
      }
    }
  }
}

TEST_F(ReplaceChangedTest, AFileThatChangedAfterItsSafeCopyLosesTheCopyAgain) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  for (const Change& change : changes()) {
    for (const int32_t safe : {0, 1}) {
      for (const bool lines : {false, true}) {
        expect_skipped(change, "Now replacing in file", safe, lines);
      }
    }
  }
}

TEST_F(ReplaceChangedTest, AFileThatWasDeletedIsNotCreatedAgain) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  for (const int32_t safe : {0, 1}) {
    Clear(ZENFO_LIST_RUN_FILES);
    const std::string one = add("1", "a1");
    const std::string two = add("2", "a2");
    HostRecorder host;
    host.on_status_text = [&](const std::string& status) {
      if (status == "Now replacing in file " + one) fs::remove(one);
    };
    EXPECT_EQ(replace_block({.safe = safe}), 1);
    EXPECT_FALSE(fs::exists(one));
    EXPECT_EQ(read_file(two), "X2");
    EXPECT_THAT(rejected(), ElementsAre(one));
    EXPECT_THAT(originals(), safe ? Texts{two} : Texts{});
    errors();
  }
}

TEST_F(ReplaceChangedTest, AFileThatTheHostChangesInItsQuestionIsSkipped) {
  ASSERT_TRUE(pattern("a"));
  const std::string one = add("1", "a1");
  HostRecorder host;
  host.answer_option = [&](const HostRecorder::Question&) {
    write_file(one, "a lot more");
    return 1;
  };
  EXPECT_EQ(replace_block({.ask = 1}), 0);
  EXPECT_EQ(read_file(one), "a lot more");
  EXPECT_THAT(rejected(), ElementsAre(one));
}

TEST_F(ReplaceChangedTest, ItsOwnRewritingIsNoChange) {
  pair("a", "b");
  pair("b", "c");
  use_store();
  const std::string one = add("1", "ab");
  add_path(one);
  EXPECT_EQ(replace_string({.safe = 1}), 1 + 2);
  EXPECT_EQ(read_file(one), "cc");
  EXPECT_THAT(rejected(), IsEmpty());
  EXPECT_THAT(errors(), IsEmpty());
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "ab");
}

// The safe copy is needed to undo what the first string changed.
TEST_F(ReplaceChangedTest, ChangedBetweenItsStringsAFileKeepsItsSafeCopy) {
  pair("a", "b");
  pair("b", "c");
  use_store();
  const std::string one = add("1", "a");
  HostRecorder host;
  int replacings = 0;
  host.on_status_text = [&](const std::string& status) {
    if (status == "Now replacing in file " + one && ++replacings == 2) {
      write_file(one, "other");
    }
  };
  EXPECT_EQ(replace_string({.safe = 1}), 1);
  EXPECT_EQ(read_file(one), "other");
  EXPECT_THAT(rejected(), ElementsAre(one));
  EXPECT_THAT(originals(), ElementsAre(one));
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a");
}

#ifndef _WIN32
// Two runs over one file: the later one finds it locked and skips it.
TEST_F(ReplaceChangedTest, AFileThatAnotherRunIsWritingIsSkipped) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const std::string one = add("1", "a1");
  const int other = open(one.c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_GE(other, 0);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  EXPECT_EQ(replace_block({.safe = 1}), 0);
  EXPECT_EQ(read_file(one), "a1");
  EXPECT_THAT(rejected(), ElementsAre(one));
  EXPECT_THAT(originals(), IsEmpty());
  close(other);
  EXPECT_EQ(replace_block({.safe = 1}), 1);
  EXPECT_EQ(read_file(one), "X1");
}

TEST_F(ReplaceChangedTest, AFileSwappedForALinkIsNotFollowed) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const std::string outside = work().file("outside", "a1");
  for (const char* phase : {"Now parsing file ", "Now replacing in file "}) {
    Clear(ZENFO_LIST_RUN_FILES);
    const std::string one = add("1", "a1");
    HostRecorder host;
    host.on_status_text = [&](const std::string& status) {
      if (status != phase + one) return;
      fs::remove(one);
      fs::create_symlink(outside, one);
    };
    EXPECT_EQ(replace_block({.safe = 1}), 0);
    EXPECT_EQ(read_file(outside), "a1");
    EXPECT_THAT(rejected(), ElementsAre(one));
    fs::remove(one);
    errors();
  }
}
#endif

}  // namespace
}  // namespace zenfo::test
