// zenfo count from end to end: exact output, messages and exit status.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/process.h"
#include "cli/results.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using nlohmann::json;

// a.txt, long.txt, empty.txt and unix.txt, whose lines end in LF.
class Count : public ::testing::Test {
 protected:
  Count() {
    folder_.file("a.txt", "a b\r\nc");
    folder_.file("empty.txt", "");
    folder_.file("long.txt", std::string(1200, 'x') + " y\r\n\r\n");
    folder_.file("unix.txt", "one\ntwo\n");
  }

  Outcome run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "count");
    return run_zenfo(std::move(arguments), folder_.path());
  }
  json object_of(const std::vector<std::string>& arguments) const {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.err, "");
    return json::parse(outcome.out);
  }

  TempFolder folder_;
};

TEST_F(Count, AlignsItsColumnsUnderAHeading) {
  EXPECT_EQ(run({"a.txt"}), (Outcome{"bytes  words  lines  path\n"
                                     "    6      3      1  a.txt\n",
                                     "", 0}));
}

TEST_F(Count, TakesFoldersAndShowsTheTotalAlone) {
  folder_.file("sub/b.txt", "d e\r\n");
  folder_.file("sub/c.md", "f\r\n");
  EXPECT_EQ(run({"-r", "sub"}).out,
            "bytes  words  lines  path\n"
            "    5      2      1  " +
                own("sub/b.txt") + "\n" + "    3      1      1  " +
                own("sub/c.md") + "\n" + "    8      3      2  total\n");
  EXPECT_EQ(run({"-r", "--total", "--include", "*.md", "sub"}),
            (Outcome{"bytes  words  lines  path\n"
                     "    3      1      1  total\n",
                     "", 0}));
  EXPECT_EQ(object_of({"-r", "--total", "--json", "sub"}),
            (json{{"files", 2}, {"bytes", 8}, {"words", 3}, {"lines", 2}}));
  EXPECT_EQ(run({"sub"}).status, 2) << "a folder needs -r";
}

TEST_F(Count, EndsSeveralFilesWithTheirTotal) {
  folder_.file("large.txt", std::string(99998, '-') + "\r\n");
  EXPECT_EQ(run({"a.txt", "long.txt", "empty.txt", "large.txt"}),
            (Outcome{" bytes  words  lines  path\n"
                     "     6      3      1  a.txt\n"
                     "  1206      2      2  long.txt\n"
                     "     0      0      0  empty.txt\n"
                     "100000      1      1  large.txt\n"
                     "101212      6      4  total\n",
                     "", 0}));
}

TEST_F(Count, CountsAFileAsOftenAsItIsNamed) {
  EXPECT_EQ(run({"a.txt", "a.txt"}), (Outcome{"bytes  words  lines  path\n"
                                              "    6      3      1  a.txt\n"
                                              "    6      3      1  a.txt\n"
                                              "   12      6      2  total\n",
                                              "", 0}));
}

TEST_F(Count, TakesPatterns) {
  EXPECT_EQ(run({"*.TXT"}), (Outcome{"bytes  words  lines  path\n"
                                     "    6      3      1  a.txt\n"
                                     "    0      0      0  empty.txt\n"
                                     " 1206      2      2  long.txt\n"
                                     "    8      2      0  unix.txt\n"
                                     " 1220      7      3  total\n",
                                     "", 0}));
}

TEST_F(Count, CountsWhatEndsInCrLfAsLines) {
  EXPECT_EQ(object_of({"--json", "unix.txt"})["lines"], 0);
  folder_.file("mixed.txt", "a\r\nb\nc\rd\n\re\r\r\n");
  EXPECT_EQ(object_of({"--json", "mixed.txt"})["lines"], 2);
}

TEST_F(Count, TakesAllButControlCharactersAndBlanksAsWords) {
  folder_.file("w.bin", std::string("a\0b\x7F\xFF \x1F_-\tc", 11));
  EXPECT_EQ(
      object_of({"--json", "w.bin"}),
      (json{{"path", "w.bin"}, {"bytes", 11}, {"words", 5}, {"lines", 0}}));
}

TEST_F(Count, WritesJsonOnDemand) {
  EXPECT_EQ(run({"--json", "a.txt", "long.txt"}),
            (Outcome{R"({"path":"a.txt","bytes":6,"words":3,"lines":1})"
                     "\n"
                     R"({"path":"long.txt","bytes":1206,"words":2,"lines":2})"
                     "\n"
                     R"({"files":2,"bytes":1212,"words":5,"lines":3})"
                     "\n",
                     "", 0}));
  EXPECT_EQ(run({"--json", "empty.txt"}),
            (Outcome{R"({"path":"empty.txt","bytes":0,"words":0,"lines":0})"
                     "\n",
                     "", 0}));
}

TEST_F(Count, GoesOnAfterAMissingFile) {
  EXPECT_EQ(run({"nowhere", "a.txt", "empty.txt"}),
            (Outcome{"bytes  words  lines  path\n"
                     "    6      3      1  a.txt\n"
                     "    0      0      0  empty.txt\n"
                     "    6      3      1  total\n",
                     "zenfo: nowhere: no such file or folder\n", 2}));
  EXPECT_EQ(run({"nowhere", "a.txt"}),
            (Outcome{"bytes  words  lines  path\n"
                     "    6      3      1  a.txt\n",
                     "zenfo: nowhere: no such file or folder\n", 2}));
}

TEST_F(Count, WritesNothingWhenNoFileIsCounted) {
  const Outcome missing{"", "zenfo: nowhere: no such file or folder\n", 2};
  EXPECT_EQ(run({"nowhere"}), missing);
  EXPECT_EQ(run({"--json", "nowhere"}), missing);
}

TEST_F(Count, NamesTheFilesItCannotCount) {
  const std::string large = folder_.file("large.bin", "apple");
  std::filesystem::resize_file(large, uint64_t{1} << 31);
  EXPECT_EQ(run({"large.bin", "a.txt"}),
            (Outcome{"bytes  words  lines  path\n"
                     "    6      3      1  a.txt\n",
                     "zenfo: large.bin: too large to be loaded\n", 2}));
}

TEST_F(Count, TakesNoFolders) {
  folder_.folder("sub");
  EXPECT_EQ(run({"sub"}), (Outcome{"", "zenfo: sub: is a folder\n", 2}));
}

// Files of this system, compared with `wc -c`.
#ifdef __linux__
std::string bytes_by_wc(const std::string& file) {
  const std::string command = "wc -c < '" + file + "'";
  std::FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return "wc does not start";
  char text[32] = "";
  const size_t length = std::fread(text, 1, sizeof text - 1, pipe);
  if (pclose(pipe) != 0) return "wc fails";
  return {text, std::find(text, text + length, '\n')};
}

TEST_F(Count, AgreesWithWcAboutBytes) {
  for (const std::string file :
       {"/bin/sh", "/usr/include/stdio.h", "/etc/passwd", ZENFO_PROGRAM}) {
    EXPECT_EQ(object_of({"--json", file})["bytes"].dump(), bytes_by_wc(file))
        << file;
  }
}
#endif

}  // namespace
}  // namespace zenfo::test
