// Runs that change files, and Undo, with the words of ZENFO_SAFETY: the files
// are the same as without it, and an interrupted run loses nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/environment.h"
#include "support/matchers.h"
#include "support/replace_fixture.h"
#ifdef _WIN32
#include "support/foreign_mapping.h"
#else
#include <sys/stat.h>
#endif

namespace zenfo::test {
namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr int kMany = 20;  // each file is flushed by itself
#else
constexpr int kMany = 100;
#endif

class SafetyTest : public ReplaceTest {
 protected:
  // Adds this many files with "ab" for the run.
  Texts add_files(int count) {
    Clear(ZENFO_LIST_RUN_FILES);
    Texts paths;
    for (int i = 0; i < count; ++i) {
      paths.push_back(add("f" + std::to_string(i), "ab"));
    }
    return paths;
  }
  // The originals that the undo list file names, in order.
  Texts listed() const {
    Texts paths;
    const std::string text = read_file(undo_file());
    for (size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) {
      paths.push_back(text.substr(at, text.find('\t', at) - at));
    }
    return paths;
  }
  size_t files_in_store() const {
    return contents(work().path("store")).size();
  }

  EnvironmentVariable safety_{"ZENFO_SAFETY", nullptr};
};

// ---- sync
// --------------------------------------------------------------------

TEST_F(SafetyTest, SyncedARunLeavesWhatItLeavesWithout) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  safety_.set("sync");
  for (const bool lines : {false, true}) {
    const Texts paths = add_files(kMany);
    const int32_t answer =
        lines ? over_lines(replace_block, {.safe = 1}, line_list(paths))
              : replace_block({.safe = 1});
    EXPECT_EQ(answer, kMany);
    for (const auto& path : paths) ASSERT_EQ(read_file(path), "Xb");
    EXPECT_EQ(originals(), paths);
    EXPECT_EQ(listed(), paths);
    EXPECT_EQ(files_in_store(), kMany + 1u);
    EXPECT_EQ(GetUndoList(), kMany);
    EXPECT_EQ(Undo(), 0);
    for (const auto& path : paths) ASSERT_EQ(read_file(path), "ab");
    EXPECT_EQ(files_in_store(), 1u) << "an empty list of copies";
    EXPECT_EQ(read_file(undo_file()), "");
  }
}

TEST_F(SafetyTest, CopiesMadeAheadInVainGoWithTheirLines) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  safety_.set("sync");
  const Texts paths = add_files(60);
  HostRecorder host;
  int asked = 0;
  host.answer_option = [&](const HostRecorder::Question&) {
    return asked++ % 3 == 0 ? 1 : 0;
  };
  Texts taken;
  for (size_t i = 0; i < paths.size(); i += 3) taken.push_back(paths[i]);
  EXPECT_EQ(replace_block({.ask = 1, .safe = 1}), 20);
  EXPECT_EQ(originals(), taken);
  EXPECT_EQ(listed(), taken);
  EXPECT_EQ(files_in_store(), 21u);
  EXPECT_EQ(GetUndoList(), 20);
  EXPECT_EQ(Undo(), 0);
  for (const auto& path : paths) ASSERT_EQ(read_file(path), "ab");
}

TEST_F(SafetyTest, ARunThatTakesNothingLeavesNothingInTheStore) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const Texts paths = add_files(20);
  for (const char* words : {"", "sync"}) {
    safety_.set(words);
    HostRecorder host;
    // The first file changes after its safe copy was made and before it is
    // written.
    host.on_status_text = [&](const std::string& status) {
      if (status.starts_with("Now replacing")) write_file(paths[0], "other");
    };
    host.answer_option = [&](const HostRecorder::Question& question) {
      return question.text == paths[0] ? 1 : 0;
    };
    write_file(paths[0], "ab");
    EXPECT_EQ(replace_block({.ask = 1, .safe = 1}), 0);
    EXPECT_THAT(originals(), IsEmpty());
    EXPECT_EQ(read_file(undo_file()), "") << words;
    EXPECT_EQ(GetUndoList(), 0);
  }
}

TEST_F(SafetyTest, AStoppedRunIsUndoneWhole) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  safety_.set("sync");
  const Texts paths = add_files(30);
  HostRecorder host;
  int asked = 0;
  host.answer_option = [&](const HostRecorder::Question&) {
    return ++asked > 11 ? 2 : 1;
  };
  EXPECT_EQ(replace_block({.ask = 1, .safe = 1}), 11);
  EXPECT_THAT(originals(), SizeIs(11));
  EXPECT_THAT(listed(), SizeIs(11));
  EXPECT_EQ(files_in_store(), 12u);
  EXPECT_EQ(Undo(), 0);
  for (const auto& path : paths) ASSERT_EQ(read_file(path), "ab");
}

// A copy made before such a change is not used.
TEST_F(SafetyTest, WhatChangedAfterItWasCopiedAheadIsCopiedAgain) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  safety_.set("sync");
  const Texts paths = add_files(6);
  HostRecorder host;
  host.on_status_text = [&](const std::string& status) {
    if (status == "Now replacing in file " + paths[0]) {
      write_file(paths[3], "a newer text");
    }
  };
  EXPECT_EQ(replace_block({.safe = 1}), 6);
  EXPECT_EQ(read_file(paths[3]), "X newer text");
  EXPECT_EQ(GetUndoList(), 6);
  EXPECT_EQ(files_in_store(), 7u);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(paths[3]), "a newer text");
  EXPECT_EQ(read_file(paths[5]), "ab");
}

