#include "gui/engine/display_job.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "gui/searched.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace zenfo::host::gui {
namespace {

using test::Engine;

constexpr int32_t kLine = 16;

// A display of the engine thread; its notices count like ends of jobs.
class DisplayJobTest : public testing::Test {
 protected:
  Query query_for(const std::string& text) {
    Query query;
    query.text = text;
    query.match_case = true;
    query.folders = {folder.path()};
    return query;
  }

  // Begins, and waits until it is parked or has ended.
  void start(const Query& query, const std::string& name,
             std::optional<uint32_t> match) {
    if (display && display->parked.is_parked()) {
      display->parked.leave();
      engine.wait_for_ends(1);
    }
    display = std::make_shared<BytesDisplay>([this] { engine.notice(); });
    job = engine.thread().start(std::make_unique<DisplayJob>(
        DisplayWish{query, folder.path(name), match}, display));
    engine.wait_for_ends(1);
  }
  // The line of the match at an offset, as the display finds it; -1 for none.
  int32_t line_of(uint32_t offset) {
    int32_t place[2] = {-1, -1};
    display->parked.use([&] {
      const auto group = display->groups.group_at(offset);
      if (!group) return;
      EXPECT_EQ(display->groups.offset_of(*group), offset);
      HighlightGroup(*group, place);
    });
    return place[0];
  }
  JobEnd end() {
    const std::vector<JobNews> news = engine.thread().take();
    EXPECT_FALSE(news.empty());
    return news.back().end.value_or(JobEnd{});
  }

