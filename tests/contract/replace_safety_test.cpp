// Replace runs that are stopped, that keep safe copies, or that meet a full
// disk.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/matchers.h"
#include "support/replace_fixture.h"
#ifdef _WIN32
#include "support/foreign_mapping.h"
#else
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#endif

namespace zenfo::test {
namespace {

// ---- Interrupts ------------------------------------------------------------

TEST_F(ReplaceTest, InterruptedAtAnyPollNoFileIsLost) {
  ASSERT_TRUE(pattern("ab"));
  use_store();
  std::string before, after;
  for (int i = 0; i < 400; ++i) {
    before += "ab, ";
    after += "longer, ";
  }
  // Three full blocks, of which an interrupt omits one.
  const std::string large = std::string(155000, 'x') + before;
  Texts paths;
  for (int i = 0; i < 3; ++i) {
    paths.push_back(folder.file(std::to_string(i), before));
  }
  paths.push_back(folder.file("large", large));
  for (const auto& path : paths) add_path(path);
  ASSERT_TRUE(replace_pattern("x"));
  for (bool lines : {false, true}) {
    int half_written = 0;
    int zero = 0;
    const int stops = at_every_poll([&](HostRecorder& host) {
      for (const auto& path : paths) {
        write_file(path, path == paths.back() ? large : before);
      }
      const RunArguments arguments = {.text = "longer", .safe = 1};
      const int32_t answer =
          lines ? over_lines(replace_block, arguments, line_list(paths))
                : replace_block(arguments);
      host.interrupt = [] { return 0; };
      EXPECT_TRUE(answer == -1 || answer == 0 || answer == 4 * 400) << answer;
      zero += answer == 0;
      expect_no_matches();
      for (const auto& path : paths) {
        const std::string original = path == paths.back() ? large : before;
        const std::string text = read_file(path);
        if (text == original || text.size() == original.size() + 400 * 4) {
          continue;
        }
        ++half_written;
        EXPECT_EQ(answer, -1);
        const auto stored = originals();
        ASSERT_FALSE(stored.empty());
        EXPECT_EQ(stored.back(), path);
        EXPECT_EQ(read_file(copies().back()), original);
      }
      EXPECT_EQ(Undo(), 0);
      for (const auto& path : paths) {
        EXPECT_EQ(read_file(path), path == paths.back() ? large : before);
      }
    });
    EXPECT_GT(stops, 20);
    EXPECT_GT(half_written, 0) << "the case of interest occurred";
    EXPECT_GT(zero, 0);
  }
}

TEST_F(ReplaceTest, InterruptedAtAnyPollStringsLoseNoFile) {
  pair("ab", "cd");
  pair("cd", "e");
  use_store();
  std::string before;
  for (int i = 0; i < 300; ++i) before += "ab, ";
  Texts paths;
  for (int i = 0; i < 4; ++i) {
    paths.push_back(folder.file(std::to_string(i), before));
  }
  // Loaded again between its strings.
  const std::string large = std::string(155000, 'x') + before;
  paths.push_back(folder.file("large", large));
  const auto original = [&](const std::string& path) {
    return path == paths.back() ? large : before;
  };
  at_every_poll([&](HostRecorder& host) {
    for (const auto& path : paths) write_file(path, original(path));
    const int32_t answer =
        over_lines(replace_string, {.safe = 1}, line_list(paths));
    host.interrupt = [] { return 0; };
    EXPECT_TRUE(answer == -1 || answer == 0 || answer == 3000) << answer;
    EXPECT_EQ(Undo(), 0);
    for (const auto& path : paths) EXPECT_EQ(read_file(path), original(path));
  });
}

TEST_F(ReplaceTest, InterruptedBetweenItsStringsAFileIsReportedAsItIs) {
  pair("a", "b");
  pair("b", "c");
  use_store();
  const std::string text = std::string(155000, 'x') + "a";
  const auto one = add("1", text);
  const auto two = add("2", "a");
  for (bool lines : {false, true}) {
    HostRecorder host;
    // While it is loaded again in blocks, which takes 4 steps.
    host.interrupt = [&] {
      return host.statuses.back() == "Now replacing in file " + one &&
             host.reports.back().total == 4;
    };
    const int32_t answer =
        lines ? over_lines(replace_string, {.safe = 1}, line_list({one, two}))
              : replace_string({.safe = 1});
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(read_file(one).substr(155000), "b");
    EXPECT_EQ(read_file(two), "a");
    if (lines) {
      EXPECT_EQ(summary(), one + ", found 1, replaced 1\r\r\n");
    } else {
      EXPECT_THAT(found(), ElementsAre(one));
    }
    host.interrupt = [] { return 0; };
    EXPECT_EQ(Undo(), 0);
    EXPECT_EQ(read_file(one), text);
  }
}

TEST_F(ReplaceTest, AStopDuringTheSearchForAreasEndsTheRun) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(exclusion("(a)"));
  use_store();
  std::string text;
  for (int i = 0; i < 300; ++i) text += "(a)";
  const auto one = add("1", text);
  for (const int32_t safe : {0, 1}) {
    HostRecorder host;
    stop_once(host, "Now parsing");
    EXPECT_EQ(replace_block({.safe = safe}), -1);
    EXPECT_EQ(read_file(one), text);
    EXPECT_THAT(originals(), IsEmpty());
    expect_no_results();
    expect_no_matches();
  }
}

TEST_F(ReplaceTest, AFileIsNotRewrittenFromAnInterruptedLoad) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const std::string text(150001, 'a');
  const auto one = add("1", text);
  HostRecorder host;
  host.interrupt = [] { return 1; };
  EXPECT_EQ(replace_block({.safe = 1}), 0);
  EXPECT_EQ(read_file(one), text);
  expect_no_results();
  EXPECT_THAT(originals(), IsEmpty());
}

