// Word and line counts, and the saving of occurrences.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/host_recorder.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

static bool operator==(const TextCounts& a, const TextCounts& b) {
  return a.size == b.size && a.words == b.words && a.lines == b.lines;
}

namespace {

using zenfo::test::HostRecorder;
using zenfo::test::TempFolder;

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
  EXPECT_EQ(zenfo::test::read_file(path), "");
}

TEST_F(CountTest, SavingOccurrencesRefusesMissingArguments) {
  const std::string path = folder.file("out", "old");
  EXPECT_EQ(save_occurrences(nullptr, ";"), -1);
  EXPECT_EQ(save_occurrences("", ";"), -1);
  EXPECT_EQ(save_occurrences(path.c_str(), nullptr), -1);
  EXPECT_EQ(save_occurrences(path.c_str(), ""), -1);
  EXPECT_EQ(save_occurrences(folder.path("no/such").c_str(), ";"), -1);
  EXPECT_EQ(zenfo::test::read_file(path), "old");
}

}  // namespace
