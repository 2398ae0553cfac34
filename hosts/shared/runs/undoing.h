// The undo of one run.
//
// Tested by tests/cli/posix_fault_test.cpp, tests/cli/posix_journal_test.cpp
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "shared/runs/run_journal.h"
#include "shared/runs/run_store.h"
#include "shared/session/session.h"
#include "shared/session/undo_list.h"
#include "shared/system/file_state.h"
#include "shared/system/run_lock.h"

namespace zenfo::host {

struct UndoChoice {
  bool force = false;   // restores files that others changed, too
  bool durable = true;  // the undo survives a loss of power
};

class Undoing {
 public:
  // `lock` is the run's lock, already taken.
  Undoing(Session& session, const RunStore& store, Run run, RunLock lock,
          const UndoChoice& choice);

  // Restores the named files, or all of them. Returns the number restored.
  uint32_t bring_back(const std::vector<std::string>& files);
  // Call after bring_back(): records what is left of the run, or removes it.
  void end();

 private:
  std::optional<FileState> state_of_copy(uint32_t record) {
    return state_of(copies_[record]);
  }
  bool load();
  size_t drop_spare_copies();
  [[noreturn]] void refuse_without_records();
  std::vector<std::string> unlisted_files() const;
  void forget_restored();
  bool has_listed_copies();
  uint32_t choose(const std::vector<std::string>& files);
  void choose(uint32_t record);
  void find_wanted(const std::string& file, std::vector<size_t>& wanted);
  bool drop_unneeded(uint32_t record);
  std::string why_not(uint32_t record);
  std::string why_not(uint32_t record, const FileState& copy);
  std::string why_not_finished(uint32_t record, const RunFile& file);
  std::string why_not_unfinished(uint32_t record);
  bool is_half_restored(uint32_t record);
  bool is_torn(const FileState& state) const;
  void note_failed(size_t end);
  void note_step(size_t from, size_t to);
  uint32_t restore();

  Session& session_;
  const RunStore& store_;
  Run run_;
  RunLock lock_;
  UndoChoice choice_;
  JournalReader known_steps_;         // before this undo
  std::optional<int64_t> last_step_;  // when the journal was last written
  RunJournal journal_;
  size_t looked_at_ = 0;               // records that note_failed() has checked
  std::vector<std::string> unknown_;   // files that may be half restored
  std::vector<std::string> unlisted_;  // files whose copies may be left
  UndoList list_;
  std::vector<std::string> paths_;   // of the records
  std::vector<std::string> copies_;  // and of their safe copies
  std::vector<bool> chosen_;
  std::unordered_set<std::string> listed_;
  std::unordered_map<std::string, RunFile> known_;
  std::vector<std::unique_ptr<WriteAccess>> access_;
};

}  // namespace zenfo::host
