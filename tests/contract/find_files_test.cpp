// FindFiles and AddFileToList, as a host uses them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <algorithm>
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

class FindFilesTest : public testing::Test {
 protected:
  // The names that a search appends to the empty list.
  std::vector<std::string> found(std::string_view specification) {
    Clear(kFiles);
    const int32_t count = session.find(kFiles, specification);
    auto names = session.names(kFiles);
    EXPECT_EQ(count, static_cast<int32_t>(names.size())) << specification;
    return names;
  }
  int32_t find_into(const std::string& output, std::string_view specification) {
    return FindFiles(kFiles, session.spelled(specification).c_str(),
                     kAllFacts.data(), output.c_str());
  }
  Session session;
};

// --- What is found -----------------------------------------------------------

TEST_F(FindFilesTest, FindsByPatternsAndDescendsWithTheFlag) {
  session.folder.file("a.txt", "");
  session.folder.file("b.log", "");
  session.folder.file("c.dat", "");
  session.folder.file("sub/d.txt", "");
  session.folder.file("sub/deep/e.log", "");
  EXPECT_THAT(found("1~/*.txt;*.log"),
              UnorderedElementsAre("~/a.txt", "~/b.log", "~/sub/d.txt",
                                   "~/sub/deep/e.log"));
  for (const char* flag : {"0", "2", "x", " "}) {
    EXPECT_THAT(found(std::string(flag) + "~/*.txt;*.log"),
                UnorderedElementsAre("~/a.txt", "~/b.log"));
  }
}

TEST_F(FindFilesTest, PatternsAreTakenInTheOrderWrittenAndFoldersByDepth) {
  session.folder.file("a.txt", "");
  session.folder.file("b.log", "");
  session.folder.file("one/c.txt", "");
  session.folder.file("one/in/d.txt", "");
  EXPECT_THAT(
      found("1~/*.log;*.txt"),
      ElementsAre("~/b.log", "~/a.txt", "~/one/c.txt", "~/one/in/d.txt"));
}

TEST_F(FindFilesTest, RecycleBinsAreNotDescendedInto) {
  session.folder.file("RECYCLER/a", "");
  session.folder.file("x/Recycled/b", "");
  session.folder.file("x/c", "");
  EXPECT_THAT(found("1~/*"), ElementsAre("~/x/c"));
  // A recycle bin given as the start folder is searched like any other.
  EXPECT_THAT(found("0~/RECYCLER/*"), ElementsAre("~/RECYCLER/a"));
  EXPECT_EQ(IsTrashed(kFiles, 0), 1);
}

TEST_F(FindFilesTest, ExtensionsAreNotAnsweredForShorterOnes) {
  session.folder.file("index.html", "");
  session.folder.file("page.htm", "");
  session.folder.file("UPPER.HTM", "");
  EXPECT_THAT(found("0~/*.htm"),
              UnorderedElementsAre("~/page.htm", "~/UPPER.HTM"));
  EXPECT_THAT(
      found("0~/*.ht*"),
      UnorderedElementsAre("~/index.html", "~/page.htm", "~/UPPER.HTM"));
  EXPECT_THAT(found("0~/*.htm?"), Contains("~/index.html"));
}

// A pattern whose extension has a wildcard before its end finds nothing.
TEST_F(FindFilesTest, AWildcardInsideAnExtensionRejectsEveryExtension) {
  session.folder.file("page.htm", "");
  EXPECT_THAT(found("0~/*.h?m"), IsEmpty());
}

TEST_F(FindFilesTest, SeveralGroupsAreSummed) {
  session.folder.file("one/a.c", "");
  session.folder.file("two/in/b.h", "");
  EXPECT_THAT(found("0~/one/*.c|1~/two/*.h"),
              ElementsAre("~/one/a.c", "~/two/in/b.h"));
  EXPECT_THAT(found("0~/one/*.c||0~/missing/*|x|0~/one/a.c"),
              ElementsAre("~/one/a.c", "~/one/a.c"));
}

TEST_F(FindFilesTest, TheSameFileThroughTwoPatternsIsEnteredTwice) {
  session.folder.file("a.c", "");
  EXPECT_THAT(found("0~/*.c;a.*"), ElementsAre("~/a.c", "~/a.c"));
}

