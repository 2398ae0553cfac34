// The per-file procedure that all runs share: searches, replacements and
// changes of case.
//
// A run takes its files from a source, loads and checks each, searches it once
// (for a compiled pattern) or several times (for the find strings of pairs),
// asks the user, and hands the matches that were taken to the operation, which
// counts, reports or rewrites. What differs between runs is put together from
// parts: FileSource (where files come from), Searches (what is searched for),
// RunResults (where files go), and the operation itself, derived from FileRun.
//
// Whatever way a run ends, its cleanup empties the match lists and resets the
// display before the loaded text goes.
//
// Tested by tests/contract/search_test.cpp,
// tests/contract/search_strings_test.cpp,
// tests/contract/search_output_test.cpp
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "files/file_content.h"
#include "frame/library.h"
#include "frame/rows.h"
#include "pattern/context.h"
#include "pattern/matcher.h"
#include "search/file_source.h"
#include "search/phases.h"
#include "search/run_results.h"

namespace zenfo {

// The arguments that all runs have.
struct RunOptions {
  const ExportRow& row;   // names the operation in the error file
  int32_t case_flag = 0;  // non-zero: exact bytes
  int32_t whole_words = 0;
  int32_t binary_check = 0;
  int32_t ask_user = 0;
  int32_t display = 0;    // non-zero: matches lie inside the exclusion areas
  bool rewrites = false;  // the run may change the files it loads
};

// How a step of a run ended.
enum class Step {
  kGoOn,
  kStop,         // the user's stop: a normal end
  kInterrupted,  // the run answers 0
  kFailed,       // the run answers -1
};

// What a file is searched for, one search after the other.
class Searches {
 public:
  virtual ~Searches() = default;
  virtual void rewind() = 0;
  // Makes the find context ready for the next search: kGoOn, kStop when there
  // are no more, kFailed.
  virtual Step next() = 0;
  // One search at most: its count is the file's.
  virtual bool single() const = 0;
};

// The pattern that the host compiled.
class CompiledSearch final : public Searches {
 public:
  void rewind() override { done_ = false; }
  Step next() override;
  bool single() const override { return true; }

 private:
  bool done_ = false;
};

// The find string of every selected pair, compiled in turn. The first pairs are
// compiled once for all files; their patterns wait here while another is in the
// context.
class PairSearches final : public Searches {
 public:
  PairSearches(ItemList& pairs, PatternContext& context, int32_t is_pattern,
               int32_t convert)
      : pairs_(pairs),
        context_(context),
        is_pattern_(is_pattern != 0),
        convert_(convert != 0) {}

  void rewind() override;
  Step next() override;
  bool single() const override { return false; }
  // Of the pair whose find string is searched for; may be missing.
  const SharedText& replacement() const { return replacement_; }

 private:
  // A compiled pattern takes a kilobyte or two, pairs may be a million.
  static constexpr uint32_t kMostKept = 1000;
  struct Kept {
    SharedText text;  // missing until compiled
    CompiledPattern pattern;
  };

  bool compile(const SharedText& text);
  bool compile_kept(Kept& kept, const SharedText& text);
  void put_aside();

  ItemList& pairs_;
  PatternContext& context_;
  bool is_pattern_;
  bool convert_;
  uint32_t position_ = 0;
  SharedText replacement_;
  std::vector<Kept> kept_;  // by position
  Kept* in_context_ = nullptr;
};

class FileRun {
 public:
  FileRun(Library& library, const RunOptions& options);
  virtual ~FileRun();
  FileRun(const FileRun&) = delete;
  FileRun& operator=(const FileRun&) = delete;

 protected:
  // Runs over the selected entries of list 1, with results in lists 4, 6 and 7;
  // the operation's answer.
  int32_t run_over_list(Searches& searches);
  // Runs over the lines of a list file, with results in a summary file.
  int32_t run_over_lines(Searches& searches, const char* list_path,
                         const char* summary_path, SummaryFile& summary);

  // Whether two paths, if there are two, would open one file, perhaps a new
  // one.
  static bool lead_to_one_file(const char* a, const char* b);

  // Prepares the operation's own files once the lists are empty and the run's
  // files open.
  virtual void begin() {}

  // Matches were found, or none; the user has not been asked yet.
  virtual Step prepare_matches() { return Step::kGoOn; }
  // The matches of the file in hand that the user took, for the operation.
  virtual Step take(FileInHand& file) = 0;
  // After the last search of a file that was taken.
  virtual Step end_file(FileInHand& file);
  // Whether so many bytes loaded are enough to go on with the file.
  virtual bool can_search(int32_t loaded) const { return loaded >= 0; }
  // Before each search of a file: kStop when the file is finished.
  virtual Step begin_search(FileInHand&) { return Step::kGoOn; }
  // Searches the content: the number of matches, or -1.
  virtual int32_t find_matches();
  // Whether the number is all that is wanted, and no match is kept.
  virtual bool only_counts() const { return false; }
  // The context whose matches are taken.
  virtual PatternContext& context() { return *library_.find_context; }
  // Loads the file in hand, or loads it again: the loader's answer.
  int32_t load_content(const FileInHand& file);
  // What the option question is told besides the path.
  virtual int32_t question_number() const = 0;
  // The operation's answer when all went well.
  virtual int32_t answer() const;
  // Ends the operation's own files; false when writing failed.
  virtual bool finish() { return true; }

  void announce(Phase phase, const FileInHand& file) const;
  void log(const char* message, const char* context) const;
  void log_unopened(const FileInHand& file) const;
  // Number of selected matches of the file in hand.
  uint32_t count_selected();
  FindOptions find_options() const;
  // Whether the search that begins is to keep its matches.
  bool keep_matches();
  bool asks() const { return ask_; }
  void record(FileInHand& file);

  Library& library_;
  const RunOptions options_;
  FileContent content_;
  int64_t total_ = 0;  // of selected, or rewritten, matches
  RunResults* results_ = nullptr;
  Searches* searches_ = nullptr;
  FileSource* source_ = nullptr;

 private:
  // The user's answers to the option question.
  enum class Answer { kSkip = 0, kTake = 1, kStop = 2, kTakeAll = 3, kInvalid };

  bool can_run() const;
  int32_t run(FileSource& source, Searches& searches, RunResults& results);
  Step handle(FileInHand& file);
  Step load(FileInHand& file);
  bool passes_check(FileInHand& file);
  Step search(FileInHand& file);
  Step search_once(FileInHand& file);
  Answer ask(const FileInHand& file);

  void empty_lists();
  void empty_matches();

  platform::NearbyFolder nearby_;
  uint32_t counted_ = 0;      // matches of the last search
  bool matches_kept_ = true;  // by it
  bool ask_ = false;          // until the user answers for all
  bool areas_found_ = false;  // the exclusion pattern took part
};

}  // namespace zenfo
