#include "gui/engine/areas_job.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "gui/searched.h"
#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

// The parts of a text as they are left out of a search for "tide".
std::vector<std::string> left_out_of(const std::string& text,
                                     const AreaChoice& areas) {
  test::TempFolder folder;
  folder.file("a.c", text);
  Query query;
  query.text = "tide";
  query.folders = {folder.path()};
  query.areas = areas;
  const auto parts = std::make_shared<std::vector<Match>>();
  test::Engine engine;
  engine.thread().start(
      std::make_unique<AreasJob>(query, folder.path("a.c"), parts));
  engine.wait_for_ends(1);
  std::vector<std::string> texts;
  for (const Match& part : *parts) {
    texts.push_back(text.substr(part.offset, part.length));
  }
  return texts;
}

using Texts = std::vector<std::string>;

const std::string kText = "tide /* ebb */ tide /**/";
const std::string kPattern = "\\/\\*!'\\/'[0-]\\/";

TEST(AreasJob, AreasOfAKindAreLeftOut) {
  const AreaChoice outside{AreaUse::kOutside, "code_comments", "", "", ""};
  EXPECT_EQ(left_out_of(kText, outside), (Texts{"/* ebb */", "/**/"}));
}

TEST(AreasJob, AllAroundAreasOfAKindIsLeftOut) {
  const AreaChoice inside{AreaUse::kInside, "code_comments", "", "", ""};
  EXPECT_EQ(left_out_of(kText, inside), (Texts{"tide ", " tide ", ""}));
  EXPECT_EQ(left_out_of("/**/", inside), (Texts{""}));
}

TEST(AreasJob, AreasOfAPatternAreThoseOfTheSearch) {
  const AreaChoice outside{AreaUse::kOutside, "", kPattern, "", ""};
  EXPECT_EQ(left_out_of(kText, outside), (Texts{"/* ebb */", "/**/"}));
}

TEST(AreasJob, AllAroundAreasOfAPatternIsLeftOut) {
  const AreaChoice inside{AreaUse::kInside, "", kPattern, "", ""};
  EXPECT_EQ(left_out_of("tide /* tide */ ebb", inside),
            (Texts{"tide ", " ebb"}));
}

// There the library asks no question.
TEST(AreasJob, AFileWithoutMatchesHasNoAreasOfAPattern) {
  const AreaChoice outside{AreaUse::kOutside, "", kPattern, "", ""};
  EXPECT_EQ(left_out_of("ebb /**/", outside), Texts{});
}

TEST(AreasJob, ASearchEverywhereLeavesNothingOut) {
  EXPECT_EQ(left_out_of(kText, {}), Texts{});
}

}  // namespace
}  // namespace zenfo::host::gui
