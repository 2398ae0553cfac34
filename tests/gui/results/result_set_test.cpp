#include "gui/results/result_set.h"

#include <gtest/gtest.h>

#include <string>

#include "gui/made_results.h"

namespace zenfo::host::gui {
namespace {

using test::found_file;
using test::news_of;

ResultSet three_files() {
  ResultSet set{Query()};
  set.add(news_of({found_file("/a/x.c", 3, 100, 7), found_file("/b/y.h", 2)},
                  {{"/c/z", ResultState::kNoMatch, ""}}));
  return set;
}

TEST(ResultSet, TakesWhatAJobTold) {
  ResultSet set = three_files();
  ASSERT_EQ(set.count(), 3u);
  EXPECT_EQ(set.file(0).count, 3u);
  EXPECT_EQ(set.file(0).size, 100u);
  EXPECT_EQ(set.file(0).modified, 7);
  EXPECT_EQ(set.match(1, 1), (Match{10, 5}));
  EXPECT_EQ(set.totals(), (ResultTotals{2, 2, 1, 0, 5, 5, 5}));
  EXPECT_FALSE(set.end());
  JobNews last =
      news_of({}, {{"/d", ResultState::kNotSearched, "binary"},
                   {"/e", ResultState::kNotSearched, "binary"},
                   {"/f", ResultState::kNotSearched, "permission denied"}});
  last.end = JobEnd{JobOutcome::kStopped, "", 12};
  set.add(std::move(last));
  EXPECT_EQ(set.reason(3), "binary");
  EXPECT_EQ(set.reason(4), "binary");
  EXPECT_EQ(set.reason(5), "permission denied");
  EXPECT_EQ(set.reason(0), "");
  EXPECT_EQ(set.totals().files_not_searched, 3u);
  EXPECT_EQ(set.end()->outcome, JobOutcome::kStopped);
}

TEST(ResultSet, ChoosesMatchesAndFiles) {
  ResultSet set = three_files();
  EXPECT_EQ(set.file(0).choice(), Choice::kAll);
  set.choose(0, 1, false);
  set.choose(0, 1, false);
  EXPECT_EQ(set.file(0).choice(), Choice::kSome);
  EXPECT_EQ(set.totals().chosen, 4u);
  set.choose(0, 0, false);
  set.choose(0, 2, false);
  EXPECT_EQ(set.file(0).choice(), Choice::kNone);
  EXPECT_EQ(set.totals().files_chosen, 1u);
  set.choose_file(0, true);
  EXPECT_EQ(set.file(0).choice(), Choice::kAll);
  EXPECT_EQ(set.totals().chosen, 5u);
  set.choose_all(false);
  EXPECT_EQ(set.totals().chosen, 0u);
  EXPECT_EQ(set.totals().files_chosen, 0u);
  set.choose(1, 0, true);
  set.invert_choice();
  EXPECT_EQ(set.totals().chosen, 4u);
  EXPECT_FALSE(set.is_chosen(1, 0));
  EXPECT_TRUE(set.is_chosen(1, 1));
  // A file without matches has nothing to choose.
  set.choose_file(2, true);
  EXPECT_EQ(set.file(2).choice(), Choice::kNone);
}

TEST(ResultSet, CountsAllAndListsUpToTheCaps) {
  ResultSet set(Query(), {4, 6});
  set.add(
      news_of({found_file("/a", 5), found_file("/b", 3), found_file("/c", 2)}));
  EXPECT_EQ(set.file(0).listed, 4u);
  EXPECT_EQ(set.file(1).listed, 2u);
  EXPECT_EQ(set.file(2).listed, 0u);
  EXPECT_EQ(set.totals(), (ResultTotals{3, 3, 0, 0, 10, 6, 10}));
  // Matches that are not listed go with the file.
  set.choose(0, 0, false);
  EXPECT_EQ(set.totals().chosen, 9u);
  set.choose_file(2, false);
  EXPECT_EQ(set.file(2).choice(), Choice::kNone);
  EXPECT_EQ(set.totals().chosen, 7u);
  set.invert_choice();
  EXPECT_EQ(set.totals().chosen, 3u);
}

TEST(ResultSet, RemovedFilesCountNoMore) {
  ResultSet set = three_files();
  set.choose(0, 0, false);
  set.remove(0);
  set.remove(0);
  set.remove(2);
  EXPECT_EQ(set.removed(), 2u);
  EXPECT_EQ(set.totals(), (ResultTotals{1, 1, 0, 0, 2, 2, 2}));
  set.choose_file(0, true);
  set.choose(0, 0, true);
  EXPECT_EQ(set.totals().chosen, 2u);
}

TEST(ResultFile, CutsPaths) {
  struct Row {
    std::string path, folder, name, extension;
  };
  const Row rows[] = {{"/a/b.c", "/a", "b.c", "c"},
                      {"b.c", "", "b.c", "c"},
                      {"/b", "/", "b", ""},
                      {"a/.rc", "a", ".rc", ""},
                      {"a/b.tar.gz", "a", "b.tar.gz", "gz"},
                      {"a/b.", "a", "b.", ""}};
  for (const Row& row : rows) {
    ResultFile file;
    file.path = test::own_path(row.path);
    EXPECT_EQ(file.folder(), test::own_path(row.folder));
    EXPECT_EQ(file.name(), row.name);
    EXPECT_EQ(file.extension(), row.extension);
  }
}

}  // namespace
}  // namespace zenfo::host::gui
