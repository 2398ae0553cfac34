// Start and end, the registry of lists, the error file and the callbacks, as a
// host uses them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/export_calls.h"
#include "support/host_recorder.h"
#include "support/lists.h"
#include "support/matchers.h"
#include "support/session.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace zenfo::test {
namespace {

bool is_routine(const ExportCall& call, std::string_view name) {
  return call.row->routine == name;
}

// --- Initialize and Terminate ------------------------------------------------

TEST(Initialize, AnswersOneAndLeavesAllListsEmpty) {
  EXPECT_EQ(Initialize(), 1);
  for (int32_t list : kAllLists) EXPECT_EQ(GetCount(list, -1), 0) << list;
  Terminate();
}

TEST(Initialize, TwiceInARowEmptiesTheListsAndForgetsTheErrorFile) {
  Session session;
  session.fill(kFiles, 3);
  session.fill(ZENFO_LIST_ERROR, 2);
  EXPECT_EQ(Initialize(), 1);
  for (int32_t list : kAllLists) EXPECT_EQ(GetCount(list, -1), 0) << list;
  EXPECT_EQ(Clear(kNoList), 0);
  EXPECT_FALSE(file_exists(session.error_file()));
}

TEST(Initialize, KeepsTheCallbacks) {
  HostRecorder host;
  Session session;
  GetCount(kFiles, -1);
  EXPECT_THAT(host.statuses, ElementsAre("Now counting entries"));
}

TEST(Terminate, AnswersOneBeforeInitializeAndAsOftenAsCalled) {
  EXPECT_EQ(Terminate(), 1);
  EXPECT_EQ(Terminate(), 1);
  EXPECT_EQ(Initialize(), 1);
  EXPECT_EQ(Terminate(), 1);
  EXPECT_EQ(Terminate(), 1);
}

TEST(Terminate, KeepsTheCallbacks) {
  HostRecorder host;
  Initialize();
  Terminate();
  Initialize();
  GetCount(kFiles, -1);
  EXPECT_THAT(host.statuses, SizeIs(1));
  Terminate();
}

TEST(Terminate, LeavesNothingToClearAndNowhereToLogIt) {
  Session session;
  Terminate();
  EXPECT_EQ(Clear(kFiles), 0);
  EXPECT_FALSE(file_exists(session.error_file()));
}

// Without a library every operation returns its failure value.
void expect_failures_of_all(const char* when) {
  for (const ExportCall& call : export_calls()) {
    if (is_routine(call, "Initialize") || is_routine(call, "Terminate") ||
        is_routine(call, "SetCallBacks")) {
      continue;
    }
    EXPECT_EQ(call.with_zeros(), call.row->failure)
        << call.row->routine << ' ' << when;
  }
}

TEST(EveryExport, AnswersItsFailureValueBeforeInitialize) {
  Terminate();
  HostRecorder host;
  expect_failures_of_all("before Initialize");
  EXPECT_THAT(host.statuses, IsEmpty());
}

TEST(EveryExport, AnswersItsFailureValueAfterTerminateAndLogsNothing) {
  Session session;
  Terminate();
  HostRecorder host;
  expect_failures_of_all("after Terminate");
  EXPECT_THAT(host.statuses, IsEmpty());
  EXPECT_FALSE(file_exists(session.error_file()));
}

TEST(EveryExport, SurvivesZerosAndNullsForAllArguments) {
  for (const bool with_records : {false, true}) {
    Session session;
    if (with_records) {
      for (int32_t list : kFileLists) session.fill(list, 2);
    }
    for (const ExportCall& call : export_calls()) {
      if (!is_routine(call, "Terminate")) call.with_zeros();
    }
    for (const LogRecord& record : session.take_log()) {
      EXPECT_NE(record.message, "Runtime error") << record.routine;
    }
  }
}

TEST(EveryExport, WorksWithoutAnErrorFile) {
  Initialize();
  for (const ExportCall& call : export_calls()) {
    if (!is_routine(call, "Terminate")) call.with_zeros();
  }
  EXPECT_EQ(Clear(kNoList), 0);
  Terminate();
}

// --- The registry ------------------------------------------------------------

TEST(ListNumbers, UnknownOnesLeaveTheRegistrysRecordWithAnEmptyMessage) {
  Session session;
  for (int32_t list : {kNoList, -1, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(GetState(list, 0), -1);
    EXPECT_THAT(session.take_log(), ElementsAre(unknown_list())) << list;
  }
}

TEST(ListNumbers, UnknownOnesLeaveOneRecordInSilentOperations) {
  Session session;
  char buffer[64];
  const Options& options = kAllFacts;
  const std::function<int32_t()> calls[] = {
      [&] { return GetFilename(kNoList, 0, buffer, 64); },
      [&] { return GetFullName(kNoList, 0, buffer, 64); },
      [&] { return SetFullName(kNoList, 0, "x"); },
      [&] { return SetFullName(kNoList, 0, nullptr); },
      [&] { return GetDirectory(kNoList, 0, buffer, 64); },
      [&] { return GetType(kNoList, 0, buffer, 64); },
      [&] { return GetCTime(kNoList, 0, buffer, 64); },
      [&] { return GetATime(kNoList, 0, buffer, 64); },
      [&] { return GetMTime(kNoList, 0, buffer, 64); },
      [&] { return GetSize(kNoList, 0, buffer, 64); },
      [&] { return GetAttributes(kNoList, 0, buffer, 64); },
      [&] { return SetState(kNoList, 0, 1); },
      [&] { return GetState(kNoList, 0); },
      [&] { return GetFlag(kNoList, 0); },
      [&] { return IsTrashed(kNoList, 0); },
      [&] { return GetCount(kNoList, -1); },
      [&] { return GetFileFlagCount(kNoList, 0); },
      [&] { return Refresh(kNoList, 0, options.data()); },
      [&] { return GetSizeSelection(kNoList, buffer, nullptr); },
      [&] { return GetSizeTotal(kNoList, buffer, nullptr); },
      [&] { return FindInFiles(kNoList, "x", 0, 0, 0); },
      [&] { return GetIcon(kNoList, 0, nullptr, nullptr); },
      [&] { return GetMatchOffset(kNoList, 0, buffer, 64); },
      [&] { return GetMatchLength(kNoList, 0, buffer, 64); },
      [&] { return GetMatchText(kNoList, 0, buffer, 59); },
      [&] { return GetMatchReplace(kNoList, 0, buffer, 59); },
      [&] { return get_match_flag(kNoList, 0); },
  };
  int number = 0;
  for (const auto& call : calls) {
    EXPECT_EQ(call(), -1) << number;
    EXPECT_THAT(session.take_log(), ElementsAre(unknown_list())) << number;
    ++number;
  }
}

TEST(ListNumbers, UnknownOnesLeaveTwoRecordsInOperationsThatLog) {
  Session session;
  const Options& options = kAllFacts;
  EXPECT_EQ(Clear(kNoList), 0);
  EXPECT_THAT(
      session.take_log(),
      ElementsAre(unknown_list(), LogRecord{"The list pointer is NULL",
                                            "Getting list to clear", "Clear"}));
  EXPECT_EQ(FindFiles(-1, "", options.data(), ""), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(unknown_list(),
                          LogRecord{"The list pointer is NULL",
                                    "Getting list pointer", "FindFiles"}));
  EXPECT_EQ(AddFileToList(kNoList, kNoList, options.data()), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(unknown_list(),
                          LogRecord{"The source list pointer is NULL",
                                    "Getting list pointer", "AddFileToList"}));
  EXPECT_EQ(AddFileToList(kFiles, kNoList, options.data()), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(unknown_list(),
                          LogRecord{"The target list pointer is NULL",
                                    "Getting list pointer", "AddFileToList"}));
}

TEST(ListNumbers, AllElevenCanBeCleared) {
  Session session;
  for (int32_t list : kAllLists) EXPECT_EQ(Clear(list), 1) << list;
  EXPECT_THAT(session.take_log(), IsEmpty());
}

// --- The error file ----------------------------------------------------------

std::string stamp_now() {
  const std::time_t now = std::time(nullptr);
  char text[32];
  std::strftime(text, sizeof text, "%Y/%m/%d-%H:%M:%S", std::localtime(&now));
  return text;
}

TEST(ErrorFile, HoldsTwoErrorsInARowAsTwoRecordsByteForByte) {
  Session session;
  const std::string before = stamp_now();
  Clear(kNoList);
  const std::string after = stamp_now();
  const std::string bytes = read_file(session.error_file());
  LogReader reader(bytes);
  ASSERT_THAT(reader.records(), SizeIs(2));
  for (const std::string& stamp : reader.stamps) {
    EXPECT_GE(stamp, before);
    EXPECT_LE(stamp, after);
  }
  EXPECT_EQ(bytes, reader.stamps[0] +
                       "\r\n\r\n"
                       "  message  : \r\n"
                       "  context  : Error retrieving list handler\r\n"
                       "  module   : Main\r\n"
                       "  routine  : get_list\r\n\r\n" +
                       reader.stamps[1] +
                       "\r\n\r\n"
                       "  message  : The list pointer is NULL\r\n"
                       "  context  : Getting list to clear\r\n"
                       "  module   : Main\r\n"
                       "  routine  : Clear\r\n\r\n");
}

TEST(ErrorFile, IsAppendedToAndNeverTruncated) {
  Session session;
  write_file(session.error_file(), "what was there\n");
  GetState(kNoList, 0);
  SetErrorFile(session.error_file().c_str());
  GetState(kNoList, 0);
  const std::string bytes = read_file(session.error_file());
  const std::string old = "what was there\n";
  ASSERT_EQ(bytes.substr(0, old.size()), old);
  EXPECT_THAT(LogReader(bytes.substr(old.size())).records(),
              ElementsAre(unknown_list(), unknown_list()));
}

TEST(ErrorFile, MayBeReadAndDeletedBetweenTwoErrors) {
  Session session;
  GetState(kNoList, 0);
  ASSERT_TRUE(std::filesystem::remove(session.error_file()));
  GetState(kNoList, 0);
  EXPECT_THAT(session.take_log(), ElementsAre(unknown_list()));
}

TEST(ErrorFile, ThatCannotBeWrittenChangesNoAnswer) {
  Session session;
  const std::string nowhere = session.folder.path("missing/errors.txt");
  EXPECT_EQ(SetErrorFile(nowhere.c_str()), 1);
  EXPECT_EQ(Clear(kNoList), 0);
  EXPECT_EQ(SetErrorFile(session.folder.path().c_str()), 1);
  EXPECT_EQ(Clear(kNoList), 0);
  EXPECT_FALSE(file_exists(nowhere));
}

TEST(SetErrorFile, EmptySwitchesLoggingOff) {
  Session session;
  EXPECT_EQ(SetErrorFile(""), 1);
  Clear(kNoList);
  EXPECT_THAT(session.take_log(), IsEmpty());
}

TEST(SetErrorFile, NullKeepsTheFileSetBefore) {
  Session session;
  EXPECT_EQ(SetErrorFile(nullptr), 1);
  GetState(kNoList, 0);
  EXPECT_THAT(session.take_log(), ElementsAre(unknown_list()));
}

TEST(SetErrorFile, AnotherNameTakesOverAndTheNameIsCopied) {
  Session session;
  std::string name = session.folder.path("other.txt");
  EXPECT_EQ(SetErrorFile(name.c_str()), 1);
  const std::string kept = name;
  name.assign(name.size(), '?');
  GetState(kNoList, 0);
  EXPECT_THAT(session.take_log(), IsEmpty());
  EXPECT_THAT(LogReader(read_file(kept)).records(),
              ElementsAre(unknown_list()));
}

TEST(SetErrorFile, FailsOutsideInitializeAndTerminate) {
  Terminate();
  EXPECT_EQ(SetErrorFile("x"), -1);
  EXPECT_EQ(SetErrorFile(""), -1);
  EXPECT_EQ(SetErrorFile(nullptr), -1);
}

// --- Callbacks ---------------------------------------------------------------

TEST(SetCallBacks, NullIsLoggedAndChangesNothing) {
  HostRecorder host;
  Session session;
  SetCallBacks(nullptr);
  EXPECT_THAT(
      session.take_log(),
      ElementsAre(LogRecord{"Pointer structure not initialised",
                            "Setting callback pointers", "SetCallBacks"}));
  GetCount(kFiles, -1);
  EXPECT_THAT(host.statuses, SizeIs(1));
}

TEST(SetCallBacks, WorksBeforeInitialize) {
  Terminate();
  HostRecorder host;
  Initialize();
  GetCount(kFiles, -1);
  EXPECT_THAT(host.statuses, SizeIs(1));
  Terminate();
}

TEST(SetCallBacks, CopiesTheTable) {
  Session session;
  static int heard;
  heard = 0;
  CallbackTable table{};
  table.status = [](const ZenfoWideChar*) ZENFO_CALL -> int32_t {
    ++heard;
    return 0;
  };
  SetCallBacks(&table);
  table = {};
  GetCount(kFiles, -1);
  EXPECT_EQ(heard, 1);
  SetCallBacks(&table);
  GetCount(kFiles, -1);
  EXPECT_EQ(heard, 1);
}

// Calls operations that use each callback of the table at least once.
void use_all_callbacks(const Session& session) {
  Clear(kFiles);
  session.fill(kFiles, 250);
  GetCount(kFiles, 0);
  SetState(kFiles, -1, 1);
  AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, kNoFacts.data());
}

TEST(SetCallBacks, TheFirstSlotIsNeverCalled) {
  Session session;
  CallbackTable table{};
  table.unused = reinterpret_cast<void*>(1);
  SetCallBacks(&table);
  use_all_callbacks(session);
  EXPECT_EQ(GetCount(kFiles, -1), 250);
  table = {};
  SetCallBacks(&table);
}

TEST(SetCallBacks, ANullSlotSwitchesThatKindOfCallOff) {
  Session session;
  for (int off = 1; off <= 4; ++off) {
    static int reports, interrupts, statuses, questions;
    reports = interrupts = statuses = questions = 0;
    CallbackTable table{};
    if (off != 1) {
      table.report = [](ProgressRecord*)
                         ZENFO_CALL -> int32_t { return ++reports; };
    }
    if (off != 2) {
      table.interrupt = []() ZENFO_CALL -> int32_t {
        ++interrupts;
        return 0;
      };
    }
    if (off != 3) {
      table.status = [](const ZenfoWideChar*)
                         ZENFO_CALL -> int32_t { return ++statuses; };
    }
    if (off != 4) {
      table.file_question = [](const ZenfoWideChar*) ZENFO_CALL -> int32_t {
        ++questions;
        return 1;
      };
    }
    SetCallBacks(&table);
    use_all_callbacks(session);
    EXPECT_EQ(reports > 0, off != 1) << off;
    EXPECT_EQ(interrupts > 0, off != 2) << off;
    EXPECT_EQ(statuses > 0, off != 3) << off;
    EXPECT_EQ(questions > 0, off != 4) << off;
    table = {};
    SetCallBacks(&table);
  }
}

TEST(SetCallBacks, WithoutAnInterruptCallbackNothingEverStops) {
  Session session;
  session.fill(kFiles, 500);
  EXPECT_EQ(SetState(kFiles, -1, 1), 500);
  EXPECT_EQ(GetCount(kFiles, 1), 500);
}

TEST(Callbacks, OnlyNonZeroStopsAndAnyNonZeroDoes) {
  Session session;
  session.fill(kFiles, 500);
  HostRecorder host;
  for (int32_t answer : {1, -1, 2, INT32_MIN}) {
    host.interrupt = [=] { return answer; };
    EXPECT_LT(SetState(kFiles, -1, 1), 500) << answer;
  }
  host.interrupt = [] { return 0; };
  EXPECT_EQ(SetState(kFiles, -1, 1), 500);
}

TEST(Callbacks, ATextOf1023BytesArrivesWholeAndALongerOneIsCut) {
  Session session;
  session.fill(kFiles, 1);
  HostRecorder host;
  for (size_t length : {1022u, 1023u, 1024u, 1025u, 5000u}) {
    std::string name;
    for (size_t i = 0; i < length; ++i) {
      name += static_cast<char>('a' + i % 26);
    }
    ASSERT_EQ(SetFullName(kFiles, 0, name.c_str()), 1);
    host.file_questions.clear();
    AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, kNoFacts.data());
    EXPECT_THAT(host.file_questions, ElementsAre(name.substr(0, 1023)));
    EXPECT_EQ(read_text(GetFullName, kFiles, 0), (Text{1, name}));
  }
}