  test::TempFolder folder;
  std::shared_ptr<BytesDisplay> display;
  JobId job = 0;
  Engine engine;
};

TEST_F(DisplayJobTest, TheDisplayIsParkedAndTheEngineIdle) {
  folder.file("a", std::string(100, '-') + "tide" + std::string(100, '-'));
  start(query_for("tide"), "a", 100);
  EXPECT_TRUE(display->parked.is_parked());
  EXPECT_TRUE(engine.thread().idle());
  int32_t lines = 0;
  EXPECT_TRUE(display->parked.use([&] { lines = GetDisplayLineCount(); }));
  EXPECT_EQ(lines, 13);
  EXPECT_EQ(line_of(100), 6);
  EXPECT_EQ(line_of(101), -1);
}

TEST_F(DisplayJobTest, TheNextJobEndsTheParking) {
  folder.file("a", "tide");
  start(query_for("tide"), "a", 0);
  engine.thread().start(std::make_unique<SearchJob>(query_for("tide")));
  engine.wait_for_ends(2);
  EXPECT_FALSE(display->parked.is_parked());
  EXPECT_FALSE(display->parked.use([] { FAIL() << "not allowed"; }));
  const test::Searched searched = test::joined(engine.thread().take());
  EXPECT_EQ(searched.found.size(), 1u);
  EXPECT_EQ(searched.end->outcome, JobOutcome::kDone);
}

TEST_F(DisplayJobTest, AJobThatIsLeftGoesOnWithoutFailure) {
  folder.file("a", "tide");
  start(query_for("tide"), "a", 0);
  display->parked.leave();
  EXPECT_FALSE(display->parked.use([] { FAIL() << "not allowed"; }));
  engine.wait_for_ends(1);
  EXPECT_EQ(end().outcome, JobOutcome::kDone);
}

TEST_F(DisplayJobTest, AParkedJobIsStopped) {
  folder.file("a", "tide");
  start(query_for("tide"), "a", 0);
  engine.thread().stop(job);
  engine.wait_for_ends(1);
  EXPECT_EQ(end().outcome, JobOutcome::kStopped);
}

TEST(DisplayJob, TheThreadEndsWithAParkedJob) {
  test::TempFolder folder;
  folder.file("a", "tide");
  Query query;
  query.text = "tide";
  query.folders = {folder.path()};
  Engine engine;
  auto shown = std::make_shared<BytesDisplay>([&] { engine.notice(); });
  engine.thread().start(std::make_unique<DisplayJob>(
      DisplayWish{query, folder.path("a"), 0}, shown));
  engine.wait_for_ends(1);
  EXPECT_TRUE(shown->parked.is_parked());
}

// All but the last give way, before or after they are parked.
TEST_F(DisplayJobTest, ManyWishesEndWithTheLast) {
  folder.file("a", "tide");
  constexpr int kWishes = 50;
  std::shared_ptr<BytesDisplay> last;
  for (int i = 0; i < kWishes; ++i) {
    last = std::make_shared<BytesDisplay>([] {});
    engine.thread().start(std::make_unique<DisplayJob>(
        DisplayWish{query_for("tide"), folder.path("a"), 0}, last));
  }
  engine.wait_for_ends(kWishes - 1);
  while (!last->parked.is_parked()) std::this_thread::yield();
  EXPECT_TRUE(engine.thread().idle());
}

// The matches, and what is around them, of a search outside of areas.
TEST_F(DisplayJobTest, GroupsCountAreasThatAreLeftOut) {
  //                0         1         2         3         4
  folder.file("a", "<tide> tide <tide>      tide <-> tide");
  Query query = query_for("tide");
  query.areas = {AreaUse::kOutside, "", "\\<!'>'[1-]\\>", "", ""};
  start(query, "a", 7);
  EXPECT_EQ(line_of(1), -1);
  EXPECT_EQ(line_of(7), 7 / kLine);
  EXPECT_EQ(line_of(24), 24 / kLine);
  EXPECT_EQ(line_of(33), 33 / kLine);
}

TEST_F(DisplayJobTest, GroupsCountWhatLiesAroundAreas) {
  folder.file("a", "<tide> tide <tide>      tide <-> <tide>");
  Query query = query_for("tide");
  query.areas = {AreaUse::kInside, "", "\\<!'>'[1-]\\>", "", ""};
  start(query, "a", 13);
  EXPECT_EQ(line_of(1), 0);
  EXPECT_EQ(line_of(13), 13 / kLine);
  EXPECT_EQ(line_of(7), -1);
  EXPECT_EQ(line_of(34), 34 / kLine);
}

TEST_F(DisplayJobTest, ReadyMadeAreasKeepTheGroupsOfMatches) {
  folder.file("a.c", "// tide and more to fill\ntide\n");
  Query query = query_for("tide");
  query.areas = {AreaUse::kOutside, "code_comments", "", "", ""};
  start(query, "a.c", 25);
  EXPECT_EQ(line_of(25), 1);
}

// One text for each line end: the question with the match is the one to wait
// in.
TEST_F(DisplayJobTest, ALineBreakIsFoundWithBothLineEnds) {
  folder.file("a", "one\ntwo, and later one\r\ntwo");
  start(query_for("one\ntwo"), "a", 19);
  EXPECT_EQ(line_of(19), 1);
  start(query_for("one\ntwo"), "a", 0);
  EXPECT_EQ(line_of(0), 0);
}

TEST_F(DisplayJobTest, AFileWithoutMatchesIsShownToo) {
  folder.file("a", std::string("\x01\x01\0\x02", 4));
  folder.file("b", std::string(40, '\x01'));
  start(query_for("tide"), "a", std::nullopt);
  EXPECT_TRUE(display->parked.is_parked());
  start(query_for("tide"), "b", std::nullopt);
  int32_t lines = 0;
  EXPECT_TRUE(display->parked.use([&] { lines = GetDisplayLineCount(); }));
  EXPECT_EQ(lines, 3);
}

// The areas of the search must not hide the whole file.
TEST_F(DisplayJobTest, AFileThatHasLostItsMatchesIsShownToo) {
  folder.file("a", "changed since");
  Query query = query_for("tide");
  query.areas = {AreaUse::kInside, "", "tide", "", ""};
  start(query, "a", 3);
  EXPECT_TRUE(display->parked.is_parked());
  EXPECT_EQ(line_of(3), -1);
}

TEST_F(DisplayJobTest, TellsWhyNothingIsShown) {
  folder.file("empty", "");
  start(query_for("tide"), "empty", std::nullopt);
  EXPECT_EQ(end().reason, "The file is empty");
  start(query_for("tide"), "gone", 0);
  const JobEnd gone = end();
  EXPECT_EQ(gone.outcome, JobOutcome::kFailed);
  EXPECT_FALSE(gone.reason.empty());
  EXPECT_NE(gone.reason, "The file is empty");
}

}  // namespace
}  // namespace zenfo::host::gui
