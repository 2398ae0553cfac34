#include "gui/results/status_text.h"

#include <gtest/gtest.h>

#include "gui/made_results.h"

namespace zenfo::host::gui {
namespace {

using test::found_file;
using test::news_of;

ResultSet set_for(const std::string& text, MatchCaps caps = {}) {
  Query query;
  query.text = text;
  return ResultSet(query, caps);
}

void end(ResultSet& set, JobEnd end) {
  JobNews news;
  news.end = std::move(end);
  set.add(std::move(news));
}

TEST(StatusText, TellsHowFarASearchIs) {
  ResultSet set = set_for("a");
  EXPECT_EQ(status_line(set), "Looking for files...");
  JobNews news = news_of({found_file("/a", 2)});
  news.progress = {JobPhase::kSearching, 1200, 7, "/b"};
  set.add(std::move(news));
  EXPECT_EQ(status_line(set), "7 of 1,200 files searched, 2 matches in 1 file");
}

TEST(StatusText, TellsWhatWasFound) {
  ResultSet set = set_for("a", {3, 100});
  set.add(news_of({found_file("/a", 4), found_file("/b", 1)},
                  {{"/c", ResultState::kNotSearched, "binary"}}));
  set.choose_file(1, false);
  end(set, {JobOutcome::kStopped, "", 949});
  EXPECT_EQ(status_line(set),
            "4 of 5 matches in 1 of 2 files chosen - 4 listed - 0.9 s - "
            "1 not searched - stopped");
}

TEST(StatusText, TellsThatNothingWasFound) {
  ResultSet set = set_for("a");
  set.add(news_of({}, {{"/c", ResultState::kNoMatch, ""}}));
  end(set, {JobOutcome::kDone, "", 12'345});
  EXPECT_EQ(status_line(set), "Nothing found in 1 file - 12.3 s");
  end(set, {JobOutcome::kFailed, "x: no", 0});
  EXPECT_EQ(status_line(set), "The search failed: x: no");
}

TEST(StatusText, TitlesAreShort) {
  EXPECT_EQ(tab_title(set_for("a\nb")), "a b: 0 in 0");
  EXPECT_EQ(tab_title(set_for(std::string(30, 'x'))),
            std::string(24, 'x') + "...: 0 in 0");
  EXPECT_EQ(tab_title(set_for(std::string(23, 'x') + "\xC3\xA4\xC3\xA4")),
            std::string(23, 'x') + "...: 0 in 0");
}

}  // namespace
}  // namespace zenfo::host::gui
