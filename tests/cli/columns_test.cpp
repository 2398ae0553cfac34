#include "cli/printing/columns.h"

#include <gtest/gtest.h>

namespace zenfo::host::cli {
namespace {

std::vector<const Column*> columns(const std::vector<std::string>& names) {
  std::vector<const Column*> found;
  for (const std::string& name : names) found.push_back(find_column(name));
  return found;
}

TEST(Columns, AreFoundByName) {
  EXPECT_STREQ(find_column("size")->name, "size");
  EXPECT_EQ(find_column("Size"), nullptr);
  EXPECT_EQ(find_column(""), nullptr);
  EXPECT_EQ(column_names(),
            "name, folder, type, created, accessed, modified, size, "
            "attributes, path");
}

TEST(WidthOf, CountsCharacters) {
  EXPECT_EQ(width_of(""), 0u);
  EXPECT_EQ(width_of("gr\xC3\xBCn"), 4u);
  EXPECT_EQ(width_of("\xF0\x9F\x98\x80"), 1u);
}

std::string aligned_line(const std::vector<const Column*>& columns,
                         const Cells& cells,
                         const std::vector<size_t>& widths) {
  std::string line = "from before";
  align(columns, cells, widths, line);
  return line;
}

TEST(CellTexts, KeepTextsInOrderAndTellMissingFromEmpty) {
  CellTexts texts;
  Cells cells;
  for (const std::optional<std::string_view> text :
       Cells{"a", std::nullopt, "", "bc", std::string_view("\0d", 2)}) {
    texts.add(text);
  }
  ASSERT_EQ(texts.count(), 5u);
  EXPECT_EQ(texts.bytes(), 5u);
  texts.get(0, 3, cells);
  EXPECT_EQ(cells, (Cells{"a", std::nullopt, ""}));
  texts.get(3, 2, cells);
  EXPECT_EQ(cells, (Cells{"bc", std::string_view("\0d", 2)}));
  texts.clear();
  EXPECT_EQ(texts.count() + texts.bytes(), 0u);
}

TEST(AlignedLine, FillsTextsToTheRightAndNumbersToTheLeft) {
  EXPECT_EQ(aligned_line(columns({"name", "size", "path"}), {"a", "1 B", "p"},
                         {3, 6, 9}),
            "a       1 B  p");
}

TEST(AlignedLine, EndsWithItsLastText) {
  EXPECT_EQ(aligned_line(columns({"name", "size", "attributes"}),
                         {"a", "1 B", ""}, {3, 3, 2}),
            "a    1 B");
  EXPECT_EQ(aligned_line(columns({"attributes", "name"}), {std::nullopt, "a"},
                         {2, 3}),
            "    a");
}

TEST(JsonLine, KeepsTheOrderOfColumnsAndTellsMissingFromEmpty) {
  EXPECT_EQ(json_line(columns({"size", "folder", "attributes"}),
                      {"1 B", std::nullopt, ""}),
            R"({"size":"1 B","folder":null,"attributes":""})");
}

TEST(JsonLine, EscapesTextAndEncodesOtherBytes) {
  EXPECT_EQ(json_line(columns({"path"}), {"a\"\\\n\xC3\xBC"}),
            "{\"path\":\"a\\\"\\\\\\n\xC3\xBC\"}");
  EXPECT_EQ(json_line(columns({"path"}), {"a\"\\\n\xff"}),
            R"({"path":{"bytes":"YSJcCv8="}})");
}

TEST(JsonTotal, TakesTheBytesOutOfTheLongText) {
  EXPECT_EQ(json_total(2, {"1.50 KB", "1.50 KB (1536 Bytes)"}),
            R"({"files":2,"bytes":1536,"size":"1.50 KB"})");
  EXPECT_EQ(json_total(0, {"0 B", "0 Bytes"}),
            R"({"files":0,"bytes":0,"size":"0 B"})");
}

TEST(TabbedLine, LeavesMissingTextsEmpty) {
  EXPECT_EQ(tabbed_line({"a", std::nullopt, "b"}), "a\t\tb");
}

}  // namespace
}  // namespace zenfo::host::cli
