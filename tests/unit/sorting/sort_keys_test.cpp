#include "sorting/sort_keys.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "containers/string_pair.h"
#include "files/file_entry.h"
#include "undo/undo_record.h"

namespace zenfo {
namespace {

using namespace std::string_view_literals;

int sign(int32_t number) { return (number > 0) - (number < 0); }

FileEntry file(std::string path) {
  for (char& c : path) {
    if (c == '/') c = platform::kPathSeparator;
  }
  FileEntry entry{SharedText("")};
  entry.set_full_name(path);
  return entry;
}

int32_t compare(uint32_t row, const Record& a, const Record& b) {
  return kSortTable.at(row).compare(&a, &b);
}

TEST(SortTable, RowsCarryTheirOwnNumberAndTheTableEndsAfter24) {
  for (uint32_t i = 0; i < kSortKeys; ++i) EXPECT_EQ(kSortTable[i].row, i);
  EXPECT_THROW(static_cast<void>(kSortTable.at(25)), std::out_of_range);
}

TEST(SortTable, RepeatsKeysAsListed) {
  const std::pair<uint32_t, uint32_t> same[] = {
      {12, 0}, {13, 10}, {15, 0},  {16, 10}, {17, 14},
      {20, 2}, {21, 3},  {22, 19}, {23, 0},  {24, 10}};
  for (const auto& [row, as] : same) {
    EXPECT_EQ(kSortTable[row].compare, kSortTable[as].compare) << row;
  }
}

struct NumberCase {
  uint32_t row;
  const char* what;
  void (*set)(FileEntry&, uint64_t);
  uint64_t smaller;
  uint64_t greater;
};

TEST(SortTable, ComparesNumbersToMinusOneZeroAndOne) {
  auto state = [](FileEntry& e, uint64_t n) {
    e.state = static_cast<uint32_t>(n);
  };
  auto icon = [](FileEntry& e, uint64_t n) {
    e.icon = static_cast<int32_t>(n);
  };
  auto size = [](FileEntry& e, uint64_t n) { e.facts.size = n; };
  auto attributes = [](FileEntry& e, uint64_t n) {
    e.facts.attributes = static_cast<uint32_t>(n);
  };
  auto flag = [](FileEntry& e, uint64_t n) {
    e.flag = static_cast<int32_t>(n);
  };
  const auto minus = static_cast<uint64_t>(-1);
  const NumberCase cases[] = {
      {0, "state", state, 0, 1},
      {0, "state, unsigned", state, 1, UINT32_MAX},
      {1, "icon", icon, 1, 700},
      {1, "icon, signed", icon, minus, 0},
      {1, "icon, far apart", icon, 0x80000000u, 0x7fffffff},
      {8, "size", size, 0, uint64_t{1} << 40},
      {8, "size, signed", size, minus, 0},
      {9, "attributes", attributes, 1, 32},
      {9, "attributes, unsigned", attributes, 1, 0x80000000u},
      {12, "state", state, 0, 1},
      {15, "state", state, 0, 1},
      {19, "flag", flag, 0, 3},
      {19, "flag, signed", flag, minus, 0},
      {22, "flag", flag, minus, 1},
      {23, "state", state, 0, 1},
  };
  for (const NumberCase& c : cases) {
    FileEntry a = file("/a");
    FileEntry b = file("/a");
    c.set(a, c.smaller);
    c.set(b, c.greater);
    EXPECT_EQ(compare(c.row, a, b), -1) << c.what;
    EXPECT_EQ(compare(c.row, b, a), 1) << c.what;
    EXPECT_EQ(compare(c.row, a, a), 0) << c.what;
  }
}

struct TimeCase {
  uint64_t a;
  uint64_t b;
  int32_t answer;
};

TEST(SortTable, ComparesTimesByWrappingSubtractionOfTheirHalves) {
  const TimeCase cases[] = {
      {5, 5, 0},
      {7, 5, 2},
      {5, 7, -2},
      {0x200000000, 0x1ffffffff, 1},
      {0x1ffffffff, 0x200000000, -1},
      {0x500000000, 0x300000009, 2},
      {0x180000000, 0x100000000,
       INT_MIN},  // 2^31 apart: each is before the other
      {0x100000000, 0x180000000, INT_MIN},
      {0x1ffffffff, 0x100000000, -1},  // in the wrong order
      {0x8000000000000000, 0, INT_MIN},
      {0xffffffff00000000, 0, -1},
  };
  const std::pair<uint32_t, uint64_t platform::FileFacts::*> rows[] = {
      {5, &platform::FileFacts::creation_time},
      {6, &platform::FileFacts::access_time},
      {7, &platform::FileFacts::write_time}};
  for (const auto& [row, member] : rows) {
    for (const TimeCase& c : cases) {
      FileEntry a = file("/a");
      FileEntry b = file("/b");
      a.facts.*member = c.a;
      b.facts.*member = c.b;
      EXPECT_EQ(compare(row, a, b), c.answer) << row << " " << c.a;
    }
  }
}

TEST(SortTable, ComparesTextsWithoutCase) {
  const FileEntry a = file("/dir/A.txt");
  const FileEntry b = file("/DIR/b.txt");
  for (const uint32_t row : {2u, 10u, 13u, 16u, 18u, 20u, 24u}) {
    EXPECT_LT(compare(row, a, b), 0) << row;
    EXPECT_GT(compare(row, b, a), 0) << row;
    EXPECT_EQ(compare(row, a, a), 0) << row;
  }
  for (const uint32_t row : {3u, 14u, 17u, 21u}) {
    EXPECT_EQ(compare(row, a, b), 0) << "folder, row " << row;
  }
  EXPECT_EQ(compare(2, file("/A"), file("/a")), 0);
  EXPECT_EQ(compare(2, file("/b"), file("/A")), 1);
}

TEST(SortTable, AMissingTextGoesBeforeAllOthersMissingOnesIncluded) {
  const FileEntry named = file("/a/b");
  const FileEntry bare{SharedText("/a/b")};
  for (const uint32_t row : {2u, 3u, 14u, 17u, 18u, 20u, 21u}) {
    EXPECT_EQ(compare(row, bare, named), -1) << row;
    EXPECT_EQ(compare(row, named, bare), 1) << row;
    EXPECT_EQ(compare(row, bare, bare), -1) << row;
  }
}

TEST(SortTable, MissingTypeNamesAreEqual) {
  FileEntry typed = file("/a/b.txt");
  ASSERT_TRUE(typed.gather_type_name());
  const FileEntry bare = file("/a/c.txt");
  EXPECT_EQ(compare(4, bare, bare), 0);
  EXPECT_EQ(compare(4, bare, typed), -1);
  EXPECT_EQ(compare(4, typed, bare), 1);
  FileEntry other = file("/z/x.TXT");
  ASSERT_TRUE(other.gather_type_name());
  EXPECT_EQ(compare(4, typed, other), 0);
}

TEST(SortTable, TakesTheTextsOfPairsValuesAndSafeCopies) {
  const StringPair p("b", "x");
  const StringPair q("B", "y");
  EXPECT_EQ(compare(13, p, q), 0);
  EXPECT_LT(compare(14, p, q), 0);
  EXPECT_LT(compare(24, ReplaceValue("a"), ReplaceValue("b")), 0);
  const UndoRecord u(SharedText("o1"), SharedText("s2"), SharedText("t3"));
  const UndoRecord v(SharedText("o1"), SharedText("s1"), SharedText("t4"));
  EXPECT_EQ(compare(16, u, v), 0);
  EXPECT_GT(compare(17, u, v), 0);
  EXPECT_LT(compare(18, u, v), 0);
}

TEST(SortTable, ARecordLacksWhatIsOfAnotherKind) {
  const StringPair pair("a", "b");
  FileEntry entry = file("/a");
  for (const uint32_t row : {2u, 3u, 20u, 21u}) {
    EXPECT_EQ(compare(row, pair, entry), -1) << row;
    EXPECT_EQ(compare(row, pair, pair), -1) << row;
    EXPECT_EQ(compare(row, entry, pair), 1) << row;
  }
  EXPECT_EQ(compare(4, pair, pair), 0);
  for (const uint32_t row : {1u, 5u, 6u, 7u, 8u, 9u, 19u, 22u}) {
    EXPECT_EQ(compare(row, pair, entry), 0) << row;
  }
  entry.icon = entry.flag = -1;
  EXPECT_EQ(compare(1, pair, entry), 1);
  EXPECT_EQ(compare(19, pair, entry), 1);
  EXPECT_EQ(compare(18, pair, pair), -1) << "pairs have no third text";
  EXPECT_EQ(compare(11, pair, pair), -1);
}

TEST(SortTable, TextsEndAtTheirNul) {
  const StringPair a("x\0a"sv, "");
  const StringPair b("X\0b"sv, "");
  EXPECT_EQ(compare(13, a, b), 0);
}

TEST(CompFileFull, TakesTheFirstDifferenceOfNameSizeTimeAndAttributes) {
  FileEntry a = file("/1/n");
  FileEntry b = file("/2/N");
  EXPECT_EQ(comp_file_full(&a, &b), 0) << "whatever the folders";
  b.facts.attributes = 1;
  EXPECT_EQ(comp_file_full(&a, &b), -1);
  a.facts.write_time = 1;
  EXPECT_EQ(comp_file_full(&a, &b), 1);
  b.facts.size = 1;
  EXPECT_EQ(comp_file_full(&a, &b), -1);
  a.set_full_name("/1/o");
  b.set_full_name("/1/n");
  EXPECT_EQ(sign(comp_file_full(&a, &b)), 1);
  a.facts = b.facts;
  a.set_full_name("/1/n");
  a.facts.write_time = uint64_t{1} << 31;
  b.facts.write_time = 0;
  EXPECT_EQ(comp_file_full(&a, &b), INT_MIN) << "times wrap here too";
}

TEST(CompFileFull, MissingRecordsGoFirstAndEqualEachOther) {
  const FileEntry a = file("/a");
  EXPECT_EQ(comp_file_full(nullptr, &a), -1);
  EXPECT_EQ(comp_file_full(&a, nullptr), 1);
  EXPECT_EQ(comp_file_full(nullptr, nullptr), 0);
}

}  // namespace
}  // namespace zenfo
