// Searches with several threads: the host sees the same calls, with the same
// arguments, in the same order, and the same results as with one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "support/environment.h"
#include "support/search_fixture.h"
#include "support/sweep.h"

namespace zenfo::test {
namespace {

// Enough that threads are started, and that places are used again. Fewer, and
// once, where the sanitizer makes all slow but sees every access.
#ifdef ZENFO_THREAD_SANITIZER
constexpr int kManyFiles = 80;
constexpr const char* kThreads[] = {"3"};
#else
constexpr int kManyFiles = 150;
constexpr const char* kThreads[] = {"2", "3", "8"};
#endif
// About how many polls a run is stopped at, others every day.
#if defined(ZENFO_ADDRESS_SANITIZER) || defined(_WIN32)
constexpr int kStops = 4;
#else
constexpr int kStops = 8;
#endif

// Everything that the host sees, one line each.
struct Events {
  std::string lines;
  void add(const std::string& line) { lines += line + "\n"; }
};

class ReadAheadTest : public SearchTest {
 protected:
  // One run; returns what the host got from it.
  struct Run {
    Operation operation = find_block;
    RunArguments arguments = {};
    bool listens = false;
    bool by_lines = false;  // over the lines of list_of_lines()
    int stop_at_poll = 0;   // 0: never
    // Called at the start of each file's loading, with its number.
    std::function<void(int)> at_file = nullptr;
    std::function<int32_t(int)> answer = nullptr;
  };

  // Files of all kinds: small, empty, missing, with a byte that is no text, in
  // several blocks, too large to be read ahead.
  void add_files() {
    for (int i = 0; i < kManyFiles; ++i) {
      const std::string name =
          "f" + std::to_string(i / 40) + "/" + std::to_string(i);
      switch (i % 25) {
        case 3:
          add(name, "");
          break;
        case 7:
          add_missing(name);
          break;
        case 11:
          add(name, "ab\x01 ab");
          break;
        case 13:
          add(name, text(50000 * (1 + i / 25)));
          break;
        case 19:
          add(name, text(300000 + i));
          break;
        default:
          add(name, text(10 + 37 * i));
      }
    }
  }

  static std::string text(int size) {
    std::string all;
    while (all.size() < static_cast<size_t>(size)) {
      all +=
          "line " + std::to_string(all.size()) + (size % 3 ? " ab\r\n" : ".");
    }
    return all;
  }

