// Many plain strings are looked for together. Here their runs are compared with
// runs that take the same strings as patterns, which are searched for one by
// one: all that the host can see must be equal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support/matchers.h"
#include "support/search_fixture.h"

namespace zenfo::test {
namespace {

// What a host does and sees in a run.
enum class Listening { kNothing, kQuestions, kEverything };

struct ManyCase {
  std::vector<std::string> strings;
  std::vector<int32_t> states;
  std::vector<std::string> files;
  std::string areas;
  Listening listening = Listening::kNothing;
  bool writes_report = false;
  bool changes_pairs = false;
  int32_t case_flag = 1;
  int32_t whole_words = 0;
  int32_t inside = 0;
  int stop_at_poll = 0;  // 0: never
  uint64_t seed = 0;     // of the answers
};

class ManyStringsTest : public SearchTest {
 protected:
  using Log = std::vector<std::string>;

  static size_t below(std::mt19937_64& random, size_t bound) {
    return random() % bound;
  }
  static std::string text(std::mt19937_64& random, std::string_view alphabet,
                          size_t length) {
    std::string text;
    while (text.size() < length) {
      text += alphabet[below(random, alphabet.size())];
    }
    return text;
  }

  static ManyCase random_case(std::mt19937_64& random) {
    constexpr std::string_view kAlphabets[] = {"a", "ab", "aAb ", "abcdefgh "};
    const std::string_view alphabet = kAlphabets[below(random, 4)];
    ManyCase one;
    const size_t strings = 10 + below(random, 40);
    for (size_t i = 0; i < strings; ++i) {
      one.strings.push_back(text(random, alphabet, 1 + below(random, 9)));
      one.states.push_back(below(random, 8) != 0);
    }
    if (below(random, 20) == 0) one.strings[below(random, strings)] = "";
    for (int i = 0; i < 3; ++i) {
      one.files.push_back(text(random, alphabet, below(random, 300)));
    }
    if (below(random, 3) == 0) one.areas = text(random, alphabet, 2);
    one.listening = static_cast<Listening>(below(random, 3));
    one.writes_report = below(random, 2) == 0;
    one.changes_pairs = below(random, 4) == 0;
    one.case_flag = below(random, 2) == 0;
    one.whole_words = below(random, 3) == 0;
    one.inside = below(random, 2) == 0;
    one.stop_at_poll = below(random, 3) == 0 ? 1 + below(random, 30) : 0;
    one.seed = random();
    return one;
  }

  // Lists and files as before every run, and the poll counters at 0.
  void prepare(const ManyCase& one, const std::vector<std::string>& paths) {
    ASSERT_EQ(Clear(ZENFO_LIST_PAIRS), 1);
    ASSERT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
    add_path(many_polls_);
    HostRecorder host;
    ASSERT_TRUE(exclusion("\x01") && pattern("x"));
    reset_counters(host);
    ASSERT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
    for (const std::string& path : paths) add_path(path);
    for (size_t i = 0; i < one.strings.size(); ++i) {
      pair(one.strings[i].c_str(), "", one.states[i]);
    }
    if (!one.areas.empty()) {
      ASSERT_TRUE(exclusion(one.areas.c_str()));
    }
  }

  // The counters of polls and reports live as long as the process. Each is 0
  // after the call that it leads to.
  void reset_counters(HostRecorder& host) {
    SetState(ZENFO_LIST_RUN_FILES, -1, 0);
    while (host.reports.empty() || host.reports.back().total != 0) {
      RemoveSelection(ZENFO_LIST_RUN_FILES);
    }
    SetState(ZENFO_LIST_RUN_FILES, -1, 1);
    stop_in("Now parsing", host);
    stop_in("Now reporting", host);
    host.interrupt = [] { return 0; };
    const int polls = host.interrupt_polls;
    while (host.interrupt_polls == polls) SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  }

  void stop_in(std::string_view phase, HostRecorder& host) {
    host.statuses.clear();
    host.interrupt = [&host, phase] {
      return !host.statuses.empty() && host.statuses.back().starts_with(phase);
    };
    ASSERT_EQ(find_block({.report = report()}), -1) << phase;
  }

  static std::string matches() {
    std::string all;
    for (const int32_t list : {ZENFO_LIST_MATCHES, ZENFO_LIST_EXCLUDED}) {
      for (int32_t i = 0; i < GetCount(list, -1); ++i) {
        char offset[32];
        char length[32];
        const auto index = static_cast<uint32_t>(i);
        GetMatchOffset(list, index, offset, sizeof offset);
        GetMatchLength(list, index, length, sizeof length);
        all += std::string(" ") + offset + "+" + length;
      }
      all += ";";
    }
    return all;
  }

