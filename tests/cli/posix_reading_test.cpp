// Unreadable files, endless lists, and pipes: the messages about them, and that
// nothing waits forever.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/posix/change_fixture.h"
#include "cli/process.h"
#include "shared/system/system.h"
#include "shared/text/binary.h"
#include "shared/text/found_text.h"

namespace zenfo::test {
namespace {

// Sets a variable for the commands started while it lives.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    setenv(name, value, 1);
  }
  ~Variable() { unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
};

// The same for the limit on the address space.
class LittleMemory {
 public:
  explicit LittleMemory(rlim_t bytes) {
    getrlimit(RLIMIT_AS, &before_);
    const rlimit little{bytes, before_.rlim_max};
    setrlimit(RLIMIT_AS, &little);
  }
  ~LittleMemory() { setrlimit(RLIMIT_AS, &before_); }
  LittleMemory(const LittleMemory&) = delete;
  LittleMemory& operator=(const LittleMemory&) = delete;

 private:
  rlimit before_{};
};

using Reading = ChangeTest;

// Reading its first byte fails, because nothing is mapped at address 0.
constexpr char kUnreadable[] = "/proc/self/mem";

TEST_F(Reading, NamesTheErrorOfTheDevice) {
  const std::string error = std::string("zenfo: ") + kUnreadable;
  EXPECT_EQ(run({"find", "plum", kUnreadable}),
            (Outcome{"", error + ": Input/output error\n", 2}));
  EXPECT_EQ(run({"count", kUnreadable}).err, error + ": Input/output error\n");
  const Outcome outcome = run({"replace", "-y", "plum", "fig", kUnreadable});
  EXPECT_EQ(outcome.err, error + ": skipped: Input/output error\n");
  EXPECT_EQ(outcome.status, 2);
}

#ifndef ZENFO_SANITIZED_PROGRAM
TEST_F(Reading, SaysThatThereIsNoMemoryForAFile) {
  folder_.file("a.txt", "plum\n");
  std::filesystem::resize_file(folder_.file("large", "plum"), 400'000'000);
  const LittleMemory little(200'000'000);
  EXPECT_EQ(
      run({"find", "-l", "plum", "large", "a.txt"}),
      (Outcome{"a.txt\n", "zenfo: large: there is no memory for it\n", 2}));
  EXPECT_EQ(run({"replace", "-y", "plum", "fig", "large"}).err,
            "zenfo: large: skipped: there is no memory for it\n");
}
#endif

TEST_F(Reading, DoesNotWaitForAPipeInAFilesPlace) {
  const std::string pipe = folder_.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0644), 0);
  host::FileBytes bytes;
  EXPECT_FALSE(bytes.load(pipe));
  EXPECT_FALSE(host::begins_as_binary(pipe));
  EXPECT_EQ(host::ZeroBytes().in(pipe), std::nullopt);
  EXPECT_EQ(host::system::why_not_loaded(pipe), "is not an ordinary file");
  EXPECT_EQ(host::system::why_not_loaded(folder_.path()), "is a folder");
}

TEST_F(Reading, TakesListsFromAPipe) {
  folder_.file("a.txt", "one plum\nfig\n");
  const std::string pipe = folder_.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0644), 0);
  const pid_t child = fork();
  if (child == 0) {
    write_file(pipe, "fig\nplum\n");
    _exit(0);
  }
  EXPECT_EQ(run({"find", "-c", "-f", "pipe", "a.txt"}),
            (Outcome{"2\n", "", 0}));
  waitpid(child, nullptr, 0);
}

TEST_F(Reading, EndsAListWithoutEnd) {
  folder_.file("a.txt", "plum\n");
  const Variable limit("ZENFO_LIST_LIMIT", "1");
  const Outcome refused{"",
                        "zenfo: /dev/zero: is longer than 1 MB, the most that "
                        "is read; ZENFO_LIST_LIMIT=MB raises that\n",
                        2};
  const std::vector<std::string> commands[] = {
      {"find", "-f", "/dev/zero", "a.txt"},
      {"find", "plum", "--files-from", "/dev/zero"},
      {"replace", "-y", "--pairs", "/dev/zero", "a.txt"},
      {"replace", "-y", "--values", "/dev/zero", "plum", "a.txt"}};
  for (const auto& command : commands) EXPECT_EQ(run(command), refused);
  EXPECT_EQ(run({"files", "--from-list", "/dev/zero"}).err,
            "zenfo: /dev/zero: is not an ordinary file\n");
  EXPECT_EQ(run({"find", "--classes", "/dev/zero", "plum", "a.txt"}).status, 2);
}

TEST_F(Reading, TakesLongListsOnDemand) {
  folder_.file("a.txt", "plum\n");
  std::string list(1 << 20, '\n');
  list.replace(0, 6, "a.txt\n");
  folder_.file("fits", list);
  folder_.file("long", list + '\n');
  const auto status = [&](const char* limit, const char* file) {
    const Variable variable("ZENFO_LIST_LIMIT", limit);
    return run({"find", "-q", "plum", "--files-from", file}).status;
  };
  EXPECT_EQ(status("1", "fits"), 0);
  EXPECT_EQ(status("1", "long"), 2);
  EXPECT_EQ(status("2", "long"), 0);
  EXPECT_EQ(status("", "long"), 0);
  const Variable variable("ZENFO_LIST_LIMIT", "1k");
  EXPECT_EQ(
      run({"find", "plum", "--files-from", "long"})
          .err.find(
              "zenfo: ZENFO_LIST_LIMIT: is not a number of MB from 1 to "),
      0u);
}

}  // namespace
}  // namespace zenfo::test
