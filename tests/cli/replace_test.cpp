// replace, case and undo from end to end, on both systems, also with names with
// letters beyond ASCII.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "cli/process.h"
#include "cli/results.h"
#include "support/temp_folder.h"
#ifdef _WIN32
#include "support/foreign_mapping.h"
#endif

namespace zenfo::test {
namespace {

using namespace std::string_literals;
using ::testing::HasSubstr;

// Sets up the commands that this test starts: where they keep their runs, and
// no terminal to answer questions.
void prepare_commands(const std::string& state_folder) {
#ifdef _WIN32
  _wputenv_s(L"LOCALAPPDATA", native(state_folder).c_str());
  ASSERT_NE(std::freopen("NUL", "r", stdin), nullptr);
#else
  setenv("XDG_STATE_HOME", state_folder.c_str(), 1);
  ASSERT_NE(std::freopen("/dev/null", "r", stdin), nullptr);
#endif
}

struct FolderNames {
  const char* test;
  const char* folder_mark;  // in the folder names of user and profile
  const char* folder;
  const char* file;
  const char* other_file;
};

// For messages of tests.
void PrintTo(const FolderNames& names, std::ostream* stream) {
  *stream << names.test;
}

constexpr FolderNames kNames[] = {
    {"Plain", "", "sub", "one.txt", "two.txt"},
    // Characters of two, three and four bytes in UTF-8, combining letters and a
    // blank.
    {"Umlauts", "J\xC3\xBCrgen", "\xC3\x84pfel", "\xC3\xBCmlaut.txt",
     "u\xCC\x88 zwei.txt"},
    {"OtherScripts", "\xE6\x97\xA5\xE6\x9C\xAC", "\xD0\x9F",
     "\xF0\x9F\x98\x80.txt", "\xE2\x82\xAC.txt"}};

class Change : public ::testing::TestWithParam<FolderNames> {
 protected:
  Change() {
    prepare_commands(state_.path());
    one_ = folder_.file(one_name_, "a plum\r\nplums\r\n");
    two_ = folder_.file(GetParam().other_file, "no fruit");
    three_ = folder_.file("three.txt", "plum");
  }

  Outcome run(std::vector<std::string> arguments) const {
    Start start;
    start.arguments = std::move(arguments);
    start.folder = folder_.path();
    start.temporary_folder = temporary_;
    return run_zenfo(start);
  }
  std::string texts() const {
    return read_file(one_) + '|' + read_file(two_) + '|' + read_file(three_);
  }
  // Whether a folder that should only contain runs is empty.
  static bool is_empty(const std::string& folder) {
    return std::filesystem::is_empty(native(folder));
  }

  TempFolder state_{GetParam().folder_mark};
  TempFolder folder_{GetParam().folder_mark};
  std::string temporary_ = state_.folder("Temp");
  std::string one_name_ =
      std::string(GetParam().folder) + '/' + GetParam().file;
  std::string one_, two_, three_;
};

constexpr char kBefore[] = "a plum\r\nplums\r\n|no fruit|plum";

INSTANTIATE_TEST_SUITE_P(Names, Change, ::testing::ValuesIn(kNames),
                         [](const auto& param_info) {
                           return param_info.param.test;
                         });

TEST_P(Change, ReplacedTextsComeBack) {
  const Outcome outcome = run({"replace", "-ry", "plum", "fig", "."});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("2 files changed, 3 matches replaced"));
  EXPECT_EQ(texts(), "a fig\r\nfigs\r\n|no fruit|fig");
  EXPECT_THAT(run({"undo", "--list"}).out, HasSubstr("2 files"));
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(texts(), kBefore);
}

TEST_P(Change, ChangedLettersComeBack) {
  EXPECT_EQ(run({"case", "-ryw", "--upper", "plum", "."}).status, 0);
  EXPECT_EQ(texts(), "a PLUM\r\nplums\r\n|no fruit|PLUM");
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(texts(), kBefore);
}

TEST_P(Change, NothingIsTouchedUnseen) {
  EXPECT_EQ(run({"replace", "-r", "plum", "fig", "."}).status, 2);
  EXPECT_EQ(run({"replace", "-rn", "plum", "fig", "."}).status, 0);
  EXPECT_EQ(texts(), kBefore);
  EXPECT_EQ(run({"undo"}).status, 1) << "there is no run";
  EXPECT_TRUE(is_empty(temporary_));
}

// Started in another folder than the run, with another spelling.
TEST_P(Change, NamedFilesAreChangedAndComeBack) {
  const Outcome outcome =
      run({"replace", "-y", "plum", "fig", one_name_, three_});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(texts(), "a fig\r\nfigs\r\n|no fruit|fig");
  const Outcome one = run({"undo", own("./" + one_name_)});
  EXPECT_EQ(one.out, "1 file restored\n");
  EXPECT_THAT(one.err, HasSubstr(": undoing the run of "));
  EXPECT_EQ(texts(), "a plum\r\nplums\r\n|no fruit|fig");
  const Outcome other = run_zenfo({"undo", three_}, state_.path());
  EXPECT_EQ(other.out, "1 file restored\n");
  EXPECT_THAT(other.err, HasSubstr(" in " + folder_.path()));
  EXPECT_EQ(texts(), kBefore);
}

TEST_P(Change, UndoNamesTheFileThatIsNotOfTheRun) {
  EXPECT_EQ(run({"replace", "-y", "plum", "fig", one_name_}).status, 0);
  const std::string other = GetParam().other_file;
  const Outcome outcome = run({"undo", other});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, HasSubstr("zenfo: " + other + ": was not changed"));
}

