// The library as hosts use it: an object starts and ends it, its lists become
// queries, and its failures become exceptions.
//
// Files are listed in list 1. Paths that cannot be written in a search
// specification are entered through list 0: it gets an entry for any existing
// file, which is copied as often as needed, and the copies are renamed.
//
// Tested by tests/cli/command_test.cpp,
// tests/hosts/shared/posix_session_test.cpp
#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shared/frame/messages.h"
#include "shared/frame/progress_view.h"
#include "shared/text/error_records.h"
#include "zenfofr130.h"

namespace zenfo::host {

// The environment variable that says how carefully the library changes files.
inline constexpr char kSafetyVariable[] = "ZENFO_SAFETY";

// The facts to gather, in the form that the library takes.
struct FactOptions {
  std::array<unsigned char, ZENFO_OPTION_COUNT> bytes{};

  void ask(int option) { bytes[static_cast<size_t>(option)] = 1; }
  bool any() const { return *this != FactOptions{}; }
  bool operator==(const FactOptions&) const = default;
};

using TextAccessor = int32_t(ZENFO_CALL*)(int32_t list, uint32_t index,
                                          char* buffer, uint32_t size);

// Byte n selects column n of SaveSelection().
using SavedColumns = std::array<unsigned char, 10>;

struct SizeTotal {
  std::string short_text;  // "1.50 KB"
  std::string long_text;   // "1.50 KB (1536 Bytes)"
};

// Whether a search specification can name the path: ";" and "|" end one there.
bool is_sayable(std::string_view path);

// Only one session can exist at a time, because the library has one state per
// process. All calls throw Stopped when the user stopped them and Failure when
// they failed.
class Session {
 public:
  // Reports to `messages` and `progress` as long as the session lives.
  Session(Messages& messages, ProgressView& progress);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  Messages& messages() { return messages_; }

  // Makes room for paths of this length. Call it before entering them, because
  // the accessors take no buffer size.
  void expect_paths_of(size_t bytes);

  // Appends the files of a search specification, then gathers facts for the
  // whole list. Returns the number of files appended.
  uint32_t find_files(const std::string& specification,
                      const FactOptions& facts);
  // Appends entries with exactly these paths, without looking at the files.
  void append_paths(const std::vector<std::string>& paths);
  // Replaces the files in the list; all are selected.
  void replace_files(const std::vector<std::string>& paths);
  // Gathers facts for the whole list.
  void gather_facts(const FactOptions& facts) { find_files("", facts); }

  // Replaces the files by those that a list file names and gathers facts. Files
  // that do not exist or are in a recycle bin are incomplete.
  void load_list(const std::string& file, const FactOptions& facts);
  // Changes only the path; all facts but the names stay.
  void rename(uint32_t index, const std::string& path);
  // Moves the files to another list and gathers their facts again.
  void move_files_to(int32_t list, const FactOptions& facts);

  uint32_t count() { return count(ZENFO_LIST_RUN_FILES); }
  bool selected(uint32_t index) {
    return selected(ZENFO_LIST_RUN_FILES, index);
  }
  void select(uint32_t index, bool on) {
    select(ZENFO_LIST_RUN_FILES, index, on);
  }
  void select_all(bool on);
  // False when a fact asked for is missing.
  bool complete(uint32_t index) {
    return complete(ZENFO_LIST_RUN_FILES, index);
  }
  bool trashed(uint32_t index);
  // No value when the entry has no such text. Valid until the next call.
  std::optional<std::string_view> text(TextAccessor accessor, uint32_t index);
  std::string_view full_name(uint32_t index) {
    return full_name(ZENFO_LIST_RUN_FILES, index);
  }
  SizeTotal size_of_selection();

  // The rest of the list operations. A list of fewer than two files needs no
  // sorting. An option is one that Sort() takes.
  void sort(uint32_t option, bool descending);
  // Sorts the files and selects all but the first of those that are equal.
  void select_duplicates(uint32_t option);
  // Compares the files with those of list 2: selects what both contain, or what
  // the other list lacks.
  void compare(uint32_t option, bool common);
  // Whether list 2 contained every file.
  bool all_common();
  // Write the paths, or columns, of the selected files. False when the file
  // cannot be written.
  bool save_list(const std::string& file);
  bool save_columns(const std::string& file, const std::string& separator,
                    const SavedColumns& columns);

