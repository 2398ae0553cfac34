// Searches through the exports: reports, summaries, stops, progress.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "support/matchers.h"
#include "support/search_fixture.h"
#ifndef _WIN32
#include "support/temporary_locale.h"
#endif

namespace zenfo::test {
namespace {

// ---- Report ----------------------------------------------------------------

constexpr char kHeader[] =
    "\r\nNumber\tOffset\tLength\r\n------\t------\t------\r\n";

std::string block(int number, int offset, const std::string& text) {
  return std::to_string(number) + "\t" + std::to_string(offset) + "\t" +
         std::to_string(text.size()) +
         "\r\n-------------MATCH-------------\r\n" + text +
         "\r\n-----------END MATCH-----------\r\n";
}

TEST_F(SearchTest, ReportNumbersRunOnAndLeaveGapsForDeselectedMatches) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a-A-a-a");
  const auto none = add("2", "b");
  const auto three = add("3", "xa\xff\r\n");
  HostRecorder host;
  host.answer_option = [&](const HostRecorder::Question& question) {
    if (question.text == one) SetState(ZENFO_LIST_MATCHES, 1, 0);
    return 1;
  };
  ASSERT_EQ(find_block({.case_flag = 0, .ask = 1, .report = report()}), 4);
  EXPECT_EQ(read_file(report()), one + "\r\n" + kHeader + block(1, 0, "a") +
                                     block(3, 4, "a") + block(4, 6, "a") +
                                     "\r\n" + none + "\r\n" + three + "\r\n" +
                                     kHeader + block(4, 1, "a") + "\r\n")
      << "the next file's numbers follow the number of those reported";
}

TEST_F(SearchTest, ReportOfStringsHasOneHeaderAFile) {
  pair("x", "");
  pair("a", "");
  pair("b", "");
  const auto one = add("1", "a b a");
  const auto two = add("2", "b");
  EXPECT_EQ(find_string({.report = report()}), 4);
  EXPECT_EQ(read_file(report()), one + "\r\n" + kHeader + block(1, 0, "a") +
                                     block(2, 4, "a") + block(3, 2, "b") +
                                     "\r\n" + two + "\r\n" + kHeader +
                                     block(4, 0, "b") + "\r\n");
}

TEST_F(SearchTest, ReportHoldsMatchesRawWithNulBytes) {
  ASSERT_TRUE(SetPatternTag("<", ">", 0, 0, 0) == 1);
  const auto one = add("1", "<\0\n>"s);
  EXPECT_EQ(find_block({.report = report()}), 1);
  EXPECT_EQ(read_file(report()),
            one + "\r\n" + kHeader + block(1, 0, "<\0\n>"s) + "\r\n");
}

TEST_F(SearchTest, TheReportIsClosedHoweverTheRunEnds) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  add("2", "a");
  const std::string first = one + "\r\n" + kHeader + block(1, 0, "a") + "\r\n";
  for (int32_t last : {2, 9}) {
    HostRecorder host;
    host.answer_option = [&](const HostRecorder::Question&) {
      return host.option_questions.size() == 1 ? 1 : last;
    };
    EXPECT_EQ(find_block({.ask = 1, .report = report()}), last == 2 ? 1 : -1);
    EXPECT_EQ(read_file(report()), first);
  }
}

TEST_F(SearchTest, AReportReplacesTheOneBefore) {
  ASSERT_TRUE(pattern("a"));
  work().file("report", "old");
  EXPECT_EQ(find_block({.report = report()}), 0);
  EXPECT_EQ(read_file(report()), "");
}

// ---- List file and summary -------------------------------------------------