  // Changes pairs as a host may from inside a question.
  static void change_pairs(std::mt19937_64& random, const ManyCase& one) {
    const auto index = static_cast<uint32_t>(below(random, one.strings.size()));
    if (below(random, 2) == 0) {
      SetState(ZENFO_LIST_PAIRS, static_cast<int32_t>(index), -1);
    } else {
      UpdateStringPair(index, one.strings.front().c_str(), "");
    }
  }

  void listen(HostRecorder& host, Log& log, const ManyCase& one,
              std::mt19937_64& random) {
    host.answer_option = [&](const HostRecorder::Question& question) {
      log.push_back("? " + question.text + " " +
                    std::to_string(question.number) + matches());
      if (one.changes_pairs && below(random, 4) == 0) {
        change_pairs(random, one);
      }
      const size_t answer = below(random, 40);
      if (answer < 2) return answer == 0 ? 2 : 3;
      return answer % 3 == 0 ? 0 : 1;
    };
    if (one.listening == Listening::kQuestions) {
      CallbackTable table{};
      table.option_question = [](const ZenfoWideChar* text, int32_t number)
                                  ZENFO_CALL -> int32_t {
        return current_host->answer_option(
            {HostRecorder::narrow(text), number});
      };
      current_host = &host;
      SetCallBacks(&table);
    }
    host.on_status_text = [&](const std::string& status) {
      log.push_back("s " + status);
    };
    host.on_progress = [&](const ProgressRecord& progress) {
      log.push_back("r " + std::to_string(progress.position) + "/" +
                    std::to_string(progress.total));
    };
    host.interrupt = [&log, stop = one.stop_at_poll]() mutable {
      log.push_back("i");
      return --stop == 0 ? 1 : 0;
    };
  }

  Log run(const ManyCase& one, const std::vector<std::string>& paths,
          int32_t is_pattern) {
    Log log;
    prepare(one, paths);
    if (HasFatalFailure()) return log;
    std::mt19937_64 random(one.seed);
    RunArguments arguments{.case_flag = one.case_flag,
                           .whole_words = one.whole_words,
                           .ask = one.listening != Listening::kNothing,
                           .display = one.inside,
                           .report = one.writes_report ? report() : "",
                           .is_pattern = is_pattern};
    int32_t answer = 0;
    if (one.listening == Listening::kNothing) {
      answer = find_string(arguments);
    } else {
      HostRecorder host;
      listen(host, log, one, random);
      answer = find_string(arguments);
    }
    log.push_back("= " + std::to_string(answer));
    for (const int32_t list :
         {ZENFO_LIST_RESULT, ZENFO_LIST_NO_MATCH, ZENFO_LIST_ERROR}) {
      for (const auto& file : files(list)) log.push_back("f " + file);
      for (const auto flag : flags(list)) {
        log.push_back("n " + std::to_string(flag));
      }
    }
    if (one.writes_report) log.push_back(read_file(report()));
    // The last pattern stays compiled.
    log.push_back("then " + std::to_string(find_block({})));
    return log;
  }

  static inline HostRecorder* current_host = nullptr;

 private:
  const std::string many_polls_ = work().file("polls", std::string(500, 'x'));
};

TEST_F(ManyStringsTest, TogetherOrOneByOneIsTheSameToTheHost) {
  std::mt19937_64 random(74);
  for (int round = 0; round < 120; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    const ManyCase one = random_case(random);
    std::vector<std::string> paths;
    for (size_t i = 0; i < one.files.size(); ++i) {
      paths.push_back(folder.file(std::to_string(i), one.files[i]));
    }
    const Log together = run(one, paths, 0);
    const Log one_by_one = run(one, paths, 1);
    ASSERT_FALSE(HasFatalFailure());
    const auto [a, b] = std::mismatch(together.begin(), together.end(),
                                      one_by_one.begin(), one_by_one.end());
    ASSERT_TRUE(a == together.end() && b == one_by_one.end())
        << "event " << a - together.begin() << ": together \""
        << (a != together.end() ? *a : "no more") << "\", one by one \""
        << (b != one_by_one.end() ? *b : "no more") << '"';
  }
}

TEST_F(ManyStringsTest, AStringChangedInAQuestionIsSeen) {
  for (int i = 0; i < 30; ++i) {
    pair(("no" + std::to_string(i) + ";").c_str(), "");
  }
  ASSERT_EQ(UpdateStringPair(3, "a", ""), 1);
  add("1", "abc");
  HostRecorder host;  // removes the callbacks
  CallbackTable table{};
  table.option_question = [](const ZenfoWideChar*, int32_t)
                              ZENFO_CALL -> int32_t {
    UpdateStringPair(20, "bc", "");
    return 1;
  };
  SetCallBacks(&table);
  EXPECT_EQ(find_string({.ask = 1}), 2);
}

}  // namespace
}  // namespace zenfo::test
