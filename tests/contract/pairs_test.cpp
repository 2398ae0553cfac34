// String pairs and replace values: adding, changing, and their files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/host_recorder.h"
#include "support/list_test.h"
#include "support/matchers.h"
#include "zenfofr130.h"

namespace zenfo::test {
namespace {

struct PairFile {
  const char* why;
  std::string bytes;
  int32_t answer;
  Texts finds;
  Texts replaces;
};

class PairTest : public ListTest {
 protected:
  static Texts finds() { return texts(GetFindString, ZENFO_LIST_PAIRS); }
  static Texts replaces() { return texts(GetReplaceString, ZENFO_LIST_PAIRS); }
  static Texts values() { return texts(get_replace_value, ZENFO_LIST_VALUES); }

  int32_t load_pairs(const std::string& bytes) {
    return LoadStringPair(folder.file("in", bytes).c_str());
  }
  int32_t load_values(const std::string& bytes) {
    return load_replace_list(folder.file("in", bytes).c_str());
  }
  void expect_loaded(const PairFile& c) {
    EXPECT_EQ(load_pairs(c.bytes), c.answer) << c.why;
    EXPECT_EQ(finds(), c.finds) << c.why;
    EXPECT_EQ(replaces(), c.replaces) << c.why;
  }
  std::string out() { return folder.path("out"); }
};

TEST_F(PairTest, AddingAnswersTheNumberOfPairs) {
  EXPECT_EQ(AddStringPair("a", "1"), 1);
  EXPECT_EQ(AddStringPair("b", "2"), 2);
  EXPECT_THAT(finds(), ElementsAre("a", "b"));
  EXPECT_THAT(replaces(), ElementsAre("1", "2"));
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(0, 0));
}

TEST_F(PairTest, EmptyAndNullTextsAreMissing) {
  EXPECT_EQ(AddStringPair("a", ""), 1);
  EXPECT_EQ(AddStringPair("", "b"), 2);
  EXPECT_EQ(AddStringPair(nullptr, nullptr), 3);
  EXPECT_THAT(finds(), ElementsAre("a", "(-1)", "(-1)"));
  EXPECT_THAT(replaces(), ElementsAre("(-1)", "b", "(-1)"));
}

TEST_F(PairTest, UpdatingSetsBothTextsAndKeepsTheState) {
  AddStringPair("a", "1");
  AddStringPair("b", "2");
  SetState(ZENFO_LIST_PAIRS, 1, 1);
  EXPECT_EQ(UpdateStringPair(1, "c", nullptr), 1);
  EXPECT_THAT(finds(), ElementsAre("a", "c"));
  EXPECT_THAT(replaces(), ElementsAre("1", "(-1)"));
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(0, 1));
}

// A host sizes its buffer for the text up to its NUL.
TEST_F(PairTest, NothingAfterANulIsHandedOut) {
  using Accessor = decltype(&GetFindString);
  const auto first_bytes = [](Accessor accessor) {
    char buffer[16];
    std::fill_n(buffer, sizeof buffer, '#');
    EXPECT_EQ(accessor(0, buffer, sizeof buffer), 1);
    return std::string(buffer, 4);
  };
  ASSERT_EQ(load_pairs("a\0xyz\tb\0uvw"s), 1);
  EXPECT_EQ(first_bytes(GetFindString), "a\0##"s);
  EXPECT_EQ(first_bytes(GetReplaceString), "b\0##"s);
  ASSERT_EQ(load_values("v\0xyz\r\n"s), 1);
  EXPECT_EQ(first_bytes(get_replace_value), "v\0##"s);
}

