// A test of runs over files: files to run over, the arguments of every run by
// name, and the results.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/host_recorder.h"
#include "support/list_test.h"
#include "zenfofr130.h"

namespace zenfo::test {

// The arguments of all runs, in no particular order.
struct RunArguments {
  int32_t case_flag = 1;
  int32_t whole_words = 0;
  int32_t binary = 0;
  int32_t ask = 0;
  int32_t display = 0;
  std::string report = "";
  int32_t is_pattern = 0;
  int32_t convert = 0;
  const char* text = "X";
  int32_t safe = 0;
  int32_t mode = 0;
  int32_t use_list = 0;
  int32_t use_pattern = 0;
  int32_t index = 0;
  int32_t expand = 0;
  const char* placeholder = "#";
  int32_t first = 1;
  int32_t step = 1;
  int32_t run_on = 0;
  int32_t upper = 1;
};

// The two files of an _f run; null for a run over selected files.
struct LinePaths {
  const char* list = nullptr;
  const char* summary = nullptr;
};

using Operation = std::function<int32_t(const RunArguments&, const LinePaths*)>;

inline int32_t find_block(const RunArguments& a, const LinePaths* f = nullptr) {
  const char* report = a.report.c_str();
  return f == nullptr
             ? FindBlock(a.case_flag, a.whole_words, a.binary, report, a.ask,
                         a.display)
             : FindBlock_f(a.case_flag, a.whole_words, a.binary, report, a.ask,
                           f->list, f->summary, a.display);
}

inline int32_t find_string(const RunArguments& a,
                           const LinePaths* f = nullptr) {
  const char* report = a.report.c_str();
  return f == nullptr ? FindString(a.case_flag, a.whole_words, a.binary, report,
                                   a.is_pattern, a.convert, a.ask, a.display)
                      : FindString_f(a.case_flag, a.whole_words, a.binary,
                                     report, a.is_pattern, a.convert, a.ask,
                                     f->list, f->summary, a.display);
}

inline int32_t find_excluded(const RunArguments& a,
                             const LinePaths* = nullptr) {
  return FindExcludedArea(a.case_flag, a.whole_words, a.binary,
                          a.report.c_str());
}

inline int32_t replace_block(const RunArguments& a,
                             const LinePaths* f = nullptr) {
  return f == nullptr
             ? ReplaceBlock(a.text, a.case_flag, a.whole_words, a.binary, a.ask,
                            a.safe, a.mode, a.use_list, a.use_pattern, a.index,
                            a.display, a.expand)
             : ReplaceBlock_f(a.text, a.case_flag, a.whole_words, a.binary,
                              a.ask, a.safe, f->list, f->summary, a.mode,
                              a.use_list, a.use_pattern, a.index, a.display,
                              a.expand);
}

inline int32_t replace_block_nbr(const RunArguments& a,
                                 const LinePaths* f = nullptr) {
  return f == nullptr
             ? ReplaceBlockNbr(a.text, a.case_flag, a.whole_words, a.binary,
                               a.ask, a.safe, a.mode, a.use_list, a.use_pattern,
                               a.index, a.display, a.expand, a.placeholder,
                               a.first, a.step, a.run_on)
             : ReplaceBlockNbr_f(a.text, a.case_flag, a.whole_words, a.binary,
                                 a.ask, a.safe, f->list, f->summary, a.mode,
                                 a.use_list, a.use_pattern, a.index, a.display,
                                 a.expand, a.placeholder, a.first, a.step,
                                 a.run_on);
}

inline int32_t replace_string(const RunArguments& a,
                              const LinePaths* f = nullptr) {
  return f == nullptr
             ? ReplaceString(a.case_flag, a.whole_words, a.binary, a.is_pattern,
                             a.convert, a.ask, a.safe, a.display)
             : ReplaceString_f(a.case_flag, a.whole_words, a.binary,
                               a.is_pattern, a.convert, a.ask, a.safe, f->list,
                               f->summary, a.display);
}

inline int32_t replace_string_nbr(const RunArguments& a,
                                  const LinePaths* f = nullptr) {
  return f == nullptr
             ? ReplaceStringNbr(a.case_flag, a.whole_words, a.binary,
                                a.is_pattern, a.convert, a.ask, a.safe,
                                a.display, a.placeholder, a.first, a.step,
                                a.run_on)
             : ReplaceStringNbr_f(a.case_flag, a.whole_words, a.binary,
                                  a.is_pattern, a.convert, a.ask, a.safe,
                                  f->list, f->summary, a.display, a.placeholder,
                                  a.first, a.step, a.run_on);
}

inline int32_t change_case(const RunArguments& a,
                           const LinePaths* f = nullptr) {
  return f == nullptr
             ? change_case_i(a.case_flag, a.whole_words, a.binary, a.ask,
                             a.safe, a.upper, a.display)
             : change_case_f(a.case_flag, a.whole_words, a.binary, a.ask,
                             a.safe, f->list, f->summary, a.upper, a.display);
}

inline bool pattern(const char* main, int32_t is_pattern = 0) {
  return SetPattern(nullptr, main, nullptr, 0, is_pattern, 0, 0, 0, 0) == 1;
}
inline bool exclusion(const char* main, int32_t is_pattern = 0) {
  return SetExclusionPattern(nullptr, main, nullptr, 0, is_pattern, 0, 0, 0,
                             0) == 1;
}
inline bool replace_pattern(const char* main, int32_t is_pattern = 0) {
  return set_replace_pattern(nullptr, main, nullptr, 0, is_pattern, 0, 0, 0,
                             0) == 1;
}

class RunTest : public ListTest {
 protected:
  // Adds a file of the test's folder to the files of runs, selected.
  std::string add(std::string_view name, std::string_view bytes) {
    const std::string path = folder.file(name, bytes);
    add_path(path);
    return path;
  }
  // Adds an existing file to them (again).
  static void add_path(const std::string& path) {
    const unsigned char options[ZENFO_OPTION_COUNT] = {};
    const int32_t index = GetCount(ZENFO_LIST_RUN_FILES, -1);
    ASSERT_EQ(
        FindFiles(ZENFO_LIST_RUN_FILES, ("0" + path).c_str(), options, ""), 1)
        << path;
    ASSERT_EQ(SetState(ZENFO_LIST_RUN_FILES, index, 1), 1);
  }
  // Adds an entry whose file no longer exists.
  std::string add_missing(std::string_view name) {
    const std::string path = add(name, "x");
    std::filesystem::remove(path);
    return path;
  }