TEST_F(SearchTest, SummaryHasALineForEveryFileThatWasSearched) {
  ASSERT_TRUE(pattern("a"));
  const auto two = folder.file("1", "aba");
  const auto none = folder.file("2", "b");
  const auto empty = folder.file("3", "");
  const auto binary = folder.file("4", "a\x03");
  const auto gone = folder.path("5");
  EXPECT_EQ(over_lines(find_block, {.binary = 1},
                       line_list({two, none, empty, binary, gone, two})),
            4);
  EXPECT_EQ(summary(), two + ", found 2\r\r\n" + none + ", found 0\r\r\n" +
                           two + ", found 2\r\r\n");
  expect_no_results();
  EXPECT_THAT(
      errors(),
      ElementsAre(
          ErrorRecord{
              binary +
                  " contains a non printable character at position 1 (0x3) ",
              "loading file", "FindBlock_f"},
          ErrorRecord{gone + " could not be opened", "loading file",
                      "FindBlock_f"}));
}

TEST_F(SearchTest, StringsOverLinesWriteTheSumOfAFile) {
  pair("a", "");
  pair("b", "");
  const auto one = folder.file("1", "aab");
  EXPECT_EQ(over_lines(find_string, {.report = report()}, one), 3);
  EXPECT_EQ(summary(), one + ", found 3\r\r\n");
  EXPECT_EQ(read_file(report()), one + "\r\n" + kHeader + block(1, 0, "a") +
                                     block(2, 1, "a") + block(3, 2, "b") +
                                     "\r\n");
}

struct ListFileCase {
  const char* name;
  std::string before;
  std::string after;
  int32_t found;
};

TEST_F(SearchTest, ListFilesAreReadLineByLine) {
  ASSERT_TRUE(pattern("a"));
  const auto one = folder.file("1", "a");
  const ListFileCase cases[] = {
      {"a line", "", "\r\n", 1},
      {"a last line without an end", "", "", 1},
      {"empty lines", "\r\n\r\n", "\r\n\r\n", 1},
      {"a bare LF belongs to the path", "", "\n", 0},
      {"a bare CR belongs to the path", "", "\r", 0},
      {"text behind CR LF is the next line", "", "\r\nx", 1},
      {"a line ends at a NUL", "", "\0junk\r\n"s, 1},
      {"a NUL first makes an empty line", "\0x\r\n"s, "\r\n", 1},
      {"no line", "", "", 1},
  };
  for (const ListFileCase& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(over_lines(find_block, {}, c.before + one + c.after), c.found);
  }
  EXPECT_EQ(over_lines(find_block, {}, ""), 0);
  EXPECT_EQ(summary(), "");
}

TEST_F(SearchTest, ABareLineFeedIsLoggedAsPartOfThePath) {
  ASSERT_TRUE(pattern("a"));
  const auto one = folder.file("1", "a");
  EXPECT_EQ(over_lines(find_block, {}, one + "\n"), 0);
  EXPECT_EQ(summary(), "");
  EXPECT_EQ(read_file(error_file()).substr(19),
            "\r\n\r\n  message  : " + one +
                "\r\n could not be opened\r\n  context  : loading file\r\n"
                "  module   : Main\r\n  routine  : FindBlock_f\r\n\r\n");
}

TEST_F(SearchTest, LinesAreReadInPiecesOf4095Bytes) {
  ASSERT_TRUE(pattern("a"));
  const auto one = folder.file("1", "a");
  const std::string longest(4095, '\1');
  // The path after the piece is a separate line, of the same length or not.
  EXPECT_EQ(over_lines(find_block, {}, longest + one + "\r\n"), 1);
  EXPECT_EQ(errors().size(), 1u);
  EXPECT_EQ(over_lines(find_block, {}, longest + longest + one), 1);
  EXPECT_EQ(errors().size(), 2u);
  EXPECT_EQ(over_lines(find_block, {}, std::string(4094, '\1') + one), 0);
  EXPECT_EQ(errors().size(), 2u);
  EXPECT_EQ(over_lines(find_block, {}, std::string(4093, '\1') + "\r\n" + one),
            1);
  EXPECT_EQ(errors().size(), 1u);
}

