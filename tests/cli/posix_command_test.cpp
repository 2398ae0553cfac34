// The command from end to end: what only Linux can show.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

// A folder that everybody may enter, so that the command can run without
// root's rights.
class PosixCommand : public ::testing::Test {
 protected:
  PosixCommand() { chmod(folder_.path().c_str(), 0755); }

  Outcome run(std::vector<std::string> arguments) const {
    return run_zenfo(std::move(arguments), folder_.path());
  }
  Outcome run_as_nobody(std::vector<std::string> arguments) const {
    return run_zenfo_as_nobody(std::move(arguments), folder_.path());
  }

  TempFolder folder_;
};

TEST_F(PosixCommand, FindNamesFilesThatItMayNotRead) {
  folder_.file("a.txt", "plum\n");
  chmod(folder_.file("secret.txt", "plum\n").c_str(), 0);
  EXPECT_EQ(run_as_nobody({"find", "-rl", "plum"}),
            (Outcome{"a.txt\n", "zenfo: secret.txt: permission denied\n", 2}));
  EXPECT_EQ(run_as_nobody({"find", "plum", "secret.txt"}),
            (Outcome{"", "zenfo: secret.txt: permission denied\n", 2}));
}

TEST_F(PosixCommand, NamesFoldersThatItMayNotList) {
  const std::string closed = folder_.folder("closed");
  chmod(closed.c_str(), 0);
  EXPECT_EQ(run_as_nobody({"files", "closed"}),
            (Outcome{"", "zenfo: closed: permission denied\n", 2}));
  chmod(closed.c_str(), 0700);
}

// Tests each command that walks through folders.
TEST_F(PosixCommand, NamesFoldersBelowThatItMayNotList) {
  folder_.file("d/open/a.txt", "plum\n");
  folder_.folder("e");
  const std::string closed[] = {folder_.folder("d/a/closed"),
                                folder_.folder("d/closed")};
  for (const std::string& path : closed) chmod(path.c_str(), 0);
  const std::string error =
      "zenfo: d/a/closed: permission denied\n"
      "zenfo: d/closed: permission denied\n";
  const std::vector<std::string> commands[] = {
      {"files", "-r", "d"},
      {"find", "-rl", "plum", "d/"},
      {"count", "-r", "--total", "d"},
      {"dups", "-r", "d"},
      {"compare", "-r", "d", "e"},
      {"replace", "-rn", "nothing", "x", "d"},
      {"case", "-rn", "--upper", "nothing", "d"}};
  for (const auto& command : commands) {
    const Outcome outcome = run_as_nobody(command);
    EXPECT_EQ(outcome.err, error) << command[0];
    EXPECT_EQ(outcome.status, 2) << command[0];
  }
  EXPECT_EQ(run_as_nobody({"find", "-rl", "plum"}),
            (Outcome{"d/open/a.txt\n", error, 2}));
  for (const std::string& path : closed) chmod(path.c_str(), 0700);
}

TEST_F(PosixCommand, DoesNotMissFoldersThatItWouldNotEnter) {
  folder_.file("d/a.txt", "plum\n");
  folder_.folder("d/.hidden/closed");
  folder_.folder("d/Recycled/closed");
  folder_.folder("elsewhere");
  const std::string closed[] = {
      folder_.path("d/.hidden"), folder_.path("d/Recycled"),
      folder_.folder("d/old"), folder_.folder("elsewhere/closed")};
  for (const std::string& path : closed) chmod(path.c_str(), 0);
  symlink("../elsewhere/closed", folder_.path("d/link").c_str());
  EXPECT_EQ(run_as_nobody({"find", "-rl", "plum", "--exclude-dir", "o*", "d"}),
            (Outcome{"d/a.txt\n", "", 0}));
  EXPECT_EQ(run_as_nobody({"find", "-rl", "plum", "--exclude-dir", "d", "d"}),
            (Outcome{"", "", 1}));
  for (const std::string& path : closed) chmod(path.c_str(), 0700);
}

TEST_F(PosixCommand, NamesAPatternInAFolderThatItMayNotList) {
  const std::string closed = folder_.folder("closed");
  chmod(closed.c_str(), 0111);
  EXPECT_EQ(run_as_nobody({"files", "closed/*.c"}),
            (Outcome{"", "zenfo: closed/*.c: permission denied\n", 2}));
  chmod(closed.c_str(), 0700);
}

// A folder can exist whose path is too long to be used.
TEST_F(PosixCommand, NamesAFolderWhosePathIsTooLong) {
  const std::string name(200, 'x');
  std::string path = "d";
  const std::filesystem::path here = std::filesystem::current_path();
  folder_.file("d/a.txt", "plum\n");
  std::filesystem::current_path(folder_.path("d"));
  for (int depth = 0; depth < 25; ++depth) {
    ASSERT_EQ(mkdir(name.c_str(), 0755), 0);
    ASSERT_EQ(chdir(name.c_str()), 0);
    if (path.size() + 1 < 4096) path += '/' + name;
  }
  std::filesystem::current_path(here);
  const std::string error = "zenfo: " + path.substr(0, 4096) +
                            (path.size() > 4096 ? "..." : "") +
                            ": its path is too long\n";
  EXPECT_EQ(run({"files", "-r", "d"}), (Outcome{"d/a.txt\n", error, 2}));
  EXPECT_EQ(run({"find", "-rl", "plum", "d"}),
            (Outcome{"d/a.txt\n", error, 2}));
}