  // The host's answer when the matches of a file were found.
  enum class Answer : int32_t { kTake = 1, kStop = 2 };
  using Question = std::function<Answer()>;
  // Runs a search operation over the selected files and returns its number of
  // matches. Inside the question the matches of the file in hand are in list 5;
  // an exception from the question ends the run and is thrown again.
  uint32_t run(const std::function<int32_t()>& operation, Question question);
  // Runs an operation that changes the selected files and returns its result,
  // even if it is -1 or the user stopped. A stop is held back from the moment a
  // file is loaded until it is no longer being rewritten.
  int32_t run_changes(const std::function<int32_t()>& operation,
                      Question question);
  // Called during the next run_changes() when a file is loaded (false) and
  // right before one is rewritten (true).
  using Watcher = std::function<void(bool rewriting)>;
  void watch_changes(Watcher watcher) { watcher_ = std::move(watcher); }
  // Undo(), with a call before the first record of the undo list is restored
  // and then before every hundredth part of them.
  using StepHandler = std::function<void(uint32_t record, uint32_t records)>;
  int32_t run_undo(const StepHandler& on_step);
  // While a stop is held back, walks through lists run to their end. A half
  // read or half deselected list would name the wrong files.
  void hold_stop(bool on) { hold_stop_ = on; }
  // The number of files that the run has finished. To be called inside the
  // question.
  static uint32_t files_done();
  // The number of records in a list, 0 when it is unknown.
  static uint32_t records_in(int32_t list);

  // The number of records in any list, and the path of a file in it, which is
  // valid until the next call.
  uint32_t count(int32_t list);
  std::string_view full_name(int32_t list, uint32_t index);
  bool selected(int32_t list, uint32_t index);
  void select(int32_t list, uint32_t index, bool on);
  bool complete(int32_t list, uint32_t index);
  // Also restores the order in which the records were added.
  void remove_selected(int32_t list);

  // Announces the number of files that will be counted one after the other.
  void begin_counting(uint32_t files);
  // No value when the file cannot be loaded.
  std::optional<TextCounts> count_words(const std::string& path);

  // The records that the library added to its error file since the last call of
  // either function.
  std::vector<ErrorRecord> new_errors();
  // Complains about those records.
  void complain_about_errors();
  // While on, a stop ends the process at once, and the library is not asked to
  // poll for one, which saves time. For work that writes only to the standard
  // streams.
  void leave_at_stop(bool on);
  // Ends the process from inside an operation.
  [[noreturn]] void leave(int status);

 private:
  static int32_t ZENFO_CALL on_report(ProgressRecord* record);
  static int32_t ZENFO_CALL on_interrupt();
  static int32_t ZENFO_CALL on_status(const ZenfoWideChar* text);
  static int32_t ZENFO_CALL on_file_question(const ZenfoWideChar* text);
  static int32_t ZENFO_CALL on_option_question(const ZenfoWideChar* text,
                                               int32_t number);

  void set_callbacks();
  void note_phase(const ZenfoWideChar* status);
  bool may_stop() const;
  int32_t ask_while(const std::function<int32_t()>& operation,
                    Question question);
  uint32_t find(int32_t list, const std::string& specification,
                const FactOptions& facts);
  void make_seed(const std::vector<std::string>& paths);
  void grow_seeds(size_t count);
  void copy(int32_t source, int32_t target, size_t count,
            const FactOptions& facts);
  // Ends an operation: erases the progress bar, throws on a stop or a failure.
  void finish(int32_t result, const char* what);
  [[noreturn]] void fail(const char* what);

  static Session* current_;  // for the callbacks

  Messages& messages_;
  ProgressView& progress_;
  std::string error_file_;
  size_t error_bytes_read_ = 0;
  std::vector<char> buffer_;
  size_t seeds_ = 0;
  size_t copies_wanted_ = 0;  // entries to accept at the file question
  bool leaves_at_stop_ = false;
  bool changing_ = false;  // run_changes() is running
  bool hold_stop_ = false;
  bool rewritten_ = false;    // part of the file in hand
  uint32_t done_before_ = 0;  // files finished before that one
  uint32_t counted_ = 0;      // files counted by count_words()
  Watcher watcher_;
  const StepHandler* on_step_ = nullptr;
  Question question_;
  std::exception_ptr thrown_;  // by the question
};

}  // namespace zenfo::host
