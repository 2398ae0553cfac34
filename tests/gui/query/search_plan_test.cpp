#include "gui/query/search_plan.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zenfo::host::gui {
namespace {

using Texts = std::vector<std::string>;

TEST(SearchPlan, SaysWhatAQueryMeansForTheLibrary) {
  Query query;
  query.text = "a\nb";
  query.whole_words = query.is_pattern = query.caret = true;
  query.folders = {"src", "web"};
  query.include_names = {"*.c", "[ab].h"};
  query.exclude_names = {"build"};
  query.areas = {AreaUse::kInside, "", "#x", "(", ")"};
  const SearchPlan plan = plan_of(query);
  EXPECT_EQ(plan.search.texts, Texts({"a\nb", "a\r\nb"}));
  EXPECT_TRUE(plan.search.whole_words && plan.search.is_pattern &&
              plan.search.caret && plan.search.ignore_case);
  EXPECT_EQ(plan.search.areas.pattern, "#x");
  EXPECT_EQ(plan.search.areas.start, "(");
  EXPECT_EQ(plan.search.areas.end, ")");
  EXPECT_TRUE(plan.search.areas.inside);
  EXPECT_EQ(plan.kind, nullptr);
  EXPECT_EQ(plan.paths, query.folders);
  EXPECT_TRUE(plan.choice.subfolders);
  EXPECT_FALSE(plan.choice.here_by_default);
  EXPECT_EQ(plan.choice.patterns, Texts({"*", "*.c"}));
  EXPECT_EQ(plan.choice.excluded_folders, Texts({"build"}));
  EXPECT_EQ(plan.filter.includes, query.include_names);
  EXPECT_EQ(plan.filter.excludes, query.exclude_names);
  EXPECT_EQ(plan.filter.excluded_folders, query.exclude_names);
  EXPECT_TRUE(plan.skip_binary);
}

TEST(SearchPlan, ReadyMadeAreasAreNoPattern) {
  Query query;
  query.areas = {AreaUse::kOutside, "strings", "left over", "", ""};
  query.match_case = true;
  query.binary = BinaryFiles::kSearch;
  const SearchPlan plan = plan_of(query);
  ASSERT_NE(plan.kind, nullptr);
  EXPECT_EQ(plan.kind->name, "strings");
  EXPECT_FALSE(plan.inside);
  EXPECT_EQ(plan.search.areas.pattern, "");
  EXPECT_FALSE(plan.search.ignore_case);
  EXPECT_FALSE(plan.skip_binary);
}

TEST(SearchPlan, AreasThatAreNotUsedAreLeftOut) {
  Query query;
  query.areas = {AreaUse::kEverywhere, "strings", "x", "", ""};
  EXPECT_EQ(plan_of(query).kind, nullptr);
  EXPECT_EQ(plan_of(query).search.areas.pattern, "");
}

}  // namespace
}  // namespace zenfo::host::gui
