// Searches for the find strings of pairs through the exports.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/matchers.h"
#include "support/search_fixture.h"

namespace zenfo::test {
namespace {

TEST_F(SearchTest, AFilesNumberIsTheSumOfItsStrings) {
  pair("a", "");
  pair("x", "", 0);
  pair("bc", "");
  const auto one = add("1", "abcx abc");
  const auto two = add("2", "xx");
  EXPECT_EQ(find_string({}), 4);
  EXPECT_THAT(found(), ElementsAre(one));
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(4));
  EXPECT_THAT(not_found(), ElementsAre(two));
}

TEST_F(SearchTest, WithoutASelectedPairFilesAreInNoList) {
  pair("a", "", 0);
  const auto one = add("1", "a");
  EXPECT_EQ(find_string({.report = report()}), 0);
  expect_no_results();
  EXPECT_EQ(read_file(report()), "");
  EXPECT_EQ(over_lines(find_string, {}, one + "\r\n"), 0);
  EXPECT_EQ(summary(), "");
}

TEST_F(SearchTest, AStringThatCannotBeCompiledEndsTheRun) {
  pair("a", "");
  add("1", "a");
  EXPECT_EQ(find_string({}), 1);
  pair("", "b");
  EXPECT_EQ(find_string({}), -1) << "a pair without a find string";
  ASSERT_EQ(UpdateStringPair(1, "\\", ""), 1);
  EXPECT_EQ(find_string({}), 1) << "a literal";
  EXPECT_EQ(find_string({.is_pattern = 1}), -1) << "nothing is left of it";
}

TEST_F(SearchTest, FindStringsAreCompiledAsAsked) {
  pair("a^Mb", "");
  pair("?[2]", "");
  const auto one = add("1", "a\rb a^Mb ?[2]");
  EXPECT_EQ(find_string({}), 2);
  EXPECT_EQ(find_string({.convert = 1}), 2);
  ASSERT_EQ(SetState(ZENFO_LIST_PAIRS, 0, 0), 1);
  ASSERT_EQ(UpdateStringPair(1, "'x|y'b", ""), 1);
  write_file(one, "axyb");
  EXPECT_EQ(find_string({}), 0);
  EXPECT_EQ(find_string({.is_pattern = 1}), 1);
}

TEST_F(SearchTest, ASkippedStringLeavesTheOthersOfTheFile) {
  pair("a", "");
  pair("b", "");
  const auto one = add("1", "aab");
  const auto two = add("2", "a");
  HostRecorder host;
  std::vector<int32_t> answers = {0, 1, 0};
  host.answer_option = [&](const HostRecorder::Question&) {
    const int32_t answer = answers.front();
    answers.erase(answers.begin());
    return answer;
  };
  EXPECT_EQ(find_string({.ask = 1, .report = report()}), 1);
  EXPECT_THAT(found(), ElementsAre(one));
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(1));
  EXPECT_THAT(not_found(), ElementsAre(two))
      << "its second string was handled: it has no match";
}

TEST_F(SearchTest, AFileWhoseStringsAreAllSkippedIsInNoList) {
  pair("a", "");
  pair("b", "");
  const auto one = add("1", "ab");
  HostRecorder host;
  host.answer_option = [](const HostRecorder::Question&) { return 0; };
  EXPECT_EQ(find_string({.ask = 1, .report = report()}), 0);
  expect_no_results();
  EXPECT_EQ(read_file(report()), "");
  EXPECT_EQ(over_lines(find_string, {.ask = 1}, one + "\r\n"), 0);
  EXPECT_EQ(summary(), "");
}

TEST_F(SearchTest, StoppingInsideAFileKeepsItsStringsTakenSoFar) {
  pair("a", "");
  pair("b", "");
  const auto one = add("1", "aab");
  add("2", "a");
  const auto stop_at_second = [](HostRecorder& host) {
    host.answer_option = [&host](const HostRecorder::Question&) {
      return host.option_questions.size() % 2 == 1 ? 1 : 2;
    };
  };
  {
    HostRecorder host;
    stop_at_second(host);
    EXPECT_EQ(find_string({.ask = 1}), 2);
  }
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2));
  HostRecorder host;
  stop_at_second(host);
  EXPECT_EQ(over_lines(find_string, {.ask = 1}, one + "\r\n"), 2);
  EXPECT_EQ(summary(), one + ", found 2\r\r\n");
}

TEST_F(SearchTest, TakingAllHoldsForLaterStringsAndFiles) {
  pair("a", "");
  pair("b", "");
  add("1", "ab");
  add("2", "ab");
  HostRecorder host;
  host.answer_option = [](const HostRecorder::Question&) { return 3; };
  EXPECT_EQ(find_string({.ask = 1}), 4);
  EXPECT_EQ(host.option_questions.size(), 1u);
}

TEST_F(SearchTest, TheDisplayOptionOfStringsOverLinesIsIgnored) {
  ASSERT_TRUE(exclusion("(aa)"));
  pair("a", "");
  const auto one = add("1", "a(aa)");
  EXPECT_EQ(find_string({.display = 1}), 2);
  EXPECT_EQ(over_lines(find_string, {.display = 1}, one + "\r\n"), 1);
}

TEST_F(SearchTest, AStringThatTheHostChangesIsUsedFromTheNextFileOn) {
  pair("a", "");
  pair("b", "");
  add("1", "a b cc");
  add("2", "a b cc");
  add("3", "a b cc");
  HostRecorder host;
  std::vector<int32_t> counts;
  host.answer_option = [&](const HostRecorder::Question&) {
    counts.push_back(GetCount(ZENFO_LIST_MATCHES, -1));
    if (counts.size() == 2) UpdateStringPair(0, "c", "");
    if (counts.size() == 4) UpdateStringPair(0, "a", "");
    return 1;
  };
  EXPECT_EQ(find_string({.ask = 1}), 7);
  EXPECT_THAT(counts, ElementsAre(1, 1, 2, 1, 1, 1));
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2, 3, 2));
}

TEST_F(SearchTest, ALaterSearchIsForTheStringOfTheSearchBefore) {
  pair("a", "");
  pair("b", "");
  add("1", "a bb");
  add("2", "a bb");
  EXPECT_EQ(find_string({}), 6);
  EXPECT_EQ(find_block({}), 4);
  ASSERT_EQ(SetState(ZENFO_LIST_PAIRS, 1, 0), 1);
  EXPECT_EQ(find_string({}), 2);
  EXPECT_EQ(find_block({}), 2);
}

TEST_F(SearchTest, AllOfManyPairsAreSearchedFor) {
  std::string text;
  for (int i = 0; i < 1200; ++i) {
    const std::string word = "<" + std::to_string(i) + ">";
    pair(word.c_str(), "");
    text += word;
  }
  add("1", text);
  add("2", text + "<1199><0>");
  EXPECT_EQ(find_string({}), 2402);
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(1200, 1202));
}

}  // namespace
}  // namespace zenfo::test
