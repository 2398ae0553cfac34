// Names with letters beyond ASCII wherever a command takes or writes them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef _WIN32
#include <process.h>
#endif
#include <string>
#include <vector>

#include "cli/process.h"
#include "cli/results.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using ::testing::HasSubstr;

// Characters of two, three and four bytes in UTF-8; the last takes two wide
// characters.
constexpr char kGreen[] = "\xC3\x84pfel/gr\xC3\xBCn.txt";
constexpr char kBook[] = "\xC3\x84pfel/\xE6\x9C\xAC.txt";
constexpr char kSmile[] = "\xF0\x9F\x98\x80.txt";
constexpr char kFolder[] = "\xC3\x84pfel";
constexpr char kList[] = "Aufz\xC3\xA4hlung \xE2\x82\xAC";

class Names : public ::testing::Test {
 protected:
  Names() {
    folder_.file(kGreen, "a plum\n");
    folder_.file(kBook, "ten plums\n");
    folder_.file(kSmile, "a plum\n");
  }
  Outcome run(std::vector<std::string> arguments) const {
    Start start;
    start.arguments = std::move(arguments);
    start.folder = folder_.path();
    start.temporary_folder = temporary_.path();
    return run_zenfo(start);
  }
  static Outcome done(const std::string& out) { return {out, "", 0}; }
  std::string list() const { return read_file(folder_.path(kList)); }

  TempFolder temporary_{"J\xC3\xBCrgen"};
  TempFolder folder_{"J\xC3\xBCrgen"};
};

TEST_F(Names, OfFilesAreListed) {
  EXPECT_EQ(run({"files", "--sort", "path"}),
            done(lines({kGreen, kBook, kSmile})));
  EXPECT_EQ(run({"files", kBook, kSmile, folder_.path(kGreen)}),
            done(lines({kBook, kSmile, folder_.path(kGreen)})));
  EXPECT_EQ(run({"files", own(std::string(kFolder) + "/gr\xC3\xBC*")}),
            done(lines({kGreen})));
  EXPECT_EQ(json_lines(run({"files", kSmile, "--json"}).out)[0]["path"],
            kSmile);
}

TEST_F(Names, OfFilesAreSearched) {
  EXPECT_EQ(run({"find", "ten", kFolder, kSmile, "-r"}),
            done(own(kBook) + ":ten plums\n"));
  EXPECT_EQ(run({"find", "-l", "a plum", kGreen, kBook, kSmile}),
            done(lines({kGreen, kSmile})));
  EXPECT_EQ(run({"find", "-rl", "plum", "--include", "gr?n.*"}),
            done(lines({kGreen})));
  EXPECT_EQ(run({"find", "-rl", "plum", "--exclude-dir", kFolder}),
            done(lines({kSmile})));
  EXPECT_THAT(run({"find", "--json", "plum", kGreen}).out,
              HasSubstr("gr\xC3\xBCn.txt\""));
}

TEST_F(Names, OfListsReportsAndTextsAreTaken) {
  EXPECT_EQ(run({"files", kBook, kGreen, "--save-list", kList}),
            done(lines({kBook, kGreen})));
  EXPECT_EQ(list(), lines({kBook, kGreen}, "\r\n"));
  EXPECT_EQ(run({"files", "--from-list", kList}), done(lines({kBook, kGreen})));
  EXPECT_EQ(run({"find", "-l", "ten", "--files-from", kList}),
            done(lines({kBook})));
  EXPECT_EQ(
      run({"files", kBook, "--columns", "name,folder", "--export", kList}).err,
      "");
  EXPECT_THAT(list(), HasSubstr(kFolder));
  EXPECT_EQ(run({"find", "plum", kGreen, "--report", kList}).err, "");
  EXPECT_THAT(list(), HasSubstr("gr\xC3\xBCn.txt"));
  folder_.file(kList, "ten\n");
  EXPECT_EQ(run({"find", "-l", "-f", kList, kGreen, kBook}),
            done(lines({kBook})));
}

TEST_F(Names, OfFilesAreCounted) {
  const Outcome outcome = run({"count", kGreen, kSmile});
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, HasSubstr(own(kGreen) + "\n"));
  EXPECT_THAT(outcome.out, HasSubstr(std::string(kSmile) + "\n"));
}

TEST_F(Names, OfCopiesAreGrouped) {
  EXPECT_EQ(
      run({"dups", "-r", ".", "--by", "size"}),
      done(lines({"./" + std::string(kGreen), "./" + std::string(kSmile)})));
}

TEST_F(Names, OfComparedFoldersAreTaken) {
  folder_.file("\xC3\x9C/gr\xC3\xBCn.txt", "");
  EXPECT_EQ(run({"compare", kFolder, "\xC3\x9C"}),
            (Outcome{own("< " + std::string(kGreen) +
                         "\n> \xC3\x9C/gr\xC3\xBCn.txt\n"),
                     "", 1}));
}

TEST_F(Names, OfMissingFilesAreNamed) {
  EXPECT_EQ(run({"find", "plum", "f\xC3\xBCr"}),
            (Outcome{"", "zenfo: f\xC3\xBCr: no such file or folder\n", 2}));
}

#ifdef _WIN32
// Half of a character would be converted to something else.
TEST_F(Names, AndTextsThatAreNoTextsAreRefused) {
  const std::wstring folder = native(folder_.path()).native();
  EXPECT_EQ(_wspawnl(_P_WAIT, native(ZENFO_PROGRAM).c_str(), L"zenfo", L"find",
                     L"\xD83D", native(folder_.path(kGreen)).c_str(), nullptr),
            2);
}
#endif

}  // namespace
}  // namespace zenfo::test
