// Blocks of lines, line numbers, and the walk through a file.
#include "shared/text/found_text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

#include "support/temp_folder.h"

namespace zenfo::host {
namespace {

constexpr uint64_t kAll = ~uint64_t{0};

// "start-end:matches" for each block.
std::string blocks(std::string_view text, std::vector<Match> matches,
                   uint64_t most_lines = kAll) {
  std::string shown;
  for (const Block& block : find_blocks(text, matches, most_lines)) {
    if (!shown.empty()) shown += ' ';
    shown += std::to_string(block.start) + '-' + std::to_string(block.end) +
             ':' + std::to_string(block.matches.size());
  }
  return shown;
}

TEST(FindBlocks, TakesWholeLines) {
  EXPECT_EQ(blocks("ab\ncd\nef", {{0, 1}}), "0-3:1");
  EXPECT_EQ(blocks("ab\ncd\nef", {{4, 1}}), "3-6:1");
  EXPECT_EQ(blocks("ab\ncd\nef", {{7, 1}}), "6-8:1");
  EXPECT_EQ(blocks("ab\ncd\nef", {{2, 1}}), "0-3:1");
}

TEST(FindBlocks, PutsMatchesOfTheSameLinesTogether) {
  EXPECT_EQ(blocks("ab\ncd\nef", {{0, 1}, {1, 1}, {3, 1}}), "0-3:2 3-6:1");
  EXPECT_EQ(blocks("ab\ncd\nef", {{1, 3}, {4, 1}, {6, 1}}), "0-6:2 6-8:1");
  EXPECT_EQ(blocks("ab\ncd\nef", {{0, 2}, {1, 6}}), "0-8:2");
}

TEST(FindBlocks, LeavesOutWhatLiesBehindTheText) {
  EXPECT_EQ(blocks("ab\ncd", {{4, 100}, {5, 1}, {900, 1}}), "3-5:1");
  EXPECT_EQ(blocks("", {{0, 1}}), "");
}

TEST(FindBlocks, EndsAfterSoManyLines) {
  const std::vector<Match> matches = {{0, 1}, {3, 4}, {7, 1}};
  EXPECT_EQ(blocks("ab\ncd\nef", matches, 3), "0-3:1 3-8:2");
  EXPECT_EQ(blocks("ab\ncd\nef", matches, 2), "0-3:1 3-6:1");
  EXPECT_EQ(blocks("ab\ncd\nef", matches, 1), "0-3:1");
  EXPECT_EQ(blocks("ab\ncd\nef", matches, 0), "");
}

TEST(Unite, SortsAndDropsWhatIsTheSame) {
  std::vector<Match> matches = {{5, 1}, {2, 1}, {5, 1}, {5, 3}};
  unite(matches);
  EXPECT_EQ(matches, (std::vector<Match>{{2, 1}, {5, 3}, {5, 1}}));
}

TEST(Lines, EndInLineFeedWithOrWithoutCarriageReturn) {
  EXPECT_EQ(without_end("ab\r\n"), "ab");
  EXPECT_EQ(without_end("ab\n"), "ab");
  EXPECT_EQ(without_end("ab\r"), "ab\r");
  EXPECT_EQ(without_end("\n"), "");
  EXPECT_EQ(count_lines("a\nb"), 2u);
  EXPECT_EQ(count_lines("a\nb\n"), 2u);
  EXPECT_EQ(count_lines(""), 0u);
}

TEST(CountMatchingLines, CountsEachLineOnce) {
  constexpr std::string_view kText = "ab\ncd\n\ngh";
  const auto count = [&](std::vector<Match> matches) {
    return count_matching_lines(kText, matches);
  };
  EXPECT_EQ(count({}), 0u);
  EXPECT_EQ(count({{0, 1}, {1, 1}}), 1u);
  EXPECT_EQ(count({{2, 1}}), 1u) << "its line end is of the line";
  EXPECT_EQ(count({{2, 2}}), 2u);
  EXPECT_EQ(count({{0, 9}}), 4u);
  EXPECT_EQ(count({{1, 3}, {3, 2}, {7, 2}}), 3u) << "lines shared";
  EXPECT_EQ(count({{0, 8}, {1, 1}}), 4u) << "one within another";
  EXPECT_EQ(count({{3, 0}, {9, 1}}), 0u) << "empty, or behind the end";
  EXPECT_EQ(count({{8, 99}}), 1u);
}

TEST(LineNumbers, CountFromOne) {
  LineNumbers numbers("ab\ncd\nef");
  EXPECT_EQ(numbers.at(0), 1u);
  EXPECT_EQ(numbers.at(2), 1u);
  EXPECT_EQ(numbers.at(3), 2u);
  EXPECT_EQ(numbers.at(8), 3u);
}

TEST(LineNumbers, GoOnFromALineWhoseNumberIsKnown) {
  LineNumbers numbers("ab\ncd\nef");
  numbers.note(3, 12);
  EXPECT_EQ(numbers.at(3), 12u);
  EXPECT_EQ(numbers.at(7), 13u);
}

// What the scan says of a line, found byte by byte.
std::string line_at(std::string_view text, size_t offset) {
  const size_t end = end_of_line(text, offset);
  const std::string_view before = text.substr(0, end);
  return std::to_string(start_of_line(text, offset)) + '-' +
         std::to_string(end) + ' ' +
         std::to_string(LineNumbers(text).at(offset)) +
         (before.find('\0') != std::string_view::npos ? " zero" : "");
}

TEST(LineScan, FindsTheStartOfALineAtAnyDistance) {
  for (const size_t length : {0, 1, 15, 16, 17, 31, 33, 70}) {
    for (size_t line_end = 0; line_end <= length; ++line_end) {
      std::string text(length, 'x');
      if (line_end < length) text[line_end] = '\n';
      for (size_t offset = 0; offset <= length + 1; ++offset) {
        const bool behind = line_end < length && line_end < offset;
        EXPECT_EQ(start_of_line(text, offset), behind ? line_end + 1 : 0)
            << offset << " of " << length << ", line end " << line_end;
      }
    }
  }
}

TEST(LineScan, AgreesWithASearchFromTheStartForEveryLine) {
  std::minstd_rand random(4711);
  for (const size_t length : {1, 15, 16, 17, 40, 600, 3000, 40000}) {
    for (const int line_length : {2, 20, 700, 9000}) {
      std::string text(length, 'x');
      for (char& byte : text) {
        if (random() % static_cast<unsigned>(line_length) == 0) byte = '\n';
      }
      if (random() % 2 == 0) text[random() % length] = '\0';
      const size_t step = 1 + random() % (length / 10 + 1);
      LineScan scan(text);
      for (size_t offset = random() % step; offset < length;
           offset += 1 + random() % step) {
        scan.move_to(offset);
        EXPECT_EQ(std::to_string(scan.start()) + '-' +
                      std::to_string(scan.end()) + ' ' +
                      std::to_string(scan.number()) +
                      (scan.zero_met() ? " zero" : ""),
                  line_at(text, offset))
            << "of " << length << " at " << offset;
      }
    }
  }
}

TEST(LineScan, CountsALongWay) {
  constexpr size_t kLength = (size_t{20} << 20) + 77;
  std::string text(kLength, 'x');
  for (size_t i = 0; i < kLength; i += 1 + i % 97) text[i] = '\n';
  for (const size_t zero : {kLength, size_t{5}, kLength / 2, kLength - 200}) {
    if (zero < kLength) text[zero] = '\0';
    LineScan scan(text);
    scan.move_to(kLength - 100);
    EXPECT_EQ(scan.number(), LineNumbers(text).at(scan.start()));
    EXPECT_EQ(scan.start(), start_of_line(text, kLength - 100));
    EXPECT_EQ(scan.zero_met(), zero < kLength) << zero;
    if (zero < kLength) text[zero] = 'x';
  }
}

// Notes its calls: "|" for a gap, context in brackets.
class Notes : public LineVisitor {
 public:
  explicit Notes(std::string_view text) : text_(text) {}
  void gap() override { notes_ += '|'; }
  void context(size_t start, size_t end) override {
    notes_ += '(' + part(start, end) + ')';
  }
  void block(const Block& block) override {
    notes_ += part(block.start, block.end);
  }
  const std::string& notes() const { return notes_; }