TEST_F(FindFilesTest, SpecificationsThatNameNothingFindNothing) {
  session.folder.file("a", "");
  for (const char* specification :
       {"", "|", "||", "0", "1", "0~/", "1~/;", ";;", "0;;", "0a", "0~", "~/a",
        "0~/missing/a", "0~/a/*", "0*", "1;~/a", "0~/;~/a"}) {
    EXPECT_THAT(found(specification), IsEmpty()) << specification;
  }
  EXPECT_EQ(FindFiles(kFiles, nullptr, kAllFacts.data(), ""), 0);
  EXPECT_THAT(session.take_log(), IsEmpty());
}

TEST_F(FindFilesTest, ResultsAreAppendedAndOnlyTheNewAreCounted) {
  session.folder.file("a", "");
  session.folder.file("b", "");
  EXPECT_EQ(session.find(kFiles, "0~/a"), 1);
  EXPECT_EQ(session.find(kFiles, "0~/*"), 2);
  EXPECT_THAT(session.names(kFiles), ElementsAre("~/a", "~/a", "~/b"));
}

TEST_F(FindFilesTest, NewEntriesAreNotSelected) {
  session.folder.file("a", "");
  session.find(kFiles, "0~/a");
  EXPECT_EQ(GetState(kFiles, 0), 0);
}

TEST_F(FindFilesTest, NamesOfManyKindsAreFound) {
  const std::vector<std::string> names = {std::string(kLongestName, 'n'),
                                          "caf\xc3\xa9.txt", "a b.txt",
                                          "no_extension", "two.dots.txt"};
  std::vector<std::string> expected;
  for (const std::string& name : names) {
    session.folder.file(name, "x");
    expected.push_back("~/" + as_library_text(name));
  }
  EXPECT_THAT(found("0~/*"), testing::UnorderedElementsAreArray(expected));
  EXPECT_EQ(GetFileFlagCount(kFiles, 0), 5);
}

#ifndef _WIN32

TEST_F(FindFilesTest, NamesOfAnyBytesAndWhatIsNoFile) {
  session.folder.file("caf\xe9", "");
  session.folder.file("new\nline", "");
  ASSERT_EQ(mkfifo(session.folder.path("pipe").c_str(), 0600), 0);
  ASSERT_EQ(symlink("nowhere", session.folder.path("dangling").c_str()), 0);
  ASSERT_EQ(symlink(".", session.folder.path("loop").c_str()), 0);
  EXPECT_THAT(found("1~/*"), UnorderedElementsAre("~/caf\xe9", "~/new\nline"));
}

TEST_F(FindFilesTest, AFolderThatCannotBeListedYieldsNothingAndNoMessage) {
  session.folder.file("open/a", "");
  session.folder.file("closed/b", "");
  const std::string closed = session.folder.path("closed");
  ASSERT_EQ(chmod(closed.c_str(), 0), 0);
  {
    const AsNobody nobody(session.folder.path());
    ASSERT_TRUE(nobody.in_force());
    EXPECT_THAT(found("1~/*"), ElementsAre("~/open/a"));
  }
  EXPECT_THAT(session.take_log(), IsEmpty());
  chmod(closed.c_str(), 0700);
}

// Nested folders up to the longest path that the system allows.
TEST_F(FindFilesTest, DescendsThousandsOfFolders) {
  const std::filesystem::path back = std::filesystem::current_path();
  std::filesystem::current_path(session.folder.path());
  const int depth = 2200;
  for (int i = 0; i < depth; ++i) {
    ASSERT_EQ(mkdir("d", 0700), 0);
    ASSERT_EQ(chdir("d"), 0);
    if (i == 999) write_file("at_1000", "x");
  }
  std::filesystem::current_path(back);
  EXPECT_EQ(session.find(kFiles, "1~/*"), 1);
  EXPECT_EQ(read_text(GetFilename, kFiles, 0), (Text{1, "at_1000"}));
  EXPECT_EQ(GetFlag(kFiles, 0), 0);
}

#endif

// --- Facts -------------------------------------------------------------------

