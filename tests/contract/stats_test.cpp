// Word and line counts, and the saving of occurrences.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>

#include "support/host_recorder.h"
#include "support/run_fixture.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

static bool operator==(const TextCounts& a, const TextCounts& b) {
  return a.size == b.size && a.words == b.words && a.lines == b.lines;
}

namespace zenfo::test {
namespace {

class CountTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(Initialize(), 1); }
  void TearDown() override { Terminate(); }
  TextCounts count(const std::string& bytes) {
    TextCounts counts{9, 9, 9};
    EXPECT_EQ(get_word_count(folder.file("f", bytes).c_str(), &counts), 1);
    return counts;
  }
  TempFolder folder;
};

TEST_F(CountTest, CountsBytesWordsAndCrLfPairs) {
  EXPECT_EQ(count("a b\r\nc"), (TextCounts{6, 3, 1}));
  EXPECT_EQ(count("   "), (TextCounts{3, 0, 0}));
  EXPECT_EQ(count(""), (TextCounts{0, 0, 0}));
  EXPECT_EQ(count("one"), (TextCounts{3, 1, 0}));
  EXPECT_EQ(count("one two\nthree\rfour"), (TextCounts{18, 4, 0}))
      << "a lone LF or CR ends no line";
  EXPECT_EQ(count("\r\n\r\n\r\r\n\n"), (TextCounts{8, 0, 3}));
}

TEST_F(CountTest, ControlBytesBlankAndDelSeparateWordsHighBytesDoNot) {
  for (int byte = 0; byte < 256; ++byte) {
    const bool separates = byte <= 32 || byte == 127;
    const std::string text = std::string("a") + static_cast<char>(byte) + "b";
    EXPECT_EQ(count(text).words, separates ? 2u : 1u) << byte;
  }
}

TEST_F(CountTest, AgreesWithAnIndependentCount) {
  std::mt19937_64 random(9);
  const std::string alphabet("ab \r\n\t\x7f\x80\0x", 10);
  for (int round = 0; round < 200; ++round) {
    std::string text(random() % 3000, '\0');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    TextCounts expected{static_cast<uint32_t>(text.size()), 0, 0};
    bool in_word = false;
    for (size_t i = 0; i < text.size(); ++i) {
      const auto byte = static_cast<unsigned char>(text[i]);
      const bool word = byte > 32 && byte != 127;
      if (word && !in_word) ++expected.words;
      in_word = word;
      if (byte == '\n' && i > 0 && text[i - 1] == '\r') ++expected.lines;
    }
    EXPECT_EQ(count(text), expected);
  }
}

TEST_F(CountTest, FailuresStoreNothing) {
  TextCounts counts{7, 8, 9};
  EXPECT_EQ(get_word_count(folder.path("missing").c_str(), &counts), -1);
  EXPECT_EQ(get_word_count(folder.path().c_str(), &counts), -1);
  EXPECT_EQ(get_word_count("", &counts), -1);
  EXPECT_EQ(get_word_count(nullptr, &counts), -1);
  EXPECT_EQ(get_word_count(folder.file("f", "a").c_str(), nullptr), -1);
  EXPECT_EQ(counts, (TextCounts{7, 8, 9}));
}

TEST_F(CountTest, AnnouncesBothCountsWithTheFileName) {
  const std::string path = folder.file("f", "a b");
  HostRecorder host;
  TextCounts counts;
  EXPECT_EQ(get_word_count(path.c_str(), &counts), 1);
  EXPECT_EQ(host.statuses,
            (std::vector<std::string>{"Now counting words in " + path,
                                      "Now counting lines in " + path}));
}

TEST_F(CountTest, AStopStoresNothing) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "a ";
  const std::string path = folder.file("f", text);
  HostRecorder host;
  host.interrupt = [] { return 1; };
  TextCounts counts{7, 8, 9};
  EXPECT_EQ(get_word_count(path.c_str(), &counts), -1);
  EXPECT_EQ(counts, (TextCounts{7, 8, 9}));
  EXPECT_EQ(host.interrupt_polls, 1);
}

TEST_F(CountTest, ReportsItsProgress) {
  const std::string path = folder.file("f", "a b");
  HostRecorder host;
  TextCounts counts;
  EXPECT_EQ(get_word_count(path.c_str(), &counts), 1);
  EXPECT_EQ(host.report_positions(), (std::vector<uint32_t>{0, 1, 2, 0}))
      << "the words, then the beginning of the lines";
}

TEST_F(CountTest, AStopWhileLinesAreCountedStoresNothing) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "\r\n";
  const std::string path = folder.file("f", text);
  HostRecorder host;
  host.interrupt = [&] {
    return host.statuses.back().starts_with("Now counting lines") ? 1 : 0;
  };
  TextCounts counts{7, 8, 9};
  EXPECT_EQ(get_word_count(path.c_str(), &counts), -1);
  EXPECT_EQ(counts, (TextCounts{7, 8, 9}));
  EXPECT_EQ(host.statuses.size(), 2u);
}