TEST_F(PosixCommand, TakesAFileWithAnyBytesInItsName) {
  const std::string name = "a*b?;c|d\\e\xff.txt";
  folder_.file(name, "plum\n");
  folder_.file("axb.txt", "plum\n");
  EXPECT_EQ(run({"find", "-l", "plum", name}), (Outcome{name + "\n", "", 0}));
}

TEST_F(PosixCommand, KeepsAMessageOnOneLine) {
  EXPECT_EQ(run({"find", "plum", "no\nfile"}),
            (Outcome{"", "zenfo: no?file: no such file or folder\n", 2}));
}

TEST_F(PosixCommand, TellsOfFoldersThatASearchCannotName) {
  folder_.file("a;b/c.txt", "");
  EXPECT_EQ(run({"files", "a;b"}),
            (Outcome{"",
                     "zenfo: a;b: a folder with ';' or '|' in its path cannot "
                     "be searched\n",
                     2}));
  EXPECT_EQ(run({"files", "a;b/*.txt"}),
            (Outcome{"",
                     "zenfo: a;b/*.txt: a pattern with ';' or '|' cannot be "
                     "searched for\n",
                     2}));
  EXPECT_EQ(run({"files", "a;b/c.txt"}), (Outcome{"a;b/c.txt\n", "", 0}));
}

TEST_F(PosixCommand, TellsPathsApartInJsonWhateverTheirBytes) {
  folder_.file("a/\xfe", "x\n");
  folder_.file("a/\xff", "x\n");
  const std::string one = R"({"bytes":"YS/+"})";
  const std::string two = R"({"bytes":"YS//"})";
  EXPECT_EQ(run({"files", "-r", "a", "--sort", "path", "--json"}).out,
            "{\"path\":" + one + "}\n{\"path\":" + two + "}\n");
  EXPECT_EQ(run({"dups", "-r", "a", "--by", "size", "--json"}).out,
            "{\"paths\":[" + one + ',' + two + "]}\n");
  EXPECT_EQ(run({"compare", "a/\xfe", "a/\xff", "--differ", "--json"}).out,
            "{\"side\":\"A\",\"path\":" + one +
                "}\n{\"side\":\"B\",\"path\":" + two + "}\n");
  EXPECT_THAT(run({"count", "a/\xfe", "a/\xff", "--json"}).out,
              AllOf(StartsWith("{\"path\":" + one + ",\"bytes\":2,"),
                    HasSubstr("\n{\"path\":" + two + ",\"bytes\":2,")));
  EXPECT_THAT(
      run({"find", "-r", "x", "a", "--json"}).out,
      AllOf(HasSubstr("\"path\":" + one), HasSubstr("\"path\":" + two)));
}

TEST_F(PosixCommand, PassesOverPipesOfFolders) {
  mkfifo(folder_.path("pipe").c_str(), 0600);
  EXPECT_EQ(run({"find", "-r", "x"}), (Outcome{"", "", 1}));
}

TEST_F(PosixCommand, ChangesNoPipesAndDevices) {
  mkfifo(folder_.path("pipe").c_str(), 0600);
  EXPECT_EQ(run({"replace", "-y", "x", "y", "pipe", "/dev/null"}),
            (Outcome{"",
                     "zenfo: pipe: is not an ordinary file\n"
                     "zenfo: /dev/null: is not an ordinary file\n",
                     2}));
}

TEST_F(PosixCommand, TellsWhenItsOutputIsLost) {
  folder_.file("a.txt", "plum\n");
  Start start;
  start.arguments = {"find", "-rl", "plum"};
  start.folder = folder_.path();
  start.output_file = "/dev/full";
  EXPECT_EQ(
      run_zenfo(start),
      (Outcome{"", "zenfo: standard output: No space left on device\n", 2}));
  start.output_file = "";
  start.output_closed = true;
  EXPECT_EQ(run_zenfo(start),
            (Outcome{"", "zenfo: standard output: Bad file descriptor\n", 2}));
}