TEST_F(FindFilesTest, EachOptionByteAsksForItsFact) {
  session.folder.file("a.txt", "123");
  for (int byte = 0; byte < ZENFO_OPTION_COUNT; ++byte) {
    for (const unsigned char value : {1, 255}) {
      Clear(kFiles);
      Options options{};
      options[static_cast<size_t>(byte)] = value;
      ASSERT_EQ(session.find(kFiles, "0~/*", options), 1);
      EXPECT_EQ(read_text(GetFilename, kFiles, 0).result, byte == 2 ? 1 : -1)
          << byte;
      EXPECT_EQ(read_text(GetDirectory, kFiles, 0).result, byte == 3 ? 1 : -1)
          << byte;
      EXPECT_EQ(read_text(GetType, kFiles, 0).result, byte == 4 ? 1 : -1)
          << byte;
      EXPECT_EQ(read_text(GetSize, kFiles, 0).text, byte >= 5 ? "3 B" : "0 B")
          << byte;
      EXPECT_EQ(GetFlag(kFiles, 0), 0) << byte;
    }
  }
}

TEST_F(FindFilesTest, TheWholeListIsGatheredAgainAndVanishedFilesAreFlagged) {
  const std::string gone = session.folder.file("gone", "1");
  session.folder.file("stays", "1");
  ASSERT_EQ(session.find(kFiles, "0~/gone;stays"), 2);
  EXPECT_EQ(GetFileFlagCount(kFiles, 0), 2);
  ASSERT_TRUE(std::filesystem::remove(gone));
  session.folder.file("stays", "22");
  EXPECT_EQ(session.find(kFiles, ""), 0);
  EXPECT_EQ(GetFlag(kFiles, 0), -1);
  EXPECT_EQ(GetFlag(kFiles, 1), 0);
  EXPECT_EQ(read_text(GetSize, kFiles, 1), (Text{1, "2 B"}));
  // Without that fact nothing is missing: the flag becomes 0 again.
  EXPECT_EQ(session.find(kFiles, "", asking_for({2, 3})), 0);
  EXPECT_EQ(GetFlag(kFiles, 0), 0);
}

TEST_F(FindFilesTest, ANameThatCannotBeDerivedIsFlagged) {
  session.fill(kFiles, 2);
  SetFullName(kFiles, 0, session.spelled("~/").c_str());
  EXPECT_EQ(session.find(kFiles, "", asking_for({2})), 0);
  EXPECT_EQ(GetFlag(kFiles, 0), -1);
  EXPECT_EQ(GetFlag(kFiles, 1), 0);
  EXPECT_EQ(session.find(kFiles, "", asking_for({3})), 0);
  EXPECT_EQ(GetFlag(kFiles, 0), 0);
}

TEST_F(FindFilesTest, StatusTextsNameTheTwoPasses) {
  HostRecorder host;
  session.folder.file("a", "");
  session.find(kFiles, "0~/a");
  EXPECT_THAT(host.statuses, ElementsAre("Now looking for files",
                                         "Now retrieving files attributes"));
}

TEST_F(FindFilesTest, TheFirstPassReportsResetsAndTheSecondItsPosition) {
  session.fill(kFiles, 250);
  // Each call gathers the whole list: 101 entries or more report at least one
  // reset.
  HostRecorder host;
  session.find(kFiles, "", kNoFacts);
  std::vector<uint32_t> expected;
  for (uint32_t i = 0; i <= 250; i += 2) expected.push_back(i);
  size_t resets = 0;
  while (resets < host.reports.size() && host.reports[resets].total == 0) {
    EXPECT_EQ(host.reports[resets].position, 0u);
    EXPECT_EQ(host.reports[resets].percent, 0);
    ++resets;
  }
  EXPECT_GE(resets, 2u);
  EXPECT_LE(resets, 3u);
  std::vector<uint32_t> positions = host.report_positions();
  positions.erase(positions.begin(),
                  positions.begin() + static_cast<ptrdiff_t>(resets));
  EXPECT_EQ(positions, expected);
  EXPECT_EQ(host.reports.back().total, 250u);
  EXPECT_EQ(host.reports.back().percent, 100);
}

// --- Refusals ----------------------------------------------------------------