TEST(Callbacks, NonAsciiTextsAreConverted) {
  Session session;
  session.fill(kFiles, 1);
  HostRecorder host;
  // In any code page "e" is unchanged and the other letter is kept too.
  ASSERT_EQ(SetFullName(kFiles, 0, "caf\xc3\xa9"), 1);
  AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, kNoFacts.data());
  ASSERT_THAT(host.file_questions, SizeIs(1));
  EXPECT_EQ(host.file_questions[0].substr(0, 3), "caf");
  EXPECT_GT(host.file_questions[0].size(), 3u);
}

// --- Callbacks that call back ------------------------------------------------

TEST(CallingBack, ReadingAndSetStateWork) {
  Session session;
  session.fill(kFiles, 2);
  HostRecorder host;
  int heard = 0;
  host.on_status_text = [&](const std::string&) {
    if (++heard > 1) return;
    EXPECT_EQ(GetCount(kFiles, -1), 2);
    EXPECT_EQ(read_text(GetFullName, kFiles, 1).result, 1);
    EXPECT_EQ(SetState(kFiles, 1, 1), 1);
    EXPECT_EQ(GetState(kFiles, 1), 1);
    EXPECT_EQ(SetErrorFile(nullptr), 1);
    EXPECT_EQ(SetFullName(kFiles, 0, "renamed"), 1);
  };
  EXPECT_EQ(GetCount(kFiles, 1), 1);
  EXPECT_EQ(heard, 2);
  EXPECT_EQ(read_text(GetFullName, kFiles, 0), (Text{1, "renamed"}));
  EXPECT_THAT(session.take_log(), IsEmpty());
}

