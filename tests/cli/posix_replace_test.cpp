// replace, case and undo from end to end, with what only Linux can show.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// A folder of files and a store of runs of its own; the input is no terminal.
class Replace : public ::testing::Test {
 protected:
  Replace() {
    setenv("XDG_STATE_HOME", store_.path().c_str(), 1);
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, STDIN_FILENO);
    close(nothing);
  }
  ~Replace() override { unsetenv("XDG_STATE_HOME"); }

  Outcome run(std::vector<std::string> arguments) const {
    return run_zenfo(std::move(arguments), folder_.path());
  }
  // The bytes of a.txt that a run makes of `before`.
  std::string made_of(const std::string& before,
                      std::vector<std::string> arguments) const {
    folder_.file("a.txt", before);
    arguments.push_back("a.txt");
    const Outcome outcome = run(std::move(arguments));
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    return bytes("a.txt");
  }
  std::string bytes(const std::string& name) const {
    return read_file(folder_.path(name));
  }
  // The last run's name.
  std::string last_run() const {
    const std::string list = run({"undo", "--list"}).out;
    const size_t end = list.rfind('\n', list.size() - 2);
    const size_t start = end == std::string::npos ? 0 : end + 1;
    return list.substr(start, list.find(' ', start) - start);
  }
  size_t files_in_store() const {
    size_t count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(store_.path())) {
      count += entry.is_regular_file();
    }
    return count;
  }

  TempFolder folder_;
  TempFolder store_;
};

constexpr int64_t kLongAgo = 1'000'000'000;