TEST_F(FindFilesTest, TakesOnlyListsThatMayHoldFiles) {
  session.folder.file("a", "");
  for (int32_t list : kFileLists) {
    EXPECT_EQ(session.find(list, "0~/a"), 1) << list;
    EXPECT_EQ(GetCount(list, -1), 1) << list;
  }
  EXPECT_THAT(session.take_log(), IsEmpty());
  for (int32_t list : kNoFileLists) {
    EXPECT_EQ(session.find(list, "0~/a"), -1) << list;
    EXPECT_EQ(GetCount(list, -1), 0) << list;
    EXPECT_THAT(session.take_log(),
                ElementsAre(LogRecord{"The list pointer is NULL",
                                      "Getting list pointer", "FindFiles"}));
  }
}

TEST_F(FindFilesTest, RefusesMissingArgumentsInTheirOrder) {
  HostRecorder host;
  EXPECT_EQ(FindFiles(ZENFO_LIST_UNDO, nullptr, nullptr, nullptr), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(LogRecord{"The list pointer is NULL",
                                    "Getting list pointer", "FindFiles"}));
  EXPECT_EQ(FindFiles(kFiles, "", nullptr, nullptr), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(LogRecord{"The file parameter list pointer is NULL",
                                    "Getting file infos", "FindFiles"}));
  EXPECT_EQ(FindFiles(kFiles, "", kAllFacts.data(), nullptr), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(LogRecord{"The output filename pointer is NULL",
                                    "Getting target filename", "FindFiles"}));
  EXPECT_THAT(host.statuses, IsEmpty());
}

// --- Output file -------------------------------------------------------------

TEST_F(FindFilesTest, AnOutputFileTakesThePathsInsteadOfTheList) {
  session.folder.file("in/a.txt", "");
  session.folder.file("in/b.txt", "");
  session.folder.file("in/c.html", "");
  const std::string output = session.folder.file("out/names", "old content");
  HostRecorder host;
  EXPECT_EQ(find_into(output, "0~/in/a.txt;b.txt|0~/in/*.htm|1~/in/a.*"), 3);
  EXPECT_EQ(read_file(output), session.spelled("~/in/a.txt") + "\r\n" +
                                   session.spelled("~/in/b.txt") + "\r\n" +
                                   session.spelled("~/in/a.txt") + "\r\n");
  EXPECT_EQ(GetCount(kFiles, -1), 0);
  EXPECT_THAT(host.statuses,
              ElementsAre("Now looking for files", "Now counting entries"));
}

TEST_F(FindFilesTest, AnOutputFileIsEmptyWhenNothingIsFound) {
  const std::string output = session.folder.file("names", "old content");
  EXPECT_EQ(find_into(output, ""), 0);
  EXPECT_EQ(read_file(output), "");
}

TEST_F(FindFilesTest, AnOutputFileThatCannotBeOpenedAnswersMinusOne) {
  session.folder.file("a", "");
  EXPECT_EQ(find_into(session.folder.path("missing/names"), "0~/a"), -1);
  EXPECT_EQ(find_into(session.folder.path(), "0~/a"), -1);
  EXPECT_THAT(session.take_log(), IsEmpty());
}

#ifndef _WIN32
TEST_F(FindFilesTest, AnOutputFileThatCannotBeWrittenAnswersMinusOne) {
  session.folder.file("a", "");
  EXPECT_EQ(find_into("/dev/full", "0~/a"), -1);
}
#endif

// --- Stops -------------------------------------------------------------------

class FindFilesStopTest : public FindFilesTest {
 protected:
#ifdef _WIN32
  static constexpr int kNamesRead = 0;  // the system returns only "f"
#else
  static constexpr int kNamesRead = 3;  // ".", ".." and "f", once
#endif

  FindFilesStopTest() {
    session.fill(ZENFO_LIST_ERROR, 1);
    session.folder.file("many/f", "");
    for (int i = 0; i < 150; ++i) specification += i == 0 ? "f" : ";f";
  }
  // Runs `operation` with a stop at each poll in turn until one run completes;
  // returns all results.
  std::vector<int32_t> answers(const std::function<int32_t()>& operation) {
    std::vector<int32_t> all;
    for (int stop = 0;; ++stop) {
      Clear(kFiles);
      Clear(ZENFO_LIST_RUN_FILES);
      HostRecorder host;
      start_polls(host);
      int polls = 0;
      host.interrupt = [&] { return polls++ == stop ? 1 : 0; };
      all.push_back(operation());
      if (polls <= stop) return all;
      EXPECT_EQ(polls, stop + 1) << "polled after the stop";
    }
  }
  std::string specification = "0~/many/";
};

