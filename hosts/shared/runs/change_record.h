// What is kept of a run that changes files, so that it can be undone: a locked
// folder in the store of runs, a journal during the run, and a record at its
// end.
//
// Tested by tests/cli/posix_journal_test.cpp, tests/cli/posix_fault_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "shared/frame/messages.h"
#include "shared/runs/run_journal.h"
#include "shared/runs/run_store.h"
#include "shared/session/undo_list.h"
#include "shared/system/file_state.h"
#include "shared/system/run_lock.h"

namespace zenfo::host {

class ChangeRecord {
 public:
  // Throws Failure when nothing can be kept. `paths` are the files of the run
  // in order. With `durable` the record is flushed to disk.
  ChangeRecord(const std::string& command, std::vector<std::string> paths,
               bool durable);

  const std::string& name() const { return run_.name; }
  // The name to undo the run by; empty when nothing is kept.
  const std::string& undo_name() const { return undo_name_; }
  // Whether a safe copy of the file would fit on the disk.
  bool has_room_for(const std::string& path) const;

  // Called during the run when the library loads a file (false) or is about to
  // rewrite one (true).
  void note_phase(bool rewriting);
  // The run has ended.
  void note_end() { note_phase(false); }

  // What happened to the file in hand when the run ended in the middle of it.
  struct PutBack {
    enum class Result { kNothing, kUntouched, kRestored, kCutOff };
    Result result = Result::kNothing;
    std::string path;
  };
  PutBack put_back_last();

  // Whether a file is still as the run left it, so that nobody else changed it.
  bool is_as_left(const std::string& path) const;
  // Sets the date of such a file. False when it cannot be set.
  bool set_date(const std::string& path, int64_t modified);

  enum class End {
    kNothingChanged,  // and nothing is kept
    kKept,
    kNotSaved,  // kept, with the journal in place of the record
    kInDoubt,   // there may be something to undo
  };
  End end();
  // As RunStore::remove_old().
  uint64_t remove_old_runs(Messages& messages) const {
    return store_.remove_old(messages, &run_);
  }

 private:
  // The file that is being rewritten.
  struct InHand {
    uint32_t index;           // among the files of the run
    uint32_t results_before;  // entries of the result list before it
  };

  void finish_file();
  void note_state(const std::string& path, const FileState& state);

  RunStore store_;
  RunLock lock_;
  Run run_;
  RunJournal journal_;
  UndoList list_;
  std::vector<std::string> paths_;
  std::optional<InHand> in_hand_;
  // The state of each file right after it was rewritten. Whatever differs later
  // was changed by others.
  std::unordered_map<std::string, FileState> states_;
  std::string undo_name_;
  bool durable_;
  bool any_rewritten_ = false;  // and not put back
};

}  // namespace zenfo::host