TEST_F(SearchTest, PathsOfTheRunMustBeGivenAndDiffer) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  const auto list = work().file("list", one);
  EXPECT_EQ(find_block({}), 1);
  const auto answer = [&](const char* list_path, const char* summary_path) {
    const LinePaths paths{list_path, summary_path};
    EXPECT_EQ(find_string({}, &paths), -1);
    return find_block({}, &paths);
  };
  EXPECT_EQ(answer(nullptr, summary_path().c_str()), -1);
  EXPECT_EQ(answer("", summary_path().c_str()), -1);
  EXPECT_EQ(answer(list.c_str(), nullptr), -1);
  EXPECT_EQ(answer(list.c_str(), ""), -1);
  EXPECT_EQ(answer(list.c_str(), list.c_str()), -1);
  EXPECT_EQ(read_file(list), one) << "not emptied by its own summary";
  EXPECT_EQ(found().size(), 1u) << "a refused run leaves the results alone";
  EXPECT_EQ(answer(work().path("none").c_str(), summary_path().c_str()), -1);
  EXPECT_FALSE(file_exists(summary_path()));
  EXPECT_EQ(answer(list.c_str(), work().path("no/summary").c_str()), -1);
  expect_no_results();
  EXPECT_THAT(errors(), IsEmpty());
}

// Another path of an existing file.
using Spelling = std::string (*)(const std::string& path);

std::string with_a_dot(const std::string& path) {
  const size_t name = path.rfind(kSeparator) + 1;
  return path.substr(0, name) + "." + path.substr(name - 1);
}
std::string linked(const std::string& path) {
  if (!file_exists(path)) return path;
  std::filesystem::remove(path + "_link");
  std::filesystem::create_hard_link(path, path + "_link");
  return path + "_link";
}
std::string from_here(const std::string& path) {
  const auto relative = std::filesystem::relative(path).string();
  return relative.empty() ? path : relative;  // on another drive
}
constexpr Spelling kSpellings[] = {[](const std::string& path) { return path; },
                                   with_a_dot, linked, from_here};

TEST_F(SearchTest, ListSummaryAndReportAreThreeFiles) {
  ASSERT_TRUE(pattern("a"));
  pair("a", "");
  const auto one = folder.file("1", "a");
  const auto list = work().file("list", one);
  const auto refused = [&](const std::string& list_path,
                           const std::string& summary_path,
                           const std::string& report_path) {
    const LinePaths paths{list_path.c_str(), summary_path.c_str()};
    EXPECT_EQ(find_block({.report = report_path}, &paths), -1);
    EXPECT_EQ(find_string({.report = report_path}, &paths), -1);
  };
  for (const Spelling spelled : kSpellings) {
    refused(list, spelled(list), "");
    refused(list, summary_path(), spelled(list));
    refused(list, summary_path(), spelled(summary_path()));
    EXPECT_FALSE(file_exists(summary_path())) << "nothing was opened";
    work().file("summary", "old");
    refused(list, summary_path(), spelled(summary_path()));
    EXPECT_EQ(read_file(summary_path()), "old");
    std::filesystem::remove(summary_path());
    EXPECT_EQ(read_file(list), one);
  }
  EXPECT_EQ(over_lines(find_block, {.report = report()}, one), 1);
}

TEST_F(SearchTest, TheErrorFileIsNoListFile) {
  ASSERT_TRUE(pattern("a"));
  const auto none = folder.path("none");
  const auto list = work().file("list", none);
  const LinePaths paths{list.c_str(), summary_path().c_str()};
  HostRecorder host;  // ends a run that feeds itself
  host.interrupt = [&] { return host.interrupt_polls > 100 ? 1 : 0; };
  for (const Spelling spelled : kSpellings) {
    ASSERT_EQ(SetErrorFile(spelled(list).c_str()), 1);
    EXPECT_EQ(find_block({}, &paths), -1);
    EXPECT_EQ(read_file(list), none) << "no error is written to it";
    EXPECT_FALSE(file_exists(summary_path()));
  }
  ASSERT_EQ(SetErrorFile(work().path("errors").c_str()), 1);
  EXPECT_EQ(find_block({}, &paths), 0);
}

