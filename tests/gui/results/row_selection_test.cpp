#include "gui/results/row_selection.h"

#include <gtest/gtest.h>

#include <string>

#include "gui/made_results.h"

namespace zenfo::host::gui {
namespace {

using test::found_file;

class Selection : public testing::Test {
 protected:
  Selection() {
    set_.add(test::news_of({found_file("/a", 2), found_file("/b", 3)}));
    rows_.update();
    rows_.open_all(true);  // 0, 0.0, 0.1, 1, 1.0, 1.1, 1.2
  }

  // A letter for each row: "x" selected.
  std::string shown() const {
    std::string text;
    for (uint64_t row = 0; row < rows_.count(); ++row) {
      text += selection_.has(rows_.at(row)) ? 'x' : '.';
    }
    return text;
  }

  ResultSet set_{Query()};
  ResultRows rows_{set_, ResultState::kFound};
  RowSelection selection_{set_};
};

TEST_F(Selection, SelectsRowsInEitherDirection) {
  EXPECT_EQ(shown(), ".......");
  selection_.select_rows(rows_, 5, 2, true);
  EXPECT_EQ(shown(), "..xxxx.");
  EXPECT_EQ(selection_.count(), 4u);
  selection_.select_rows(rows_, 3, 4, false);
  EXPECT_EQ(shown(), "..x..x.");
  selection_.select(rows_.at(0), true);
  EXPECT_EQ(shown(), "x.x..x.");
  selection_.select_all(rows_);
  EXPECT_EQ(shown(), "xxxxxxx");
  selection_.clear();
  EXPECT_EQ(shown(), ".......");
  EXPECT_EQ(selection_.count(), 0u);
}

TEST_F(Selection, StaysWithItsFilesWhenRowsMove) {
  selection_.select_rows(rows_, 0, 1, true);
  rows_.sort({ResultColumn::kMatches, true});
  EXPECT_EQ(shown(), "....xx.");
  set_.add(test::news_of({found_file("/c", 1)}));
  rows_.update();
  EXPECT_EQ(shown(), "....xx...");
}

TEST_F(Selection, VisitsSelectedRowsInTheirOrder) {
  const auto visited = [&] {
    std::string text;
    selection_.for_each(rows_, [&](ResultRow row) {
      text += ' ' + std::to_string(row.file);
      if (!row.is_file()) text += '.' + std::to_string(row.match);
    });
    return text;
  };
  EXPECT_EQ(visited(), "");
  selection_.select_rows(rows_, 2, 5, true);
  EXPECT_EQ(visited(), " 0.1 1 1.0 1.1");
  rows_.sort({ResultColumn::kMatches, true});
  EXPECT_EQ(visited(), " 1 1.0 1.1 0.1");
  rows_.open(1, false);
  EXPECT_EQ(visited(), " 1 0.1");
  // Matches that came after the selection was made.
  set_.add(test::news_of({found_file("/c", 1)}));
  rows_.update();
  EXPECT_EQ(visited(), " 1 0.1");
}

TEST_F(Selection, TogglesAllSelectedRowsAlike) {
  selection_.select_rows(rows_, 1, 3, true);  // 0.0, 0.1, file 1
  set_.choose(0, 0, false);
  toggle_selected(selection_, rows_, set_);
  EXPECT_EQ(set_.totals().chosen, 5u);
  toggle_selected(selection_, rows_, set_);
  EXPECT_EQ(set_.totals().chosen, 0u);
}

}  // namespace
}  // namespace zenfo::host::gui