// A file has one copy, made before its first change, ahead of time or not.
TEST_F(SafetyTest, AFileMetAgainIsNotCopiedAheadAgain) {
  pair("a", "aa");
  use_store();
  safety_.set("sync");
  const Texts paths = add_files(5);
  // The same files again after the first batch, under another name too.
  for (const auto& path : paths) add_path(path);
  const std::string link = folder.path("other");
  fs::create_hard_link(paths[2], link);
  add_path(link);
  EXPECT_EQ(replace_string({.safe = 1}), 5 + 10 + 4);
  EXPECT_THAT(originals(), SizeIs(5));
  EXPECT_THAT(listed(), SizeIs(5));
  EXPECT_EQ(Undo(), 0);
  for (const auto& path : paths) EXPECT_EQ(read_file(path), "ab");
}

TEST_F(SafetyTest, ASyncedUndoKeepsWhatItDoesNotRestore) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  safety_.set("sync");
  const Texts paths = add_files(4);
  ASSERT_EQ(replace_block({.safe = 1}), 4);
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, 1, 0), 1);
  fs::remove(paths[2]);
  fs::create_directory(paths[2]);
  EXPECT_EQ(Undo(), 2);
  EXPECT_EQ(originals(), (Texts{paths[1], paths[2]}));
  EXPECT_EQ(read_file(paths[0]), "ab");
  EXPECT_EQ(read_file(paths[1]), "Xb");
  for (const auto& copy : copies()) EXPECT_EQ(read_file(copy), "ab");
  EXPECT_EQ(files_in_store(), 4u) << "two copies, the list, the error file";
}

// ---- skip
// --------------------------------------------------------------------

TEST_F(SafetyTest, AFileThatCannotBeOpenedForWritingIsSkipped) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  safety_.set("skip");
  const Texts paths = add_files(3);
  HostRecorder host;
  host.on_status_text = [&](const std::string& status) {
    if (status != "Now replacing in file " + paths[1]) return;
    fs::remove(paths[1]);
    fs::create_directory(paths[1]);
  };
  const auto list = line_list(paths);
  EXPECT_EQ(over_lines(replace_block, {.safe = 1}, list), 2);
  EXPECT_EQ(summary(),
            paths[0] + ", found 1, replaced 1\r\r\n" + paths[1] +
                ", found 1 ERROR, refer to error log file for details" +
                paths[2] + ", found 1, replaced 1\r\r\n");
  const auto records = errors();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(
      records[0].message,
      paths[1] + " could not be opened for writing. File has been skipped");
  EXPECT_EQ(records[0].context, "Error writing file");
  EXPECT_EQ(originals(), (Texts{paths[0], paths[2]}));
  EXPECT_EQ(files_in_store(), 3u);
}

#ifdef _WIN32
TEST_F(SafetyTest, AMappedFileIsSkipped) {
  ASSERT_TRUE(pattern("a"));
  for (const char* words : {"skip", "skip,beside"}) {
    safety_.set(words);
    const Texts paths = add_files(3);
    const ForeignMapping mapping(paths[1]);
    ASSERT_TRUE(mapping.is_mapped());
    EXPECT_EQ(replace_block({.text = ""}), 2) << words;
    EXPECT_EQ(read_file(paths[0]), "b");
    EXPECT_EQ(read_file(paths[1]), "ab");
    EXPECT_EQ(read_file(paths[2]), "b");
    EXPECT_THAT(rejected(), ElementsAre(paths[1]));
  }
}
#else

// ---- beside
// ------------------------------------------------------------------

uint64_t file_number(const std::string& path) {
  struct stat facts {};
  EXPECT_EQ(stat(path.c_str(), &facts), 0);
  return facts.st_ino;
}

TEST_F(SafetyTest, WithoutCopiesAFileIsReplacedInOneStep) {
  ASSERT_TRUE(pattern("a"));
  std::string text;
  for (int i = 0; i < 400; ++i) text += "ab";
  const std::string one = add("1", text);
  for (const char* words : {"", "beside"}) {
    safety_.set(words);
    write_file(one, text);
    ASSERT_EQ(chmod(one.c_str(), 0640), 0);
    int stopped_inside = 0;
    at_every_poll([&](HostRecorder&) {
      write_file(one, text);
      const uint64_t number = file_number(one);
      const int32_t answer = replace_block({.text = "longer"});
      if (answer == -1 && read_file(one) != text) ++stopped_inside;
      if (answer == 400) {
        EXPECT_EQ(number == file_number(one), *words == '\0');
      }
    });
    EXPECT_EQ(stopped_inside > 0, *words == '\0') << words;
    struct stat facts {};
    ASSERT_EQ(stat(one.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777, 0640u);
    EXPECT_THAT(contents(folder.path()), SizeIs(1)) << "nothing beside it";
  }
}

TEST_F(SafetyTest, WithSafeCopiesAFileIsWrittenInPlace) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  safety_.set("beside,sync");
  const std::string one = add("1", "ab");
  const uint64_t number = file_number(one);
  EXPECT_EQ(replace_block({.safe = 1}), 1);
  EXPECT_EQ(file_number(one), number);
}

// ---- nolinks
// -----------------------------------------------------------------

TEST_F(SafetyTest, LinksAreNotFollowedWhenTheyAreRefused) {
  ASSERT_TRUE(pattern("a"));
  const std::string target = work().file("target", "ab");
  const std::string link = folder.path("link");
  fs::create_symlink(target, link);
  add_path(link);
  safety_.set("nolinks");
  EXPECT_EQ(replace_block({}), 0);
  EXPECT_EQ(read_file(target), "ab");
  EXPECT_THAT(rejected(), ElementsAre(link));
  safety_.set(nullptr);
  EXPECT_EQ(replace_block({}), 1);
  EXPECT_EQ(read_file(target), "Xb");
}

#endif

}  // namespace
}  // namespace zenfo::test
