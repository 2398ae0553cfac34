// The per-file procedure that all runs share: searches, replacements and
// changes of case.
//
// A run takes its files from a source, loads and checks each, searches it once
// (for a compiled pattern) or several times (for the find strings of pairs),
// asks the user, and passes the accepted matches to the operation, which
// counts, reports or rewrites. Runs differ in their parts: FileSource (where
// files come from), Searches (what is searched for), RunResults (where files
// go), FileOperation (what is done with matches).
//
// However a run ends, its cleanup empties the match lists and resets the
// display before the loaded text is released.
//
// Tested by tests/contract/search_test.cpp,
// tests/contract/search_strings_test.cpp,
// tests/contract/search_output_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "files/file_content.h"
#include "frame/rows.h"
#include "library/library.h"
#include "pattern/context.h"
#include "pattern/matcher.h"
#include "search/file_source.h"
#include "search/phases.h"
#include "search/read_ahead.h"
#include "search/run_results.h"
#include "search/searches.h"

namespace zenfo {

// The options that a host gives a run.
struct RunOptions {
  const ExportRow& row;   // names the operation in the error file
  int32_t case_flag = 0;  // non-zero: exact bytes
  int32_t whole_words = 0;
  int32_t binary_check = 0;
  int32_t ask_user = 0;
  int32_t inside_areas = 0;  // non-zero: matches are inside the excluded areas
  int32_t safe_store = 0;    // of runs that rewrite: with safe copies
};

// The two paths of a run over the lines of a list file.
struct LineFiles {
  const char* list = nullptr;
  const char* summary = nullptr;
};

// What kind of run it is.
struct RunKind {
  bool rewrites = false;       // it may change the files it loads
  bool refuses_links = false;  // to load them
  bool takes_areas = false;    // its matches are those of the exclusion pattern
};

// What a run does after a search of a file.
enum class After {
  kNextSearch,
  kNextFile,
  kStop,  // a normal end: what was done so far counts
  kFail,
};

// How a run ended.
enum class RunEnd {
  kNormal,
  kInterrupted,  // it returns 0
  kFailed,       // it returns -1
};

class FileRun;

// What a run does with the matches that it finds.
class FileOperation {
 public:
  // What the run has to know about the operation.
  struct Traits {
    int32_t question_number;       // passed with the option question
    bool wants_matches;            // not only their number
    const char* report = nullptr;  // a file that the operation writes
  };

  virtual ~FileOperation() = default;
  // Opens the operation's own files, after the lists are emptied and the run's
  // files opened.
  virtual Traits begin() = 0;
  // Called after a search, before the user is asked. False ends the run.
  virtual bool search_done(FileRun&) { return true; }
  // Gets the matches of the current file that the user accepted.
  virtual After take(FileRun& run, FileInHand& file) = 0;
  // Called after the last search of a file if any was accepted. False ends the
  // run.
  virtual bool end_file() { return true; }
  // Closes the operation's own files; false when writing failed.
  virtual bool finish() { return true; }
};

class FileRun final {
 public:
  FileRun(Library& library, const RunOptions& options, const RunKind& kind,
          Searches& searches, FileOperation& operation);
  ~FileRun();
  FileRun(const FileRun&) = delete;
  FileRun& operator=(const FileRun&) = delete;

  // Runs over the selected entries of list 1, with results in lists 4, 6 and 7.
  // Returns the operation's result.
  int32_t over_list();
  // Runs over the lines of a list file, with results in a summary file.
  int32_t over_lines(const LineFiles& files, SummaryFile& summary);

  // The rest is for the operation.

  const FileContent& content() const { return content_; }
  // The context whose matches count.
  PatternContext& context();
  FindOptions find_options() const;
  // Number of selected matches of the current file.
  uint32_t count_selected();
  // Adds matches to the run's answer.
  void add(int64_t matches) { total_ += matches; }

  RunResults& results() { return *results_; }
  // Puts the file into the results for accepted files.
  void record(FileInHand& file);
  // Whether there is at most one search for each file.
  bool searches_once() const { return searches_.single(); }
  // Paths of the next files, at most this many.
  std::vector<SharedText> upcoming(size_t most) {
    return source_->upcoming(most);
  }

  void announce(Phase phase, const FileInHand& file) const;
  void log(const char* message, const char* context);

 private:
  // The user's answers to the option question.
  enum class Answer { kSkip = 0, kTake = 1, kStop = 2, kTakeAll = 3, kInvalid };
  // Whether a file has text to search.
  enum class Loaded { kYes, kNo, kInterrupted };

  int32_t run(FileSource& source, RunResults& results);
  void note_outputs();
  RunEnd go_over_files(FileSource& source);
  std::optional<RunEnd> handle(FileInHand& file);
  Loaded load(FileInHand& file);
  Loaded load_again(FileInHand& file);
  Loaded loaded_to_its_end() const;
  int32_t load_content(const FileInHand& file);
  bool has_text(FileInHand& file);
  bool passes_check(FileInHand& file);
  std::optional<RunEnd> search(FileInHand& file);
  After search_once(FileInHand& file);
  bool searched_unseen() const;
  bool nobody_looks() const;
  void count_ahead();
  int32_t find();
  int32_t find_matches();
  int32_t find_areas();
  bool keep_matches();
  Answer ask(const FileInHand& file);
  void reject_unread(FileInHand& file);
  void log_unopened(const FileInHand& file);

  void empty_lists();
  void empty_matches();

  Library& library_;
  const RunOptions options_;
  const RunKind kind_;
  Searches& searches_;
  FileOperation& operation_;
  FileOperation::Traits traits_{};
  RunResults* results_ = nullptr;
  FileSource* source_ = nullptr;
  FileContent content_;
  ReadAhead ahead_{content_};
  int64_t total_ = 0;         // of selected, or rewritten, matches
  uint32_t counted_ = 0;      // matches of the last search
  bool matches_kept_ = true;  // by it
  bool ask_ = false;          // until the user answers for all
  bool areas_found_ = false;  // the exclusion pattern found areas
};

// Whether two paths, if there are two, would open one file, perhaps a new one.
bool lead_to_one_file(const char* a, const char* b);

}  // namespace zenfo