  std::string events(const Run& run, const char* threads) {
    std::error_code ignored;
    std::filesystem::remove(error_file(), ignored);
    const EnvironmentVariable variable("ZENFO_THREADS", threads);
#ifdef _WIN32
    return perform(run);
#else
    // Each run begins with the same counters of polls, so in a process of its
    // own.
    const std::string path = work().path("events");
    const pid_t child = fork();
    if (child == 0) {
      write_file(path, perform(run));
      _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return read_file(path);
#endif
  }

  void expect_same_events(const Run& run) {
    const std::string expected = events(run, "1");
    for (const char* threads : kThreads) {
      EXPECT_EQ(events(run, threads), expected) << threads << " threads";
    }
  }

  std::string list_of_lines() const { return work().path("lines"); }
  std::string summary() const { return work().path("summary"); }
  // The present files as lines, and other lines among them.
  void write_lines() const {
    std::string lines;
    for (const std::string& path : files(ZENFO_LIST_RUN_FILES)) {
      lines += path + "\r\n";
      if (lines.size() % 5 == 0) lines += "\r\n";
    }
    write_file(list_of_lines(), lines + "no line end");
  }

  // Stamps are trusted only when the file is older than a step of the clock.
  static void let_files_settle() {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
  }

 private:
  std::string perform(const Run& run) {
    Events events;
    int32_t answer = 0;
    if (run.listens) {
      HostRecorder host;
      listen(host, run, events);
      answer = operate(run);
    } else {
      answer = operate(run);
    }
    events.add("answer " + std::to_string(answer));
    add_results(events);
    return events.lines;
  }

  int32_t operate(const Run& run) const {
    const std::string lines = list_of_lines();
    const std::string result = summary();
    const LinePaths paths{lines.c_str(), result.c_str()};
    return run.operation(run.arguments, run.by_lines ? &paths : nullptr);
  }

  static void listen(HostRecorder& host, const Run& run, Events& events) {
    host.on_status_text = [&, number = 0](const std::string& status) mutable {
      events.add(status);
      if (run.at_file && status.starts_with("Now loading file")) {
        run.at_file(number++);
      }
    };
    host.on_progress = [&](const ProgressRecord& progress) {
      events.add("report " + std::to_string(progress.position) + "/" +
                 std::to_string(progress.total) + " " +
                 std::to_string(progress.percent));
    };
    host.interrupt = [&, polls = 0]() mutable {
      events.add("poll");
      return ++polls == run.stop_at_poll ? 1 : 0;
    };
    host.answer_option =
        [&, questions = 0](const HostRecorder::Question& question) mutable {
          events.add("question " + question.text + " " +
                     std::to_string(question.number));
          return run.answer ? run.answer(questions++) : 1;
        };
  }

  void add_results(Events& events) const {
    for (const int32_t list :
         {ZENFO_LIST_RESULT, ZENFO_LIST_NO_MATCH, ZENFO_LIST_ERROR}) {
      events.add("list " + std::to_string(list));
      const Texts names = files(list);
      const std::vector<int> counts = flags(list);
      for (size_t i = 0; i < names.size(); ++i) {
        events.add(names[i] + " " + std::to_string(counts[i]));
      }
    }
    for (const ErrorRecord& record : read_error_records(error_file())) {
      events.add("error " + record.message + " " + record.routine);
    }
    for (const std::string& output : {report(), summary()}) {
      if (file_exists(output)) events.add(read_file(output));
    }
  }
};

TEST_F(ReadAheadTest, AQuietRunHasTheSameResults) {
  add_files();
  ASSERT_TRUE(pattern("ab"));
  expect_same_events({});
  RunArguments checked;
  checked.binary = 1;
  checked.whole_words = 1;
  expect_same_events({.arguments = checked});
  ASSERT_TRUE(exclusion("line"));
  RunArguments inside;
  inside.display = 1;
  expect_same_events({.arguments = inside});
  expect_same_events({.operation = find_excluded});
}

TEST_F(ReadAheadTest, SeveralStringsHaveTheSameResults) {
  add_files();
  pair("ab", "");
  pair("line 1", "");
  expect_same_events({.operation = find_string});
}

TEST_F(ReadAheadTest, LinesOfAListHaveTheSameResults) {
  add_files();
  write_lines();
  pair("ab", "");
  pair("line 1", "");
  expect_same_events({.operation = find_string, .by_lines = true});
  ASSERT_TRUE(pattern("line 27"));
  RunArguments checked;
  checked.binary = 1;
  checked.report = report();
  expect_same_events({.arguments = checked, .by_lines = true});
}

TEST_F(ReadAheadTest, AReportHasTheSameBytes) {
  add_files();
  ASSERT_TRUE(pattern("line 27"));
  RunArguments reporting;
  reporting.report = report();
  expect_same_events({.arguments = reporting});
}

TEST_F(ReadAheadTest, FilesThatTheRunWritesAreLoadedAtTheirTurn) {
  write_file(report(), "loading file");
  write_file(error_file(), "loading file");
  add_files();
  add_path(report());
  add_path(error_file());
  for (int i = 0; i < 8; ++i) add_missing("late/" + std::to_string(i));
  add_path(report());
  add_path(error_file());
  ASSERT_TRUE(pattern("MATCH"));
  RunArguments reporting;
  reporting.report = report();
  expect_same_events({.arguments = reporting});
  ASSERT_TRUE(pattern("loading file"));
  expect_same_events({});
}

TEST_F(ReadAheadTest, ASummaryIsLoadedAtItsTurn) {
  write_file(summary(), "stale");
  add_files();
  add_path(summary());
  write_lines();
  ASSERT_TRUE(pattern("f0"));
  expect_same_events({.by_lines = true});
}

TEST_F(ReadAheadTest, UnselectedFilesStayOut) {
  add_files();
  for (uint32_t i = 0; i < kManyFiles; i += 3) {
    SetState(ZENFO_LIST_RUN_FILES, static_cast<int32_t>(i), 0);
  }
  ASSERT_TRUE(pattern("ab"));
  expect_same_events({});
}

#ifndef _WIN32

TEST_F(ReadAheadTest, AHostGetsTheSameCalls) {
  add_files();
  let_files_settle();
  ASSERT_TRUE(pattern("ab"));
  RunArguments checked;
  checked.binary = 1;
  const std::string events_of_one =
      events({.arguments = checked, .listens = true}, "1");
  EXPECT_GT(std::count(events_of_one.begin(), events_of_one.end(), '\n'),
            10 * kManyFiles);
  expect_same_events({.arguments = checked, .listens = true});
}

TEST_F(ReadAheadTest, AHostGetsTheSameCallsForLines) {
  add_files();
  let_files_settle();
  write_lines();
  ASSERT_TRUE(pattern("ab"));
  RunArguments asking;
  asking.ask = 1;
  asking.binary = 1;
  expect_same_events({.arguments = asking,
                      .listens = true,
                      .by_lines = true,
                      .answer = [](int number) { return number % 2; }});
}

TEST_F(ReadAheadTest, QuestionsAreTheSame) {
  add_files();
  let_files_settle();
  ASSERT_TRUE(pattern("ab"));
  RunArguments asking;
  asking.ask = 1;
  expect_same_events({.arguments = asking,
                      .listens = true,
                      .answer = [](int number) { return number % 2; }});
  expect_same_events(
      {.arguments = asking, .listens = true, .answer = [](int number) {
         return number == 70 ? 2 : 1;
       }});
}

// Stops a run at its polls.
class ReadAheadStops : public ReadAheadTest {
 protected:
  void stop_at_each_poll(Run run) {
    const std::string all = events(run, "1");
    int polls = 0;
    for (size_t at = 0; (at = all.find("poll\n", at)) != std::string::npos;
         ++at) {
      ++polls;
    }
    ASSERT_GT(polls, 60);
    const Sweep sweep(polls / kStops);
    for (int stop = sweep.first(); stop <= polls; stop += sweep.step()) {
      SCOPED_TRACE("stopped at poll " + std::to_string(stop));
      run.stop_at_poll = stop;
      expect_same_events(run);
    }
  }
  void add_files_to_stop_at() {
    for (int i = 0; i < 50; ++i) {
      add(std::to_string(i), text(i % 10 == 4 ? 120000 : 4000));
    }
    let_files_settle();
  }
};

TEST_F(ReadAheadStops, AStopAtAnyPollEndsAllRunsInTheSameWay) {
  add_files_to_stop_at();
  ASSERT_TRUE(pattern("b"));
  stop_at_each_poll({.listens = true});
}

TEST_F(ReadAheadStops, AStopInALineEndsAllRunsInTheSameWay) {
  add_files_to_stop_at();
  write_lines();
  ASSERT_TRUE(pattern("b"));
  stop_at_each_poll({.listens = true, .by_lines = true});
}

TEST_F(ReadAheadStops, AStopBetweenStringsEndsAllRunsInTheSameWay) {
  add_files_to_stop_at();
  pair("b", "");
  pair("no such text", "");
  stop_at_each_poll({.operation = find_string, .listens = true});
}

// Files that would have been read ahead by then.
TEST_F(ReadAheadTest, WhatACallbackChangesIsSeen) {
  Texts paths;
  for (int i = 0; i < 100; ++i) {
    paths.push_back(add(std::to_string(i), text(400)));
  }
  ASSERT_TRUE(pattern("ab"));
  const auto restore = [&] {
    for (const std::string& path : paths) {
      std::filesystem::remove(path);
      write_file(path, text(400));
    }
    let_files_settle();
  };
  Run run{.listens = true};
  run.at_file = [&](int number) {
    if (number < 10 || number > 60 || number % 10 != 0) return;
    const auto ahead = [&](int files) { return paths[number + files]; };
    const auto time = std::filesystem::last_write_time(ahead(2));
    write_file(ahead(2), std::string(text(400).size(), 'x'));
    std::filesystem::last_write_time(ahead(2), time);
    std::filesystem::remove(ahead(3));
    std::filesystem::rename(ahead(4), ahead(5));
    write_file(ahead(6), "ab");
    SetState(ZENFO_LIST_RUN_FILES, number + 7, 0);
    std::filesystem::permissions(ahead(8), std::filesystem::perms::none);
  };
  restore();
  const std::string expected = events(run, "1");
  for (const char* threads : {"2", "8"}) {
    restore();
    for (int32_t i = 0; i < 100; ++i) SetState(ZENFO_LIST_RUN_FILES, i, 1);
    EXPECT_EQ(events(run, threads), expected) << threads;
  }
}

// ---- Threads ---------------------------------------------------------------

int threads_now() {
  int count = 0;
  for ([[maybe_unused]] const auto& thread :
       std::filesystem::directory_iterator("/proc/self/task")) {
    ++count;
  }
  return count;
}

// The most threads at any status text of a run, beyond those before it.
int most_threads(const char* wanted, const LinePaths* lines = nullptr) {
  const EnvironmentVariable variable("ZENFO_THREADS", wanted);
  const int before = threads_now();
  int most = 0;
  {
    HostRecorder host;
    host.on_status_text = [&](const std::string&) {
      most = std::max(most, threads_now() - before);
    };
    EXPECT_GT(find_block({}, lines), 0);
  }
  // The system forgets a thread shortly after its end.
  for (int i = 0; i < 1000 && threads_now() > before; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_EQ(threads_now(), before) << "a thread was left";
  return most;
}

TEST_F(ReadAheadTest, ARunOfManyFilesHasThreadsOfItsOwn) {
  for (int i = 0; i < 40; ++i) add(std::to_string(i), "ab");
  ASSERT_TRUE(pattern("ab"));
  EXPECT_EQ(most_threads("1"), 0);
  EXPECT_EQ(most_threads("2"), 1);
  EXPECT_EQ(most_threads("3"), 2);
  EXPECT_EQ(most_threads("1000"), 7);
}

TEST_F(ReadAheadTest, ARunOverManyLinesHasThreadsOfItsOwn) {
  for (int i = 0; i < 40; ++i) add(std::to_string(i), "ab");
  write_lines();
  ASSERT_TRUE(pattern("ab"));
  const std::string list = list_of_lines();
  const std::string result = summary();
  const LinePaths paths{list.c_str(), result.c_str()};
  EXPECT_EQ(most_threads("1", &paths), 0);
  EXPECT_EQ(most_threads("3", &paths), 2);
}

TEST_F(ReadAheadTest, ARunOfFewFilesHasNone) {
  for (int i = 0; i < 30; ++i) add(std::to_string(i), "ab");
  ASSERT_TRUE(pattern("ab"));
  EXPECT_EQ(most_threads("8"), 0);
}

#endif

}  // namespace
}  // namespace zenfo::test
