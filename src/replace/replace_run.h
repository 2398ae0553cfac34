// The per-file procedure of runs that change files: what the search run does,
// then a safe copy and the rewriting.
//
// Every run empties the safe store, asked for copies or not, so that only the
// last run can be undone. A file gets one safe copy a run, before it is first
// rewritten: a second one would hold the changed text.
//
// A run that is to survive a loss of power (see Safety) makes safe copies
// ahead: one flush serves a batch of them, which grows while all are wanted.
//
// A file that somebody else has changed since it was loaded is left alone: the
// matches are not those of its text any more. It is looked at before its safe
// copy counts, and again before its first byte is written.
//
// Tested by tests/contract/replace_run_test.cpp,
// tests/contract/replace_safety_test.cpp,
// tests/contract/replace_changed_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "replace/rewriter.h"
#include "search/file_run.h"
#include "undo/safety.h"

namespace zenfo {

// The result summary of a run that changes files:
//   path, found 3, replaced 3
//   path, found 0
//   path, found 3 ERROR, refer to error log file for details
//   , ERROR : refer to error log file for details
// Intended: the last two as they stand, the third without a line end.
class ReplaceSummary final : public SummaryFile {
 public:
  void rejected(FileInHand& file) override;
  void counted(FileInHand& file) override;
  void unsaved(FileInHand& file) override;
  void taken(FileInHand& file) override;
  void empty(FileInHand& file) override { rejected(file); }

 private:
  void begin_line(const FileInHand& file);

  bool begun_ = false;  // the line of the file in hand
};

class ReplaceRun : public FileRun {
 public:
  ReplaceRun(Library& library, const RunOptions& options, bool safe_store);

  int32_t run_over_list(Searches& searches);
  int32_t run_over_lines(Searches& searches, const char* list_path,
                         const char* summary_path);

 protected:
  // Rewrites the file in hand: the number of matches written, or -1.
  virtual int32_t rewrite(const Destination& file) = 0;
  virtual Phase phase() const = 0;
  // After a file was rewritten.
  virtual Step rewritten(FileInHand&) { return Step::kGoOn; }

  void begin() override;
  Step begin_search(FileInHand& file) override;
  Step take(FileInHand& file) override;
  // Intended: an empty file counts as one that could not be loaded.
  bool can_search(int32_t loaded) const override { return loaded > 0; }
  int32_t question_number() const override { return 2; }
  bool finish() override;

 private:
  enum class Stored { kNow, kBefore, kNotWanted, kFailed, kChanged };

  Stored store(const FileInHand& file);
  bool copy_ahead(const SharedText& path);
  void take_back();
  Step leave_unstored(FileInHand& file);
  Step leave_changed(FileInHand& file);
  Step leave(FileInHand& file);

  const Safety safety_;
  const bool safe_store_;
  const SafeStore::InUse store_in_use_;
  std::vector<std::string> open_files_;     // of the run itself
  std::unordered_set<std::string> stored_;  // keys of the files
  std::string last_stored_;                 // the key of the last one
  size_t batch_ = 4;                        // files copied ahead last
  platform::FlushSet rewritten_;
  bool content_stale_ = false;  // the file was rewritten since it was loaded
  bool skip_rest_ = false;      // of the searches of the file in hand
};

}  // namespace zenfo