TEST(CallingBack, OperationsThatWantTheLibraryAloneAreRefusedUnlogged) {
  Session session;
  session.fill(kFiles, 2);
  HostRecorder host;
  bool heard = false;
  host.on_status_text = [&](const std::string&) {
    heard = true;
    EXPECT_EQ(Clear(kFiles), 0);
    EXPECT_EQ(session.find(kFiles, "0~/fill/*"), -1);
    EXPECT_EQ(AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, kAllFacts.data()),
              -1);
    EXPECT_EQ(FindInFiles(kFiles, "x", 1, 0, 0), -1);
    EXPECT_EQ(Initialize(), 0);
    EXPECT_EQ(Terminate(), -1);
    for (const ExportCall& call : export_calls()) {
      if (call.row->access != Access::kAlone) continue;
      EXPECT_EQ(call.with_zeros(), call.row->failure) << call.row->routine;
    }
  };
  EXPECT_EQ(GetCount(kFiles, -1), 2);
  EXPECT_TRUE(heard);
  EXPECT_THAT(session.take_log(), IsEmpty());
  host.on_status_text = nullptr;
  EXPECT_EQ(GetCount(kFiles, -1), 2);
  EXPECT_EQ(Clear(kFiles), 1);
}

TEST(CallingBack, IsRefusedFromEveryKindOfCallback) {
  Session session;
  session.fill(kFiles, 250);
  HostRecorder host;
  int refused = 0;
  auto try_clear = [&] {
    EXPECT_EQ(Clear(kFiles), 0);
    ++refused;
  };
  host.on_progress = [&](const ProgressRecord&) { try_clear(); };
  SetState(kFiles, -1, 1);
  EXPECT_GT(refused, 0);
  host.on_progress = nullptr;
  refused = 0;
  host.interrupt = [&] {
    try_clear();
    return 0;
  };
  SetState(kFiles, -1, 1);
  EXPECT_GT(refused, 0);
  host.interrupt = [] { return 0; };
  refused = 0;
  host.answer_file = [&](const std::string&) {
    try_clear();
    return 2;
  };
  AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, kNoFacts.data());
  EXPECT_EQ(refused, 1);
  EXPECT_EQ(GetCount(kFiles, -1), 250);
}

