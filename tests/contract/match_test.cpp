// FindInFiles and the accessors of matches, as a host uses them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/host_recorder.h"
#include "support/lists.h"
#include "support/matchers.h"
#include "support/session.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"
#ifndef _WIN32
#include "support/nobody.h"
#endif

namespace zenfo::test {
namespace {

// --- Accessors without a match -----------------------------------------------

constexpr TextAccessor kMatchTexts[] = {GetMatchOffset, GetMatchLength,
                                        GetMatchText, GetMatchReplace};

TEST(MatchAccessors, AnswerMinusOneUnloggedAndAnEmptyTextWithoutAMatch) {
  Session session;
  session.fill(kFiles, 1);
  for (TextAccessor accessor : kMatchTexts) {
    for (int32_t list : kMatchLists) {
      EXPECT_EQ(read_text(accessor, list, 0), kNoText) << list;
      EXPECT_EQ(read_text(accessor, list, UINT32_MAX), kNoText) << list;
      EXPECT_EQ(accessor(list, 0, nullptr, 100), -1) << list;
    }
    // A record of another kind.
    EXPECT_EQ(read_text(accessor, kFiles, 0), kNoText);
  }
  for (int32_t list : kAllLists) EXPECT_EQ(get_match_flag(list, 0), -1);
  EXPECT_THAT(session.take_log(), IsEmpty());
}

// --- Accessors inside the option question ------------------------------------

// Searches one file for "a" to "j" and calls `look` in the question.
class MatchTest : public testing::Test {
 protected:
  void look_at_matches(const std::string& content,
                       const std::function<void()>& look) {
    session.folder.file("text", content);
    Clear(ZENFO_LIST_RUN_FILES);
    ASSERT_EQ(session.find(ZENFO_LIST_RUN_FILES, "0~/text"), 1);
    SetState(ZENFO_LIST_RUN_FILES, 0, 1);
    ASSERT_EQ(SetPattern("", "abcdefghij", "", 0, 0, 0, 0, 0, 0), 1);
    HostRecorder host;
    bool asked = false;
    host.answer_option = [&](const HostRecorder::Question&) {
      asked = true;
      look();
      return 1;
    };
    FindBlock(1, 0, 0, "", 1, 0);
    EXPECT_TRUE(asked);
  }
  // The first `bytes` of a garbage-filled buffer after GetMatchText.
  static std::string match_text(uint32_t index, uint32_t size, size_t bytes) {
    std::vector<char> buffer(4096, '#');
    EXPECT_EQ(GetMatchText(ZENFO_LIST_MATCHES, index, buffer.data(), size), 1);
    return {buffer.data(), bytes};
  }
  Session session;
};

TEST_F(MatchTest, OffsetAndLengthAreDecimalTextsWhateverTheSize) {
  look_at_matches("xxabcdefghij abcdefghij", [] {
    EXPECT_EQ(GetCount(ZENFO_LIST_MATCHES, -1), 2);
    EXPECT_EQ(read_text(GetMatchOffset, ZENFO_LIST_MATCHES, 0), (Text{1, "2"}));
    EXPECT_EQ(read_text(GetMatchOffset, ZENFO_LIST_MATCHES, 1),
              (Text{1, "13"}));
    EXPECT_EQ(read_text(GetMatchLength, ZENFO_LIST_MATCHES, 1),
              (Text{1, "10"}));
    EXPECT_EQ(read_text(GetMatchOffset, ZENFO_LIST_MATCHES, 2), kNoText);
    EXPECT_EQ(get_match_flag(ZENFO_LIST_MATCHES, 0), 1);
    EXPECT_EQ(get_match_flag(ZENFO_LIST_MATCHES, 2), -1);
    EXPECT_EQ(GetState(ZENFO_LIST_MATCHES, 0), 1);
  });
  EXPECT_EQ(GetCount(ZENFO_LIST_MATCHES, -1), 0);
  EXPECT_EQ(read_text(GetMatchText, ZENFO_LIST_MATCHES, 0), kNoText);
}

TEST_F(MatchTest, ASizeBelowTheLengthCutsTheText) {
  const std::string nul(1, '\0');
  look_at_matches("abcdefghijKLMNOPQRST", [&] {
    EXPECT_EQ(match_text(0, 15, 12), "abcdefghij" + nul + "#");
    EXPECT_EQ(match_text(0, 100, 12), "abcdefghij" + nul + "#");
    EXPECT_EQ(match_text(0, UINT32_MAX, 12), "abcdefghij" + nul + "#");
    EXPECT_EQ(match_text(0, 9, 9), "abcdefghi");
    EXPECT_EQ(match_text(0, 0, 2), nul + "#");
    EXPECT_EQ(GetMatchText(ZENFO_LIST_MATCHES, 0, nullptr, 10), -1);
  });
}

TEST_F(MatchTest, TheMarkRunsOverTheStatedSizeByFiveBytes) {
  const std::string nul(1, '\0');
  look_at_matches("abcdefghijKLMNOPQRST", [&] {
    EXPECT_EQ(match_text(0, 9, 15), "abcdefghi ..." + nul + "#");
    EXPECT_EQ(match_text(0, 8, 14), "abcdefgh ..." + nul + "#");
    EXPECT_EQ(match_text(0, 1, 7), "a ..." + nul + "#");
  });
}

TEST_F(MatchTest, ASizeOfTheLengthToTheLengthPlus4CopiesBytesAfterTheMatch) {
  const std::string nul(1, '\0');
  look_at_matches("abcdefghijKLMNOPQRST", [&] {
    EXPECT_EQ(match_text(0, 10, 12), "abcdefghij" + nul + "#");
    EXPECT_EQ(match_text(0, 11, 13), "abcdefghijK" + nul + "#");
    EXPECT_EQ(match_text(0, 14, 16), "abcdefghijKLMN" + nul + "#");
  });
}

TEST_F(MatchTest, NothingAfterTheContentIsCopied) {
  const std::string nul(1, '\0');
  look_at_matches("..abcdefghijK", [&] {
    for (uint32_t size : {11u, 12u, 13u, 14u}) {
      EXPECT_EQ(match_text(0, size, 13), "abcdefghijK" + nul + "#") << size;
    }
    EXPECT_EQ(match_text(0, 15, 12), "abcdefghij" + nul + "#");
  });
}

TEST_F(MatchTest, WithoutAReplacementTheTextIsEmpty) {
  look_at_matches("abcdefghij", [] {
    EXPECT_EQ(read_text(GetMatchReplace, ZENFO_LIST_MATCHES, 0), (Text{1, ""}));
  });
}

TEST_F(MatchTest, TheMarkDependsOnTheMatchsLengthNotTheReplacements) {
  const std::string nul(1, '\0');
  session.folder.file("text", "abcdefghij abcdefghij abcdefghij");
  session.folder.file("values", "xyz\r\na replacement longer than it\r\n");
  ASSERT_EQ(session.find(ZENFO_LIST_RUN_FILES, "0~/text"), 1);
  SetState(ZENFO_LIST_RUN_FILES, 0, 1);
  ASSERT_EQ(SetPattern("", "abcdefghij", "", 0, 0, 0, 0, 0, 0), 1);
  ASSERT_EQ(load_replace_list(session.spelled("~/values").c_str()), 2);
  HostRecorder host;
  bool asked = false;
  auto replacement = [](uint32_t index, uint32_t size, size_t bytes) {
    std::vector<char> buffer(4096, '#');
    EXPECT_EQ(GetMatchReplace(ZENFO_LIST_MATCHES, index, buffer.data(), size),
              1);
    return std::string(buffer.data(), bytes);
  };
  host.answer_option = [&](const HostRecorder::Question&) {
    asked = true;
    EXPECT_EQ(replacement(0, 100, 9), "xyz ..." + nul + "#");
    EXPECT_EQ(replacement(0, 8, 9), "xyz ..." + nul + "#");
    // Zero bytes follow it: the mark follows the first of them.
    EXPECT_EQ(replacement(0, 7, 8), "xyz ..." + nul);
    EXPECT_EQ(replacement(0, 2, 8), "xy ..." + nul + "#");
    EXPECT_EQ(replacement(0, 0, 2), nul + "#");
    EXPECT_EQ(replacement(1, 100, 29), "a replacement longer than it" + nul);
    // Cut, but not below the match's length: no mark.
    EXPECT_EQ(replacement(1, 13, 15), "a replacement" + nul + "#");
    EXPECT_EQ(replacement(1, 10, 12), "a replacem" + nul + "#");
    EXPECT_EQ(replacement(1, 9, 15), "a replace ..." + nul + "#");
    EXPECT_EQ(get_match_flag(ZENFO_LIST_MATCHES, 1), 1);
    // The third match has no value.
    EXPECT_EQ(replacement(2, 100, 2), nul + "#");
    EXPECT_EQ(get_match_flag(ZENFO_LIST_MATCHES, 2), 0);
    EXPECT_EQ(GetMatchReplace(ZENFO_LIST_MATCHES, 0, nullptr, 10), -1);
    return 0;
  };
  ReplaceBlock("", 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0);
  EXPECT_TRUE(asked);
}

// --- FindInFiles -------------------------------------------------------------

class FindInFilesTest : public testing::Test {
 protected:
  // Fills the list with files of these contents, named 0, 1, 2, ...
  void files(const std::vector<std::string>& contents) {
    Clear(kFiles);
    for (size_t i = 0; i < contents.size(); ++i) {
      const std::string name = std::to_string(i);
      session.folder.file(name, contents[i]);
      ASSERT_EQ(session.find(kFiles, "0~/" + name, kNoFacts), 1);
    }
  }
  // Positions of the selected entries.
  std::vector<int> selected() {
    std::vector<int> positions;
    const int32_t count = GetCount(kFiles, -1);
    for (int32_t i = 0; i < count; ++i) {
      if (GetState(kFiles, static_cast<uint32_t>(i)) == 1)
        positions.push_back(i);
    }
    return positions;
  }
  Session session;
};

TEST_F(FindInFilesTest, SelectsTheFilesThatHoldTheTextAndCountsThem) {
  files({"xabcx", "nothing", "abc", "ABC", ""});
  EXPECT_EQ(FindInFiles(kFiles, "abc", 1, 0, 1), 2);
  EXPECT_THAT(selected(), ElementsAre(0, 2));
  EXPECT_EQ(FindInFiles(kFiles, "abc", 1, 0, 0), 3);
  EXPECT_THAT(selected(), ElementsAre(0, 2, 3));
  EXPECT_THAT(session.take_log(), IsEmpty());
}

TEST_F(FindInFilesTest, KeepsTheSelectionUnlessAskedToClearIt) {
  files({"abc", "x"});
  SetState(kFiles, 1, 1);
  EXPECT_EQ(FindInFiles(kFiles, "abc", 0, 0, 1), 1);
  EXPECT_THAT(selected(), ElementsAre(0, 1));
  EXPECT_EQ(FindInFiles(kFiles, "none", 7, 0, 1), 0);
  EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(FindInFilesTest, SearchesUpToTheFirstNul) {
  const std::string nul(1, '\0');
  files({"ab" + nul + "c abc", nul + "abc", "abc" + nul, "ab" + nul + "c"});
  EXPECT_EQ(FindInFiles(kFiles, "abc", 1, 0, 1), 1);
  EXPECT_THAT(selected(), ElementsAre(2));
}

TEST_F(FindInFilesTest, TheSearchForAWholeWordContinuesAfterEachOccurrence) {
  struct Case {
    const char* content;
    bool found;
  };
  const Case cases[] = {
      {"cat", true},     {" cat.", true},           {"concat", false},
      {"cats", false},   {"concat cats cat", true}, {"cat1", false},
      {"1cat", false},   {"_cat_", true},           {"concat(cat)", true},
      {"catcat", false}, {"cat\n", true},
  };
  std::vector<std::string> contents;
  std::vector<int> expected;
  for (const Case& c : cases) {
    if (c.found) expected.push_back(static_cast<int>(contents.size()));
    contents.push_back(c.content);
  }
  files(contents);
  EXPECT_EQ(FindInFiles(kFiles, "cat", 1, 1, 1),
            static_cast<int32_t>(expected.size()));
  EXPECT_EQ(selected(), expected);
  EXPECT_EQ(FindInFiles(kFiles, "cat", 1, 0, 1), 11);
}

// An occurrence that begins inside the previous one counts.
TEST_F(FindInFilesTest, TheSearchForAWholeWordContinuesOneByteLater) {
  files({"xa a a", "a a ax"});
  EXPECT_EQ(FindInFiles(kFiles, "a a", 1, 1, 1), 2);
}

TEST_F(FindInFilesTest, ATextAcrossTheEndOfAReadBlockIsFound) {
  for (size_t at : {49998u, 49999u, 50000u, 99999u, 149997u}) {
    std::string content(150000, '.');
    content.replace(at, 3, "abc");
    files({content});
    EXPECT_EQ(FindInFiles(kFiles, "abc", 1, 0, 1), 1) << at;
  }
}

TEST_F(FindInFilesTest, AnyBytesAreFound) {
  files({"\x80\xff", "caf\xc3\xa9", "a\r\nb", "a b"});
  EXPECT_EQ(FindInFiles(kFiles, "\xff", 1, 0, 1), 1);
  EXPECT_EQ(FindInFiles(kFiles, "\xc3\xa9", 1, 0, 0), 1);
  EXPECT_EQ(FindInFiles(kFiles, "\r\n", 1, 0, 1), 1);
  // Blanks are not skipped.
  EXPECT_EQ(FindInFiles(kFiles, "ab", 1, 0, 1), 0);
}

TEST_F(FindInFilesTest, RefusesAMissingListAndAnEmptyText) {
  files({"abc"});
  SetState(kFiles, 0, 1);
  EXPECT_EQ(FindInFiles(kFiles, nullptr, 1, 0, 0), -1);
  EXPECT_EQ(FindInFiles(kFiles, "", 1, 0, 0), -1);
  EXPECT_THAT(selected(), ElementsAre(0));
  EXPECT_THAT(session.take_log(), IsEmpty());
  EXPECT_EQ(FindInFiles(kNoList, "abc", 1, 0, 0), -1);
  EXPECT_THAT(session.take_log(), ElementsAre(unknown_list()));
}

TEST_F(FindInFilesTest, PassesOverFilesThatCannotBeLoaded) {
  files({"abc", "abc", "abc", "abc"});
  ASSERT_TRUE(std::filesystem::remove(session.folder.path("0")));
  SetFullName(kFiles, 1, session.folder.path().c_str());
  SetFullName(kFiles, 2, session.spelled("~/missing/x").c_str());
  EXPECT_EQ(FindInFiles(kFiles, "abc", 1, 0, 1), 1);
  EXPECT_THAT(selected(), ElementsAre(3));
  EXPECT_THAT(session.take_log(), IsEmpty());
}

#ifndef _WIN32
TEST_F(FindInFilesTest, PassesOverFilesThatMayNotBeRead) {
  files({"abc", "abc"});
  std::filesystem::permissions(session.folder.path("0"),
                               std::filesystem::perms::none);
  const AsNobody nobody(session.folder.path());
  ASSERT_TRUE(nobody.in_force());
  EXPECT_EQ(FindInFiles(kFiles, "abc", 1, 0, 1), 1);
}
#endif

TEST_F(FindInFilesTest, WorksOnAnyListThatHoldsFiles) {
  session.folder.file("a", "abc");
  for (int32_t list : kFileLists) {
    ASSERT_EQ(session.find(list, "0~/a"), 1);
    EXPECT_EQ(FindInFiles(list, "abc", 0, 0, 0), 1) << list;
  }
  for (int32_t list : kNoFileLists) {
    EXPECT_EQ(FindInFiles(list, "abc", 0, 0, 0), 0) << list;
  }
}

TEST_F(FindInFilesTest, ReportsItsStatusAndItsPosition) {
  session.fill(kFiles, 250);
  HostRecorder host;
  EXPECT_EQ(FindInFiles(kFiles, "x", 0, 0, 0), 250);
  EXPECT_THAT(host.statuses, ElementsAre("Now searching string in files"));
  // There is no last report of 250: the walk reports only its steps.
  std::vector<uint32_t> expected;
  for (uint32_t i = 0; i < 250; i += 2) expected.push_back(i);
  EXPECT_EQ(host.report_positions(), expected);
}

TEST_F(FindInFilesTest, PollsAtEverySecondFileAndNoAnswerStopsTheWalk) {
  session.fill(kFiles, 100);
  HostRecorder host;
  host.interrupt = [] { return 1; };
  EXPECT_EQ(FindInFiles(kFiles, "x", 0, 0, 0), 100);
  EXPECT_GE(host.interrupt_polls, 50);
  EXPECT_LE(host.interrupt_polls, 51);
}

// Intended: an interrupt while loading omits the blocks not yet read.
TEST_F(FindInFilesTest, AnInterruptWhileLoadingSearchesWhatWasRead) {
  std::string content(500000, '.');
  content.replace(10, 3, "abc");
  content.replace(400000, 3, "xyz");
  files({content});
  HostRecorder host;
  host.interrupt = [] { return 1; };
  EXPECT_EQ(FindInFiles(kFiles, "abc", 1, 0, 1), 1);
  EXPECT_EQ(FindInFiles(kFiles, "xyz", 1, 0, 1), 0);
  host.interrupt = [] { return 0; };
  EXPECT_EQ(FindInFiles(kFiles, "xyz", 1, 0, 1), 1);
}

TEST_F(FindInFilesTest, TheHostMayRenameEntriesDuringTheSearch) {
  files({"abc", "abc", "abc"});
  HostRecorder host;
  host.on_progress = [](const ProgressRecord&) {
    SetFullName(kFiles, 0, "another name, and quite a long one at that");
    SetFullName(kFiles, 1, "another name, and quite a long one at that");
  };
  EXPECT_EQ(FindInFiles(kFiles, "abc", 1, 0, 1), 2);
}

}  // namespace
}  // namespace zenfo::test
