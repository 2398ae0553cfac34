#include "replace/rewriter.h"

#include <gtest/gtest.h>

#include <vector>

#include "containers/string_pair.h"
#include "unit/replace/engine_support.h"

namespace zenfo {
namespace {

using replace_test::Span;

class RewriterTest : public testing::Test, protected replace_test::Engine {
 protected:
  // Writes the first `length` bytes of the text with every match in brackets.
  int32_t write(size_t length = std::string::npos, const char* to = nullptr) {
    return write_to({to != nullptr ? to : path.c_str()}, length);
  }
  int32_t write_to(const Destination& destination,
                   size_t length = std::string::npos) {
    const std::string_view text(context.text(), context.text_length());
    return Rewriter(context, text.substr(0, length)).write(destination, put);
  }
  // Writes the text up to its first NUL, which the writer must find.
  int32_t write_until_nul() {
    const std::string_view text(context.text(), context.text_length());
    return Rewriter(context, text, Rewriter::Until::kNul)
        .write(path.c_str(), put);
  }

 private:
  static void put(OutFile& file, const MatchRecord&, std::string_view matched) {
    file.write('[');
    file.write(matched);
    file.write(']');
  }
};

TEST_F(RewriterTest, WritesGapsMatchesAndTheTail) {
  set("abcdef", {{1, 2}, {4, 1}});
  EXPECT_EQ(write(), 2);
  EXPECT_EQ(written(), "a[bc]d[e]f");
  set("abcdef", {{0, 6}});
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(written(), "[abcdef]");
  set("abc", {});
  EXPECT_EQ(write(), 0);
  EXPECT_EQ(written(), "abc") << "nothing is left of a longer file";
}

TEST_F(RewriterTest, PassesOverDeselectedMatches) {
  set("abc", {{0, 1}, {1, 1}, {2, 1}});
  match(1).state = 0;
  match(2).state = 5;
  EXPECT_EQ(write(), 2);
  EXPECT_EQ(written(), "[a]b[c]");
}

TEST_F(RewriterTest, AMatchThatOverlapsTheOneBeforeIsWrittenAllTheSame) {
  set("abcdef", {{0, 3}, {1, 4}, {2, 1}});
  EXPECT_EQ(write(), 3);
  EXPECT_EQ(written(), "[abc][bcde][c]f") << "the cursor never goes back";
}

TEST_F(RewriterTest, ClipsMatchesToTheTextThatIsWritten) {
  set("abcdef", {{1, 1}, {2, 3}, {4, 1}});
  EXPECT_EQ(write(4), 2);
  EXPECT_EQ(written(), "a[b][cd]");
  EXPECT_EQ(write(1), 0);
  EXPECT_EQ(written(), "a");
}

// The result is the same as for a text cut at the NUL beforehand.
TEST_F(RewriterTest, EndsAtTheFirstNulWhenAskedTo) {
  constexpr size_t kFar = 300'000;
  for (const size_t nul :
       {size_t{1}, size_t{2}, size_t{4}, size_t{6}, size_t{8}, size_t{131'071},
        size_t{131'072}, size_t{131'073}, kFar - 2, kFar - 1, kFar}) {
    std::string text(kFar, 'x');
    if (nul < kFar) text[nul] = text.back() = '\0';
    for (const uint32_t last :
         {uint32_t{8}, uint32_t{131'070}, uint32_t{kFar - 4}}) {
      const std::initializer_list<Span> spans = {{2, 3}, {7, 1}, {last, 3}};
      set(text, spans);
      const int32_t cut = write(nul);
      const std::string expected = written();
      EXPECT_EQ(write_until_nul(), cut) << nul << ' ' << last;
      EXPECT_EQ(written(), expected) << nul << ' ' << last;
    }
  }
}

// An earlier search beyond this place has found the NUL already.
TEST_F(RewriterTest, MatchesInAnyOrderEndAtTheFirstNul) {
  set(std::string_view("abcdef\0hij", 10), {{8, 1}, {4, 6}, {0, 1}, {6, 1}});
  EXPECT_EQ(write_until_nul(), 2);
  EXPECT_EQ(written(), "abcd[ef][a]");
}

TEST_F(RewriterTest, FailsWithoutTouchingAFileItCannotOpen) {
  set("abc", {{0, 1}});
  EXPECT_EQ(write(std::string::npos, folder.path("no/out").c_str()), -1);
  EXPECT_EQ(write(std::string::npos, folder.path().c_str()), -1);
  EXPECT_EQ(write(std::string::npos, "/dev/full"), -1);
}

TEST_F(RewriterTest, ARecordThatIsNoMatchLeavesTheFileAsFarAsWritten) {
  set("abc", {{0, 1}});
  context.matches.append(std::make_unique<StringPair>("a", "b"));
  EXPECT_EQ(write(), -1);
  EXPECT_EQ(written(), "[a]");
}

// The run keeps or drops the safe copy by it.
TEST_F(RewriterTest, TheResultOfOpeningIsKnownWithoutAVersionToo) {
  set("abc", {{0, 1}});
  auto opened = platform::Opened::kFailed;
  EXPECT_EQ(write_to({path.c_str(), nullptr, &opened}), 1);
  EXPECT_EQ(opened, platform::Opened::kOpen);
  EXPECT_EQ(write_to({"/no/such/file", nullptr, &opened}), -1);
  EXPECT_EQ(opened, platform::Opened::kFailed);
}

std::vector<uint32_t> report_positions;
int polls;

int32_t note_report(ProgressRecord* record) {
  report_positions.push_back(record->position);
  return 0;
}

TEST_F(RewriterTest, ReportsEachMatchAndPollsAtTheContextsInterval) {
  set("abc", {{0, 1}, {1, 1}, {2, 1}});
  report_positions.clear();
  context.set_report_hook([](ProgressRecord* record) {
    EXPECT_EQ(record->total, 3u);
    report_positions.push_back(record->position);
    return 0;
  });
  EXPECT_EQ(write(), 3);
  EXPECT_EQ(report_positions, (std::vector<uint32_t>{0, 0, 1, 2, 3}));
  search_counters() = {};
  context.set_poll_interval(1);
  for (int stop = 1; stop <= 4; ++stop) {
    polls = stop;
    context.set_interrupt_hook([](void*) { return --polls == 0 ? 1 : 0; });
    EXPECT_EQ(write(), stop <= 3 ? -1 : 3);
    EXPECT_EQ(written(), std::string("[a][b][c]").substr(0, (stop - 1) * 3));
  }
}

// The calls are those of a loop that reports every match.
TEST_F(RewriterTest, ReportsAboutAHundredMatchesOfMany) {
  const std::string text(1234, 'x');
  set(text, {});
  for (uint32_t i = 0; i < text.size(); ++i) {
    context.matches.append(
        std::make_unique<MatchRecord>(context.text() + i, 1, i));
  }
  context.set_report_hook(note_report);
  report_positions.clear();
  EXPECT_EQ(write(), 1234);
  const std::vector<uint32_t> seen = report_positions;
  report_positions.clear();
  context.report_progress(0, text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    context.report_progress(i, text.size());
  }
  context.report_progress(text.size(), text.size());
  EXPECT_EQ(seen, report_positions);
  EXPECT_EQ(seen.size(), 105u);
}

}  // namespace
}  // namespace zenfo
