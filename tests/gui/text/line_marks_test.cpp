#include "gui/text/line_marks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

bool never() { return false; }

class Marks : public testing::Test {
 protected:
  Marks() {
    // Three MB and a bit, of lines of changing length.
    for (size_t i = 0; text_.size() < 3 * LineMarks::kStep + 500; ++i) {
      text_ += std::string(i % 900, 'x') + '\n';
    }
    EXPECT_TRUE(file_.open(folder_.file("a", text_)));
  }

  uint64_t counted(uint64_t offset) const {
    const auto end = text_.begin() + static_cast<ptrdiff_t>(offset);
    return 1 + static_cast<uint64_t>(std::count(text_.begin(), end, '\n'));
  }

  const test::TempFolder folder_;
  std::string text_;
  FilePart file_;
};

TEST_F(Marks, CountLinesFromTheNearestMark) {
  LineMarks marks;
  for (const uint64_t offset :
       {uint64_t{0}, uint64_t{5000}, LineMarks::kStep - 1, LineMarks::kStep,
        2 * LineMarks::kStep + 77, uint64_t{text_.size() - 1},
        uint64_t{text_.size()}, uint64_t{12}}) {
    EXPECT_EQ(marks.number_at(file_, offset, never), counted(offset)) << offset;
  }
  EXPECT_TRUE(marks.knows(text_.size()));
  EXPECT_FALSE(marks.knows(text_.size() + LineMarks::kStep));
  EXPECT_EQ(marks.number_at(file_, text_.size() + 1, never), std::nullopt);
  EXPECT_EQ(marks.number_at(file_, 9 * LineMarks::kStep, never), std::nullopt);
}

TEST_F(Marks, AStopKeepsWhatIsKnown) {
  LineMarks marks;
  int calls = 0;
  EXPECT_EQ(marks.number_at(file_, text_.size(), [&] { return ++calls > 2; }),
            std::nullopt);
  EXPECT_TRUE(marks.knows(2 * LineMarks::kStep));
  EXPECT_FALSE(marks.knows(3 * LineMarks::kStep));
  EXPECT_EQ(marks.number_at(file_, 5, [] { return true; }), counted(5));
}

TEST_F(Marks, FindTheMarkBeforeALine) {
  LineMarks marks;
  marks.number_at(file_, text_.size(), never);
  EXPECT_EQ(marks.mark_before_line(1).offset, 0u);
  for (const uint64_t number :
       {uint64_t{2}, counted(LineMarks::kStep), counted(LineMarks::kStep) + 1,
        counted(text_.size()) + 100}) {
    const LineMarks::Mark mark = marks.mark_before_line(number);
    EXPECT_LT(mark.line_ends, number - 1);
    EXPECT_EQ(mark.line_ends + 1, counted(mark.offset));
  }
}

}  // namespace
}  // namespace zenfo::host::gui