TEST_F(ReplaceTest, InterruptedWhilePatternMatchesAreTakenNothingIsWritten) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(replace_pattern("a"));
  const std::string text(400, 'a');
  const auto one = add("1", text);
  int complete = 0;
  at_every_poll([&](HostRecorder&) {
    write_file(one, text);
    const int32_t answer = replace_block({.use_pattern = 1});
    EXPECT_TRUE(answer == -1 || answer == 400);
    complete += answer == 400;
  });
  EXPECT_GT(complete, 0);
}

// ---- Safe store ------------------------------------------------------------

TEST_F(ReplaceTest, EveryRunEmptiesTheSafeStoreAskedForCopiesOrNot) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  EXPECT_EQ(replace_block({.text = "aa", .safe = 1}), 1);
  work().file("store/foreign", "x");
  work().file("store/sub/kept", "x");
  EXPECT_EQ(replace_block({.text = "b"}), 2);
  EXPECT_EQ(
      contents(work().path("store")),
      (std::map<std::string, std::string>{{"sub"s + kSeparator + "kept", "x"}}))
      << "the undo list file is deleted with the rest, subfolders stay";
  EXPECT_THAT(originals(), IsEmpty());
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "bb");
}

TEST_F(ReplaceTest, AFileMetTwiceGetsOneSafeCopy) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  add_path(one);
  EXPECT_EQ(replace_block({.text = "aa", .safe = 1}), 1 + 2);
  EXPECT_EQ(read_file(one), "aaaa");
  EXPECT_THAT(originals(), ElementsAre(one));
  EXPECT_THAT(found(), ElementsAre(one, one));
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a");
  std::string other = folder.path() + kSeparator + "." + kSeparator + "1";
  EXPECT_EQ(over_lines(replace_block, {.text = "aa", .safe = 1},
                       line_list({one, one, other})),
            1 + 2 + 4);
  EXPECT_EQ(originals().size(), 1u);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a");
}

TEST_F(ReplaceTest, AFileUnderItsRelativePathIsTheSame) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = folder.file("1", "a");
  const auto here = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  EXPECT_EQ(over_lines(replace_block, {.text = "aa", .safe = 1},
                       line_list({one, "1"})),
            3);
  EXPECT_EQ(originals().size(), 1u);
  EXPECT_EQ(Undo(), 0);
  std::filesystem::current_path(here);
  EXPECT_EQ(read_file(one), "a");
}

TEST_F(ReplaceTest, AFileMetUnderAnotherNameGetsOneSafeCopy) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  std::vector<std::string> names = {folder.path("2")};
  std::filesystem::create_hard_link(one, names[0]);
