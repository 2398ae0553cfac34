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

#include "cli/posix/change_fixture.h"
#include "cli/posix/conversation.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

using Replace = ChangeTest;

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
  folder_.file("control", "a^M^Jb\n^I\n");
  folder_.file("numbers", "plum\tp%\nfig\tf%\n");
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
      {"values before",
       {"replace", "-y", "--before", "--values", "values", "x"},
       "x x x",
       "onex twox x"},
      {"values after, cases ignored",
       {"replace", "-yi", "--after", "--values", "values", "x"},
       "X x",
       "Xone xtwo"},
      {"values, expanded",
       {"replace", "-y", "--expand", "--values", "control", "x"},
       "x-x",
       "a\r\nb-\t"},
      {"matches of a pattern",
       {"replace", "-y", "--from-pattern", "'0|1|2|3|4'", "x"},
       "x 1 x 23 x",
       "1 1 23 23 x"},
      {"one match of a pattern",
       {"replace", "-y", "--from-pattern", "'0|1|2|3|4'", "--take", "2", "x"},
       "x 1 x 23 x",
       "23 1 23 23 23"},
      {"matches of a pattern behind",
       {"replace", "-y", "--after", "--from-pattern", "'0|1|2|3|4'", "x"},
       "x 1 x 23 x",
       "x1 1 x23 23 x"},
      {"numbers in front",
       {"replace", "-y", "--number", "--before", "--step", "0", "x", "# "},
       "xx",
       "1 x1 x"},
      {"numbers behind, expanded",
       {"replace", "-y", "--number", "--after", "--expand", "--first", "9", "x",
        "^I##"},
       "x x",
       "x\t99 x\t1010"},
      {"numbers in pairs",
       {"replace", "-y", "--number", "--placeholder", "%", "--pairs",
        "numbers"},
       "plum fig plum",
       "p1 f1 p2"},
      {"a placeholder that is not there",
       {"replace", "-y", "--number", "--placeholder", "@@", "x", "y#"},
       "x x",
       "y# y#"},
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
  undo();
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

// Trees of text that perl can compare byte by byte: without control characters,
// empty files and links.
class Trees : public ChangeTest {
 protected:
  void SetUp() override {
    const std::string examples = std::string(ZENFO_SOURCE_FOLDER) + "/docs";
    ASSERT_EQ(shell("mkdir one && cp -r '" + examples +
                    "' one/docs && "
                    "find /usr/share/doc -name copyright -type f -size -100k | "
                    "sort | head -n 60 | tr '\\n' '\\0' | "
                    "xargs -0 -r cp --parents -t one"),
              0);
    shell(
        "find one -type f -exec perl -ne "
        "'BEGIN { $/ = undef } unlink $ARGV if "
        "/[\\x00-\\x08\\x0b\\x0c\\x0e-\\x1f]/' {} +");
    ASSERT_EQ(shell("find one -type f -empty -delete; cp -r one two"), 0);
  }
  int shell(const std::string& command) const {
    return std::system(("cd '" + folder_.path() + "' && " + command).c_str());
  }
};

TEST_F(Trees, AreChangedAsPerlChangesThem) {
  struct Case {
    std::vector<std::string> arguments;
    const char* perl;
  };
  const std::string classes =
      std::string(ZENFO_SOURCE_FOLDER) + "/examples/classes.txt";
  const Case cases[] = {
      {{"the", "T&\\1h$"}, "s/the/T&\\\\1h\\$/g"},
      {{"-i", "license", ""}, "s/license//gi"},
      {{"-i", "--before", "SOFTWARE", "<"}, "s/(?=software)/</gi"},
      {{"--pattern", "--classes", classes, "#digit", "<n>"}, "s/[0-9]+/<n>/g"},
      {{"--pattern", "'a|b|c'[2]", "-"}, "s/[abc]{2}/-/g"},
      {{"--pattern", "--classes", classes, "#digit[2-]\\.", "-"},
       "s/[0-9]{2,}\\./-/g"},
      {{"-w", "or", "OR"}, "s/(?<![0-9A-Za-z])or(?![0-9A-Za-z])/OR/g"},
      {{"--caret", "^J", " ^J"}, "s/\\n/ ^J/g"},
      {{"--caret", "--expand", "^J", "^M^J"}, "s/\\n/\\r\\n/g"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.perl);
    std::vector<std::string> arguments = {"replace", "-ry"};
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
    arguments.push_back("one");
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(shell(std::string("find two -type f -exec perl -0777 -pi -e '") +
                    c.perl + "' {} + && diff -rq one two >/dev/null"),
              0);
    EXPECT_EQ(undo().status, 0);
    EXPECT_EQ(shell("rm -r two && cp -r one two"), 0);
  }
}