  static void pair(const char* find, const char* replace,
                   int32_t selected = 1) {
    const int32_t pairs = AddStringPair(find, replace);
    ASSERT_GE(pairs, 1);
    SetState(ZENFO_LIST_PAIRS, pairs - 1, selected);
  }
  void values(const std::vector<std::string>& texts) {
    const int32_t count = static_cast<int32_t>(texts.size());
    ASSERT_EQ(load_replace_list(work_.file("values", lines(texts)).c_str()),
              count);
  }

  // Runs over the lines of a list file made of these bytes.
  int32_t over_lines(const Operation& run, const RunArguments& arguments,
                     const std::string& list_bytes) {
    const std::string list = work_.file("list", list_bytes);
    const LinePaths paths{list.c_str(), summary_.c_str()};
    return run(arguments, &paths);
  }
  std::string summary() const { return read_file(summary_); }

  // Uses a separate store with its undo list file.
  void use_store() { ASSERT_EQ(SetUndoFile(undo_file().c_str()), 1); }
  std::string undo_file() const { return work_.path("store/undo.txt"); }
  std::string in_store(std::string_view name) const {
    return work_.path("store/" + std::string(name));
  }

  static Texts files(int32_t list) { return texts(GetFullName, list); }
  static Texts found() { return files(ZENFO_LIST_RESULT); }
  static Texts not_found() { return files(ZENFO_LIST_NO_MATCH); }
  static Texts rejected() { return files(ZENFO_LIST_ERROR); }
  static Texts originals() { return texts(GetOrigFile, ZENFO_LIST_UNDO); }
  static Texts copies() { return texts(GetSafeFile, ZENFO_LIST_UNDO); }
  static void expect_no_matches() {
    EXPECT_EQ(GetCount(ZENFO_LIST_MATCHES, -1), 0);
    EXPECT_EQ(GetCount(ZENFO_LIST_EXCLUDED, -1), 0);
    EXPECT_EQ(GetCount(ZENFO_LIST_REPLACE_MATCHES, -1), 0);
  }
  static void expect_no_results() {
    EXPECT_EQ(GetCount(ZENFO_LIST_RESULT, -1), 0);
    EXPECT_EQ(GetCount(ZENFO_LIST_NO_MATCH, -1), 0);
    EXPECT_EQ(GetCount(ZENFO_LIST_ERROR, -1), 0);
  }

  // The names and bytes of all files in a folder and its subfolders.
  static std::map<std::string, std::string> contents(const std::string& path) {
    std::map<std::string, std::string> all;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(path)) {
      if (!entry.is_regular_file()) continue;
      const std::string name = entry.path().string();
      all[name.substr(path.size() + 1)] = read_file(name);
    }
    return all;
  }

  // Calls `attempt` with a host that interrupts at its first, second, ... poll
  // until a run ends before that poll; returns how many polls interrupted.
  static int at_every_poll(const std::function<void(HostRecorder&)>& attempt) {
    for (int stop = 1;; ++stop) {
      SCOPED_TRACE("interrupted at poll " + std::to_string(stop));
      HostRecorder host;
      int polls = 0;
      host.interrupt = [&] { return ++polls == stop ? 1 : 0; };
      attempt(host);
      if (polls < stop || testing::Test::HasFatalFailure()) return stop - 1;
    }
  }

  // Interrupts once, at the first poll of the first phase of this name.
  static void stop_once(HostRecorder& host, const std::string& phase) {
    host.interrupt = [&host, phase, stopped = false]() mutable {
      if (stopped || host.statuses.empty() ||
          !host.statuses.back().starts_with(phase)) {
        return 0;
      }
      stopped = true;
      return 1;
    };
  }

  const std::string& summary_path() const { return summary_; }
  const TempFolder& work() const { return work_; }

 private:
  TempFolder work_;
  const std::string summary_ = work_.path("summary");
};

// A list file of these paths.
inline std::string line_list(const Texts& paths) {
  std::string all;
  for (const std::string& path : paths) all += path + "\r\n";
  return all;
}

}  // namespace zenfo::test
