#include "gui/text/match_line.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

class Line : public testing::Test {
 protected:
  // The line of the first occurrence of a text, which is the match.
  MatchLine line_of(const std::string& text, const std::string& matched) {
    FilePart file;
    EXPECT_TRUE(file.open(folder_.file("a", text)));
    const size_t offset = text.find(matched);
    MatchLine line;
    EXPECT_TRUE(read_match_line(
        file,
        {static_cast<uint32_t>(offset), static_cast<uint32_t>(matched.size())},
        line));
    EXPECT_EQ(line.bytes.substr(line.start, line.length),
              matched.substr(0, line.length));
    return line;
  }

  const test::TempFolder folder_;
};

TEST_F(Line, IsThatOfTheMatch) {
  EXPECT_EQ(line_of("one\ntwo\nthree", "one"),
            (MatchLine{"one", 0, 3, false, false}));
  EXPECT_EQ(line_of("one\ntwo\r\nthree", "wo"),
            (MatchLine{"two", 1, 2, false, false}));
  EXPECT_EQ(line_of("one\ntwo\nthree", "ree"),
            (MatchLine{"three", 2, 3, false, false}));
  EXPECT_EQ(line_of("one\r", "e"), (MatchLine{"one\r", 2, 1, false, false}));
}

TEST_F(Line, AMatchOfSeveralLinesIsShownWithItsFirst) {
  EXPECT_EQ(line_of("one\r\ntwo\n", "e\r\nt"),
            (MatchLine{"one", 2, 1, false, false}));
  EXPECT_EQ(line_of("one\n\ntwo", "\n\nt"),
            (MatchLine{"one", 3, 0, false, false}));
}

TEST_F(Line, ALongLineIsCutAroundTheMatch) {
  const std::string left(5000, 'a');
  const std::string right(5000, 'b');
  const MatchLine line = line_of("x\n" + left + "MATCH" + right, "MATCH");
  EXPECT_EQ(line.start, kBytesBeforeMatch);
  EXPECT_EQ(line.bytes.size(), kMostLineBytes);
  EXPECT_TRUE(line.cut_left && line.cut_right);
  const MatchLine first = line_of("MATCH" + right + "\n", "MATCH");
  EXPECT_EQ(first.start, 0u);
  EXPECT_FALSE(first.cut_left);
  EXPECT_TRUE(first.cut_right);
  const MatchLine last = line_of(left + "MATCH\n", "MATCH");
  EXPECT_TRUE(last.cut_left);
  EXPECT_FALSE(last.cut_right);
  const std::string exact(kMostLineBytes - 5, 'b');
  EXPECT_FALSE(line_of("MATCH" + exact + "\r\n", "MATCH").cut_right);
  EXPECT_TRUE(line_of("MATCH" + exact + "b\n", "MATCH").cut_right);
}

TEST_F(Line, NoCharacterIsCut) {
  std::string left;
  for (int i = 0; i < 1000; ++i) left += "\xE2\x82\xAC";
  const MatchLine line = line_of(left + "MATCH" + left, "MATCH");
  EXPECT_EQ(line.start % 3, 0u);
  EXPECT_LE(line.start, kBytesBeforeMatch);
  EXPECT_EQ(line.bytes.size() % 3, 5u % 3);
  EXPECT_LE(line.bytes.size(), kMostLineBytes);
}

TEST_F(Line, AShorterFileHasNone) {
  FilePart file;
  ASSERT_TRUE(file.open(folder_.file("a", "short")));
  MatchLine line;
  EXPECT_FALSE(read_match_line(file, {3, 3}, line));
  EXPECT_FALSE(read_match_line(file, {100, 1}, line));
  EXPECT_TRUE(read_match_line(file, {3, 2}, line));
}

}  // namespace
}  // namespace zenfo::host::gui