TEST_F(PairTest, UpdatingWithoutAPairAnswersMinusOneUnlogged) {
  EXPECT_EQ(UpdateStringPair(0, "a", "b"), -1);
  AddStringPair("a", "1");
  EXPECT_EQ(UpdateStringPair(1, "a", "b"), -1);
  EXPECT_EQ(UpdateStringPair(UINT32_MAX, "a", "b"), -1);
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(PairTest, UpdatingAFileInTheListIsRefused) {
  folder.file("f", "");
  const unsigned char options[ZENFO_OPTION_COUNT] = {};
  ASSERT_EQ(FindFiles(ZENFO_LIST_PAIRS, ("0" + folder.path("*")).c_str(),
                      options, ""),
            1);
  EXPECT_EQ(UpdateStringPair(0, "a", "b"), -1);
  EXPECT_EQ(SaveStringPair(out().c_str(), 0), 0);
  EXPECT_EQ(read_file(out()), "");
}

TEST_F(PairTest, LoadsLinesOfFindStringTabReplaceString) {
  const PairFile cases[] = {
      {"two lines", "a\tb\r\nc\td\r\n", 2, {"a", "c"}, {"b", "d"}},
      {"no final line end", "a\tb\r\nc\td", 2, {"a", "c"}, {"b", "d"}},
      {"no tab", "abc\r\n", 1, {"abc"}, {"(-1)"}},
      {"leading tab", "\tb\r\n", 1, {"(-1)"}, {"b"}},
      {"a tab alone", "\t", 1, {"(-1)"}, {"(-1)"}},
      {"trailing tab", "a\t\r\n", 1, {"a"}, {"(-1)"}},
      {"behind a second tab", "a\tb\tc\td\r\n", 1, {"a"}, {"b"}},
      {"two tabs", "a\t\tc", 1, {"a"}, {"(-1)"}},
      {"bare line feeds", "a\nb\tc\nd\n", 1, {"a\nb"}, {"c\nd\n"}},
      {"bare carriage returns", "a\rb\tc\rd", 1, {"a\rb"}, {"c\rd"}},
      {"CR CR LF", "a\tb\r\r\nc\td", 2, {"a", "c"}, {"b\r", "d"}},
      {"high bytes", "\x80\xff\t\xe9", 1, {"\x80\xff"}, {"\xe9"}},
      {"text behind a NUL", "a\0x\tb\0y"s, 1, {"a"}, {"b"}},
      {"the mark of a missing text", "a\t(null)", 1, {"a"}, {"(null)"}},
  };
  for (const PairFile& c : cases) expect_loaded(c);
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(PairTest, AnEmptyLineEndsTheLoadThePairsBeforeItStay) {
  const PairFile cases[] = {
      {"empty line", "a\tb\r\n\r\nc\td\r\n", -1, {"a"}, {"b"}},
      {"empty first line", "\r\na\tb\r\n", -1, {}, {}},
      {"empty last line", "a\tb\r\n\r\n", -1, {"a"}, {"b"}},
  };
  for (const PairFile& c : cases) expect_loaded(c);
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(PairTest, LoadsLongLines) {
  for (const size_t length : {4095u, 4096u, 4097u, 50000u}) {
    const std::string find(length, 'f');
    const std::string replace(length, 'r');
    EXPECT_EQ(load_pairs(find + "\t" + replace + "\r\nx\ty\r\n"), 2);
    EXPECT_THAT(finds(), ElementsAre(find, "x"));
    EXPECT_THAT(replaces(), ElementsAre(replace, "y"));
  }
}

TEST_F(PairTest, LoadingReplacesThePairsWithDeselectedOnes) {
  AddStringPair("old", "old");
  SetState(ZENFO_LIST_PAIRS, 0, 1);
  EXPECT_EQ(load_pairs("a\tb"), 1);
  EXPECT_THAT(finds(), ElementsAre("a"));
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(0));
}

TEST_F(PairTest, LoadingWithoutANameKeepsThePairs) {
  AddStringPair("a", "b");
  EXPECT_EQ(LoadStringPair(nullptr), -1);
  EXPECT_EQ(LoadStringPair(""), -1);
  EXPECT_EQ(GetCount(ZENFO_LIST_PAIRS, -1), 1);
}

TEST_F(PairTest, LoadingAMissingOrEmptyFileClearsThePairs) {
  AddStringPair("a", "b");
  EXPECT_EQ(LoadStringPair(folder.path("none").c_str()), -1);
  EXPECT_EQ(GetCount(ZENFO_LIST_PAIRS, -1), 0);
  AddStringPair("a", "b");
  EXPECT_EQ(load_pairs(""), -1);
  EXPECT_EQ(GetCount(ZENFO_LIST_PAIRS, -1), 0);
  EXPECT_EQ(LoadStringPair(folder.path().c_str()), -1) << "a folder";
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(PairTest, AStopEndsTheLoadWithZeroAndKeepsThePairs) {
  std::string bytes;
  for (int i = 0; i < 500; ++i) bytes += "a\tb\r\n";
  HostRecorder host;
  host.interrupt = [] { return 1; };
  EXPECT_EQ(load_pairs(bytes), 0);
  EXPECT_EQ(host.interrupt_polls, 1);
  const int32_t loaded = GetCount(ZENFO_LIST_PAIRS, -1);
  EXPECT_GE(loaded, 1);
  EXPECT_LE(loaded, 101);
}

TEST_F(PairTest, LoadingPollsAndReportsAResetRecordEvery101Lines) {
  std::string bytes;
  for (int i = 0; i < 1010; ++i) bytes += "a\tb\r\n";
  HostRecorder host;
  EXPECT_EQ(load_pairs(bytes), 1010);
  EXPECT_EQ(host.interrupt_polls, 10);
  ASSERT_EQ(host.reports.size(), 10u);
  for (const ProgressRecord& r : host.reports) {
    EXPECT_EQ(r.total + r.position + static_cast<uint32_t>(r.percent), 0u);
  }
  EXPECT_THAT(host.statuses, IsEmpty());
}

TEST_F(PairTest, SavesPairsAsLines) {
  AddStringPair("a", "1");
  AddStringPair("b", "");
  AddStringPair("", "3");
  AddStringPair("x\ny", "z\r");
  EXPECT_EQ(SaveStringPair(out().c_str(), 0), 4);
  EXPECT_EQ(read_file(out()),
            "a\t1\r\nb\t(null)\r\n(null)\t3\r\nx\r\ny\tz\r\r\n");
}

TEST_F(PairTest, AMissingTextComesBackAsItsMark) {
  AddStringPair("a", "");
  SaveStringPair(out().c_str(), 0);
  EXPECT_EQ(LoadStringPair(out().c_str()), 1);
  EXPECT_THAT(replaces(), ElementsAre("(null)"));
}

TEST_F(PairTest, SavesTheSelectedPairsOnly) {
  for (const char* text : {"a", "b", "c"}) AddStringPair(text, text);
  SetState(ZENFO_LIST_PAIRS, 1, 1);
  EXPECT_EQ(SaveStringPair(out().c_str(), -7), 1);
  EXPECT_EQ(read_file(out()), "b\tb\r\n");
  SetState(ZENFO_LIST_PAIRS, -1, 0);
  EXPECT_EQ(SaveStringPair(out().c_str(), 1), 0);
  EXPECT_EQ(read_file(out()), "");
}

TEST_F(PairTest, SavesUpToANul) {
  load_pairs("a\0x\tb\0y\r\n"s);
  EXPECT_EQ(SaveStringPair(out().c_str(), 0), 1);
  EXPECT_EQ(read_file(out()), "a\tb\r\n");
}

TEST_F(PairTest, SavesInListOrder) {
  for (const char* text : {"c", "a", "b"}) AddStringPair(text, text);
  ASSERT_EQ(SaveStringPair(out().c_str(), 0), 3);
  EXPECT_EQ(read_file(out()), "c\tc\r\na\ta\r\nb\tb\r\n");
}

TEST_F(PairTest, SavingReportsItsPositions) {
  for (int i = 0; i < 3; ++i) AddStringPair("a", "b");
  HostRecorder host;
  EXPECT_EQ(SaveStringPair(out().c_str(), 0), 3);
  EXPECT_THAT(host.statuses, ElementsAre("Now saving string pairs"));
  EXPECT_THAT(host.report_positions(), ElementsAre(0, 0, 1, 2, 3));
}

TEST_F(PairTest, AStoppedSaveAnswersZeroAndClosesTheFile) {
  for (int i = 0; i < 500; ++i) AddStringPair("a", "b");
  HostRecorder host;
  host.interrupt = [] { return 1; };
  EXPECT_EQ(SaveStringPair(out().c_str(), 0), 0);
  const std::string bytes = read_file(out());
  EXPECT_EQ(bytes.size() % 5, 0u);
  EXPECT_LE(bytes.size(), 500u);
  EXPECT_EQ(bytes.substr(0, 5), bytes.empty() ? "" : "a\tb\r\n");
}

TEST_F(PairTest, SavingIsRefusedWithoutAFile) {
  AddStringPair("a", "b");
  HostRecorder host;
  EXPECT_EQ(SaveStringPair(nullptr, 0), -1);
  EXPECT_EQ(SaveStringPair("", 0), -1);
  EXPECT_EQ(SaveStringPair(folder.path("no/out").c_str(), 0), -1);
  EXPECT_EQ(SaveStringPair(folder.path().c_str(), 0), -1);
  EXPECT_THAT(host.statuses, IsEmpty());
  EXPECT_THAT(errors(), IsEmpty());
}

struct ValueFile {
  const char* why;
  std::string bytes;
  int32_t answer;
  Texts values;
};

TEST_F(PairTest, LoadingValuesSkipsEmptyLines) {
  const ValueFile cases[] = {
      {"lines", "a\r\nb\tc\r\n", 2, {"a", "b\tc"}},
      {"no final line end", "a\r\nb", 2, {"a", "b"}},
      {"empty lines", "\r\n\r\na\r\n\r\nb\r\n\r\n", 2, {"a", "b"}},
      {"empty lines alone", "\r\n\r\n", 0, {}},
      {"CR CR LF", "a\r\r\n\r\r\n", 2, {"a\r", "\r"}},
      {"bare line feeds", "a\nb\n", 1, {"a\nb\n"}},
  };
  for (const ValueFile& c : cases) {
    EXPECT_EQ(load_values(c.bytes), c.answer) << c.why;
    EXPECT_EQ(values(), c.values) << c.why;
  }
}

TEST_F(PairTest, LoadingValuesClearsThemBeforeTheNameIsLookedAt) {
  for (const std::string& name : {""s, folder.path("none")}) {
    ASSERT_EQ(load_values("a"), 1);
    EXPECT_EQ(load_replace_list(name.c_str()), -1);
    EXPECT_EQ(GetCount(ZENFO_LIST_VALUES, -1), 0);
  }
  ASSERT_EQ(load_values("a"), 1);
  EXPECT_EQ(load_replace_list(nullptr), -1);
  EXPECT_EQ(GetCount(ZENFO_LIST_VALUES, -1), 0);
  ASSERT_EQ(load_values("a"), 1);
  EXPECT_EQ(load_values(""), -1);
  EXPECT_EQ(GetCount(ZENFO_LIST_VALUES, -1), 0);
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(PairTest, AStopEndsTheLoadOfValuesAtEmptyLinesToo) {
  std::string bytes = "a\r\n";
  for (int i = 0; i < 500; ++i) bytes += "\r\n";
  HostRecorder host;
  host.interrupt = [] { return 1; };
  EXPECT_EQ(load_values(bytes), 0);
  EXPECT_THAT(values(), ElementsAre("a"));
}

TEST_F(PairTest, SavingValuesAddsACrOfItsOwnToEachLine) {
  load_values("a\r\nb");
  EXPECT_EQ(save_replace_list(out().c_str()), 2);
  EXPECT_EQ(read_file(out()), "a\r\r\nb\r\r\n");
  EXPECT_EQ(load_replace_list(out().c_str()), 2);
  EXPECT_THAT(values(), ElementsAre("a\r", "b\r"));
  EXPECT_EQ(save_replace_list(out().c_str()), 2);
  EXPECT_EQ(read_file(out()), "a\r\r\r\nb\r\r\r\n");
}

TEST_F(PairTest, SavingValuesIgnoresTheirState) {
  load_values("a\r\nb");
  SetState(ZENFO_LIST_VALUES, 0, 1);
  EXPECT_EQ(save_replace_list(out().c_str()), 2);
}

TEST_F(PairTest, SavingValuesReportsItsLastPositionOnTheListOfPairs) {
  load_values("a\r\nb");
  for (int i = 0; i < 3; ++i) AddStringPair("a", "b");
  HostRecorder host;
  EXPECT_EQ(save_replace_list(out().c_str()), 2);
  EXPECT_THAT(host.statuses, IsEmpty());
  ASSERT_EQ(host.reports.size(), 1u);
  EXPECT_EQ(host.reports[0].total, 3u);
  EXPECT_EQ(host.reports[0].position, 3u);
  EXPECT_EQ(host.reports[0].percent, 100);
}

TEST_F(PairTest, AStoppedSaveOfValuesAnswersZero) {
  load_values(lines(Texts(500, "a")));
  HostRecorder host;
  host.interrupt = [] { return 1; };
  EXPECT_EQ(save_replace_list(out().c_str()), 0);
  EXPECT_EQ(read_file(out()).size() % 4, 0u);
}

TEST_F(PairTest, SavingValuesIsRefusedWithoutAFile) {
  EXPECT_EQ(save_replace_list(nullptr), -1);
  EXPECT_EQ(save_replace_list(""), -1);
  EXPECT_EQ(save_replace_list(folder.path("no/out").c_str()), -1);
  EXPECT_THAT(errors(), IsEmpty());
  EXPECT_EQ(save_replace_list(out().c_str()), 0) << "an empty list";
  EXPECT_EQ(read_file(out()), "");
}

#ifndef _WIN32
TEST_F(PairTest, AFullDiskFailsTheSaves) {
  AddStringPair("a", "b");
  load_values("a");
  EXPECT_EQ(SaveStringPair("/dev/full", 0), -1);
  EXPECT_EQ(save_replace_list("/dev/full"), -1);
}
#endif

TEST_F(PairTest, WhatChangesTheListsIsRefusedWhileAnotherOperationRuns) {
  AddStringPair("a", "b");
  load_values("v");
  const std::string in = folder.file("in", "x\ty");
  const std::string nested = folder.path("nested");
  HostRecorder host;
  int asked = 0;
  host.on_status_text = [&](const std::string&) {
    if (asked++ > 0) return;
    EXPECT_EQ(AddStringPair("c", "d"), -1);
    EXPECT_EQ(LoadStringPair(in.c_str()), -1);
    EXPECT_EQ(load_replace_list(in.c_str()), -1);
    EXPECT_EQ(UpdateStringPair(0, "e", "f"), 1);
    EXPECT_EQ(SaveStringPair(nested.c_str(), 0), 1);
    EXPECT_EQ(save_replace_list(nested.c_str()), 1);
  };
  EXPECT_EQ(SaveStringPair(out().c_str(), 0), 1);
  EXPECT_GT(asked, 0);
  EXPECT_EQ(read_file(out()), "e\tf\r\n");
  EXPECT_EQ(GetCount(ZENFO_LIST_VALUES, -1), 1);
  EXPECT_THAT(errors(), IsEmpty());
}

TEST(PairLists, AnswerMinusOneWithoutALibrary) {
  Terminate();
  EXPECT_EQ(AddStringPair("a", "b"), -1);
  EXPECT_EQ(UpdateStringPair(0, "a", "b"), -1);
  EXPECT_EQ(LoadStringPair("a"), -1);
  EXPECT_EQ(SaveStringPair("a", 0), -1);
  EXPECT_EQ(load_replace_list("a"), -1);
  EXPECT_EQ(save_replace_list("a"), -1);
}

}  // namespace
}  // namespace zenfo::test
