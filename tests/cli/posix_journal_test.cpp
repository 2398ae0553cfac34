// Which runs can be undone: while a run is alive, after one was killed, and
// after others changed the files.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "cli/posix/change_fixture.h"
#include "cli/posix/conversation.h"
#include "cli/posix/traced_run.h"
#include "shared/runs/run_journal.h"
#include "shared/runs/run_store.h"
#include "shared/system/run_lock.h"
#include "support/sweep.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

namespace fs = std::filesystem;
using ::testing::EndsWith;
using ::testing::HasSubstr;

class StoredRuns : public ChangeTest {
 protected:
  std::string runs_folder() const { return store_.path("zenfo/runs"); }
  // The path of the only list of safe copies.
  std::string undo_list() const {
    for (const auto& entry : fs::recursive_directory_iterator(runs_folder())) {
      if (entry.path().filename() == "undo.txt") return entry.path();
    }
    return "";
  }
  bool is_begun(const std::string& name) const {
    const std::string journal = runs_folder() + '/' + last_run() + ".journal";
    return host::JournalReader(journal).entry(folder_.path(name)).begun;
  }
  const std::vector<std::string> kReplace = {"replace", "-y",    "plum", "figs",
                                             "a.txt",   "b.txt", "c.txt"};
};

// The number of safe copies on record when the run is killed at its first
// change of a file.
size_t copies_before_first_change(const std::string& folder,
                                  const std::function<std::string()>& list,
                                  const std::vector<std::string>& arguments,
                                  const std::function<bool()>& any_changed) {
  for (int n = 1; n < 1000; ++n) {
    const auto killed = signal_zenfo_before(n, SIGKILL, arguments, folder);
    if (any_changed()) {
      const std::string lines = read_file(list());
      return static_cast<size_t>(std::count(lines.begin(), lines.end(), '\n'));
    }
    if (killed.call.empty()) break;
  }
  return 0;
}

bool set_append_only(const std::string& path, bool on) {
  const int file = open(path.c_str(), O_RDONLY);
  int flags = 0;
  bool done = ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
  flags = on ? flags | FS_APPEND_FL : flags & ~FS_APPEND_FL;
  done = done && ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
  close(file);
  return done;
}

// ---- alive
// -------------------------------------------------------------------

TEST_F(StoredRuns, AreNotUndoneWhileTheyAreAlive) {
  write_three();
  Conversation conversation(
      {"replace", "--ask", "plum", "figs", "a.txt", "b.txt"}, folder_.path(),
      folder_.path("out"));
  conversation.hear("stop: ");
  conversation.say("y\n");
  conversation.hear("stop: ");
  EXPECT_THAT(run({"undo", "--list"}).out, HasSubstr("  going on  "));
  const std::string name = last_run();
  const Outcome refusal = {"", "zenfo: " + name + ": is still going on\n", 2};
  EXPECT_EQ(run({"undo"}), refusal);
  EXPECT_EQ(run({"undo", name}), refusal);
  EXPECT_EQ(run({"undo", "--forget", name}), refusal);
  EXPECT_EQ(bytes("a.txt"), "figs");
  conversation.say("y\n");
  EXPECT_EQ(conversation.wait(), 0);
  EXPECT_EQ(run({"undo", name}), (Outcome{"2 files restored\n", "", 0}));
}

TEST_F(StoredRuns, AreUndoneByOneUndoAtATime) {
  write_three();
  run(kReplace);
  host::RunLock undo;
  ASSERT_TRUE(undo.take(runs_folder() + '/' + last_run() + ".lock"));
  EXPECT_THAT(run({"undo"}).err, EndsWith("is still going on\n"));
  EXPECT_EQ(bytes("a.txt"), "figs");
}

// ---- killed
// ------------------------------------------------------------------

TEST_F(StoredRuns, ThatWereKilledLeaveOthersChangesAlone) {
  if (!can_trace()) GTEST_SKIP() << "no process may trace another here";
  int edited = 0;
  const Sweep sweep(3);  // few calls lie between the ends of b.txt and c.txt
  for (int n = sweep.first();; n += sweep.step()) {
    write_three();
    const Signalled killed =
        signal_zenfo_before(n, SIGKILL, kReplace, folder_.path());
    SCOPED_TRACE("killed before change " + std::to_string(n) + ", " +
                 killed.call);
    if (killed.call.empty()) break;
    // A file that was begun may be half written.
    const bool edits = bytes("b.txt") == "figs" && !is_begun("c.txt");
    if (edits) {
      folder_.file("a.txt", "mine after it");
      folder_.file("c.txt", "mine instead");
      EXPECT_THAT(undo().err, HasSubstr("--force"));
      EXPECT_EQ(bytes("a.txt"), "mine after it");
      EXPECT_EQ(bytes("b.txt"), "plum");
      EXPECT_EQ(bytes("c.txt"), "mine instead");
      ++edited;
    }
    undo({"--force"});
    EXPECT_EQ(bytes("a.txt") + bytes("b.txt"), "plumplum");
    EXPECT_EQ(run({"undo", "--list"}).out, "");
    if (HasFailure()) return;
  }
  EXPECT_GT(edited, 0);
}