TEST_F(FindFilesStopTest, StopsAnswerMinusOneInTheWalkAndZeroInThePasses) {
  // Polls 101, 202, 303, 404 of the 150 + 150 + 150 (natively plus those for
  // the names read): one in the walk, two in the first pass, one in the second.
  std::vector<int32_t> left;
  const auto all = answers([&] {
    const int32_t answer = session.find(kFiles, specification, kNoFacts);
    left.push_back(GetCount(kFiles, -1));
    return answer;
  });
  EXPECT_THAT(all, ElementsAre(-1, 0, 0, 0, 150));
  EXPECT_THAT(left, ElementsAre(101 - kNamesRead, 150, 150, 150, 150));
}

TEST_F(FindFilesStopTest, AStoppedWalkDoesNotGatherFacts) {
  HostRecorder host;
  start_polls(host);
  host.statuses.clear();
  host.interrupt = [] { return 1; };
  EXPECT_EQ(session.find(kFiles, specification), -1);
  EXPECT_THAT(host.statuses, ElementsAre("Now looking for files"));
}

TEST_F(FindFilesStopTest, AStoppedWalkKeepsWhatItWroteToAnOutputFile) {
  const std::string output = session.folder.path("names");
  const auto all = answers([&] { return find_into(output, specification); });
  EXPECT_THAT(all, ElementsAre(-1, 150));
  HostRecorder host;
  start_polls(host);
  host.interrupt = [] { return 1; };
  EXPECT_EQ(find_into(output, specification), -1);
  const std::string bytes = read_file(output);
  EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 101 - kNamesRead);
  EXPECT_EQ(bytes.substr(bytes.size() - 2), "\r\n");
}

TEST_F(FindFilesStopTest, TheWalkThroughFoldersIsPolledToo) {
  for (int i = 0; i < 120; ++i) {
    session.folder.folder("tree/" + std::to_string(i));
  }
  auto all = answers([&] { return session.find(kFiles, "1~/tree/*"); });
  // The names "." and ".." in each folder count too.
  EXPECT_GE(all.size(), 5u);
  EXPECT_EQ(all.back(), 0);
  all.pop_back();
  EXPECT_THAT(all, Each(-1));
}

// Skipped names count too: a walk through a large folder can be stopped
// whatever it looks for.
TEST_F(FindFilesStopTest, AnswersThatAreNotWantedArePolledToo) {
  session.folder.file("flat/file", "");
  for (int i = 0; i < 120; ++i) {
    session.folder.folder("flat/" + std::to_string(i));
    session.folder.file("files/" + std::to_string(i), "");
    session.folder.file("points/." + std::to_string(i), "");
  }
  for (const char* search : {"0~/flat/*", "1~/files/none", "0~/points/*"}) {
    SCOPED_TRACE(search);
    const auto all = answers([&] { return session.find(kFiles, search); });
    EXPECT_EQ(all.front(), -1);
    EXPECT_GE(all.back(), 0);
    EXPECT_EQ(all.size(), 2u) << "polled once in about 120 answers";
  }
}

TEST_F(FindFilesStopTest, AddFileToListAnswersZeroAndKeepsWhatWasAdded) {
  session.find(ZENFO_LIST_RESULT, specification, kNoFacts);
  ASSERT_EQ(GetCount(ZENFO_LIST_RESULT, -1), 150);
  EXPECT_THAT(answers([&] {
                const int32_t answer = AddFileToList(
                    ZENFO_LIST_RESULT, ZENFO_LIST_RUN_FILES, kNoFacts.data());
                EXPECT_EQ(GetCount(ZENFO_LIST_RUN_FILES, -1), 150);
                return answer;
              }),
              ElementsAre(0, 150));
}

// --- AddFileToList -----------------------------------------------------------

class AddFileToListTest : public testing::Test {
 protected:
  AddFileToListTest() {
    for (const char* name : {"a", "b", "c", "d"}) {
      session.folder.file(name, name);
    }
    session.find(kFiles, "0~/a;b;c;d");
    host.statuses.clear();
  }
  // Adds one list to the other with these answers to the questions.
  int32_t add(std::vector<int32_t> answers,
              const Options& options = kAllFacts) {
    size_t asked = 0;
    host.file_questions.clear();
    host.answer_file = [&](const std::string&) {
      return asked < answers.size() ? answers[asked++] : 99;
    };
    const int32_t added =
        AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, options.data());
    EXPECT_EQ(host.file_questions.size(), answers.size());
    return added;
  }
  Session session;
  HostRecorder host;
};

