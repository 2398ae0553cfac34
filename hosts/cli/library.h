// The library as this host uses it: started and ended with an object, its
// lists as questions with answers, its failures as exceptions.
//
// Files are listed in list 1. Paths that no search specification can say are
// entered through list 0: an entry is made there from any file there is, copied
// as often as needed, and the copies are renamed.
//
// Tested by tests/cli/command_test.cpp, tests/cli/posix_library_test.cpp
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "progress.h"
#include "zenfofr130.h"

namespace zenfo::cli {

// The facts asked for, as the library takes them.
struct FactOptions {
  std::array<unsigned char, ZENFO_OPTION_COUNT> bytes{};

  void ask(int option) { bytes[static_cast<size_t>(option)] = 1; }
  bool any() const { return *this != FactOptions{}; }
  bool operator==(const FactOptions&) const = default;
};

using TextAccessor = int32_t(ZENFO_CALL*)(int32_t list, uint32_t index,
                                          char* buffer, uint32_t size);

struct SizeTotal {
  std::string short_text;  // "1.50 KB"
  std::string long_text;   // "1.50 KB (1536 Bytes)"
};

// Only one at a time, as the library has one state per process. All calls
// throw Stopped when the user stopped them, Failure when they failed.
class Session {
 public:
  Session();
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Makes room for paths of this many bytes, to be called before they are
  // entered: the accessors take no size.
  void expect_paths_of(size_t bytes);

  // Appends the files of a search specification, then gathers facts for the
  // whole list. Answers the files appended.
  uint32_t find_files(const std::string& specification,
                      const FactOptions& facts);
  // Appends entries with exactly these paths, without looking at the files.
  void append_paths(const std::vector<std::string>& paths);
  // Gathers facts for the whole list.
  void gather_facts(const FactOptions& facts) { find_files("", facts); }

  uint32_t count();
  bool selected(uint32_t index);
  void select(uint32_t index, bool on);
  void select_all(bool on);
  // False when a fact asked for is missing.
  bool complete(uint32_t index);
  // None when the entry has no such text. Valid until the next call.
  std::optional<std::string_view> text(TextAccessor accessor, uint32_t index);
  std::string_view full_name(uint32_t index);
  SizeTotal size_of_selection();

  struct TextSearch {
    std::string text;
    bool whole_word = false;
    bool case_sensitive = true;
    // Ends the process with kFound as soon as a file is known to hold it.
    bool first_only = false;
  };
  // Selects the files that hold the text. Answers their number. The library
  // cannot be stopped here, so a stop ends the process from inside.
  uint32_t find_in_files(const TextSearch& search);

  // None when the file cannot be loaded.
  std::optional<TextCounts> count_words(const std::string& path);

  // Complains about what the library noted in its error file since the last
  // time of asking.
  void complain_about_errors();

 private:
  static int32_t ZENFO_CALL on_report(ProgressRecord* record);
  static int32_t ZENFO_CALL on_interrupt();
  static int32_t ZENFO_CALL on_status(const ZenfoWideChar* text);
  static int32_t ZENFO_CALL on_file_question(const ZenfoWideChar* text);

  void set_callbacks(bool report_always);
  void leave_when_found(uint32_t position);
  [[noreturn]] void leave(int status);
  uint32_t find(int32_t list, const std::string& specification,
                const FactOptions& facts);
  void make_seed(const std::vector<std::string>& paths);
  void grow_seeds(size_t count);
  void copy_seeds(int32_t target, size_t count);
  // Ends an operation: erases the bar, throws when there is a reason to.
  void finish(int32_t result, const char* what);
  [[noreturn]] void fail(const char* what);

  static Session* current_;  // for the callbacks

  Progress progress_;
  std::string error_file_;
  size_t error_bytes_read_ = 0;
  std::vector<char> buffer_;
  size_t seeds_ = 0;
  size_t copies_wanted_ = 0;  // answers "yes" left for the file question
  bool leave_when_stopped_ = false;
  bool leave_when_found_ = false;
  uint32_t states_seen_ = 0;  // entries looked at for leave_when_found_
};

}  // namespace zenfo::cli