TEST(CallingBack, TheCallbacksMayBeReplacedDuringACall) {
  Session session;
  session.fill(kFiles, 250);
  HostRecorder host;
  host.on_status_text = [&](const std::string&) {
    CallbackTable none{};
    SetCallBacks(&none);
  };
  EXPECT_EQ(GetCount(kFiles, 0), 250);
  EXPECT_THAT(host.statuses, SizeIs(1));
  EXPECT_THAT(host.reports, IsEmpty());
}

// An exception can pass from the host to the library only if both share one
// unwinder, which is not so in the Windows build.
#ifndef _WIN32

struct HostFault {};

class ThrowingCallbacks : public testing::Test {
 protected:
  ThrowingCallbacks() { session.fill(kFiles, 250); }
  Session session;
  HostRecorder host;
};

TEST_F(ThrowingCallbacks, AStatusTextIsPassedOver) {
  host.on_status_text = [](const std::string&) { throw HostFault(); };
  EXPECT_EQ(GetCount(kFiles, -1), 250);
  EXPECT_THAT(session.take_log(), ElementsAre(logged_fault("cb_lng_str")));
}

TEST_F(ThrowingCallbacks, AReportIsPassedOver) {
  host.reports.clear();
  host.on_progress = [](const ProgressRecord&) {
    throw std::runtime_error("host");
  };
  EXPECT_EQ(SetState(kFiles, -1, 1), 250);
  const auto log = session.take_log();
  EXPECT_EQ(log.size(), host.reports.size());
  EXPECT_THAT(log, Each(logged_fault("cb_lng_report")));
  EXPECT_GT(log.size(), 100u);
}

