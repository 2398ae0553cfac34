// A run that changes files: it makes the changes and their safe copies,
// restores the file that it did not finish, sets dates back and writes the
// record.
//
// Tested by tests/cli/posix_replace_test.cpp, tests/cli/posix_fault_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "shared/runs/change_plan.h"
#include "shared/runs/change_record.h"
#include "shared/runs/match_chooser.h"
#include "shared/runs/skipped.h"
#include "shared/runs/targets.h"
#include "shared/session/session.h"

namespace zenfo::host {

struct ChangeSummary {
  uint64_t changed = 0;   // files
  uint64_t replaced = 0;  // matches
  uint64_t not_done = 0;  // files that the run did not reach
};

class ChangeRun {
 public:
  // The search must be compiled. Without a chooser all matches are changed.
  ChangeRun(Session& session, const std::vector<Target>& targets,
            const ChangePlan& plan, Skipped& skipped, MatchChooser* chooser)
      : session_(session),
        targets_(targets),
        plan_(plan),
        skipped_(skipped),
        chooser_(chooser) {}

  // Changes the files until all are done or the user stops the run. Throws
  // Failure when it cannot begin.
  void make(const Change& change);
  // Call after make(): restores, sets dates and writes the record. A stop is
  // held back from here on.
  void end();

  const ChangeSummary& summary() const { return summary_; }
  // The name to undo the run by; empty when there is nothing to undo.
  std::string name() const { return record_ ? record_->undo_name() : ""; }
  // As RunStore::remove_old().
  uint64_t remove_old_runs() const;

 private:
  void note_paths();
  void begin_record();
  Session::Answer choose();
  void choose_matches(const Target& target);
  void count();
  void tell_of_file_in_hand();
  void put_back_last();
  const std::string& shown(const std::string& path) const;
  void name_unchanged();
  std::string why_unchanged(const std::string& path) const;
  bool was_changed(const std::string& path) const;
  void restore_dates();
  void restore_date(const Target& target);
  void end_record();

  Session& session_;
  const std::vector<Target>& targets_;
  const ChangePlan& plan_;
  Skipped& skipped_;
  MatchChooser* chooser_;
  std::unordered_map<std::string_view, const Target*> by_path_;
  std::optional<ChangeRecord> record_;  // none without safe copies
  int32_t result_ = 0;                  // of the change
  ChangeSummary summary_;
};

}  // namespace zenfo::host
