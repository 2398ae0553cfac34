#include "gui/query/area_kinds.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gui/searched.h"
#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

struct AreaCase {
  std::string_view kind;
  std::string text;
  std::vector<std::string> areas;
};

const AreaCase kAreaCases[] = {
    {"code_comments", "a // b\nc /* d\ne */ f", {"// b", "/* d\ne */"}},
    {"code_comments", "s = \"http://x\"; // y", {"// y"}},
    {"code_comments", "s = \"\\\"//\"; /**/ '\"' // z", {"/**/", "// z"}},
    {"code_comments", "a / b /* open", {"/* open"}},
    {"code_comments", "// \"a\n\"// b\" // c", {"// \"a", "// c"}},
    {"code_comments", "n = 1'000'000; // d", {"// d"}},
    {"code_comments", "\"open\n// e", {"// e"}},
    {"code_comments", "/*/ f */ g", {"/*/ f */"}},
    {"code_comments", "", {}},
    {"strings",
     "a \"b\" 'c' // \"d\"\n/* 'e' */ \"f\\\"g\"",
     {"\"b\"", "'c'", "\"f\\\"g\""}},
    {"strings",
     "\"a\\\r\nb\" \"open\n\"c\"",
     {"\"a\\\r\nb\"", "\"open", "\"c\""}},
    {"strings", "\"end\\", {"\"end\\"}},
    {"markup_tags",
     "<p class=\"a>b\">c</p> 1 < 2",
     {"<p class=\"a>b\">", "</p>"}},
    {"markup_tags",
     "x<!-- <b> -->y<?z ?><![CDATA[<i>]]>",
     {"<!-- <b> -->", "<?z ?>", "<![CDATA[<i>]]>"}},
    {"markup_tags", "a <b", {"<b"}},
    {"markup_tags", "<", {}},
    {"shell_comments",
     "#!/bin/sh\na=1 # b\nc#d \"# e\" '# f'\n;# g",
     {"#!/bin/sh", "# b", "# g"}},
    {"shell_comments", "a \\# b $# # c", {"# c"}},
    {"shell_comments", "\"a\n# b\" '\\' # c", {"# c"}},
    {"shell_comments", "\\", {}},
};

TEST(AreaKinds, FindTheirAreas) {
  for (const AreaCase& row : kAreaCases) {
    const AreaKind* kind = find_area_kind(row.kind);
    ASSERT_NE(kind, nullptr);
    std::vector<std::string> areas;
    for (const Match& area : kind->areas_of(row.text)) {
      areas.push_back(row.text.substr(area.offset, area.length));
    }
    EXPECT_EQ(areas, row.areas) << row.text;
  }
}

// No text makes a scanner read beyond its end, or areas that overlap.
TEST(AreaKinds, TakeAnyText) {
  const std::string bytes = "/*\"'\\\n<>!-[]#a \r1";
  uint32_t seed = 1;
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (int i = 0; i < round % 40; ++i) {
      seed = seed * 1664525 + 1013904223;
      text += bytes[(seed >> 16) % bytes.size()];
    }
    for (const AreaKind& kind : area_kinds()) {
      size_t end = 0;
      for (const Match& area : kind.areas_of(text)) {
        ASSERT_GE(area.offset, end) << text;
        ASSERT_GT(area.length, 0u) << text;
        end = size_t{area.offset} + area.length;
      }
      ASSERT_LE(end, text.size()) << kind.name << text;
    }
  }
}

TEST(AreaKinds, AMatchIsWantedOnOneSideOnly) {
  const std::vector<Match> areas = {{10, 5}, {20, 1}};
  struct Case {
    Match match;
    bool outside, inside;
  };
  const Case cases[] = {
      {{0, 10}, true, false}, {{9, 2}, false, false},  {{10, 5}, false, true},
      {{12, 2}, false, true}, {{14, 2}, false, false}, {{15, 5}, true, false},
      {{20, 1}, false, true}, {{15, 6}, false, false}, {{30, 1}, true, false}};
  for (const Case& each : cases) {
    EXPECT_EQ(is_wanted(each.match, areas, false), each.outside);
    EXPECT_EQ(is_wanted(each.match, areas, true), each.inside);
  }
  EXPECT_TRUE(is_wanted({1, 2}, {}, false));
  EXPECT_FALSE(is_wanted({1, 2}, {}, true));
}

// With the real engine: "x" outside and inside of the areas of every row.
TEST(AreaKinds, LimitASearch) {
  const test::TempFolder folder;
  folder.file("a.c", "x // x x\n\"// x\" /* x\nx */ x\n");
  folder.file("only.c", "// x\n");
  struct Case {
    std::string kind;
    AreaUse use;
    std::vector<std::string> found;
  };
  const Case cases[] = {
      {"code_comments", AreaUse::kOutside, {"a.c 0 13 26"}},
      {"code_comments", AreaUse::kInside, {"a.c 5 7 19 21", "only.c 3"}},
      {"strings", AreaUse::kInside, {"a.c 13"}},
      {"strings", AreaUse::kOutside, {"a.c 0 5 7 19 21 26", "only.c 3"}},
  };
  for (const Case& each : cases) {
    Query query;
    query.text = "x";
    query.folders = {folder.path()};
    query.areas.use = each.use;
    query.areas.kind = each.kind;
    const test::Searched searched = test::search(query);
    EXPECT_EQ(searched.found_in(folder.path()), each.found) << each.kind;
    EXPECT_EQ(searched.others.size(), 2 - each.found.size());
  }
}

}  // namespace
}  // namespace zenfo::host::gui