TEST_P(Change, ADryRunShowsTheNames) {
  const Outcome outcome = run({"replace", "-n", "plum", "fig", one_name_});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr(own(one_name_)));
  EXPECT_EQ(texts(), kBefore);
}

// Lists of texts are the user's files; one is rewritten in the temporary
// folder.
TEST_P(Change, TextsComeFromNamedFiles) {
  const std::string values = std::string(GetParam().file) + ".values";
  folder_.file(values, "fig\npear\n");
  EXPECT_EQ(run({"replace", "-y", "--values", values, "plum", one_name_}).err,
            "");
  EXPECT_EQ(read_file(one_), "a fig\r\npears\r\n");
  folder_.file(values, "fig\tplum\r\npear\tplum\r\n");
  const Outcome outcome = run({"replace", "-y", "--pairs", values, one_name_});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(texts(), kBefore);
}

// A read-only file is made writable and read-only again.
TEST_P(Change, ReadOnlyFilesAreKnownByTheirNames) {
  using std::filesystem::perms;
  std::filesystem::permissions(native(one_), perms::owner_read);
  EXPECT_THAT(run({"replace", "-y", "plum", "fig", one_name_}).err,
              HasSubstr(own(one_name_) + ": skipped: read-only"));
  EXPECT_EQ(run({"replace", "-y", "--read-only", "plum", "fig", one_name_}).err,
            "");
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(texts(), kBefore);
  std::filesystem::permissions(native(one_), perms::owner_all);
}

TEST_P(Change, TakesFilesWithoutZeroBytesForText) {
  const std::string page = folder_.file("page.txt", "\x01\fplum\x1A");
  EXPECT_EQ(run({"replace", "-y", "plum", "fig", "page.txt"}).status, 0);
  EXPECT_EQ(read_file(page),
            "\x01\f"
            "fig\x1A");
  EXPECT_EQ(run({"case", "-y", "--upper", "fig", "page.txt"}).status, 0);
  EXPECT_EQ(read_file(page),
            "\x01\f"
            "FIG\x1A");
}

#ifdef _WIN32
TEST_P(Change, AMappedFileIsSkippedAndNamed) {
  const std::string open = folder_.file("open.txt", "plum");
  for (const char* option : {"-y", "--no-backup"}) {
    write_file(three_, "plum");
    const ForeignMapping mapping(open);
    ASSERT_TRUE(mapping.is_mapped());
    const Outcome outcome =
        run({"replace", "-y", option, "plum", "fig", "open.txt", "three.txt"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err,
                HasSubstr("open.txt: skipped: it could not be kept safe or "
                          "written"));
    EXPECT_EQ(read_file(open), "plum");
    EXPECT_EQ(read_file(three_), "fig");
  }
}
#endif

// What follows a zero byte would be lost, wherever the byte is.
TEST_P(Change, LeavesFilesWithZeroBytesAsTheyAre) {
  const std::string near = "plum\0plum"s;
  const std::string far = "plum" + std::string(300'000, '\n') + '\0';
  const std::string near_path = folder_.file("near.bin", near);
  const std::string far_path = folder_.file("far.bin", far);
  folder_.file("other.bin", "no fruit\0"s);
  const Outcome outcome = run({"replace", "-y", "plum", "fig", "near.bin",
                               "far.bin", "other.bin", "three.txt"});
  EXPECT_THAT(outcome.out, HasSubstr("1 file changed, 1 match replaced\n"
                                     "2 files skipped (2: binary)\n"));
  EXPECT_EQ(outcome.err,
            "zenfo: near.bin: skipped: binary\n"
            "zenfo: far.bin: skipped: binary\n");
  EXPECT_EQ(outcome.status, 2);
  const std::string reason = "what follows its first zero byte would be lost";
  EXPECT_EQ(run({"replace", "-y", "--binary", "plum", "fig", "near.bin"}),
            (Outcome{"0 files changed\n1 file skipped (1: " + reason + ")\n",
                     "zenfo: near.bin: skipped: " + reason + '\n', 2}));
  EXPECT_EQ(run({"replace", "-n", "plum", "fig", "near.bin"}),
            (Outcome{"", "zenfo: near.bin: skipped: binary\n", 2}));
  EXPECT_EQ(read_file(near_path), near);
  EXPECT_EQ(read_file(far_path), far);
  EXPECT_EQ(read_file(three_), "fig");
}

TEST_P(Change, ChangesTheCaseInBinaryFilesOnDemand) {
  const std::string path = folder_.file("near.bin", "plum\0plum"s);
  EXPECT_EQ(run({"case", "-y", "--upper", "plum", "near.bin"}).status, 2);
  EXPECT_EQ(read_file(path), "plum\0plum"s);
  EXPECT_EQ(
      run({"case", "-y", "--upper", "--binary", "plum", "near.bin"}).status, 0);
  EXPECT_EQ(read_file(path), "PLUM\0PLUM"s);
}

}  // namespace
}  // namespace zenfo::test