TEST_F(AddFileToListTest, YesAddsAndNoSkipsEachFile) {
  EXPECT_EQ(add({1, 0, 1, 0}), 2);
  EXPECT_THAT(session.names(ZENFO_LIST_RUN_FILES), ElementsAre("~/a", "~/c"));
  EXPECT_THAT(host.file_questions,
              ElementsAre(session.spelled("~/a"), session.spelled("~/b"),
                          session.spelled("~/c"), session.spelled("~/d")));
}

TEST_F(AddFileToListTest, NoToAllSkipsThisAndAllLaterUnasked) {
  EXPECT_EQ(add({1, 2}), 1);
  EXPECT_THAT(session.names(ZENFO_LIST_RUN_FILES), ElementsAre("~/a"));
}

TEST_F(AddFileToListTest, YesToAllAddsThisAndAllLaterUnasked) {
  EXPECT_EQ(add({0, 3}), 3);
  EXPECT_THAT(session.names(ZENFO_LIST_RUN_FILES),
              ElementsAre("~/b", "~/c", "~/d"));
}

TEST_F(AddFileToListTest, TheAnswersForAllHoldForOneCallOnly) {
  EXPECT_EQ(add({3}), 4);
  EXPECT_EQ(add({2}), 0);
  EXPECT_EQ(add({0, 0, 0, 1}), 1);
}

TEST_F(AddFileToListTest, AnyOtherAnswerIsInvalid) {
  const LogRecord invalid = {"Invalid option", "Checking user option",
                             "AddFileToList"};
  for (int32_t answer : {-1, 4, INT32_MAX, INT32_MIN}) {
    Clear(ZENFO_LIST_RUN_FILES);
    EXPECT_EQ(add({answer}), -1) << answer;
    EXPECT_EQ(GetCount(ZENFO_LIST_RUN_FILES, -1), 0) << answer;
    EXPECT_THAT(session.take_log(), ElementsAre(invalid)) << answer;
  }
  EXPECT_EQ(add({1, 7}), -1);
  EXPECT_THAT(session.take_log(), ElementsAre(invalid));
}

TEST_F(AddFileToListTest, WithoutAQuestionCallbackTheAnswerIsInvalid) {
  CallbackTable none{};
  SetCallBacks(&none);
  EXPECT_EQ(AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, kAllFacts.data()), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(LogRecord{"Invalid option", "Checking user option",
                                    "AddFileToList"}));
  // With an empty source no question is asked, so no callback is missing.
  EXPECT_EQ(
      AddFileToList(ZENFO_LIST_RESULT, ZENFO_LIST_RUN_FILES, kAllFacts.data()),
      0);
}

TEST_F(AddFileToListTest, TheSourceMayBeTheTarget) {
  host.answer_file = [](const std::string&) { return 1; };
  EXPECT_EQ(AddFileToList(kFiles, kFiles, kAllFacts.data()), 4);
  EXPECT_EQ(host.file_questions.size(), 4u);
  EXPECT_THAT(session.names(kFiles), ElementsAre("~/a", "~/b", "~/c", "~/d",
                                                 "~/a", "~/b", "~/c", "~/d"));
}

// Appending ends the sorted order.
TEST_F(AddFileToListTest, AnArrangedListIsAddedToItselfInItsOrder) {
  ASSERT_EQ(Sort(kFiles, 10, 1), 1);
  ASSERT_THAT(session.names(kFiles), ElementsAre("~/d", "~/c", "~/b", "~/a"));
  host.answer_file = [](const std::string&) { return 1; };
  EXPECT_EQ(AddFileToList(kFiles, kFiles, kNoFacts.data()), 4);
  EXPECT_THAT(host.file_questions,
              ElementsAre(session.spelled("~/d"), session.spelled("~/c"),
                          session.spelled("~/b"), session.spelled("~/a")));
  EXPECT_THAT(session.names(kFiles), ElementsAre("~/a", "~/b", "~/c", "~/d",
                                                 "~/d", "~/c", "~/b", "~/a"));
}