#ifndef _WIN32
TEST_F(SearchTest, LettersFollowTheLocaleThatTheHostSets) {
  ASSERT_TRUE(pattern("\xE4"));
  add("1", "\xC4");
  const auto matches = [] {
    EXPECT_EQ(FindInFiles(ZENFO_LIST_RUN_FILES, "\xE4", 0, 0, 0),
              find_block({.case_flag = 0}));
    return GetCount(ZENFO_LIST_RESULT, -1);
  };
  EXPECT_EQ(matches(), 0);
  {
    const HostLatinLocale locale;
    if (!locale.in_force()) GTEST_SKIP() << "no Latin-1 locale can be made";
    EXPECT_EQ(matches(), 1);
  }
  EXPECT_EQ(matches(), 0);
}

TEST_F(SearchTest, AListFileIsNotEmptiedThroughAnotherNameOfIt) {
  ASSERT_TRUE(pattern("a"));
  const auto list = work().file("list", "x");
  const auto link = work().path("link");
  std::filesystem::create_symlink(list, link);
  const LinePaths paths{list.c_str(), link.c_str()};
  EXPECT_EQ(find_block({}, &paths), -1);
  EXPECT_EQ(read_file(list), "x");
}

TEST_F(SearchTest, AReportOrSummaryThatCannotBeWrittenFailsTheRun) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  EXPECT_EQ(find_block({.report = "/dev/full"}), -1);
  const auto list = work().file("list", one);
  const LinePaths paths{list.c_str(), "/dev/full"};
  EXPECT_EQ(find_block({}, &paths), -1);
}
#endif

// ---- Interrupts ------------------------------------------------------------

TEST_F(SearchTest, AnInterruptAtTheStartOfAFileAnswersZero) {
  ASSERT_TRUE(pattern("a"));
  Texts paths;
  for (int i = 0; i < 8; ++i) {
    paths.push_back(folder.file(std::to_string(i), "a"));
  }
  HostRecorder host;
  start_counting_polls(host);
  host.interrupt = [] { return 1; };
  EXPECT_EQ(over_lines(find_block, {}, line_list(paths)), 0);
  EXPECT_EQ(host.interrupt_polls, 1) << "asked on every second poll only";
  const std::string line = paths[0] + ", found 1\r\r\n";
  EXPECT_TRUE(summary().empty() || summary() == line) << summary();
}

// Stops at each poll in turn: the result is always a documented one, no match
// list outlives the run, and the results are those of the first files.
void expect_prefix(const Texts& found, const Texts& all) {
  ASSERT_LE(found.size(), all.size());
  EXPECT_TRUE(std::equal(found.begin(), found.end(), all.begin()));
}

TEST_F(SearchTest, InterruptedAtAnyPollARunOverAListEndsClean) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(exclusion("(a"));
  Texts paths;
  for (int i = 0; i < 120; ++i) {
    paths.push_back(add(std::to_string(1000 + i), "(a a a ba"));
  }
  paths.push_back(add("2000", std::string(60000, 'x') + "aaa"));
  int completed = 0;
  int refused = 0;
  const int stops = at_every_poll([&](HostRecorder& host) {
    const int32_t answer = find_block({.report = report()});
    host.interrupt = [] { return 0; };
    completed += answer > 0;
    refused += answer == -1;
    EXPECT_GE(answer, -1);
    expect_prefix(found(), paths);
    expect_no_matches();
    EXPECT_THAT(not_found(), SizeIs(testing::Le(1u)));
    EXPECT_THAT(rejected(), IsEmpty());
  });
  EXPECT_GT(stops, 10);
  EXPECT_GT(completed, 0);
  EXPECT_GT(refused, 0) << "stopped inside a search";
}

