#include "gui/results/result_rows.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "gui/made_results.h"

namespace zenfo::host::gui {
namespace {

using test::found_file;
using test::news_of;

class Rows : public testing::Test {
 protected:
  Rows() {
    set_.add(news_of({found_file("/s/c.c", 2), found_file("/s/a.c", 1),
                      found_file("/t/b.c", 0)},
                     {{"/none", ResultState::kNoMatch, ""}}));
    rows_.update();
  }

  // "0 1.0 1.1": files, and FILE.MATCH.
  static std::string shown(const ResultRows& rows) {
    std::string text;
    for (uint64_t row = 0; row < rows.count(); ++row) {
      const ResultRow at = rows.at(row);
      EXPECT_EQ(rows.row_of(at), row);
      text += (row > 0 ? " " : "") + std::to_string(at.file);
      if (!at.is_file()) text += '.' + std::to_string(at.match);
    }
    return text;
  }
  std::string shown() const { return shown(rows_); }

  ResultSet set_{Query()};
  ResultRows rows_{set_, ResultState::kFound};
};

TEST_F(Rows, OpensAndClosesFiles) {
  EXPECT_EQ(shown(), "0 1 2");
  rows_.open(0, true);
  rows_.open(0, true);
  EXPECT_EQ(shown(), "0 0.0 0.1 1 2");
  EXPECT_EQ(rows_.row_of({1, 0}), std::nullopt);
  rows_.open_all(true);
  EXPECT_EQ(shown(), "0 0.0 0.1 1 1.0 2");
  rows_.open(0, false);
  EXPECT_EQ(shown(), "0 1 1.0 2");
  rows_.open_all(false);
  EXPECT_EQ(shown(), "0 1 2");
}

TEST_F(Rows, ShowFilesOfOneState) {
  const ResultRows others(set_, ResultState::kNoMatch);
  EXPECT_EQ(shown(others), "3");
  EXPECT_EQ(others.row_of({0, ResultRow::kNoMatch}), std::nullopt);
}

TEST_F(Rows, NewFilesGoBelowUntilTheNextSort) {
  rows_.open(0, true);
  rows_.sort({ResultColumn::kName, false});
  EXPECT_EQ(shown(), "1 2 0 0.0 0.1");
  set_.add(news_of({found_file("/s/aa.c", 1)}));
  EXPECT_EQ(shown(), "1 2 0 0.0 0.1");
  rows_.update();
  EXPECT_EQ(shown(), "1 2 0 0.0 0.1 4");
  rows_.sort(rows_.sort());
  EXPECT_EQ(shown(), "1 4 2 0 0.0 0.1");
}

TEST_F(Rows, NewFilesAreOpenAfterAllWereOpened) {
  rows_.open_all(true);
  set_.add(news_of({found_file("/n", 1)}));
  rows_.update();
  EXPECT_TRUE(rows_.is_open(4));
  EXPECT_EQ(shown(), "0 0.0 0.1 1 1.0 2 4 4.0");
}

TEST_F(Rows, AFilterHidesFilesNowAndLater) {
  rows_.open(1, true);
  rows_.filter("S" + std::string(1, test::kSeparator));
  EXPECT_EQ(shown(), "0 1 1.0");
  EXPECT_EQ(rows_.files_shown(), 2u);
  set_.add(news_of({found_file("/t/x", 1), found_file("/s/x", 1)}));
  rows_.update();
  EXPECT_EQ(shown(), "0 1 1.0 5");
  rows_.open(2, true);  // hidden
  EXPECT_EQ(shown(), "0 1 1.0 5");
  rows_.filter("");
  EXPECT_EQ(shown(), "0 1 1.0 2 4 5");
}

TEST_F(Rows, StayAsTheyAreUntilTheirArrangementComes) {
  rows_.wish_for_sort({ResultColumn::kName, false});
  rows_.wish_for_filter("s" + std::string(1, test::kSeparator));
  EXPECT_FALSE(rows_.is_arranged());
  EXPECT_EQ(shown(), "0 1 2");
  Arrangement arrangement = rows_.arrangement();
  // What comes and goes meanwhile.
  set_.add(news_of({found_file("/s/aa.c", 1), found_file("/t/aa.c", 1)}));
  set_.remove(1);
  rows_.update();
  EXPECT_EQ(shown(), "0 2 4");
  arrangement.run();
  rows_.take(arrangement);
  EXPECT_TRUE(rows_.is_arranged());
  EXPECT_EQ(shown(), "0 4");
}

TEST_F(Rows, MayBeArrangedWhileTheResultGrows) {
  rows_.wish_for_sort({ResultColumn::kName, true});
  Arrangement arrangement = rows_.arrangement();
  std::thread sorter([&] { arrangement.run(); });
  for (int i = 0; i < 500; ++i) {
    set_.add(news_of({found_file("/s/d" + std::to_string(i), 1)}));
    set_.choose_all(i % 2 == 0);
    rows_.update();
  }
  sorter.join();
  rows_.take(arrangement);
  EXPECT_EQ(rows_.at(0).file, 0u);
  EXPECT_EQ(rows_.count(), 503u);
  EXPECT_EQ(rows_.at(502).file, 503u);
}

TEST_F(Rows, AnArrangementThatIsNoLongerWishedForIsLeftOut) {
  rows_.wish_for_sort({ResultColumn::kName, false});
  Arrangement late = rows_.arrangement();
  rows_.wish_for_sort({ResultColumn::kName, true});
  late.run();
  rows_.take(late);
  EXPECT_FALSE(rows_.is_arranged());
  EXPECT_EQ(shown(), "0 1 2");
}

TEST_F(Rows, RemovedFilesLoseTheirRows) {
  rows_.open_all(true);
  set_.remove(0);
  rows_.update();
  EXPECT_EQ(shown(), "1 1.0 2");
  set_.remove(1);
  set_.remove(2);
  rows_.update();
  EXPECT_EQ(rows_.count(), 0u);
  EXPECT_EQ(rows_.find_name("a", 0, true), std::nullopt);
}

TEST_F(Rows, FindsNamesByTheirBeginning) {
  rows_.open(0, true);  // rows: c, c's two matches, a, b
  EXPECT_EQ(rows_.find_name("A", 0, true), 3u);
  EXPECT_EQ(rows_.find_name("c", 0, true), 0u);
  EXPECT_EQ(rows_.find_name("c", 1, true), 0u);
  EXPECT_EQ(rows_.find_name("b", 4, false), 4u);
  EXPECT_EQ(rows_.find_name("c.c", 99, true), 0u);
  EXPECT_EQ(rows_.find_name("x", 0, true), std::nullopt);
  EXPECT_EQ(rows_.find_name("", 0, true), std::nullopt);
}

TEST_F(Rows, StepsFromMatchToMatch) {
  std::vector<ResultRow> forwards;
  std::optional<ResultRow> at = ResultRow{0, ResultRow::kNoMatch};
  while ((at = rows_.next_match(*at))) forwards.push_back(*at);
  EXPECT_EQ(forwards, std::vector<ResultRow>({{0, 0}, {0, 1}, {1, 0}}));
  std::vector<ResultRow> backwards;
  at = ResultRow{2, ResultRow::kNoMatch};
  while ((at = rows_.previous_match(*at))) backwards.push_back(*at);
  EXPECT_EQ(backwards, std::vector<ResultRow>({{1, 0}, {0, 1}, {0, 0}}));
  EXPECT_EQ(rows_.next_match({3, ResultRow::kNoMatch}), std::nullopt);
}

}  // namespace
}  // namespace zenfo::host::gui