// With half a million entries, searching the list for each of them would take
// minutes.
TEST_F(AddFileToListTest, AListIsDoubledInTimeThatGrowsWithIt) {
  host.answer_file = [](const std::string&) { return 3; };
  for (int32_t count = 4; count < 500'000; count *= 2) {
    ASSERT_EQ(AddFileToList(kFiles, kFiles, kNoFacts.data()), count);
  }
  EXPECT_EQ(read_text(GetFullName, kFiles, 500'000),
            (Text{1, session.spelled("~/a")}));
}

TEST_F(AddFileToListTest, FactsAreGatheredForTheAddedEntriesOnly) {
  session.find(ZENFO_LIST_RUN_FILES, "0~/a", kNoFacts);
  EXPECT_EQ(add({0, 1, 2}, asking_for({2, 5})), 1);
  EXPECT_EQ(read_text(GetFilename, ZENFO_LIST_RUN_FILES, 0), kNoText);
  EXPECT_EQ(read_text(GetFilename, ZENFO_LIST_RUN_FILES, 1), (Text{1, "b"}));
  EXPECT_EQ(read_text(GetDirectory, ZENFO_LIST_RUN_FILES, 1), kNoText);
  EXPECT_EQ(read_text(GetSize, ZENFO_LIST_RUN_FILES, 1), (Text{1, "1 B"}));
  EXPECT_EQ(GetFlag(ZENFO_LIST_RUN_FILES, 1), 0);
}

TEST_F(AddFileToListTest, NewEntriesCopyTheNameAlone) {
  SetState(kFiles, -1, 1);
  EXPECT_EQ(add({3}, kNoFacts), 4);
  EXPECT_EQ(GetState(ZENFO_LIST_RUN_FILES, 0), 0);
  EXPECT_EQ(read_text(GetFilename, ZENFO_LIST_RUN_FILES, 0), kNoText);
}

TEST_F(AddFileToListTest, AVanishedFileIsAddedAndFlagged) {
  ASSERT_TRUE(std::filesystem::remove(session.folder.path("b")));
  EXPECT_EQ(add({3}), 4);
  EXPECT_EQ(GetFlag(ZENFO_LIST_RUN_FILES, 0), 0);
  EXPECT_EQ(GetFlag(ZENFO_LIST_RUN_FILES, 1), -1);
}

TEST_F(AddFileToListTest, StatusTextsComeBeforeTheQuestionsAndTheFacts) {
  std::vector<size_t> asked_before;
  host.on_status_text = [&](const std::string&) {
    asked_before.push_back(host.file_questions.size());
  };
  EXPECT_EQ(add({1, 1, 1, 1}), 4);
  EXPECT_THAT(host.statuses, ElementsAre("Now adding files",
                                         "Now retrieving files attributes"));
  EXPECT_THAT(asked_before, ElementsAre(0u, 4u));
}

TEST_F(AddFileToListTest, RefusesMissingListsAndOptions) {
  auto refused = [](const char* message, const char* context) {
    return LogRecord{message, context, "AddFileToList"};
  };
  EXPECT_EQ(AddFileToList(ZENFO_LIST_UNDO, ZENFO_LIST_MATCHES, nullptr), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(refused("The source list pointer is NULL",
                                  "Getting list pointer")));
  EXPECT_EQ(AddFileToList(kFiles, ZENFO_LIST_MATCHES, nullptr), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(refused("The target list pointer is NULL",
                                  "Getting list pointer")));
  EXPECT_EQ(AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, nullptr), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(refused("The file parameter list pointer is NULL",
                                  "Getting file infos")));
  EXPECT_THAT(host.statuses, IsEmpty());
}

TEST_F(AddFileToListTest, TheHostMayRenameTheEntryItIsAskedAbout) {
  host.answer_file = [](const std::string&) {
    SetFullName(kFiles, 0,
                "renamed while it was asked about, and quite long too");
    return 1;
  };
  EXPECT_EQ(AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, kNoFacts.data()), 4);
  EXPECT_EQ(session.names(ZENFO_LIST_RUN_FILES)[0], "~/a");
}

}  // namespace
}  // namespace zenfo::test