TEST_F(StoredRuns, OfBeforeAPowerCutComeBackWhateverTheJournalLacks) {
  write_three();
  run(kReplace);
  const std::string name = last_run();
  fs::remove(runs_folder() + '/' + name + ".json");
  write_file(runs_folder() + '/' + name + ".journal",
             "boot\tanother\nbegin\t" + folder_.path("a.txt") + '\n');
  EXPECT_EQ(run({"undo", name}), (Outcome{"3 files restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt") + bytes("b.txt") + bytes("c.txt"), "plumplumplum");
}

TEST_F(StoredRuns, OfBeforeAPowerCutSpareWhatWasChangedLater) {
  write_three();
  run(kReplace);
  const std::string name = last_run();
  const std::string journal = runs_folder() + '/' + name + ".journal";
  fs::remove(runs_folder() + '/' + name + ".json");
  write_file(journal, "boot\tanother\nbegin\t" + folder_.path("b.txt") + '\n');
  folder_.file("a.txt", "mine");
  fs::last_write_time(folder_.path("a.txt"),
                      fs::last_write_time(journal) + std::chrono::minutes(5));
  EXPECT_THAT(run({"undo", name}).err, HasSubstr("--force"));
  EXPECT_EQ(bytes("a.txt") + bytes("b.txt") + bytes("c.txt"), "mineplumplum");
}

// The journal still says what the undo was going to restore; the rest of it is
// lost.
TEST_F(StoredRuns, TornByAPowerCutDuringUndoComeBack) {
  write_three();
  run(kReplace);
  folder_.file("a.txt", "torn");
  folder_.file("b.txt", "mine");
  write_file(runs_folder() + '/' + last_run() + ".journal",
             "boot\tanother\nintend\t" + folder_.path("a.txt") + "\nintend\t" +
                 folder_.path("c.txt") + '\n');
  EXPECT_EQ(undo(),
            (Outcome{"2 files restored\n",
                     "zenfo: " + folder_.path("b.txt") +
                         ": was changed after the run; --force brings it back "
                         "anyhow\n",
                     2}));
  EXPECT_EQ(bytes("a.txt") + bytes("b.txt") + bytes("c.txt"), "plummineplum");
}

TEST_F(StoredRuns, ThatChangedNothingArePassedOver) {
  write_three();
  run(kReplace);
  {
    host::RunLock lock;
    host::RunStore(runs_folder()).begin("zenfo replace x y", lock);
  }
  EXPECT_EQ(undo(), (Outcome{"3 files restored\n", "", 0}));
  EXPECT_EQ(files_in_store(), 0u);
}

TEST_F(StoredRuns, AreKeptWhenTheirListCannotBeRead) {
  write_three();
  Conversation conversation(
      {"replace", "--ask", "--no-sync", "plum", "figs", "a.txt", "b.txt"},
      folder_.path(), folder_.path("out"));
  conversation.hear("stop: ");
  conversation.say("y\n");
  conversation.hear("stop: ");
  const std::string list = undo_list();
  const std::string whole = read_file(list);
  write_file(list, "");
  conversation.say("n\n");
  EXPECT_EQ(conversation.wait(), 2);
  EXPECT_THAT(read_file(folder_.path("out")), HasSubstr("undo with: "));
  write_file(list, whole);
  EXPECT_EQ(undo(), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt"), "plum");
}

TEST_F(StoredRuns, LeaveAloneWhatWasChangedWhileTheyWentOn) {
  write_three();
  Conversation conversation(
      {"replace", "--ask", "plum", "figs", "a.txt", "b.txt"}, folder_.path(),
      folder_.path("out"));
  conversation.hear("stop: ");
  conversation.say("y\n");
  conversation.hear("stop: ");
  folder_.file("a.txt", "mine");
  conversation.say("y\n");
  EXPECT_EQ(conversation.wait(), 0);
  EXPECT_EQ(undo(),
            (Outcome{"1 file restored\n",
                     "zenfo: " + folder_.path("a.txt") +
                         ": was changed after the run; --force brings it back "
                         "anyhow\n",
                     2}));
  EXPECT_EQ(bytes("a.txt") + bytes("b.txt"), "mineplum");
}

// ---- which one
// ---------------------------------------------------------------

TEST_F(StoredRuns, OfOtherFoldersAreUndoneWhenThatIsMeant) {
  write_three();
  run(kReplace);
  const Outcome refusal = run_zenfo({"undo"}, store_.path());
  EXPECT_EQ(refusal.status, 2);
  EXPECT_THAT(refusal.err, HasSubstr(folder_.path() + ": 3 files, zenfo"));
  EXPECT_EQ(bytes("a.txt"), "figs");
  const Outcome done = run_zenfo({"undo", "--yes"}, store_.path());
  EXPECT_THAT(done.err, HasSubstr(": undoing the run of "));
  EXPECT_THAT(done.err, HasSubstr(" in " + folder_.path() +
                                  ": 3 files, zenfo "
                                  "replace -y plum figs a.txt b.txt c.txt\n"));
  EXPECT_EQ(bytes("a.txt"), "plum");
}

TEST_F(StoredRuns, AreAskedForOnATerminal) {
  write_three();
  run(kReplace);
  for (const char* answer : {"n\n", "y\n"}) {
    Conversation conversation({"undo"}, folder_.path(), folder_.path("out"));
    EXPECT_THAT(conversation.hear("[y/N] "), HasSubstr(": undo the run of "));
    EXPECT_EQ(bytes("a.txt"), "figs");
    conversation.say(answer);
    EXPECT_EQ(conversation.wait(), *answer == 'y' ? 0 : 2);
  }
  EXPECT_EQ(bytes("a.txt"), "plum");
}

TEST_F(StoredRuns, AreForgottenOnDemand) {
  write_three();
  run(kReplace);
  EXPECT_EQ(run({"undo", "--forget", "none"}).status, 2);
  EXPECT_EQ(run({"undo", "--forget", last_run()}),
            (Outcome{"0.1 MB of safe copies removed\n", "", 0}));
  EXPECT_EQ(files_in_store(), 0u);
  EXPECT_EQ(bytes("a.txt"), "figs");
}

TEST_F(StoredRuns, AreTakenBackInTheirOrderWhateverTheZone) {
  for (const char* zone : {"UTC-12", "UTC+11"}) {
    setenv("TZ", zone, 1);
    folder_.file("a.txt", "1");
    run({"replace", "-y", "1", zone, "a.txt"});
  }
  unsetenv("TZ");
  EXPECT_EQ(undo().status, 0);
  EXPECT_EQ(bytes("a.txt"), "1");
  EXPECT_THAT(run({"undo", "--list"}).out, HasSubstr("UTC-12"));
}

TEST_F(StoredRuns, OfAStoreThatCannotBeReadAreAnError) {
  fs::create_directories(store_.path("zenfo"));
  write_file(runs_folder(), "");
  EXPECT_EQ(run({"undo"}).status, 2);
  EXPECT_EQ(run({"undo", "--list"}).status, 2);
}

TEST_F(StoredRuns, GiveWayWhenTheirCopiesTakeTooMuch) {
  setenv("ZENFO_UNDO_MEGABYTES", "0", 1);
  write_three();
  run(kReplace);
  const std::string first = last_run();
  const std::string record = runs_folder() + '/' + first + ".json";
  fs::last_write_time(record,
                      fs::last_write_time(record) - std::chrono::hours(25));
  const Outcome outcome = run({"replace", "-y", "figs", "x", "a.txt"});
  unsetenv("ZENFO_UNDO_MEGABYTES");
  EXPECT_THAT(outcome.err,
              HasSubstr(first + ": removing its safe copies because "));
  EXPECT_NE(last_run(), first);
  EXPECT_EQ(run({"undo", first}).status, 2);
}

// ---- files that cannot be changed
// --------------------------------------------

TEST_F(StoredRuns, PassOverAProgramThatIsRunning) {
  folder_.file("a.txt", "GNU");
  const std::string program = folder_.path("sleeper");
  fs::copy_file("/bin/sleep", program);
  const pid_t child = fork();
  if (child == 0) {
    execl(program.c_str(), program.c_str(), "60", nullptr);
    _exit(1);
  }
  const std::string link = "/proc/" + std::to_string(child) + "/exe";
  for (int i = 0; i < 1000 && fs::read_symlink(link) != program; ++i) {
    usleep(1000);
  }
  const Outcome outcome =
      run({"case", "--lower", "-y", "--binary", "GNU", "sleeper", "a.txt"});
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_EQ(outcome.err, "zenfo: sleeper: skipped: it is running\n");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(bytes("a.txt"), "gnu");
}

TEST_F(StoredRuns, PassOverAFileThatMayOnlyGrow) {
  const std::string log = folder_.file("log.txt", "plum");
  folder_.file("a.txt", "plum");
  if (!set_append_only(log, true)) GTEST_SKIP() << "no such files here";
  const Outcome outcome = run({"replace", "-ry", "plum", "figs", "."});
  set_append_only(log, false);
  EXPECT_EQ(outcome.err,
            "zenfo: ./log.txt: skipped: the system lets nobody change it\n");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(bytes("a.txt") + bytes("log.txt"), "figsplum");
}

TEST_F(StoredRuns, PutAFileBackThatGrowsTooLarge) {
  const std::string text(10'000, 'a');
  folder_.file("a.txt", text);
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small = {20'000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const Outcome outcome = run({"replace", "-y", "a", "xxxx", "a.txt"});
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, HasSubstr("a.txt: was not finished and has been "
                                     "restored\n"));
  EXPECT_EQ(bytes("a.txt"), text);
}

// ---- how careful
// -----------------------------------------------------------------

TEST_F(StoredRuns, HaveManyCopiesOnRecordBeforeTheFirstChange) {
  if (!can_trace()) GTEST_SKIP() << "no process may trace another here";
  for (const bool sync : {true, false}) {
    SCOPED_TRACE(sync);
    fs::remove_all(runs_folder());
    write_three();
    std::vector<std::string> arguments = kReplace;
    if (!sync) arguments.emplace_back("--no-sync");
    EXPECT_EQ(copies_before_first_change(
                  folder_.path(), [&] { return undo_list(); }, arguments,
                  [&] {
                    if (bytes("a.txt") != "plum") return true;
                    fs::remove_all(runs_folder());
                    return false;
                  }),
              sync ? 3u : 1u);
  }
}

TEST_F(StoredRuns, DoWithoutCopiesReplaceAFileInOneStep) {
  const std::string path = folder_.file("a.txt", "plum");
  struct stat before, after;
  for (const std::string option : {"--no-sync", "--yes"}) {
    folder_.file("a.txt", "plum");
    stat(path.c_str(), &before);
    run({"replace", "-y", "--no-backup", option, "plum", "figs", "a.txt"});
    stat(path.c_str(), &after);
    EXPECT_NE(before.st_ino, after.st_ino) << option;
    EXPECT_EQ(bytes("a.txt"), "figs");
  }
}

// ---- links
// -------------------------------------------------------------------

TEST_F(StoredRuns, KnowFilesByWhereTheirLinksLead) {
  folder_.file("real/a.txt", "plum");
  folder_.file("other", "");
  fs::create_symlink("real/a.txt", folder_.path("link"));
  fs::create_symlink("real", folder_.path("folder"));
  for (const char* name : {"link", "folder/a.txt"}) {
    EXPECT_EQ(run({"replace", "-y", "plum", "figs", name}).status, 0);
    EXPECT_EQ(bytes("real/a.txt"), "figs");
    fs::rename(folder_.path("link"), folder_.path("kept"));
    fs::create_symlink("other", folder_.path("link"));
    EXPECT_EQ(undo(), (Outcome{"1 file restored\n", "", 0}));
    EXPECT_EQ(bytes("real/a.txt") + bytes("other"), "plum");
    fs::rename(folder_.path("kept"), folder_.path("link"));
  }
}

TEST_F(StoredRuns, TakeLinksThatAreNamedAlone) {
  folder_.file("tree/a.txt", "plum");
  folder_.file("outside", "plum");
  fs::create_symlink("../outside", folder_.path("tree/link"));
  EXPECT_EQ(run({"replace", "-ry", "plum", "figs", "tree"}).err,
            "zenfo: 1 link skipped; name one to change the file it leads "
            "to\n");
  EXPECT_EQ(bytes("tree/a.txt") + bytes("outside"), "figsplum");
  EXPECT_EQ(run({"replace", "-y", "plum", "figs", "tree/link"}).err, "");
  EXPECT_EQ(bytes("outside"), "figs");
}

TEST_F(StoredRuns, FollowNoLinkThatWasNoneBefore) {
  for (const std::string option : {"--no-sync", "--ask"}) {
    for (const char* name : {"a.txt", "sub/b.txt", "other/b.txt"}) {
      folder_.file(name, "plum");
    }
    Conversation conversation(
        {"replace", "--ask", option, "plum", "figs", "a.txt", "sub/b.txt"},
        folder_.path(), folder_.path("out"));
    conversation.hear("stop: ");
    fs::remove_all(folder_.path("sub"));
    fs::create_symlink("other", folder_.path("sub"));
    conversation.say("y\n");
    EXPECT_THAT(conversation.hear("b.txt: skipped"), HasSubstr("skipped"));
    EXPECT_EQ(conversation.wait(), 2);
    EXPECT_EQ(bytes("a.txt") + bytes("other/b.txt"), "figsplum");
    fs::remove(folder_.path("sub"));
  }
}

}  // namespace
}  // namespace zenfo::test