#ifndef _WIN32
  names.push_back(folder.path("3"));
  std::filesystem::create_symlink(one, names[1]);
#endif
  int32_t written = 1;
  for (const std::string& name : names) {
    add_path(name);
    written *= 2;
  }
  EXPECT_EQ(replace_block({.text = "aa", .safe = 1}), 2 * written - 1);
  EXPECT_THAT(originals(), ElementsAre(one));
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a") << "not what an earlier turn had written";
}

TEST_F(ReplaceTest, FilesOfOneNameGetCopiesOfTheirOwn) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("x/same.txt", "1a");
  const auto two = add("y/same.txt", "2a");
  EXPECT_EQ(replace_block({.safe = 1}), 2);
  EXPECT_THAT(copies(),
              ElementsAre(in_store("same.txt_0"), in_store("same.txt_1")));
  EXPECT_EQ(read_file(in_store("same.txt_0")), "1a");
  EXPECT_EQ(read_file(in_store("same.txt_1")), "2a");
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one) + read_file(two), "1a2a");
}

TEST_F(ReplaceTest, OpenListAndSummaryFilesInTheStoreSurvive) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = folder.file("1", "a");
  const auto list = work().file("store/list", one);
  // It has the name of the first safe copy.
  const auto summary_file = in_store("1_0");
  const LinePaths paths{list.c_str(), summary_file.c_str()};
  EXPECT_EQ(replace_block({.safe = 1}, &paths), 1);
  EXPECT_EQ(read_file(list), one);
  EXPECT_EQ(read_file(summary_file), one + ", found 1, replaced 1\r\r\n");
  EXPECT_THAT(copies(), ElementsAre(in_store("1_1")));
  EXPECT_EQ(read_file(in_store("1_1")), "a");
}

// A plain replacement of one text by another.
std::string replaced(const std::string& text, const std::string& find,
                     const std::string& with, int32_t& count) {
  std::string out;
  for (size_t i = 0; i < text.size();) {
    if (text.compare(i, find.size(), find) == 0) {
      out += with;
      i += find.size();
      ++count;
    } else {
      out += text[i++];
    }
  }
  return out;
}

TEST_F(ReplaceTest, RandomFilesAreReplacedAndBroughtBack) {
  use_store();
  std::mt19937 random(5);
  const auto text = [&](size_t most) {
    std::string out(1 + random() % most, ' ');
    for (char& c : out) c = "abc"[random() % 3];
    return out;
  };
  for (int round = 0; round < 25; ++round) {
    ASSERT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
    ASSERT_EQ(Clear(ZENFO_LIST_PAIRS), 1);
    Texts paths, before, after;
    for (int i = 0; i < 6; ++i) {
      before.push_back(text(60));
      // Files of one name in several folders.
      paths.push_back(add("d" + std::to_string(i) + "/f", before.back()));
    }
    after = before;
    int32_t count = 0;
    for (int pairs = 0; pairs < 3; ++pairs) {
      const std::string find = text(3);
      const std::string with = random() % 3 == 0 ? "" : text(4);
      pair(find.c_str(), with.c_str());
      for (std::string& bytes : after) {
        bytes = replaced(bytes, find, with, count);
      }
    }
    EXPECT_EQ(replace_string({.safe = 1}), count);
    size_t changed = 0;
    for (size_t i = 0; i < paths.size(); ++i) {
      EXPECT_EQ(read_file(paths[i]), after[i]);
      changed += after[i] != before[i];
    }
    EXPECT_GE(originals().size(), changed);
    if (round % 2 == 0) {
      EXPECT_EQ(GetUndoList(), static_cast<int32_t>(originals().size()));
    }
    EXPECT_EQ(Undo(), 0);
    for (size_t i = 0; i < paths.size(); ++i) {
      EXPECT_EQ(read_file(paths[i]), before[i]);
    }
  }
}

// ---- Faults of the disk ----------------------------------------------------