// The state that one count leaves for the next contains no callback and no
// stop.
TEST_F(CountTest, AHostSetLaterIsPolledAndAStopEndsOneCountOnly) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "a\r\n";
  const TextCounts whole{15000, 5000, 5000};
  EXPECT_EQ(count(text), whole);
  const std::string path = folder.file("f", text);
  {
    HostRecorder host;
    host.interrupt = [] { return 1; };
    TextCounts counts;
    EXPECT_EQ(get_word_count(path.c_str(), &counts), -1);
    host.interrupt = [] { return 0; };
    host.interrupt_polls = 0;
    host.reports.clear();
    EXPECT_EQ(get_word_count(path.c_str(), &counts), 1);
    EXPECT_EQ(counts, whole);
    // 14999 attempts after the first at words, 4999 at lines.
    EXPECT_EQ(host.interrupt_polls, 199);
    EXPECT_EQ(host.reports.size(), 200u);
  }
  EXPECT_EQ(count(text), whole);
  EXPECT_EQ(Initialize(), 1);
  EXPECT_EQ(count(text), whole);
}

TEST_F(CountTest, LeavesTheHostsPatternsAlone) {
  ASSERT_EQ(SetPattern(nullptr, "x", nullptr, 0, 0, 0, 0, 0, 0), 1);
  count("a b");
  EXPECT_EQ(GetCount(ZENFO_LIST_MATCHES, -1), 0);
}

TEST(Count, IsRefusedBeforeInitialize) {
  Terminate();
  TempFolder folder;
  TextCounts counts;
  EXPECT_EQ(get_word_count(folder.file("f", "a").c_str(), &counts), -1);
}

TEST_F(CountTest, SavingNoOccurrenceWritesAnEmptyFile) {
  const std::string path = folder.file("out", "old");
  EXPECT_EQ(save_occurrences(path.c_str(), ";"), 0);
  EXPECT_EQ(read_file(path), "");
}

TEST_F(CountTest, SavingOccurrencesRefusesMissingArguments) {
  const std::string path = folder.file("out", "old");
  EXPECT_EQ(save_occurrences(nullptr, ";"), -1);
  EXPECT_EQ(save_occurrences("", ";"), -1);
  EXPECT_EQ(save_occurrences(path.c_str(), nullptr), -1);
  EXPECT_EQ(save_occurrences(path.c_str(), ""), -1);
  EXPECT_EQ(save_occurrences(folder.path("no/such").c_str(), ";"), -1);
  EXPECT_EQ(read_file(path), "old");
}

// Runs a search over one file and saves its matches from inside the question.
class OccurrenceTest : public RunTest {
 protected:
  void search(std::string_view bytes, const std::function<void()>& question) {
    add("1", bytes);
    HostRecorder host;
    host.answer_option = [&](const HostRecorder::Question&) {
      question();
      return 1;
    };
    EXPECT_GE(find_block({.ask = 1}), 0);
    EXPECT_EQ(host.option_questions.size(), 1u);
  }
  int32_t save(const char* separator) {
    return save_occurrences(out.c_str(), separator);
  }
  std::string saved() const { return read_file(out); }

  const std::string out = folder.path("out");
};

TEST_F(OccurrenceTest, SelectedMatchesAreSavedEachWithASeparator) {
  ASSERT_TRUE(pattern("'a|b'", 1));
  search("a-bb-ab", [&] {
    EXPECT_EQ(save("\r\n"), 3);
    EXPECT_EQ(saved(), "a\r\nbb\r\nab\r\n");
    SetState(ZENFO_LIST_MATCHES, 1, 0);
    EXPECT_EQ(save("\n"), 2);
    EXPECT_EQ(saved(), "a\nab\n") << "no line end is changed";
    SetState(ZENFO_LIST_MATCHES, -1, 0);
    EXPECT_EQ(save("x"), 0);
    EXPECT_EQ(saved(), "");
  });
  EXPECT_EQ(save(";"), 0) << "no match outlives its run";
}

// Intended: a match is written up to its first NUL.
TEST_F(OccurrenceTest, AMatchThatHoldsANulIsWrittenUpToIt) {
  ASSERT_EQ(SetPatternTag("<", ">", 0, 0, 0), 1);
  search(std::string("<a\0b><c>", 8), [&] {
    EXPECT_EQ(save(";"), 2);
    EXPECT_EQ(saved(), "<a;<c>;");
  });
}

TEST_F(OccurrenceTest, AStopLeavesWhatWasSavedSoFar) {
  ASSERT_TRUE(pattern("a"));
  const std::string all(250, 'a');
  add("1", all);
  HostRecorder host;
  host.answer_option = [&](const HostRecorder::Question&) {
    host.interrupt = [] { return 1; };
    EXPECT_EQ(save("a"), -1);
    host.interrupt = [] { return 0; };
    EXPECT_LT(saved().size(), 200u);
    EXPECT_EQ(save("a"), 250);
    EXPECT_EQ(saved(), all + all);
    return 1;
  };
  EXPECT_EQ(find_block({.ask = 1}), 250);
}

TEST_F(OccurrenceTest, SavingReportsItsStatusAndProgress) {
  ASSERT_TRUE(pattern("a"));
  add("1", "aa");
  HostRecorder host;
  host.answer_option = [&](const HostRecorder::Question&) {
    host.statuses.clear();
    host.reports.clear();
    EXPECT_EQ(save(";"), 2);
    EXPECT_EQ(
        host.statuses,
        (std::vector<std::string>{"Now saving selected occurrences to file"}));
    EXPECT_EQ(host.report_positions(), (std::vector<uint32_t>{0, 1}));
    return 1;
  };
  EXPECT_EQ(find_block({.ask = 1}), 2);
}

#ifndef _WIN32
TEST_F(OccurrenceTest, AFullDiskIsAFailure) {
  ASSERT_TRUE(pattern("a"));
  search("a", [&] { EXPECT_EQ(save_occurrences("/dev/full", ";"), -1); });
}
#endif

}  // namespace
}  // namespace zenfo::test
