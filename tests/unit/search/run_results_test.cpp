#include "search/run_results.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"

namespace zenfo {
namespace {

FileInHand file_in_hand(const char* path, uint32_t found) {
  FileInHand file;
  file.path = SharedText(std::string_view(path));
  file.copy = std::make_unique<FileEntry>(file.path);
  file.copy->flag = -1;
  file.found = found;
  return file;
}

TEST(ListResults, SortsFilesIntoThreeLists) {
  ItemList results, no_matches, errors;
  ListResults lists(results, no_matches, errors);
  FileInHand two = file_in_hand("two", 2);
  FileInHand none = file_in_hand("none", 0);
  FileInHand empty = file_in_hand("empty", 0);
  FileInHand bad = file_in_hand("bad", 0);
  FileInHand unsaved = file_in_hand("unsaved", 3);
  lists.counted(two);
  lists.taken(two);
  lists.taken(none);
  lists.empty(empty);
  lists.rejected(bad);
  lists.unsaved(unsaved);
  lists.rejected(unsaved);  // already gone: nothing happens
  EXPECT_TRUE(lists.finish());
  ASSERT_EQ(results.count(), 1u);
  EXPECT_EQ(record_cast<FileEntry>(results.get(0))->flag, 2);
  EXPECT_EQ(no_matches.count(), 2u);
  EXPECT_EQ(record_cast<FileEntry>(no_matches.get(0))->flag, 0);
  EXPECT_EQ(errors.count(), 2u);
  EXPECT_EQ(record_cast<FileEntry>(errors.get(0))->flag, -1);
}

TEST(SearchSummary, WritesALineForFilesThatWereTaken) {
  test::TempFolder folder;
  const std::string path = folder.path("summary");
  SearchSummary summary;
  ASSERT_TRUE(summary.open(path.c_str()));
  FileInHand one = file_in_hand("a\nb", 4294967295u);
  FileInHand none = file_in_hand("c", 0);
  summary.rejected(one);
  summary.empty(one);
  summary.taken(one);
  summary.taken(none);
  EXPECT_TRUE(summary.finish());
  EXPECT_EQ(test::read_file(path),
            "a\r\nb, found 4294967295\r\r\nc, found 0\r\r\n");
}

TEST(SearchSummary, LinesEndInCrCrLf) {
  test::TempFolder folder;
  const std::string path = folder.path("summary");
  SearchSummary summary;
  ASSERT_TRUE(summary.open(path.c_str()));
  FileInHand one = file_in_hand("a", 1);
  summary.taken(one);
  EXPECT_TRUE(summary.finish());
  EXPECT_EQ(test::read_file(path), "a, found 1\r\r\n");
}

TEST(SearchSummary, ReportsThatItCannotBeWritten) {
  test::TempFolder folder;
  SearchSummary summary;
  EXPECT_FALSE(summary.open(folder.path("no/summary").c_str()));
  EXPECT_FALSE(summary.open(folder.path().c_str()));
  ASSERT_TRUE(summary.open("/dev/full"));
  FileInHand one = file_in_hand("a", 1);
  summary.taken(one);
  EXPECT_FALSE(summary.finish());
}

}  // namespace
}  // namespace zenfo