 private:
  std::string part(size_t start, size_t end) const {
    return std::string(without_end(text_.substr(start, end - start)));
  }

  std::string_view text_;
  std::string notes_;
};

std::string walk(std::vector<Match> matches, uint64_t before, uint64_t after) {
  constexpr std::string_view kText = "0\n1\n2\n3\n4\n5\n6\n7\n8\n9";
  Notes notes(kText);
  visit_lines(kText, find_blocks(kText, matches, kAll), before, after, notes);
  return notes.notes();
}

TEST(VisitLines, ShowsContextOnce) {
  EXPECT_EQ(walk({{6, 1}}, 0, 0), "|3");
  EXPECT_EQ(walk({{6, 1}}, 1, 2), "|(2)3(4)(5)");
  EXPECT_EQ(walk({{0, 1}, {18, 1}}, 2, 2), "|0(1)(2)|(7)(8)9");
  EXPECT_EQ(walk({{4, 1}, {8, 1}}, 3, 3), "|(0)(1)2(3)4(5)(6)(7)");
  EXPECT_EQ(walk({{2, 1}, {12, 1}}, 2, 2), "|(0)1(2)(3)(4)(5)6(7)(8)");
  EXPECT_EQ(walk({{2, 1}, {14, 1}}, 2, 2), "|(0)1(2)(3)|(5)(6)7(8)(9)");
  EXPECT_EQ(walk({{2, 1}, {4, 1}, {10, 1}}, 0, 0), "|12|5");
}

TEST(CountLines, CountsInLongTextsAsInShortOnes) {
  std::string text;
  for (size_t n = 0; n < 700; ++n) {
    text += std::string(n % 90, n % 7 == 0 ? '\n' : 'x') + '\n';
    const auto line_ends = std::count(text.begin(), text.end(), '\n');
    EXPECT_EQ(count_lines(text), static_cast<uint64_t>(line_ends));
  }
  EXPECT_EQ(count_lines(std::string(100000, '\n')), 100000u);
}

TEST(FileBytes, LoadsOneFileAfterTheOther) {
  const test::TempFolder folder;
  FileBytes bytes;
  const std::string large(1 << 20, 'x');
  EXPECT_TRUE(bytes.load(folder.file("large", large)));
  EXPECT_EQ(bytes.view(), large);
  EXPECT_TRUE(bytes.load(folder.file("small", "ab")));
  EXPECT_EQ(bytes.view(), "ab");
  EXPECT_FALSE(bytes.load(folder.path("none")));
  EXPECT_EQ(bytes.view(), "");
}

TEST(FileBytes, LoadsFilesOfOneFolderAndOfAnother) {
  const test::TempFolder first, second;
  const std::string a = first.file("a", "1"), b = first.file("b", "2");
  const std::string other = second.file("a", "3");
  FileBytes bytes;
  std::string all;
  for (const std::string& path :
       {a, b, a, other, a, b, first.path("none"), b, other, other, a}) {
    all += bytes.load(path) ? bytes.view() : "-";
  }
  EXPECT_EQ(all, "121312-2331");
}

TEST(FileBytes, FollowsAFolderThatIsMadeAgain) {
  const test::TempFolder folder;
  FileBytes bytes;
  for (const char* text : {"old", "new"}) {
    const std::filesystem::path sub = folder.path("sub");
    std::filesystem::remove_all(sub);
    std::filesystem::create_directory(sub);
    const std::string path = folder.file("sub/a", text);
    for (int i = 0; i < 3; ++i) {
      EXPECT_TRUE(bytes.load(path));
      EXPECT_EQ(bytes.view(), text);
    }
  }
}

TEST(FileBytes, MapsAsItLoads) {
  const test::TempFolder folder;
  FileBytes bytes;
  const std::string large = std::string(2 << 20, 'x') + "y";
  EXPECT_TRUE(bytes.load_or_map(folder.file("large", large)));
  EXPECT_EQ(bytes.view(), large);
  EXPECT_TRUE(bytes.load_or_map(folder.file("small", "ab")));
  EXPECT_EQ(bytes.view(), "ab");
  EXPECT_TRUE(bytes.load_or_map(folder.path("large")));
  EXPECT_EQ(bytes.view(), large);
  EXPECT_FALSE(bytes.load_or_map(folder.path("none")));
  EXPECT_EQ(bytes.view(), "");
}

}  // namespace
}  // namespace zenfo::host
