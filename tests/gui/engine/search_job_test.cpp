#include "gui/engine/search_job.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gui/searched.h"
#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

using test::Searched;
using Texts = std::vector<std::string>;

class SearchJobs : public testing::Test {
 protected:
  Query query(const std::string& text) const {
    Query made;
    made.text = text;
    made.folders = {folder_.path()};
    return made;
  }
  Texts found(const Query& made, MatchCaps caps = {}) const {
    return test::search(made, caps).found_in(folder_.path());
  }
  std::string name(std::string text) const {
    for (char& c : text) c = c == '/' ? test::kSeparator : c;
    return text;
  }

  const test::TempFolder folder_;
};

TEST_F(SearchJobs, TellFilesWithAndWithoutMatches) {
  folder_.file("a.txt", "tide and Tide");
  folder_.file("sub/b.txt", "low tide");
  folder_.file("c.txt", "ebb");
  const Searched searched = test::search(query("tide"));
  EXPECT_EQ(searched.found_in(folder_.path()),
            Texts({"a.txt 0 9", name("sub/b.txt 4")}));
  EXPECT_EQ(searched.others_in(folder_.path(), ResultState::kNoMatch),
            Texts({"c.txt"}));
  ASSERT_TRUE(searched.end);
  EXPECT_EQ(searched.end->outcome, JobOutcome::kDone);
  EXPECT_EQ(searched.progress.files, 3u);
  EXPECT_EQ(searched.progress.files_done, 3u);
  const FoundFile& file = searched.found[0];
  EXPECT_GT(file.size, 0u);
  EXPECT_NE(file.modified, 0);
}

TEST_F(SearchJobs, FollowTheQuery) {
  folder_.file("a.txt", "tide Tide tides");
  folder_.file("b.c", "tide");
  folder_.file("build/c.c", "tide");
  folder_.file("d.txt", "a(tide)\n\ttide");
  struct Row {
    void (*change)(Query& query);
    Texts found;
  };
  const Row rows[] = {
      {[](Query& q) { q.match_case = true; },
       {"a.txt 0 10", "b.c 0", name("build/c.c 0"), "d.txt 2 9"}},
      {[](Query& q) { q.whole_words = true; },
       {"a.txt 0 5", "b.c 0", name("build/c.c 0"), "d.txt 2 9"}},
      {[](Query& q) { q.include_names = {"*.C"}; },
       test::kSeparator == '\\' ? Texts({"b.c 0", "build\\c.c 0"}) : Texts()},
      {[](Query& q) {
         q.include_names = {"[b].c", "d*"};
       },
       {"b.c 0", "d.txt 2 9"}},
      {[](Query& q) {
         q.exclude_names = {"build", "*.txt"};
       },
       {"b.c 0"}},
      {[](Query& q) { q.subfolders = false; },
       {"a.txt 0 5 10", "b.c 0", "d.txt 2 9"}},
      {[](Query& q) {
         q.text = "^Itide";
         q.caret = true;
       },
       {"d.txt 8"}},
      {[](Query& q) {
         q.text = "'('tid";
         q.is_pattern = true;
       },
       {"d.txt 1"}},
      {[](Query& q) {
         q.areas = {AreaUse::kInside, "", "(!')'", "", ""};
       },
       {"d.txt 2"}},
      {[](Query& q) {
         q.text = "(";
         q.folders = {q.folders[0] + test::kSeparator + "d.txt"};
       },
       {"d.txt 1"}},
  };
  for (const Row& row : rows) {
    Query changed = query("tide");
    row.change(changed);
    EXPECT_EQ(found(changed), row.found)
        << format_json(to_json(changed), JsonForm::kOneLine);
  }
}

TEST_F(SearchJobs, ALineBreakFindsBothLineEnds) {
  folder_.file("dos", "a\r\nb a\r\nb");
  folder_.file("unix", "a\nb");
  folder_.file("both", "a\nb a\r\nb a\nb");
  EXPECT_EQ(found(query("a\nb")), Texts({"both 0 4 9", "dos 0 5", "unix 0"}));
}

TEST_F(SearchJobs, SkipBinaryFilesUnlessTheyAreWanted) {
  folder_.file("binary", std::string("tide\0", 5));
  folder_.file("utf16", std::string("\xFF\xFEt\0i\0d\0e\0", 10));
  folder_.file("text", "tide\f");
  Query made = query("tide");
  const Searched searched = test::search(made);
  EXPECT_EQ(searched.found_in(folder_.path()), Texts({"text 0"}));
  EXPECT_EQ(searched.others_in(folder_.path(), ResultState::kNotSearched),
            Texts({"binary: binary", "utf16: UTF-16 text"}));
  made.binary = BinaryFiles::kSearch;
  EXPECT_EQ(found(made), Texts({"binary 0", "text 0"}));
}

TEST_F(SearchJobs, NameWhatCouldNotBeSearched) {
  Query made = query("tide");
  made.folders = {folder_.path("none"), folder_.path()};
  folder_.file("a", "tide");
  const Searched searched = test::search(made);
  EXPECT_EQ(searched.found_in(folder_.path()), Texts({"a 0"}));
  const Texts others =
      searched.others_in(folder_.path(), ResultState::kNotSearched);
  ASSERT_EQ(others.size(), 1u);
  EXPECT_TRUE(others[0].starts_with("none: ")) << others[0];
  EXPECT_EQ(searched.end->outcome, JobOutcome::kDone);
}

TEST_F(SearchJobs, CountMatchesBeyondTheCaps) {
  folder_.file("a", std::string(50, 'x'));
  folder_.file("b", std::string(7, 'x'));
  folder_.file("c", std::string(7, 'x'));
  const Searched searched = test::search(query("x"), {10, 15});
  uint64_t counted = 0;
  uint64_t listed = 0;
  for (const FoundFile& file : searched.found) {
    counted += file.count;
    listed += file.matches.size();
    EXPECT_LE(file.matches.size(), 10u);
  }
  EXPECT_EQ(counted, 64u);
  EXPECT_EQ(listed, 15u);
}

TEST_F(SearchJobs, FailForATextThatHasNothingToFind) {
  folder_.file("a", "x");
  Query made = query("\\");
  made.caret = true;
  const Searched searched = test::search(made);
  ASSERT_TRUE(searched.end);
  EXPECT_EQ(searched.end->outcome, JobOutcome::kFailed);
  EXPECT_EQ(searched.end->reason, "\\: there is nothing in it to search for");
  EXPECT_TRUE(searched.found.empty());
}

}  // namespace
}  // namespace zenfo::host::gui
