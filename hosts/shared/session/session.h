// The library as this host uses it: started and ended with an object, its
// lists as questions with answers, its failures as exceptions.
//
// Files are listed in list 1. Paths that no search specification can say are
// entered through list 0: an entry is made there from any file there is, copied
// as often as needed, and the copies are renamed.
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

// Of the environment: how careful the library is when it changes files.
inline constexpr char kSafetyVariable[] = "ZENFO_SAFETY";

// The facts asked for, as the library takes them.
struct FactOptions {
  std::array<unsigned char, ZENFO_OPTION_COUNT> bytes{};

  void ask(int option) { bytes[static_cast<size_t>(option)] = 1; }
  bool any() const { return *this != FactOptions{}; }
  bool operator==(const FactOptions&) const = default;
};

using TextAccessor = int32_t(ZENFO_CALL*)(int32_t list, uint32_t index,
                                          char* buffer, uint32_t size);

// Byte n asks for the column that SaveSelection() has under n.
using SavedColumns = std::array<unsigned char, 10>;

struct SizeTotal {
  std::string short_text;  // "1.50 KB"
  std::string long_text;   // "1.50 KB (1536 Bytes)"
};

// Only one at a time, as the library has one state per process. All calls
// throw Stopped when the user stopped them, Failure when they failed.
class Session {
 public:
  // Tells `messages` and `progress` what there is to tell while it lives.
  Session(Messages& messages, ProgressView& progress);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  Messages& messages() { return messages_; }

  // Makes room for paths of this many bytes, to be called before they are
  // entered: the accessors take no size.
  void expect_paths_of(size_t bytes);

  // Appends the files of a search specification, then gathers facts for the
  // whole list. Answers the files appended.
  uint32_t find_files(const std::string& specification,
                      const FactOptions& facts);
  // Appends entries with exactly these paths, without looking at the files.
  void append_paths(const std::vector<std::string>& paths);
  // In place of those in the list; all are selected.
  void replace_files(const std::vector<std::string>& paths);
  // Gathers facts for the whole list.
  void gather_facts(const FactOptions& facts) { find_files("", facts); }

  // Replaces the files by those on the lines of a list file and gathers facts.
  // Files that are gone or lie in a recycle bin are incomplete.
  void load_list(const std::string& file, const FactOptions& facts);
  // Only the path changes; all facts but the names stay.
  void rename(uint32_t index, const std::string& path);
  // Moves the files to a list, with facts gathered anew.
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
  // None when the entry has no such text. Valid until the next call.
  std::optional<std::string_view> text(TextAccessor accessor, uint32_t index);
  std::string_view full_name(uint32_t index) {
    return full_name(ZENFO_LIST_RUN_FILES, index);
  }
  SizeTotal size_of_selection();

  // The rest of the list operations. A list of fewer than two files is sorted
  // as it is. An option is one of those that Sort() takes.
  void sort(uint32_t option, bool descending);
  // Sorts the files and selects, of those that are equal, all but the first.
  void select_duplicates(uint32_t option);
  // Compares the files with those of list 2: selects what both hold, or what
  // the other lacks.
  void compare(uint32_t option, bool common);
  // Whether it found no file that the other list lacks.
  bool all_common();
  // Write the paths, or columns, of the selected files. False when the file
  // cannot be written.
  bool save_list(const std::string& file);
  bool save_columns(const std::string& file, const std::string& separator,
                    const SavedColumns& columns);

  // What the host answers when a file's matches were found.
  enum class Answer : int32_t { kTake = 1, kStop = 2 };
  using Question = std::function<Answer()>;
  // Runs a search operation over the selected files and answers its number of
  // matches. Inside the question the matches of the file in hand are in list 5;
  // what it throws ends the run and is thrown on.
  uint32_t run(const std::function<int32_t()>& operation, Question question);
  // Runs an operation that changes the selected files and answers what it
  // answers, -1 and after a stop too. A stop is held back from the moment at
  // which a file is loaded until nothing of it is rewritten any more.
  int32_t run_changes(const std::function<int32_t()>& operation,
                      Question question);
  // During the next run_changes(): told when a file is loaded (false) and right
  // before one is rewritten (true).
  using Watcher = std::function<void(bool rewriting)>;
  void watch_changes(Watcher watcher) { watcher_ = std::move(watcher); }
  // Undo(), with a call before the first of the undo list's records is restored
  // and then before every hundredth part of them.
  using StepHandler = std::function<void(uint32_t record, uint32_t records)>;
  int32_t run_undo(const StepHandler& on_step);
  // While a stop is held back, walks through lists go to their end. A list that
  // is half read or half deselected would name the wrong files.
  void hold_stop(bool on) { hold_stop_ = on; }
  // Inside the question: the files that the run is done with.
  static uint32_t files_done();
  // Records of a list, 0 when that is not known.
  static uint32_t records_in(int32_t list);

  // Records of any list, and the path of a file in it, valid until the next
  // call.
  uint32_t count(int32_t list);
  std::string_view full_name(int32_t list, uint32_t index);
  bool selected(int32_t list, uint32_t index);
  void select(int32_t list, uint32_t index, bool on);
  bool complete(int32_t list, uint32_t index);
  // Brings the list back into the order in which its records were added.
  void remove_selected(int32_t list);

  // So many files will be counted, one after the other.
  void begin_counting(uint32_t files);
  // None when the file cannot be loaded.
  std::optional<TextCounts> count_words(const std::string& path);

  // What the library noted in its error file since the last time of asking.
  std::vector<ErrorRecord> new_errors();
  // Complains about what the library noted in its error file since the last
  // time of asking.
  void complain_about_errors();
  // While on, a stop ends the process at once; the library is not asked to look
  // for one, which takes it time. For work that writes nothing but to the
  // standard streams.
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
  // Ends an operation: erases the bar, throws when there is a reason to.
  void finish(int32_t result, const char* what);
  [[noreturn]] void fail(const char* what);

  static Session* current_;  // for the callbacks

  Messages& messages_;
  ProgressView& progress_;
  std::string error_file_;
  size_t error_bytes_read_ = 0;
  std::vector<char> buffer_;
  size_t seeds_ = 0;
  size_t copies_wanted_ = 0;  // answers "yes" left for the file question
  bool leaves_at_stop_ = false;
  bool changing_ = false;  // run_changes() is running
  bool hold_stop_ = false;
  bool rewritten_ = false;    // something of the file in hand
  uint32_t done_before_ = 0;  // files before that one
  uint32_t counted_ = 0;      // files, by count_words()
  Watcher watcher_;
  const StepHandler* on_step_ = nullptr;
  Question question_;
  std::exception_ptr thrown_;  // by the question
};

}  // namespace zenfo::host