TEST_F(Trees, HaveTheirLettersTurnedAsPerlTurnsThem) {
  EXPECT_EQ(run({"case", "-ryi", "--upper", "copyright", "one"}).status, 0);
  EXPECT_EQ(shell("find two -type f -exec perl -pi -e "
                  "'s/(copyright)/\\U$1/gi' {} + && diff -rq one two"),
            0);
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
  EXPECT_EQ(undo().status, 0);
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

TEST_F(Replace, NamesAFileThatWasChangedMeanwhile) {
  folder_.file("a.txt", "plum");
  const std::string out = folder_.path("out");
  Conversation conversation({"replace", "--ask", "plum", "fig", "a.txt"},
                            folder_.path(), out);
  conversation.hear("stop: ");
  folder_.file("a.txt", "another plum");
  conversation.say("y\n");
  EXPECT_THAT(conversation.hear("while\r\n"),
              HasSubstr("a.txt: skipped: it was changed meanwhile"));
  EXPECT_EQ(conversation.wait(), 2);
  EXPECT_EQ(bytes("a.txt"), "another plum");
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
  EXPECT_EQ(undo().status, 0);
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
  EXPECT_EQ(undo().status, 0);
  EXPECT_EQ(bytes("a.txt"), "plum");
}

// The size limit allows the safe copy, but not the longer new file.
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
  EXPECT_THAT(
      outcome.err,
      HasSubstr("zenfo: the run ended early with an error\n"
                "zenfo: b.txt: was not finished and has been restored\n"));
  EXPECT_THAT(outcome.out, StartsWith("1 file changed, 1 match replaced\n"));
  EXPECT_EQ(bytes("a.txt"), "plxxxx");
  EXPECT_EQ(bytes("b.txt"), large);
  EXPECT_EQ(bytes("c.txt"), "a");
  EXPECT_EQ(undo(), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt"), "pla");
}

// ---- undo
// --------------------------------------------------------------------

TEST_F(Replace, UndoBringsFilesOfOneNameBackFromAnywhere) {
  folder_.file("one/a.txt", "plum 1");
  folder_.file("two/a.txt", "plum 2");
  EXPECT_EQ(run({"replace", "-ry", "plum", "x", "."}).status, 0);
  EXPECT_EQ(bytes("two/a.txt"), "x 2");
  EXPECT_EQ(run_zenfo({"undo", last_run()}, store_.path()),
            (Outcome{"2 files restored\n", "", 0}));
  EXPECT_EQ(bytes("one/a.txt"), "plum 1");
  EXPECT_EQ(bytes("two/a.txt"), "plum 2");
  EXPECT_EQ(files_in_store(), 0u);
  EXPECT_EQ(undo(), (Outcome{"", "zenfo: there is no run to undo\n", 1}));
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
  EXPECT_EQ(undo(),
            (Outcome{"1 file restored\n",
                     "zenfo: " + path +
                         ": was changed after the run; --force brings it back "
                         "anyhow\n",
                     2}));
  EXPECT_EQ(bytes("a.txt"), "mine");
  EXPECT_EQ(bytes("b.txt"), "plum");
  EXPECT_EQ(undo({"--force"}), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt"), "plum");
}

TEST_F(Replace, UndoListsRuns) {
  EXPECT_EQ(run({"undo", "--list"}), (Outcome{"", "", 1}));
  folder_.file("a.txt", "plum");
  EXPECT_EQ(run({"replace", "-y", "plum", "it's", "a.txt"}).status, 0);
  const Outcome list = run({"undo", "--list"});
  EXPECT_THAT(list.out,
              ::testing::MatchesRegex(
                  "[0-9]+-[0-9]+Z-[0-9]+  [-0-9]+ [:0-9]+  1 file  0.1 MB  "
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

// ---- on a terminal
// -----------------------------------------------------------

class ReplaceOnTerminal : public ChangeTest {
 protected:
  // Answers the questions, each of which ends with `end`, one after the other.
  // Returns what the command wrote.
  std::string answer(std::vector<std::string> arguments, const std::string& end,
                     const std::vector<std::string>& answers, int status) {
    const std::string out = folder_.path("out");
    write_file(out, "");
    Conversation conversation(std::move(arguments), folder_.path(), out);
    for (const std::string& text : answers) {
      asked_.push_back(conversation.hear(end));
      conversation.say(text);
    }
    EXPECT_EQ(conversation.wait(), status);
    return read_file(out);
  }
  std::vector<std::string> asked_;
};

TEST_F(ReplaceOnTerminal, ChangesNothingWithoutAYes) {
  folder_.file("a.txt", "plum plum");
  folder_.file("b.txt", "plum");
  for (const char* no : {"n\n", "\n", "no\n", "perhaps\n", "\x04"}) {
    EXPECT_EQ(
        answer({"replace", "plum", "x", "a.txt", "b.txt"}, "[y/N] ", {no}, 2),
        "");
    EXPECT_EQ(asked_.back(),
              "3 matches in 2 files would be replaced. Go on? [y/N] ");
    EXPECT_EQ(bytes("a.txt") + '|' + bytes("b.txt"), "plum plum|plum");
    EXPECT_EQ(files_in_store(), 0u);
  }
}

TEST_F(ReplaceOnTerminal, EndsWhenItIsInterruptedWhileItAsks) {
  folder_.file("a.txt", "plum");
  EXPECT_EQ(answer({"replace", "plum", "x", "a.txt"}, "[y/N] ", {"\x03"}, 130),
            "");
  EXPECT_EQ(bytes("a.txt"), "plum");
  EXPECT_EQ(files_in_store(), 0u);
}

TEST_F(ReplaceOnTerminal, ChangesAllAfterAYes) {
  folder_.file("a.txt", "plum plum");
  const std::string said =
      answer({"replace", "plum", "x", "a.txt"}, "[y/N] ", {"y\n"}, 0);
  EXPECT_EQ(said, "1 file changed, 2 matches replaced\nundo with: zenfo undo " +
                      last_run() + '\n');
  EXPECT_EQ(bytes("a.txt"), "x x");
  EXPECT_EQ(answer({"case", "--upper", "x", "a.txt"}, "[y/N] ", {"yes\n"}, 0)
                .substr(0, 33),
            "1 file changed, 2 matches changed");
  EXPECT_EQ(bytes("a.txt"), "X X");
}

TEST_F(ReplaceOnTerminal, ChangesTheMatchesThatAreTaken) {
  struct Case {
    const char* name;
    std::vector<std::string> answers;
    std::string after;
    int status;
    std::string summary;
  };
  const Case cases[] = {
      {"yes and no",
       {"y\n", "n\n", "yes\n", "no\n", "y\n"},
       "x plum x|plum x",
       0,
       "2 files changed, 3 matches replaced\n"},
      {"none",
       {"n\n", "n\n", "n\n", "n\n", "n\n"},
       "plum plum plum|plum plum",
       1,
       "0 files changed, 0 matches replaced\n"},
      {"all",
       {"n\n", "a\n"},
       "plum x x|x x",
       0,
       "2 files changed, 4 matches replaced\n"},
      {"stop",
       {"y\n", "s\n"},
       "x plum plum|plum plum",
       0,
       "1 file changed, 1 match replaced\n1 file not done\n"},
      {"stop in the second file",
       {"n\n", "n\n", "y\n", "y\n", "s\n"},
       "plum plum x|x plum",
       0,
       "2 files changed, 2 matches replaced\n"},
      {"stop at once",
       {"s\n"},
       "plum plum plum|plum plum",
       1,
       "0 files changed, 0 matches replaced\n1 file not done\n"},
      {"end of input",
       {"y\n", "\x04"},
       "x plum plum|plum plum",
       0,
       "1 file changed, 1 match replaced\n1 file not done\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    folder_.file("a.txt", "plum plum plum");
    folder_.file("b.txt", "plum plum");
    EXPECT_THAT(answer({"replace", "--ask", "plum", "x", "a.txt", "b.txt"},
                       "stop: ", c.answers, c.status),
                StartsWith(c.summary));
    EXPECT_EQ(bytes("a.txt") + '|' + bytes("b.txt"), c.after);
    undo();
    EXPECT_EQ(bytes("a.txt") + '|' + bytes("b.txt"),
              "plum plum plum|plum plum");
  }
}

TEST_F(ReplaceOnTerminal, AsksForEachTextOfPairs) {
  folder_.file("pairs", "plum\tpear\npear\tfig\n");
  folder_.file("a.txt", "plum pear");
  answer({"replace", "--ask", "--pairs", "pairs", "a.txt"},
         "stop: ", {"y\n", "n\n", "y\n"}, 0);
  ASSERT_EQ(asked_.size(), 3u);
  EXPECT_THAT(asked_[0], StartsWith("a.txt:1: >>>plum<<< pear\n"));
  EXPECT_THAT(asked_[1], HasSubstr("a.txt:1: >>>pear<<< pear\n"));
  EXPECT_THAT(asked_[2], HasSubstr("a.txt:1: pear >>>pear<<<\n"));
  EXPECT_EQ(bytes("a.txt"), "pear fig");
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