void set_time(const std::string& path, int64_t seconds) {
  const timespec times[2] = {{seconds, 0}, {seconds, 123456789}};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

timespec time_of(const std::string& path) {
  struct stat facts {};
  stat(path.c_str(), &facts);
  return facts.st_mtim;
}

// ---- what is put in
// ----------------------------------------------------------

struct Made {
  const char* name;
  std::vector<std::string> arguments;
  std::string before;
  std::string after;
};

TEST_F(Replace, WritesExactBytes) {
  folder_.file("pairs", "plum\tpear\r\npear\tfig\r\n");
  folder_.file("values", "one\ntwo\n");
  const Made cases[] = {
      {"text",
       {"replace", "-y", "plum", "pear"},
       "a plum\r\nplum",
       "a pear\r\npear"},
      {"deleted", {"replace", "-y", "plum ", ""}, "a plum b", "a b"},
      {"high bytes",
       {"replace", "-y", "\xFF", "\xFE\x80"},
       "a\xFF",
       "a\xFE\x80"},
      {"case", {"replace", "-yi", "plum", "x"}, "Plum pLUM", "x x"},
      {"word", {"replace", "-yw", "plum", "x"}, "plums plum", "plums x"},
      {"before",
       {"replace", "-y", "--before", "plum", "<"},
       "a plum",
       "a <plum"},
      {"after", {"replace", "-y", "--after", "plum", ">"}, "plum a", "plum> a"},
      {"markers",
       {"replace", "-y", "--start", "(", "--end", ")", "a", "b"},
       "a (a) (a",
       "a (b) (a"},
      {"expanded", {"replace", "-y", "--expand", ",", "^M^J"}, "a,b", "a\r\nb"},
      {"caret names", {"replace", "-y", "--caret", "^J", ","}, "a\nb", "a,b"},
      {"numbers",
       {"replace", "-y", "--number", "x", "<#>"},
       "x x x",
       "<1> <2> <3>"},
      {"numbers from 10 by 5",
       {"replace", "-y", "--number", "--first", "10", "--step", "5",
        "--placeholder", "NN", "x", "#NN"},
       "x x",
       "#10 #15"},
      {"pairs", {"replace", "-y", "--pairs", "pairs"}, "plum pear", "fig fig"},
      {"values",
       {"replace", "-y", "--values", "values", "x"},
       "x x x",
       "one two x"},
      {"outside",
       {"replace", "-y", "--outside", "(b)", "a", "x"},
       "a b a",
       "x b x"},
      {"upper",
       {"case", "-y", "--upper", "plum"},
       "a plum Plum\xE4",
       "a PLUM Plum\xE4"},
      {"lower",
       {"case", "-yi", "--lower", "PLUM"},
       "A PLUM pLuM",
       "A plum plum"},
  };
  for (const Made& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(made_of(c.before, c.arguments), c.after);
  }
}

TEST_F(Replace, NumbersEachFileFromTheStartOrRunsOn) {
  folder_.file("a", "x x");
  folder_.file("b", "x");
  run({"replace", "-y", "--number", "x", "#", "a", "b"});
  EXPECT_EQ(bytes("a") + '|' + bytes("b"), "1 2|1");
  run({"undo"});
  run({"replace", "-y", "--number", "--run-on", "x", "#", "a", "b"});
  EXPECT_EQ(bytes("a") + '|' + bytes("b"), "1 2|3");
}

TEST_F(Replace, DoesWhatSedDoes) {
  folder_.file("tree/a.txt", "the cat\nthe dog, the end");
  folder_.file("tree/sub/b.txt", "a\r\nthe\r\n\n");
  folder_.file("tree/sub/none.txt", "nothing here\n");
  fs::copy(folder_.path("tree"), folder_.path("other"),
           fs::copy_options::recursive);
  EXPECT_EQ(run({"replace", "-ry", "the", "one & all", "tree"}).status, 0);
  const std::string sed = "find '" + folder_.path("other") +
                          "' -type f -exec sed -i 's/the/one \\& all/g' {} +";
  ASSERT_EQ(std::system(sed.c_str()), 0);
  for (const char* name : {"/a.txt", "/sub/b.txt", "/sub/none.txt"}) {
    EXPECT_EQ(bytes(std::string("tree") + name),
              bytes(std::string("other") + name));
  }
}

// ---- what is said
// ------------------------------------------------------------

TEST_F(Replace, TellsWhatWasDoneAndHowToUndoIt) {
  folder_.file("a.txt", "plum plum");
  folder_.file("b.txt", "plum");
  const Outcome outcome = run({"replace", "-y", "plum", "x", "a.txt", "b.txt"});
  EXPECT_EQ(outcome, (Outcome{"2 files changed, 3 matches replaced\n"
                              "undo with: zenfo undo " +
                                  last_run() + "\n",
                              "", 0}));
}

TEST_F(Replace, Answers1WhenNothingMatches) {
  folder_.file("a.txt", "plum");
  EXPECT_EQ(run({"replace", "-y", "quince", "x", "a.txt"}),
            (Outcome{"", "", 1}));
  EXPECT_EQ(files_in_store(), 0u);
}

TEST_F(Replace, LeavesFilesWithoutMatchesAlone) {
  set_time(folder_.file("a.txt", "apple"), kLongAgo);
  folder_.file("b.txt", "plum");
  EXPECT_EQ(run({"replace", "-y", "plum", "x", "a.txt", "b.txt"}).status, 0);
  EXPECT_EQ(time_of(folder_.path("a.txt")).tv_sec, kLongAgo);
}

TEST_F(Replace, RefusesToChangeUnseenWithoutATerminal) {
  folder_.file("a.txt", "plum");
  EXPECT_EQ(run({"replace", "plum", "x", "a.txt"}),
            (Outcome{"",
                     "zenfo: nothing was changed: see the changes with "
                     "--dry-run, make them with --yes\n",
                     2}));
  EXPECT_EQ(run({"replace", "--ask", "plum", "x", "a.txt"}),
            (Outcome{"", "zenfo: --ask needs a terminal\n", 2}));
  EXPECT_EQ(bytes("a.txt"), "plum");
  EXPECT_EQ(files_in_store(), 0u);
}

TEST_F(Replace, DryRunShowsEachChangeAndTouchesNothing) {
  const std::string path = folder_.file("a.txt", "one\na plum, a plum\nplum");
  set_time(path, kLongAgo);
  chmod(folder_.path().c_str(), 0555);
  EXPECT_EQ(run({"replace", "-n", "plum", "fig", "a.txt"}),
            (Outcome{"a.txt:2:-a plum, a plum\n"
                     "a.txt:3:-plum\n"
                     "a.txt:2:+a fig, a fig\n"
                     "a.txt:3:+fig\n",
                     "zenfo: 1 file would change, 3 matches would be replaced; "
                     "nothing was touched\n",
                     0}));
  chmod(folder_.path().c_str(), 0755);
  EXPECT_EQ(bytes("a.txt"), "one\na plum, a plum\nplum");
  EXPECT_EQ(time_of(path).tv_sec, kLongAgo);
  EXPECT_EQ(files_in_store(), 0u);
}

// ---- which files
// -------------------------------------------------------------

TEST_F(Replace, ChangesAFileOnceHoweverOftenItIsNamed) {
  folder_.file("a.txt", "plum");
  fs::create_symlink("a.txt", folder_.path("soft"));
  fs::create_hard_link(folder_.path("a.txt"), folder_.path("hard"));
  EXPECT_EQ(run({"replace", "-y", "plum", "plumplum", "soft", "a.txt", "hard",
                 "./a.txt"})
                .status,
            0);
  EXPECT_EQ(bytes("a.txt"), "plumplum");
  EXPECT_TRUE(fs::is_symlink(folder_.path("soft")));
  EXPECT_EQ(fs::hard_link_count(folder_.path("a.txt")), 2u);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(bytes("hard"), "plum");
  EXPECT_TRUE(fs::is_symlink(folder_.path("soft")));
}

TEST_F(Replace, HeedsIncludeAndExclude) {
  folder_.file("a.c", "x");
  folder_.file("b.c", "x");
  folder_.file("c.h", "x");
  folder_.file("old/a.c", "x");
  EXPECT_EQ(run({"replace", "-ry", "--include", "*.c", "--exclude", "b*",
                 "--exclude-dir", "old", "x", "y", "."})
                .status,
            0);
  EXPECT_EQ(bytes("a.c") + bytes("b.c") + bytes("c.h") + bytes("old/a.c"),
            "yxxx");
}

TEST_F(Replace, PassesOverBinaryFilesUnlessAsked) {
  const std::string inside("plum\0plum", 9);
  folder_.file("inside", inside);
  folder_.file("first", "\x01plum");
  folder_.file("text", "\tplum\r\n");
  const Outcome outcome =
      run({"replace", "-y", "plum", "x", "inside", "first", "text"});
  EXPECT_THAT(outcome.out, StartsWith("1 file changed, 1 match replaced\n"
                                      "2 files skipped (2: binary)\n"));
  EXPECT_EQ(outcome.err,
            "zenfo: first: skipped: binary\nzenfo: inside: skipped: binary\n");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(bytes("inside"), inside);
  EXPECT_EQ(bytes("first"), "\x01plum");
  EXPECT_EQ(run({"replace", "-y", "--binary", "plum", "x", "first"}).status, 0);
  EXPECT_EQ(bytes("first"), "\x01x");
  const Outcome cut = run({"replace", "-y", "--binary", "plum", "x", "inside"});
  EXPECT_EQ(
      cut.err,
      "zenfo: inside: what stands behind its first zero byte is cut off\n");
  EXPECT_EQ(bytes("inside"), "x");
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(bytes("inside"), inside);
}

TEST_F(Replace, PassesOverReadOnlyFilesUnlessAsked) {
  const std::string path = folder_.file("a.txt", "plum");
  chmod(path.c_str(), 0440);
  EXPECT_EQ(run({"replace", "-y", "plum", "x", "a.txt"}),
            (Outcome{"0 files changed\n1 file skipped (1: read-only)\n",
                     "zenfo: a.txt: skipped: read-only\n", 2}));
  EXPECT_EQ(bytes("a.txt"), "plum");
  EXPECT_EQ(run({"replace", "-y", "--read-only", "plum", "x", "a.txt"}).status,
            0);
  EXPECT_EQ(bytes("a.txt"), "x");
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(bytes("a.txt"), "plum");
  EXPECT_EQ(fs::status(path).permissions(),
            fs::perms::owner_read | fs::perms::group_read);
}

TEST_F(Replace, TakesNoFileThatCouldNotBeUndone) {
  folder_.file("a\tb", "plum");
  EXPECT_EQ(run({"replace", "-y", "plum", "x", "a\tb"}).status, 2);
  EXPECT_EQ(bytes("a\tb"), "plum");
  EXPECT_EQ(run({"replace", "-y", "--no-backup", "plum", "x", "a\tb"}).status,
            0);
  EXPECT_EQ(bytes("a\tb"), "x");
}

TEST_F(Replace, KeepsDatesOnDemand) {
  const std::string path = folder_.file("a.txt", "plum");
  set_time(path, kLongAgo);
  EXPECT_EQ(run({"replace", "-y", "--keep-date", "plum", "x", "a.txt"}).status,
            0);
  EXPECT_EQ(bytes("a.txt"), "x");
  EXPECT_EQ(time_of(path).tv_sec, kLongAgo);
  EXPECT_EQ(time_of(path).tv_nsec, 123456789);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(bytes("a.txt"), "plum");
}

// The limit lets the safe copy through, but not what the file would become.
TEST_F(Replace, PutsAFileBackThatCouldNotBeWritten) {
  folder_.file("a.txt", "pla");
  const std::string large(200'000, 'a');
  folder_.file("b.txt", large);
  folder_.file("c.txt", "a");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limit{300'000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  const Outcome outcome =
      run({"replace", "-y", "a", "xxxx", "a.txt", "b.txt", "c.txt"});
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, SIG_DFL);
  EXPECT_EQ(outcome.status, 2) << outcome.out;
  EXPECT_THAT(outcome.err,
              HasSubstr("zenfo: the run failed before its end\n"
                        "zenfo: b.txt: was not finished and is again as it was "
                        "before\n"));
  EXPECT_THAT(outcome.out, StartsWith("1 file changed, 1 match replaced\n"));
  EXPECT_EQ(bytes("a.txt"), "plxxxx");
  EXPECT_EQ(bytes("b.txt"), large);
  EXPECT_EQ(bytes("c.txt"), "a");
  EXPECT_EQ(run({"undo"}), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt"), "pla");
}

// ---- undo
// --------------------------------------------------------------------

TEST_F(Replace, UndoBringsFilesOfOneNameBackFromAnywhere) {
  folder_.file("one/a.txt", "plum 1");
  folder_.file("two/a.txt", "plum 2");
  EXPECT_EQ(run({"replace", "-ry", "plum", "x", "."}).status, 0);
  EXPECT_EQ(bytes("two/a.txt"), "x 2");
  EXPECT_EQ(run_zenfo({"undo"}, store_.path()),
            (Outcome{"2 files restored\n", "", 0}));
  EXPECT_EQ(bytes("one/a.txt"), "plum 1");
  EXPECT_EQ(bytes("two/a.txt"), "plum 2");
  EXPECT_EQ(files_in_store(), 0u);
  EXPECT_EQ(run({"undo"}),
            (Outcome{"", "zenfo: there is no run to undo\n", 1}));
}

TEST_F(Replace, UndoTakesAGivenRunAndChosenFiles) {
  folder_.file("a.txt", "1");
  folder_.file("b.txt", "1");
  EXPECT_EQ(run({"replace", "-y", "1", "2", "a.txt", "b.txt"}).status, 0);
  const std::string first = last_run();
  folder_.file("c.txt", "1");
  EXPECT_EQ(run({"replace", "-y", "1", "2", "c.txt"}).status, 0);
  EXPECT_EQ(run({"undo", first, "b.txt"}),
            (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt") + bytes("b.txt") + bytes("c.txt"), "212");
  EXPECT_EQ(run({"undo", first, "b.txt"}).status, 2);
  EXPECT_EQ(run({"undo", first}), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt") + bytes("b.txt") + bytes("c.txt"), "112");
}

TEST_F(Replace, UndoSparesFilesThatWereChangedSince) {
  const std::string path = folder_.file("a.txt", "plum");
  folder_.file("b.txt", "plum");
  EXPECT_EQ(run({"replace", "-y", "plum", "x", "a.txt", "b.txt"}).status, 0);
  folder_.file("a.txt", "mine");
  EXPECT_EQ(run({"undo"}),
            (Outcome{"1 file restored\n",
                     "zenfo: " + path +
                         ": was changed after the run; --force brings it back "
                         "anyhow\n",
                     2}));
  EXPECT_EQ(bytes("a.txt"), "mine");
  EXPECT_EQ(bytes("b.txt"), "plum");
  EXPECT_EQ(run({"undo", "--force"}), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt"), "plum");
}

TEST_F(Replace, UndoListsRuns) {
  EXPECT_EQ(run({"undo", "--list"}), (Outcome{"", "", 1}));
  folder_.file("a.txt", "plum");
  EXPECT_EQ(run({"replace", "-y", "plum", "it's", "a.txt"}).status, 0);
  const Outcome list = run({"undo", "--list"});
  EXPECT_THAT(list.out, ::testing::MatchesRegex(
                            "[0-9]+-[0-9]+-[0-9]+-0  [-0-9]+ [:0-9]+  1 file  "
                            "zenfo replace -y plum 'it'.''s' a.txt\n"));
  EXPECT_EQ(list.status, 0);
}

TEST_F(Replace, KeepsNoCopiesWhenTold) {
  folder_.file("a.txt", "plum");
  EXPECT_EQ(run({"replace", "-y", "--no-backup", "plum", "x", "a.txt"}),
            (Outcome{"1 file changed, 1 match replaced\n", "", 0}));
  EXPECT_EQ(files_in_store(), 0u);
}

TEST_F(Replace, KeepsCopiesFromOthersEyes) {
  folder_.file("a.txt", "plum");
  EXPECT_EQ(run({"replace", "-y", "plum", "x", "a.txt"}).status, 0);
  EXPECT_EQ(fs::status(store_.path("zenfo/runs")).permissions(),
            fs::perms::owner_all);
}

// ---- wrong command lines
// -------------------------------------------------------

TEST_F(Replace, RefusesWrongCommandLines) {
  folder_.file("a.txt", "plum");
  const std::vector<std::vector<std::string>> lines = {
      {"replace"},
      {"replace", "-y", "plum"},
      {"replace", "-y", "plum", "x"},
      {"replace", "-y", "", "x", "a.txt"},
      {"replace", "-y", "--before", "--after", "plum", "x", "a.txt"},
      {"replace", "-y", "--first", "2", "plum", "x", "a.txt"},
      {"replace", "-y", "--number", "--first", "2147483648", "plum", "#",
       "a.txt"},
      {"replace", "-y", "--take", "2", "plum", "x", "a.txt"},
      {"replace", "-y", "--ask", "plum", "x", "a.txt"},
      {"replace", "-y", "--values", "nowhere", "plum", "a.txt"},
      {"replace", "-y", "--pairs", "a.txt", "a.txt"},
      {"replace", "-y", "--inside", "a", "--outside", "b", "plum", "x",
       "a.txt"},
      {"case", "-y", "plum", "a.txt"},
      {"case", "-y", "--upper", "--lower", "plum", "a.txt"},
      {"undo", "--list", "x"},
  };
  for (const auto& line : lines) {
    const Outcome outcome = run(line);
    EXPECT_EQ(outcome.status, 2) << ::testing::PrintToString(line);
    EXPECT_THAT(outcome.err, StartsWith("zenfo: "));
    EXPECT_EQ(outcome.out, "");
  }
  EXPECT_EQ(bytes("a.txt"), "plum");
}

}  // namespace
}  // namespace zenfo::test