// Expects the lines of the first of these files, each with 0 to 3 matches; the
// last line may be incomplete.
void expect_lines_of(std::string_view summary, const Texts& paths) {
  for (const std::string& path : paths) {
    std::string line = path + ", found 0\r\r\n";
    const size_t number = line.find(", found ") + 8;
    if (summary.size() > number) {
      EXPECT_THAT(summary[number],
                  testing::AllOf(testing::Ge('0'), testing::Le('3')));
      line[number] = summary[number];
    }
    line.resize(std::min(line.size(), summary.size()));
    ASSERT_EQ(summary.substr(0, line.size()), line);
    summary.remove_prefix(line.size());
  }
  EXPECT_EQ(summary, "");
}

// A stop during the count of a file's matches leaves the count so far; whether
// one occurs depends on the polls before the run.
TEST_F(SearchTest, InterruptedAtAnyPollARunOverLinesEndsClean) {
  ASSERT_TRUE(pattern("a"));
  Texts paths;
  for (int i = 0; i < 12; ++i) {
    paths.push_back(folder.file(std::to_string(10 + i), "a a a"));
  }
  for (const size_t before : {1u, 30u, 90u, 99u}) {
    SCOPED_TRACE(before);
    values(Texts(before, "v"));
    bool zero = false;
    const int stops = at_every_poll([&](HostRecorder& host) {
      start_counting_polls(host);
      GetCount(ZENFO_LIST_VALUES, 0);  // as many polls as values
      const int32_t answer = over_lines(find_block, {}, line_list(paths));
      EXPECT_GE(answer, -1);
      EXPECT_LE(answer, 36);
      zero |= answer == 0;
      expect_lines_of(summary(), paths);
      expect_no_matches();
    });
    EXPECT_GT(stops, 4);
    EXPECT_TRUE(zero);
  }
}

TEST_F(SearchTest, AStopDuringTheSearchForAreasEndsTheRun) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(exclusion("(a)"));
  std::string bytes;
  for (int i = 0; i < 300; ++i) bytes += "(a)";
  add("1", bytes);
  HostRecorder host;
  stop_once(host, "Now parsing");
  EXPECT_EQ(find_block({}), -1);
  expect_no_results();
  expect_no_matches();
}

TEST_F(SearchTest, AStopWhileMatchesAreReportedEndsTheRun) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", std::string(250, 'a'));
  HostRecorder host;
  stop_once(host, "Now reporting");
  EXPECT_EQ(find_block({.report = report()}), -1);
  EXPECT_THAT(found(), ElementsAre(one));
  expect_no_matches();
}

TEST_F(SearchTest, AnInterruptedLoadIsSearchedAsFarAsItWent) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", std::string(150001, 'a'));
  HostRecorder host;
  bool loading = false;
  host.on_status_text = [&](const std::string& status) {
    loading = status.starts_with("Now loading");
  };
  host.interrupt = [&] { return loading ? 1 : 0; };
  // The poll is due after the first or the second block. The missing rest reads
  // as zero bytes.
  const int32_t answer = find_block({});
  EXPECT_TRUE(answer == 50000 || answer == 100000) << answer;
  EXPECT_THAT(found(), ElementsAre(one));
}

// ---- Progress --------------------------------------------------------------

TEST_F(SearchTest, ReportsProgressOfLoadingAndSearching) {
  ASSERT_TRUE(pattern("b"));
  add("1", std::string(125000, 'a'));
  HostRecorder host;
  EXPECT_EQ(find_block({}), 0);
  std::vector<std::vector<int64_t>> loading;
  for (const ProgressRecord& r : host.reports) {
    if (r.total == 3) loading.push_back({r.position, r.percent});
  }
  // Two blocks and one step; the first block is step 0 again.
  EXPECT_THAT(loading, ElementsAre(ElementsAre(0, 0), ElementsAre(0, 0),
                                   ElementsAre(1, 33), ElementsAre(3, 100)));
  EXPECT_GT(host.reports.size(), loading.size()) << "of the search, too";
}

}  // namespace
}  // namespace zenfo::test
