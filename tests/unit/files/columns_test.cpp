#include "files/columns.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "files/file_entry.h"
#include "platform/files.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

constexpr Column kAllColumns[] = {Column::kFileName,   Column::kDirectory,
                                  Column::kType,       Column::kCreationTime,
                                  Column::kAccessTime, Column::kWriteTime,
                                  Column::kSize,       Column::kAttributes};

// The column's text, or "(none)" for an entry that lacks it.
std::string shown(const FileEntry& entry, Column column) {
  std::string text = "kept ";
  if (!append_column(entry, column, text)) {
    EXPECT_EQ(text, "kept ") << "something appended";
    return "(none)";
  }
  return text.substr(5);
}

// The steps of 100 ns since 1601 of a time since 1970.
uint64_t file_time(int64_t unix_seconds) {
  return static_cast<uint64_t>(unix_seconds + 11644473600) * 10000000;
}

FileEntry entry_named(const std::string& name) {
  return FileEntry(SharedText(name));
}

class UtcTime : public testing::Test {
 protected:
  UtcTime() {
    const char* zone = std::getenv("TZ");
    had_zone_ = zone != nullptr;
    if (had_zone_) zone_ = zone;
    setenv("TZ", "UTC", 1);
    tzset();
  }
  ~UtcTime() override {
    had_zone_ ? setenv("TZ", zone_.c_str(), 1) : unsetenv("TZ");
    tzset();
  }

 private:
  bool had_zone_ = false;
  std::string zone_;
};

TEST_F(UtcTime, EachColumnShowsItsFact) {
  FileEntry entry = entry_named("/data/a.txt");
  entry.set_full_name("/data/a.txt");
  ASSERT_TRUE(entry.gather_type_name());
  entry.facts.creation_time = file_time(1614834367);
  entry.facts.access_time = file_time(1614834368);
  entry.facts.write_time = file_time(981173106);
  entry.facts.size = 1536;
  entry.facts.attributes = platform::kAttributeReadOnly;
  EXPECT_EQ(shown(entry, Column::kFileName), "a.txt");
  EXPECT_EQ(shown(entry, Column::kDirectory), "/data");
  EXPECT_EQ(shown(entry, Column::kType), "TXT File");
  EXPECT_EQ(shown(entry, Column::kCreationTime), "04/03/2021 05:06:07");
  // Intended: no seconds.
  EXPECT_EQ(shown(entry, Column::kAccessTime), "04/03/2021 05:06");
  EXPECT_EQ(shown(entry, Column::kWriteTime), "03/02/2001 04:05:06");
  EXPECT_EQ(shown(entry, Column::kSize), "1.5 KB");
  EXPECT_EQ(shown(entry, Column::kAttributes), "R");
}

TEST_F(UtcTime, ATimeThatCannotBeShownIsMissing) {
  FileEntry entry = entry_named("/a");
  entry.facts.creation_time = uint64_t{1} << 63;
  entry.facts.access_time = UINT64_MAX;
  entry.facts.write_time = uint64_t{1} << 63;
  EXPECT_EQ(shown(entry, Column::kCreationTime), "(none)");
  EXPECT_EQ(shown(entry, Column::kAccessTime), "(none)");
  EXPECT_EQ(shown(entry, Column::kWriteTime), "(none)");
}

TEST_F(UtcTime, TheTimesBeforeTheyAreGatheredAreTheFirstOfAll) {
  EXPECT_EQ(shown(entry_named("/a"), Column::kCreationTime),
            "01/01/1601 00:00:00");
  EXPECT_EQ(shown(entry_named("/a"), Column::kAccessTime), "01/01/1601 00:00");
}

TEST_F(UtcTime, YearsBeyond9999AreWrittenOut) {
  FileEntry entry = entry_named("/a");
  entry.facts.write_time = file_time(253402300800);
  EXPECT_EQ(shown(entry, Column::kWriteTime), "01/01/10000 00:00:00");
}

TEST(Columns, NamesAndTypeAreMissingUntilDerived) {
  FileEntry entry = entry_named("/data/a.txt");
  EXPECT_EQ(shown(entry, Column::kFileName), "(none)");
  EXPECT_EQ(shown(entry, Column::kDirectory), "(none)");
  EXPECT_EQ(shown(entry, Column::kType), "(none)");
  EXPECT_EQ(shown(entry, Column::kSize), "0 B");
  EXPECT_EQ(shown(entry, Column::kAttributes), "");
}

TEST(Columns, AttributeLettersAreInTheirOrder) {
  struct Case {
    uint32_t bits;
    const char* letters;
  };
  const Case cases[] = {{1, "R"},       {2, "H"},          {32, "A"},
                        {4, "S"},       {2048, "C"},       {0, ""},
                        {128, ""},      {16, ""},          {1 | 2, "RH"},
                        {4 | 32, "AS"}, {7, "RHS"},        {2048 | 4, "SC"},
                        {~0u, "RHASC"}, {~(1u | 4), "HAC"}};
  FileEntry entry = entry_named("/a");
  for (const Case& c : cases) {
    entry.facts.attributes = c.bits;
    EXPECT_EQ(shown(entry, Column::kAttributes), c.letters) << c.bits;
  }
}

TEST(Columns, OtherNumbersAreNoColumns) {
  const FileEntry entry = entry_named("/a");
  for (int number : {-1, 0, 1, 10, 1000}) {
    EXPECT_EQ(shown(entry, static_cast<Column>(number)), "(none)") << number;
  }
}

TEST(Columns, RunFromTwoToNineWithoutAGap) {
  int number = kFirstColumn;
  for (Column column : kAllColumns) {
    EXPECT_EQ(static_cast<int>(column), number++);
  }
  EXPECT_EQ(number, kLastColumn + 1);
}

}  // namespace
}  // namespace zenfo