TEST_F(ReplaceTest, AFileThatCannotBeWrittenEndsTheRun) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  const auto two = add("2", "a");
  HostRecorder host;
  host.on_status_text = [&](const std::string& status) {
    if (status != "Now replacing in file " + one) return;
    std::filesystem::remove(one);
    std::filesystem::create_directory(one);
  };
  const auto list = line_list({one, two});
  EXPECT_EQ(over_lines(replace_block, {.safe = 1}, list), -1);
  EXPECT_EQ(summary(), one + ", found 1") << "as far as it was written";
  EXPECT_EQ(read_file(two), "a");
  expect_no_matches();
  EXPECT_THAT(errors(), IsEmpty());
  EXPECT_EQ(read_file(in_store("1_0")), "a");
  EXPECT_EQ(Undo(), 1) << "a folder is in its place";
  std::filesystem::remove(one);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a");
}

#ifdef _WIN32
TEST_F(ReplaceTest, AFileMappedByAnotherProgramEndsTheRunAndStays) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "12345a67890");
  {
    const ForeignMapping mapping(one);
    ASSERT_TRUE(mapping.is_mapped());
    for (const char* text : {"", "longer"}) {
      EXPECT_EQ(replace_block({.text = text}), -1);
      EXPECT_EQ(read_file(one), "12345a67890");
    }
    expect_no_results();
  }
  EXPECT_EQ(replace_block({.text = ""}), 1);
  EXPECT_EQ(read_file(one), "1234567890");
}
#else
// No file can grow beyond the limit while this object lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

// Gives up root's right to write every file while this object lives.
class Unprivileged {
 public:
  Unprivileged() : user_(geteuid()) {
    if (user_ == 0) active_ = seteuid(65534) == 0;
  }
  ~Unprivileged() {
    if (user_ == 0 && seteuid(0) != 0) std::abort();
  }
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;
  bool active() const { return active_; }

 private:
  uid_t user_;
  bool active_ = true;
};

TEST_F(ReplaceTest, AReadOnlyFileEndsTheRunAndStays) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  ASSERT_EQ(chmod(one.c_str(), 0444), 0);
  const Unprivileged nobody;
  ASSERT_TRUE(nobody.active());
  EXPECT_EQ(replace_block({}), -1);
  EXPECT_EQ(read_file(one), "a");
  expect_no_results();
}

TEST_F(ReplaceTest, ADiskFullWhileWritingLeavesTheSafeCopy) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const std::string text(6000, 'a');
  const auto one = add("1", text);
  const auto two = add("2", text);
  {
    const FileSizeLimit limit(10000);
    EXPECT_EQ(replace_block({.text = "longer", .safe = 1}), -1);
  }
  EXPECT_LT(read_file(one).size(), 36000u);
  EXPECT_EQ(read_file(two), text);
  EXPECT_THAT(originals(), ElementsAre(one));
  EXPECT_EQ(GetUndoList(), 1);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), text);
}

TEST_F(ReplaceTest, ADiskFullWhileCopyingSkipsTheFile) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const std::string text(20000, 'a');
  const auto one = add("1", text);
  const auto two = add("2", "a");
  {
    const FileSizeLimit limit(10000);
    EXPECT_EQ(replace_block({.safe = 1}), 1);
  }
  EXPECT_EQ(read_file(one), text);
  EXPECT_EQ(read_file(two), "X");
  EXPECT_THAT(rejected(), ElementsAre(one));
  EXPECT_EQ(errors().size(), 1u);
  EXPECT_THAT(originals(), ElementsAre(two));
  EXPECT_FALSE(file_exists(in_store("1_0"))) << "no half copy";
}

TEST_F(ReplaceTest, AnUndoListThatCannotBeWrittenSkipsTheFile) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  {
    const FileSizeLimit limit(10);  // the copy fits, its line does not
    EXPECT_EQ(replace_block({.safe = 1}), 0);
  }
  EXPECT_EQ(read_file(one), "a");
  EXPECT_THAT(rejected(), ElementsAre(one));
  EXPECT_EQ(read_file(undo_file()), "") << "no half line";
  EXPECT_THAT(originals(), IsEmpty());
}

TEST_F(ReplaceTest, ASummaryThatCannotBeWrittenFailsTheRun) {
  ASSERT_TRUE(pattern("a"));
  const auto one = folder.file("1", "a");
  const auto list = work().file("list", one);
  const LinePaths paths{list.c_str(), "/dev/full"};
  EXPECT_EQ(replace_block({}, &paths), -1);
  EXPECT_EQ(read_file(one), "X");
}
#endif

}  // namespace
}  // namespace zenfo::test
