// zenfo files, dups and compare where Linux has more: names of any bytes,
// links, full disks, rights, times that can be set.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "cli/process.h"
#include "cli/results.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

class PosixFiles : public ::testing::Test {
 protected:
  PosixFiles() { chmod(folder_.path().c_str(), 0755); }

  Outcome run(std::vector<std::string> arguments) const {
    return run_zenfo(std::move(arguments), folder_.path());
  }
  void set_times(const std::string& name, time_t accessed,
                 time_t modified) const {
    const timespec times[] = {{accessed, 0}, {modified, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, folder_.path(name).c_str(), times, 0), 0);
  }

  TempFolder folder_;
};

std::string output_of(const std::string& command) {
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return "";
  std::string text;
  std::array<char, 4096> part;
  while (const size_t read = fread(part.data(), 1, part.size(), pipe)) {
    text.append(part.data(), read);
  }
  pclose(pipe);
  return text;
}

TEST_F(PosixFiles, AreSortedByNameAsSortDoes) {
  std::mt19937 random(5);
  const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRST";
  for (int i = 0; i < 500; ++i) {
    std::string name;
    while (name.size() < 4) name += letters[random() % letters.size()];
    folder_.file("f/" + name + std::to_string(i), "");
  }
  const std::string expected =
      output_of("ls '" + folder_.path("f") + "' | LC_ALL=C sort -f");
  EXPECT_EQ(split_lines(expected).size(), 500u);
  EXPECT_EQ(run({"files", "f", "--sort", "name", "--columns", "name"}),
            (Outcome{expected, "", 0}));
}

TEST_F(PosixFiles, AreSortedByTimesOfAccess) {
  const time_t day = 24 * 60 * 60;
  for (const char* name : {"a", "b", "c"}) folder_.file(name, "");
  set_times("a", 20000 * day, 1000 * day);
  set_times("b", 19000 * day, 3000 * day);
  set_times("c", 21000 * day, 2000 * day);
  EXPECT_EQ(run({"files", "--sort", "accessed"}),
            (Outcome{"b\na\nc\n", "", 0}));
  EXPECT_EQ(run({"files", "--sort", "modified"}),
            (Outcome{"a\nc\nb\n", "", 0}));
  EXPECT_EQ(run({"files", "--sort", "modified", "--reverse"}),
            (Outcome{"b\nc\na\n", "", 0}));
}

TEST_F(PosixFiles, WithLineFeedsInTheirNamesAreNotSaved) {
  folder_.file("a\nb", "");
  folder_.file("c\r", "");
  folder_.file("d\xff", "");
  EXPECT_EQ(
      run({"files", "--save-list", "list"}),
      (Outcome{"a\nb\nc\r\nd\xff\n",
               "zenfo: a?b: contains a line feed, which lists cannot hold\n",
               2}));
  EXPECT_EQ(read_file(folder_.path("list")), "c\r\r\nd\xff\r\n");
  EXPECT_EQ(run({"files", "--from-list", "list"}),
            (Outcome{"c\r\nd\xff\n", "", 0}));
}

TEST_F(PosixFiles, AreShownThoughTheDiskIsFull) {
  folder_.file("a", "");
  EXPECT_EQ(
      run({"files", "--save-list", "/dev/full"}),
      (Outcome{"a\n", "zenfo: /dev/full: the list cannot be written\n", 2}));
  EXPECT_EQ(
      run({"files", "--columns", "name", "--export", "/dev/full"}),
      (Outcome{"a\n", "zenfo: /dev/full: the columns cannot be written\n", 2}));
}

TEST_F(PosixFiles, AreNotTakenFromAListThatMayNotBeRead) {
  chmod(folder_.file("list", "a\r\n").c_str(), 0);
  Start start;
  start.arguments = {"files", "--from-list", "list"};
  start.folder = folder_.path();
  start.as_nobody = true;
  EXPECT_EQ(run_zenfo(start),
            (Outcome{"", "zenfo: list: cannot be read\n", 2}));
}

TEST_F(PosixFiles, AreNotTakenFromAPipe) {
  mkfifo(folder_.path("pipe").c_str(), 0600);
  EXPECT_EQ(run({"files", "--from-list", "pipe"}),
            (Outcome{"", "zenfo: pipe: is not an ordinary file\n", 2}));
}

TEST_F(PosixFiles, InARecycleBinAreNamed) {
  folder_.file("recycled/a", "");
  folder_.file("list", "recycled/a\r\nlist\r\n");
  EXPECT_EQ(
      run({"files", "--from-list", "list"}),
      (Outcome{"list\n", "zenfo: recycled/a: lies in a recycle bin\n", 2}));
}

TEST_F(PosixFiles, ByLinksAreNoDuplicates) {
  folder_.file("a/x", "12");
  folder_.folder("b");
  folder_.folder("c");
  ASSERT_EQ(link(folder_.path("a/x").c_str(), folder_.path("b/x").c_str()), 0);
  ASSERT_EQ(symlink("../a/x", folder_.path("c/x").c_str()), 0);
  EXPECT_EQ(run({"dups", "--by", "name"}), (Outcome{"", "", 1}));
  folder_.file("d/x", "12");
  EXPECT_EQ(run({"dups", "--by", "name"}), (Outcome{"a/x\nd/x\n", "", 0}));
}

TEST_F(PosixFiles, AreNotFoundSameOrDifferentWhenOutputIsLost) {
  folder_.file("a/x", "");
  folder_.file("b/x", "");
  Start start;
  start.folder = folder_.path();
  start.output_file = "/dev/full";
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {"compare", "a", "b"}, {"dups", "--by", "name"}}) {
    start.arguments = arguments;
    EXPECT_EQ(
        run_zenfo(start),
        (Outcome{"", "zenfo: standard output: No space left on device\n", 2}));
  }
}

}  // namespace
}  // namespace zenfo::test
