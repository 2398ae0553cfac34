// replace, case and undo with faults: in every case a file has its old bytes or
// its new ones, or its safe copy is on record.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/posix/change_fixture.h"
#include "cli/posix/traced_run.h"
#include "support/sweep.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// ---- killed at every change it makes
// -----------------------------------------

struct ChangingCommand {
  const char* name;
  std::vector<std::string> arguments;
};

void PrintTo(const ChangingCommand& command, std::ostream* stream) {
  *stream << command.name;
}

class Killed : public ChangeTest,
               public ::testing::WithParamInterface<ChangingCommand> {
 protected:
  void SetUp() override {
    if (!can_trace()) GTEST_SKIP() << "no process may trace another here";
  }

  // One of them takes several writes, one is not changed.
  static std::map<std::string, std::string> originals() {
    std::string large;
    while (large.size() < 600'000) large += "a plum and a pear\n";
    return {{"a.txt", "plum"},
            {"b.txt", large},
            {"c.txt", "no fruit"},
            {"sub/a.txt", "a plum, a pear\r\n"}};
  }
  void write_originals() const {
    for (const auto& [name, text] : originals()) folder_.file(name, text);
    folder_.file("pairs", "plum\tpear\npear\tfig\n");
  }
  std::string killed_before(int nth,
                            const std::vector<std::string>& arguments) const {
    return signal_zenfo_before(nth, SIGKILL, arguments, folder_.path()).call;
  }
  // Names of the files that differ from their originals.
  std::vector<std::string> changed() const {
    std::vector<std::string> names;
    for (const auto& [name, text] : originals()) {
      if (bytes(name) != text) names.push_back(name);
    }
    return names;
  }

  const Sweep sweep_{kSweepStep};
};

TEST_P(Killed, RunIsUndoneByAPlainUndo) {
  int undone = 0;
  for (int n = sweep_.first();; n += sweep_.step()) {
    write_originals();
    const std::string call = killed_before(n, GetParam().arguments);
    SCOPED_TRACE("killed before change " + std::to_string(n) + ", " + call);
    const size_t files = changed().size();
    const Outcome back = undo();
    EXPECT_THAT(changed(), IsEmpty()) << back.err;
    EXPECT_TRUE(files == 0 || back.status == 0) << back.err;
    undone += files > 0;
    if (HasFailure()) return;
    if (call.empty()) break;
  }
  EXPECT_GT(undone, 10 / sweep_.step());
}

TEST_P(Killed, UndoIsFinishedByAnother) {
  int unfinished = 0;
  for (int n = sweep_.first();; n += sweep_.step()) {
    write_originals();
    run(GetParam().arguments);
    ASSERT_EQ(changed().size(), 3u);
    const std::string call = killed_before(n, {"undo"});
    SCOPED_TRACE("killed before change " + std::to_string(n) + ", " + call);
    unfinished += !changed().empty();
    undo();
    EXPECT_THAT(changed(), IsEmpty());
    EXPECT_EQ(run({"undo", "--list"}).out, "");
    if (HasFailure()) return;
    if (call.empty()) break;
  }
  EXPECT_GT(unfinished, 5 / sweep_.step());
}

TEST_P(Killed, UndoOfOneFileKeepsTheOthersOnRecord) {
  for (int n = sweep_.first();; n += sweep_.step()) {
    write_originals();
    run(GetParam().arguments);
    const std::string call = killed_before(n, {"undo", "a.txt"});
    SCOPED_TRACE("killed before change " + std::to_string(n) + ", " + call);
    undo({"--force"});
    EXPECT_THAT(changed(), IsEmpty());
    if (HasFailure() || call.empty()) return;
  }
}

const auto kCommands = ::testing::Values(
    ChangingCommand{
        "Longer",
        {"replace", "-ry", "--include", "*.txt", "plum", "a long text", "."}},
    ChangingCommand{"Shorter",
                    {"replace", "-ry", "--keep-date", "--include", "*.txt",
                     "plum", "", "."}},
    ChangingCommand{
        "Pairs",
        {"replace", "-ry", "--pairs", "pairs", "--include", "*.txt", "."}},
    ChangingCommand{
        "Case", {"case", "-ry", "--upper", "--include", "*.txt", "plum", "."}});

std::string name_of(const ::testing::TestParamInfo<ChangingCommand>& command) {
  return command.param.name;
}

INSTANTIATE_TEST_SUITE_P(Commands, Killed, kCommands, name_of);

// ---- stopped at every change it makes
// -----------------------------------

using Interrupted = Killed;

TEST_P(Interrupted, RunEndsBetweenFilesAndTellsHowToUndoIt) {
  const auto before = originals();
  write_originals();
  run(GetParam().arguments);
  std::map<std::string, std::string> after;
  for (const auto& [name, text] : before) after[name] = bytes(name);
  undo();
  int partly = 0;
  for (int n = sweep_.first();; n += sweep_.step()) {
    write_originals();
    const Signalled stopped =
        signal_zenfo_before(n, SIGINT, GetParam().arguments, folder_.path());
    SCOPED_TRACE("interrupted before change " + std::to_string(n) + ", " +
                 stopped.call);
    const size_t files = changed().size();
    for (const auto& [name, text] : before) {
      const std::string now = bytes(name);
      EXPECT_TRUE(now == text || now == after[name]) << name;
    }
    // A signal that comes too late does not stop the run.
    EXPECT_TRUE(files == 3 || stopped.outcome.status == 130);
    if (stopped.outcome.status == 130) {
      EXPECT_THAT(stopped.outcome.err, EndsWith("zenfo: stopped\n"));
    } else {
      EXPECT_EQ(stopped.outcome.status, 0) << stopped.outcome.err;
    }
    if (files > 0) {
      EXPECT_THAT(stopped.outcome.out,
                  HasSubstr("undo with: zenfo undo " + last_run() + '\n'));
      EXPECT_EQ(undo().status, 0);
    }
    EXPECT_THAT(changed(), IsEmpty());
    EXPECT_EQ(run({"undo", "--list"}).out, "");
    partly += files > 0 && files < 3;
    if (HasFailure()) return;
    if (stopped.call.empty()) break;
  }
  EXPECT_GT(partly, 0);
}

INSTANTIATE_TEST_SUITE_P(Commands, Interrupted, kCommands, name_of);

// More files than a walk through a list visits between two checks for a stop.
class ManyFiles : public ChangeTest {
 protected:
  static constexpr int kFiles = 250;

  void SetUp() override {
    if (!can_trace()) GTEST_SKIP() << "no process may trace another here";
    write_originals();
  }
  void write_originals() const {
    for (int i = 0; i < kFiles; ++i) folder_.file(name(i), "plum");
  }
  static std::string name(int i) { return "files/" + std::to_string(i); }
  // The number of files with these bytes.
  int count(const std::string& text) const {
    int files = 0;
    for (int i = 0; i < kFiles; ++i) files += bytes(name(i)) == text;
    return files;
  }
  static std::string counted(int files) {
    return std::to_string(files) + (files == 1 ? " file" : " files");
  }
  // The calls that any command, and a sanitizer, makes before its work.
  int calls_to_start() const {
    return signal_zenfo_before(std::numeric_limits<int>::max(), SIGINT,
                               {"--version"}, folder_.path(), Calls::kAll)
        .calls;
  }
  const std::vector<std::string> kReplace = {"replace", "-y",  "-r",
                                             "plum",    "fig", "files"};
};

TEST_F(ManyFiles, InterruptedRunIsUndoneFileByFile) {
  int partly = 0;
  for (const int n : {1, 5, 20, 100, 500, 900, 1400}) {
    SCOPED_TRACE(n);
    const Signalled stopped =
        signal_zenfo_before(n, SIGINT, kReplace, folder_.path());
    EXPECT_EQ(stopped.outcome.status, 130) << stopped.call;
    const int files = count("fig");
    EXPECT_EQ(files + count("plum"), kFiles);
    if (files > 0) {
      EXPECT_THAT(run({"undo", "--list"}).out, HasSubstr(counted(files)));
      EXPECT_EQ(undo().status, 0);
    }
    EXPECT_EQ(count("plum"), kFiles);
    EXPECT_EQ(files_in_store(), 0u);
    partly += files > 0 && files < kFiles;
  }
  EXPECT_GT(partly, 2);
}

TEST_F(ManyFiles, InterruptedUndoIsFinishedByAnother) {
  int partly = 0;
  for (const int n : {1, 2, 10, 100, 500, 1000}) {
    SCOPED_TRACE(n);
    write_originals();
    ASSERT_EQ(run(kReplace).status, 0);
    const Signalled stopped =
        signal_zenfo_before(n, SIGINT, {"undo"}, folder_.path());
    EXPECT_EQ(stopped.outcome.status, 130) << stopped.call;
    EXPECT_EQ(without_run_named(stopped.outcome).err, "zenfo: stopped\n");
    const int left = count("fig");
    EXPECT_EQ(stopped.outcome.out, counted(kFiles - left) + " restored\n");
    EXPECT_EQ(left + count("plum"), kFiles);
    if (left > 0) {
      EXPECT_EQ(undo().out, counted(left) + " restored\n");
    }
    EXPECT_EQ(count("plum"), kFiles);
    EXPECT_EQ(files_in_store(), 0u);
    partly += left > 0 && left < kFiles;
  }
  EXPECT_GT(partly, 0);
}

// The signal also comes while lists are read and deselected.
TEST_F(ManyFiles, InterruptedUndoStillSparesWhatWasChangedSince) {
  ASSERT_EQ(run(kReplace).status, 0);
  for (int i = 1; i < kFiles; ++i) folder_.file(name(i), "my own text");
  int stopped = 0;
  const int start = calls_to_start();
  constexpr int step = 40;
  for (int n = start + Sweep(step).first(); n < start + 390; n += step) {
    SCOPED_TRACE(n);
    const Outcome undo =
        signal_zenfo_before(n, SIGINT, {"undo"}, folder_.path(), Calls::kAll)
            .outcome;
    stopped += undo.err.ends_with("zenfo: stopped\n");
    EXPECT_EQ(count("my own text"), kFiles - 1);
  }
  EXPECT_GT(stopped, 50 / step);
  undo({"--force"});
  EXPECT_EQ(count("plum"), kFiles);
  EXPECT_EQ(files_in_store(), 0u);
}

// ---- full disks
// --------------------------------------------------------------

// A small disk mounted in a folder.
class SmallDisk {
 public:
  SmallDisk(const std::string& folder, size_t bytes) : folder_(folder) {
    const std::string options = "size=" + std::to_string(bytes);
    mounted_ = mount("none", folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
  }
  ~SmallDisk() {
    if (mounted_) umount2(folder_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool mounted() const { return mounted_; }
  // Leaves this many bytes free.
  void fill_up_to(size_t bytes) const {
    struct statvfs facts {};
    statvfs(folder_.c_str(), &facts);
    const size_t free = facts.f_bavail * facts.f_frsize;
    if (free > bytes) {
      write_file(folder_ + "/filler", std::string(free - bytes, 'f'));
    }
  }
  void make_room() const { std::filesystem::remove(folder_ + "/filler"); }

 private:
  std::string folder_;
  bool mounted_ = false;
};

constexpr size_t kDiskSize = 1 << 20;
constexpr size_t kPage = 4096;

// One of the fixture's folders is a small disk.
class OnSmallDisk : public ChangeTest {
 protected:
  explicit OnSmallDisk(TempFolder ChangeTest::*folder)
      : disk_((this->*folder).path(), kDiskSize) {}
  void SetUp() override {
    if (!disk_.mounted()) GTEST_SKIP() << "no disk may be mounted here";
  }
  SmallDisk disk_;
};

class FullStore : public OnSmallDisk {
 protected:
  FullStore() : OnSmallDisk(&FullStore::store_) {}
};

TEST_F(FullStore, PassesOverAFileThatCannotBeKeptSafe) {
  const std::string large = "plum" + std::string(200'000, 'x');
  folder_.file("a.txt", "plum");
  folder_.file("b.txt", large);
  folder_.file("c.txt", "plum");
  disk_.fill_up_to(100'000);
  const Outcome outcome =
      run({"replace", "-y", "plum", "fig", "a.txt", "b.txt", "c.txt"});
  EXPECT_EQ(outcome,
            (Outcome{"2 files changed, 2 matches replaced\n"
                     "1 file skipped (1: there is no room for its safe copy)\n"
                     "undo with: zenfo undo " +
                         last_run() + '\n',
                     "zenfo: b.txt: skipped: there is no room for its safe "
                     "copy\n",
                     2}));
  EXPECT_EQ(bytes("a.txt") + bytes("c.txt"), "figfig");
  EXPECT_EQ(bytes("b.txt"), large);
  EXPECT_EQ(undo(), (Outcome{"2 files restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt") + bytes("c.txt"), "plumplum");
}

TEST_F(FullStore, NamesTheFirstOfManyFilesWithoutRoom) {
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) {
    folder_.file(name, "plum" + std::string(200'000, 'x'));
  }
  disk_.fill_up_to(100'000);
  const Outcome outcome =
      run({"replace", "-y", "plum", "fig", "a.txt", "b.txt", "c.txt"});
  EXPECT_EQ(
      outcome.err,
      "zenfo: a.txt: skipped: there is no room for its safe copy\n"
      "zenfo: 2 more files skipped: there is no room for its safe copy\n");
  EXPECT_EQ(outcome.out,
            "0 files changed, 0 matches replaced\n"
            "3 files skipped (3: there is no room for its safe copy)\n");
  EXPECT_EQ(outcome.status, 2);
}

// The list of copies cannot be rewritten, and nothing can be noted.
TEST_F(FullStore, KnowsAFileThatIsBackAlready) {
  write_three();
  run({"replace", "-y", "plum", "fig", "a.txt", "b.txt", "c.txt"});
  disk_.fill_up_to(0);
  EXPECT_EQ(run({"undo", "a.txt"}).status, 2);
  EXPECT_EQ(bytes("a.txt"), "plum");
  disk_.make_room();
  EXPECT_EQ(undo().status, 0);
  EXPECT_EQ(bytes("a.txt") + bytes("b.txt") + bytes("c.txt"), "plumplumplum");
  EXPECT_EQ(files_in_store(), 0u);
}

// Tries every number of free pages: the run may be refused, change only some of
// the files, or leave its record without an end.
TEST_F(FullStore, ChangesOnlyWhatCanBeUndone) {
  size_t pages = 0;
  for (size_t files = 0; files < 3; ++pages) {
    SCOPED_TRACE(std::to_string(pages) + " free pages");
    write_three();
    disk_.make_room();
    std::filesystem::remove_all(store_.path("zenfo"));
    disk_.fill_up_to(pages * kPage);
    const Outcome outcome =
        run({"replace", "-y", "plum", "fig", "a.txt", "b.txt", "c.txt"});
    const std::string all = bytes("a.txt") + bytes("b.txt") + bytes("c.txt");
    files = static_cast<size_t>(std::count(all.begin(), all.end(), 'f'));
    EXPECT_TRUE(files == 3 || outcome.status == 2);
    if (files > 0) {
      EXPECT_THAT(outcome.out, HasSubstr("undo with: "));
      EXPECT_EQ(undo(),
                (Outcome{std::to_string(files) +
                             (files == 1 ? " file" : " files") + " restored\n",
                         "", 0}));
    }
    EXPECT_EQ(bytes("a.txt") + bytes("b.txt") + bytes("c.txt"), "plumplumplum");
    EXPECT_EQ(run({"undo", "--list"}).out, "") << outcome.err;
    if (HasFailure() || pages > 20) break;
  }
  EXPECT_GT(pages, 2u);
}

class FullDisk : public OnSmallDisk {
 protected:
  FullDisk() : OnSmallDisk(&FullDisk::folder_) {}
};

TEST_F(FullDisk, PutsAFileBackThatCouldNotBeWritten) {
  const std::string large(100'000, 'a');
  folder_.file("a.txt", "pla");
  folder_.file("b.txt", large);
  folder_.file("c.txt", "a");
  disk_.fill_up_to(100'000);
  const Outcome outcome =
      run({"replace", "-y", "a", "xxxx", "a.txt", "b.txt", "c.txt"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, EndsWith("zenfo: the run ended early with an error\n"
                                    "zenfo: b.txt: was not finished and "
                                    "has been restored\n"));
  EXPECT_EQ(outcome.out,
            "1 file changed, 1 match replaced\n"
            "2 files not done\n"
            "undo with: zenfo undo " +
                last_run() + '\n');
  EXPECT_EQ(bytes("a.txt"), "plxxxx");
  EXPECT_EQ(bytes("b.txt"), large);
  EXPECT_EQ(bytes("c.txt"), "a");
  EXPECT_EQ(undo(), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("a.txt"), "pla");
}

TEST_F(FullDisk, LeavesAFileWholeWithoutACopy) {
  const std::string text(100'000, 'a');
  folder_.file("a.txt", text);
  disk_.fill_up_to(100'000);
  const Outcome outcome =
      run({"replace", "-y", "--no-backup", "a", "xxxx", "a.txt"});
  EXPECT_THAT(outcome.err, EndsWith("zenfo: a.txt: could not be written; it is "
                                    "unchanged\n"));
  EXPECT_EQ(outcome.out,
            "0 files changed, 0 matches replaced\n"
            "1 file not done\n");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(bytes("a.txt"), text);
}

// A new file could only replace one of its names.
TEST_F(FullDisk, TellsOfAFileWithSeveralNamesThatIsCutOffWithoutACopy) {
  folder_.file("a.txt", std::string(100'000, 'a'));
  ASSERT_EQ(link(folder_.path("a.txt").c_str(), folder_.path("b.txt").c_str()),
            0);
  disk_.fill_up_to(100'000);
  const Outcome outcome =
      run({"replace", "-y", "--no-backup", "a", "xxxx", "a.txt"});
  EXPECT_THAT(outcome.err,
              EndsWith("zenfo: a.txt: may be truncated; there is no safe "
                       "copy of it\n"));
  EXPECT_EQ(outcome.status, 2);
}

TEST_F(FullDisk, UndoKeepsTheCopyThatDoesNotFit) {
  const std::string large(200'000, 'a');
  folder_.file("a.txt", "a");
  const std::string path = folder_.file("b.txt", large);
  folder_.file("c.txt", "a");
  EXPECT_EQ(run({"replace", "-y", "a", "", "a.txt", "b.txt", "c.txt"}).status,
            0);
  disk_.fill_up_to(50'000);
  EXPECT_EQ(undo(),
            (Outcome{"2 files restored\n",
                     "zenfo: " + path +
                         ": cannot be restored; its safe copy is kept\n",
                     2}));
  EXPECT_EQ(bytes("a.txt") + bytes("c.txt"), "aa");
  disk_.make_room();
  EXPECT_EQ(undo(), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("b.txt"), large);
}

// ---- what undo finds
// ---------------------------------------------------------

class FaultyUndo : public ChangeTest {
 protected:
  // Three files changed by one run.
  void SetUp() override {
    for (const char* name : {"a.txt", "b.txt", "c.txt"}) {
      folder_.file(name, std::string("plum ") + name);
    }
    ASSERT_EQ(
        run({"replace", "-y", "plum", "fig", "a.txt", "b.txt", "c.txt"}).status,
        0);
    run_ = last_run();
  }
  static void give_to_nobody(const std::string& path) {
    constexpr uid_t kNobody = 65534;
    EXPECT_EQ(lchown(path.c_str(), kNobody, kNobody), 0);
    if (!std::filesystem::is_directory(path)) return;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      give_to_nobody(entry.path());
    }
  }
  Outcome run_as_nobody(std::vector<std::string> arguments) const {
    return run_zenfo_as_nobody(std::move(arguments), folder_.path());
  }
  std::string in_store(const std::string& name) const {
    return store_.path("zenfo/runs/" + name);
  }
  std::string copy_of(const std::string& name) const {
    return in_store(run_ + '/' + name);
  }
  std::string message(const std::string& name, const std::string& text) const {
    return "zenfo: " + folder_.path(name) + ": " + text + '\n';
  }
  // The first letters of the files: f for a changed one, p for a restored one.
  std::string states() const {
    return {bytes("a.txt")[0], bytes("b.txt")[0], bytes("c.txt")[0]};
  }

  std::string run_;
};

TEST_F(FaultyUndo, NeedsNoRecordOfTheRun) {
  const std::string whole = read_file(in_store(run_ + ".json"));
  const std::optional<std::string> texts[] = {
      std::nullopt, "", whole.substr(0, whole.size() / 2), "[]",
      "{\"time\": 1, \"command\": 2, \"files\": 3}"};
  for (const auto& text : texts) {
    SCOPED_TRACE(text.value_or("none"));
    const std::string record = in_store(run_ + ".json");
    const std::string line = run({"undo", "--list"}).out;
    const std::string known = line.substr(0, line.find("  3 files"));
    std::filesystem::remove(record);
    if (text) write_file(record, *text);
    EXPECT_EQ(run({"undo", "--list"}),
              (Outcome{known + "  unfinished  0.1 MB  \n", "", 0}));
    EXPECT_EQ(undo({"--yes"}), (Outcome{"3 files restored\n", "", 0}));
    EXPECT_EQ(states(), "ppp");
    EXPECT_EQ(files_in_store(), 0u);
    SetUp();
  }
}

TEST_F(FaultyUndo, KeepsCopiesOfWhichTheListIsGoneOrEmpty) {
  const std::string list = copy_of("undo.txt");
  const std::string whole = read_file(list);
  const Outcome refusal = {"",
                           "zenfo: " + run_ +
                               ": the list of its safe copies is damaged; they "
                               "are beside " +
                               list + '\n',
                           2};
  write_file(list, "");
  EXPECT_EQ(undo(), refusal);
  std::filesystem::remove(list);
  EXPECT_EQ(undo(), refusal);
  EXPECT_EQ(states(), "fff");
  write_file(list, whole);
  EXPECT_EQ(undo(), (Outcome{"3 files restored\n", "", 0}));
  EXPECT_EQ(states(), "ppp");
}

TEST_F(FaultyUndo, GivesUpARunWhoseCopiesAreAllGone) {
  std::filesystem::remove_all(in_store(run_));
  EXPECT_EQ(
      undo(),
      (Outcome{"", "zenfo: " + run_ + ": its safe copies are gone\n", 2}));
  EXPECT_EQ(run({"undo", "--list"}).out, "");
  EXPECT_EQ(states(), "fff");
}

TEST_F(FaultyUndo, RestoresWhatADamagedListStillNames) {
  for (const bool cut : {true, false}) {
    const std::string list = copy_of("undo.txt");
    const std::string whole = read_file(list);
    const size_t second = whole.find('\n') + 1;
    const std::string first = whole.substr(0, second);
    write_file(list, cut ? whole.substr(0, second + 10)
                         : first + "no record\r\n" + whole.substr(second));
    const std::string reason =
        "is not in the list of safe copies; what is left of them is beside " +
        list;
    EXPECT_EQ(
        undo(),
        (Outcome{"1 file restored\n",
                 message("b.txt", reason) + message("c.txt", reason), 2}));
    EXPECT_EQ(states(), "pff");
    write_file(list, whole.substr(second));
    EXPECT_EQ(undo(), (Outcome{"2 files restored\n", "", 0}));
    EXPECT_EQ(states(), "ppp");
    SetUp();
  }
}

TEST_F(FaultyUndo, NamesAFileWhoseCopyIsGone) {
  std::filesystem::remove(copy_of("b.txt_1"));
  EXPECT_EQ(undo(), (Outcome{"2 files restored\n",
                             message("b.txt",
                                     "has no safe copy any more; it may be "
                                     "back already"),
                             2}));
  EXPECT_EQ(states(), "pfp");
  // There is nothing left to restore from.
  EXPECT_EQ(undo().status, 1);
}

TEST_F(FaultyUndo, SparesAFileWhoseCopyIsDamaged) {
  write_file(copy_of("b.txt_1"), "pl");
  EXPECT_EQ(undo(),
            (Outcome{"2 files restored\n",
                     message("b.txt",
                             "its safe copy is damaged; --force brings it "
                             "back anyhow"),
                     2}));
  EXPECT_EQ(states(), "pfp");
  EXPECT_EQ(undo({"--force"}), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("b.txt"), "pl");
}

TEST_F(FaultyUndo, LeavesAFolderInPlaceOfAFile) {
  std::filesystem::remove(folder_.path("b.txt"));
  folder_.file("b.txt/mine", "x");
  const std::vector<std::string> ways[] = {{"undo"}, {"undo", "--force"}};
  for (const std::vector<std::string>& arguments : ways) {
    EXPECT_EQ(run(arguments).status, 2);
    EXPECT_EQ(bytes("b.txt/mine"), "x");
    EXPECT_TRUE(file_exists(copy_of("b.txt_1")));
  }
  EXPECT_EQ(bytes("a.txt") + bytes("c.txt"), "plum a.txtplum c.txt");
  std::filesystem::remove_all(folder_.path("b.txt"));
  EXPECT_EQ(undo(), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(bytes("b.txt"), "plum b.txt");
}

TEST_F(FaultyUndo, BringsADeletedFileBack) {
  std::filesystem::remove(folder_.path("b.txt"));
  EXPECT_EQ(undo(), (Outcome{"3 files restored\n", "", 0}));
  EXPECT_EQ(states(), "ppp");
}

TEST_F(FaultyUndo, KeepsAForeignFolderAmongTheCopies) {
  std::filesystem::create_directory(copy_of("folder"));
  EXPECT_EQ(undo(), (Outcome{"3 files restored\n", "", 0}));
  EXPECT_TRUE(std::filesystem::is_directory(copy_of("folder")));
  EXPECT_EQ(run({"undo", "--list"}).out, "");
}

TEST_F(FaultyUndo, KeepsTheCopyOfAFileThatMayNotBeWritten) {
  if (geteuid() != 0) GTEST_SKIP() << "only root may give files away";
  give_to_nobody(store_.path());
  give_to_nobody(folder_.path("a.txt"));
  give_to_nobody(folder_.path("c.txt"));
  std::filesystem::permissions(
      folder_.path("b.txt"),
      std::filesystem::perms::owner_read | std::filesystem::perms::others_read);
  // The folder is not writable either.
  EXPECT_EQ(
      without_run_named(run_as_nobody({"undo"})),
      (Outcome{"2 files restored\n",
               message("b.txt", "cannot be restored; its safe copy is kept"),
               2}));
  EXPECT_EQ(states(), "pfp");
  EXPECT_EQ(undo(), (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(states(), "ppp");
}

TEST_F(FaultyUndo, TakesAFileThatIsNamedTwiceOnce) {
  EXPECT_EQ(undo({"a.txt", "./a.txt", folder_.path("a.txt")}),
            (Outcome{"1 file restored\n", "", 0}));
  EXPECT_EQ(states(), "pff");
  EXPECT_EQ(undo({"nowhere.txt"}),
            (Outcome{"0 files restored\n",
                     "zenfo: nowhere.txt: was not changed by " + run_ +
                         ", or is back already\n",
                     2}));
}

TEST_F(FaultyUndo, FollowsALinkThatTookThePlaceOfAFile) {
  std::filesystem::rename(folder_.path("b.txt"), folder_.path("moved"));
  std::filesystem::create_symlink("moved", folder_.path("b.txt"));
  EXPECT_EQ(undo(), (Outcome{"3 files restored\n", "", 0}));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.path("b.txt")));
  EXPECT_EQ(bytes("moved"), "plum b.txt");
}

}  // namespace
}  // namespace zenfo::test