TEST_F(ThrowingCallbacks, AnInterruptDoesNotStop) {
  host.interrupt = []() -> int32_t { throw 1; };
  EXPECT_EQ(SetState(kFiles, -1, 1), 250);
  const auto log = session.take_log();
  EXPECT_THAT(log, Each(logged_fault("cb_lng")));
  EXPECT_FALSE(log.empty());
}

TEST_F(ThrowingCallbacks, AQuestionIsAnInvalidAnswer) {
  host.answer_file = [](const std::string&) -> int32_t { throw HostFault(); };
  EXPECT_EQ(AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, kNoFacts.data()), -1);
  EXPECT_THAT(session.take_log(),
              ElementsAre(logged_fault("cb_lng_str"),
                          LogRecord{"Invalid option", "Checking user option",
                                    "AddFileToList"}));
  EXPECT_EQ(GetCount(ZENFO_LIST_RUN_FILES, -1), 0);
}

TEST_F(ThrowingCallbacks, TheLibraryIsFreeAfterwards) {
  host.on_status_text = [](const std::string&) { throw HostFault(); };
  GetCount(kFiles, -1);
  host.on_status_text = nullptr;
  EXPECT_EQ(Clear(kFiles), 1);
}

#endif

}  // namespace
}  // namespace zenfo::test
