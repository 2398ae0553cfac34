// A result of 100,000 files with 1,000,000 matches, made without a search: its
// memory, and the cost of rows and choices, counted in steps.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "gui/made_results.h"
#include "gui/results/export.h"
#include "gui/results/news_queue.h"
#include "gui/results/result_rows.h"
#include "gui/results/row_selection.h"

namespace zenfo::host::gui {
namespace {

constexpr uint32_t kFiles = 100'000;
constexpr uint32_t kMatchesEach = 10;
constexpr uint64_t kMatches = uint64_t{kFiles} * kMatchesEach;
constexpr uint64_t kRows = kFiles + kMatches;
constexpr uint64_t kLogarithm = 17;

const ResultSet& large_set() {
  static const ResultSet set = [] {
    ResultSet made{Query()};
    // In parts, as a job tells it.
    for (uint32_t first = 0; first < kFiles; first += 1000) {
      std::vector<FoundFile> files;
      for (uint32_t i = first; i < first + 1000; ++i) {
        files.push_back(test::found_file(
            "/home/somebody/projects/harbour/source/part_" +
                std::to_string(i % 300) + "/file_" + std::to_string(i) + ".cpp",
            kMatchesEach));
      }
      made.add(test::news_of(std::move(files)));
    }
    return made;
  }();
  return set;
}

TEST(Load, AMatchNeedsLessThanAHundredBytes) {
  const ResultSet& set = large_set();
  ASSERT_EQ(set.totals().listed, kMatches);
  EXPECT_LT(set.bytes(), 100 * kMatches);
  // In fact it is far less.
  EXPECT_LT(set.bytes(), 40 * kMatches);
}

TEST(Load, ARowIsFoundInLogarithmicSteps) {
  ResultRows rows(large_set(), ResultState::kFound);
  ASSERT_EQ(rows.count(), kFiles);
  rows.open_all(true);
  ASSERT_EQ(rows.count(), kRows);
  constexpr uint64_t kPage = 118;
  const uint64_t before = rows.steps();
  for (uint64_t row = kRows / 2; row < kRows / 2 + kPage; ++row) {
    const ResultRow at = rows.at(row);
    EXPECT_EQ(at.file, row / (kMatchesEach + 1));
  }
  EXPECT_LE(rows.steps() - before, kPage * kLogarithm);
}

TEST(Load, OpeningAFileCostsLogarithmicSteps) {
  ResultRows rows(large_set(), ResultState::kFound);
  const uint64_t before = rows.steps();
  for (uint32_t file = 0; file < kFiles; file += 1000) {
    rows.open(file, true);
    EXPECT_EQ(rows.row_of({file, 9}),
              file + uint64_t{file / 1000} * kMatchesEach + 10);
  }
  EXPECT_LE(rows.steps() - before, 100 * 2 * kLogarithm);
}

TEST(Load, ManyFilesAreSortedFilteredAndChosen) {
  ResultSet set = large_set();
  ResultRows rows(set, ResultState::kFound);
  rows.sort({ResultColumn::kName, true});
  EXPECT_EQ(rows.at(0).file, 99'999u);
  rows.filter("part_299" + std::string(1, test::kSeparator));
  EXPECT_EQ(rows.files_shown(), kFiles / 300);
  RowSelection selection(set);
  rows.open_all(true);
  selection.select_all(rows);
  EXPECT_EQ(selection.count(), uint64_t{kFiles / 300} * (kMatchesEach + 1));
  toggle_selected(selection, rows, set);
  EXPECT_EQ(set.totals().chosen,
            kMatches - uint64_t{kFiles / 300} * kMatchesEach);
  set.choose_all(false);
  EXPECT_EQ(set.totals().chosen, 0u);
  set.choose_file(5, true);
  EXPECT_EQ(set.totals().chosen, kMatchesEach);
}

// What other threads do with a result costs the window's thread no more than a
// list of its files.
TEST(Load, AnExportTakesNoCopyOfPathsAndMatches) {
  const ResultSet& set = large_set();
  const ResultRows rows(set, ResultState::kFound);
  const ExportSource source(set, rows.files(), ExportForm::kPaths);
  ASSERT_EQ(source.files().size(), kFiles);
  EXPECT_EQ(source.files()[7].path, &set.file(7).path);
  EXPECT_LE(sizeof(ExportSource::File), 16u);
  uint64_t paths = 0;
  export_results(source, [&](std::string_view lines) {
    EXPECT_EQ(lines.back(), '\n');
    return ++paths > 0;
  });
  EXPECT_EQ(paths, kFiles);
}

TEST(Load, AnExportCanBeStoppedAtEachLine) {
  const ResultSet& set = large_set();
  const ResultRows rows(set, ResultState::kFound);
  const ExportSource source(set, rows.files(), ExportForm::kPaths);
  std::atomic<uint64_t> done = 0;
  const ExportResult result = export_results(
      source, [&](std::string_view) { return done < 100; }, &done);
  EXPECT_TRUE(result.stopped);
  EXPECT_EQ(done, 101u);
}

TEST(Load, NewsOfAHundredThousandFilesComeInSmallParts) {
  std::vector<FoundFile> files;
  for (uint32_t i = 0; i < kFiles; ++i) {
    files.push_back(test::found_file("/" + std::to_string(i), kMatchesEach));
  }
  std::vector<JobNews> news;
  news.push_back(test::news_of(std::move(files)));
  NewsQueue queue;
  queue.add(std::move(news));
  ResultSet set{Query()};
  int parts = 0;
  for (; !queue.empty(); ++parts) {
    JobNews part = queue.next();
    EXPECT_LE(part.found.size(), NewsQueue::kFiles);
    set.add(std::move(part));
  }
  EXPECT_EQ(parts, kFiles / NewsQueue::kFiles);
  EXPECT_EQ(set.totals().listed, kMatches);
}

TEST(Load, ALargeSortEndsSoonWhenItIsNotWantedAnyMore) {
  ResultRows rows(large_set(), ResultState::kFound);
  rows.wish_for_sort({ResultColumn::kName, true});
  Arrangement arrangement = rows.arrangement();
  const std::atomic<bool> stop = true;
  arrangement.run(&stop);
  EXPECT_TRUE(arrangement.order().empty());
}

}  // namespace
}  // namespace zenfo::host::gui