// A command whose output goes into a pipe and whose messages into a file.
class PipedCommand {
 public:
  PipedCommand(const std::vector<std::string>& arguments,
               const std::string& error_file,
               const std::string& temporary_folder = "") {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    child_ = fork();
    if (child_ == 0) {
      std::vector<char*> texts = {const_cast<char*>("zenfo")};
      for (const std::string& argument : arguments) {
        texts.push_back(const_cast<char*>(argument.c_str()));
      }
      texts.push_back(nullptr);
      if (!temporary_folder.empty()) {
        setenv("TMPDIR", temporary_folder.c_str(), 1);
      }
      dup2(ends[1], STDOUT_FILENO);
      dup2(open(error_file.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
      execv(ZENFO_PROGRAM, texts.data());
      _exit(127);
    }
    close(ends[1]);
    output_ = ends[0];
  }
  ~PipedCommand() { close_output(); }

  bool read_byte() const {
    char byte;
    return read(output_, &byte, 1) == 1;
  }
  void read_all() const {
    char bytes[4096];
    while (read(output_, bytes, sizeof bytes) > 0) {
    }
  }
  void close_output() {
    if (output_ >= 0) close(output_);
    output_ = -1;
  }
  void interrupt() const { kill(child_, SIGINT); }
  int wait() const {
    int state = 0;
    waitpid(child_, &state, 0);
    return WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
  }

 private:
  pid_t child_ = -1;
  int output_ = -1;
};

// Enough names to fill the pipe long before the last one.
std::vector<std::string> many_names(const std::string& path) {
  std::vector<std::string> arguments(1 + (1 << 20) / path.size(), path);
  arguments[0] = "files";
  return arguments;
}

TEST_F(PosixCommand, StopsOnInterrupt) {
  const std::string path = folder_.file(std::string(200, 'a'), "");
  const std::string errors = folder_.file("errors", "");
  PipedCommand command(many_names(path), errors);
  ASSERT_TRUE(command.read_byte());
  command.interrupt();
  command.read_all();
  EXPECT_EQ(command.wait(), 130);
  EXPECT_EQ(read_file(errors), "zenfo: stopped\n");
}

TEST_F(PosixCommand, LeavesNothingBehindWhenItIsInterruptedTwice) {
  const std::string path = folder_.file(std::string(200, 'a'), "");
  const std::string errors = folder_.file("errors", "");
  const TempFolder temporary;
  PipedCommand command(many_names(path), errors, temporary.path());
  ASSERT_TRUE(command.read_byte());
  ASSERT_FALSE(std::filesystem::is_empty(temporary.path()));
  command.interrupt();
  command.interrupt();
  // It waits for its reader, so only a second signal can end it. Two signals
  // may have arrived as one.
  usleep(100'000);
  command.interrupt();
  EXPECT_EQ(command.wait(), 130);
  EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

TEST_F(PosixCommand, EndsQuietlyWhenItsReaderIsGone) {
  const std::string path = folder_.file(std::string(200, 'a'), "");
  const std::string errors = folder_.file("errors", "");
  PipedCommand command(many_names(path), errors);
  ASSERT_TRUE(command.read_byte());
  command.close_output();
  EXPECT_EQ(command.wait(), 128 + SIGPIPE);
  EXPECT_EQ(read_file(errors), "");
}

// Like grep when SIGPIPE is ignored.
TEST_F(PosixCommand, TellsThatItsReaderIsGoneWhereSignalsDoNot) {
  const std::string path = folder_.file(std::string(200, 'a'), "");
  const std::string errors = folder_.file("errors", "");
  const auto before = signal(SIGPIPE, SIG_IGN);
  PipedCommand command(many_names(path), errors);
  signal(SIGPIPE, before);
  ASSERT_TRUE(command.read_byte());
  command.close_output();
  EXPECT_EQ(command.wait(), 2);
  EXPECT_EQ(read_file(errors), "zenfo: standard output: Broken pipe\n");
}

// A search that shows more lines than a pipe holds, in many files.
std::vector<std::string> long_search(const TempFolder& folder) {
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "one plum in a line\n";
  std::vector<std::string> arguments = {"find", "plum"};
  for (int i = 0; i < 20; ++i) {
    arguments.push_back(folder.file("f" + std::to_string(i), text));
  }
  return arguments;
}

TEST_F(PosixCommand, FindStopsOnInterrupt) {
  const std::string errors = folder_.file("errors", "");
  PipedCommand command(long_search(folder_), errors);
  ASSERT_TRUE(command.read_byte());
  command.interrupt();
  command.read_all();
  EXPECT_EQ(command.wait(), 130);
  EXPECT_EQ(read_file(errors), "zenfo: stopped\n");
}

TEST_F(PosixCommand, FindEndsWhenItsReaderIsGone) {
  const std::string errors = folder_.file("errors", "");
  PipedCommand command(long_search(folder_), errors);
  ASSERT_TRUE(command.read_byte());
  command.close_output();
  EXPECT_EQ(command.wait(), 128 + SIGPIPE);
  EXPECT_EQ(read_file(errors), "");
}

TEST_F(PosixCommand, WorksWithoutAFolderForTemporaryFiles) {
  folder_.file("a.txt", "plum\n");
  Start start;
  start.folder = folder_.path();
  start.temporary_folder = folder_.path("nowhere");
  for (const std::string path : {".", "a.txt"}) {
    start.arguments = {"find", "-rq", "plum", path};
    EXPECT_EQ(run_zenfo(start), (Outcome{"", "", 0}));
  }
}

}  // namespace
}  // namespace zenfo::test
