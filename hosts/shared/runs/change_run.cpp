#include "shared/runs/change_run.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "shared/system/file_state.h"
#include "shared/system/paths.h"
#include "shared/system/stop.h"
#include "shared/system/system.h"
#include "shared/text/found_text.h"

namespace zenfo::host {

namespace {

constexpr char kNoRoom[] = "there is no room for its safe copy";

bool stopped() { return system::stop_status() != 0; }

void choose_safety(const ChangePlan& plan) {
  set_environment(kSafetyVariable, plan.no_sync ? "beside,nolinks,skip"
                                                : "sync,beside,nolinks,skip");
}

std::vector<std::string> paths_of(const std::vector<Target>& targets) {
  std::vector<std::string> paths;
  paths.reserve(targets.size());
  for (const Target& target : targets) paths.push_back(target.path);
  return paths;
}

}  // namespace

void ChangeRun::make(const Change& change) {
  note_paths();
  session_.replace_files(paths_of(targets_));
  if (!plan_.no_backup) begin_record();
  choose_safety(plan_);
  std::vector<std::unique_ptr<WriteAccess>> access;
  if (plan_.read_only) {
    for (const Target& target : targets_) {
      access.push_back(std::make_unique<WriteAccess>(target.path));
    }
  }
  Session::Question question;
  if (chooser_ != nullptr || plan_.stays) {
    question = [this] { return choose(); };
  }
  result_ = session_.run_changes(
      [&] { return change(question != nullptr, !plan_.no_backup); }, question);
}

void ChangeRun::end() {
  session_.hold_stop(true);
  summary_.not_done = targets_.size() -
                      std::min<size_t>(Session::files_done(), targets_.size());
  if (record_) record_->note_end();
  count();
  if (result_ < 0 && !stopped()) {
    session_.complain_about_errors();
    session_.messages().complain("", "the run ended early with an error");
    tell_of_file_in_hand();
  }
  if (result_ < 0 || stopped()) put_back_last();
  name_unchanged();
  restore_dates();
  end_record();
}

uint64_t ChangeRun::remove_old_runs() const {
  return record_ ? record_->remove_old_runs(session_.messages()) : 0;
}

void ChangeRun::note_paths() {
  for (const Target& target : targets_) by_path_.emplace(target.path, &target);
}

void ChangeRun::begin_record() {
  record_.emplace(plan_.command, paths_of(targets_), !plan_.no_sync);
  session_.watch_changes(
      [this](bool rewriting) { record_->note_phase(rewriting); });
}

// Deselects the matches that are to stay.
Session::Answer ChangeRun::choose() {
  if (chooser_ != nullptr && chooser_->stopped()) return Session::Answer::kStop;
  const Target& target = targets_[Session::files_done()];
  if (plan_.stays) deselect_unchanged(target.path, plan_.stays);
  if (chooser_ != nullptr) choose_matches(target);
  return Session::Answer::kTake;
}

void ChangeRun::choose_matches(const Target& target) {
  FileBytes bytes;
  bytes.load(target.path);
  const uint32_t matches = matches_in_hand();
  for (uint32_t i = 0; i < matches; ++i) {
    const Match match = match_in_hand(i);
    if (GetState(ZENFO_LIST_MATCHES, i) != 1) continue;
    if (!chooser_->take(target.shown, bytes.view(), match)) {
      SetState(ZENFO_LIST_MATCHES, static_cast<int32_t>(i), 0);
    }
  }
}

void ChangeRun::count() {
  const uint32_t files = Session::records_in(ZENFO_LIST_RESULT);
  uint64_t matches = 0;
  for (uint32_t i = 0; i < files; ++i) {
    const auto found = static_cast<uint64_t>(GetFlag(ZENFO_LIST_RESULT, i));
    matches += found;
    summary_.changed += found > 0;
  }
  summary_.replaced = result_ > 0 ? static_cast<uint64_t>(result_) : matches;
  if (result_ == 0 && !stopped()) summary_.replaced = 0;
}

// After a failed run without safe copies, names the file that may be half
// written.
void ChangeRun::tell_of_file_in_hand() {
  const uint32_t done = Session::files_done();
  if (!plan_.no_backup || done >= targets_.size()) return;
  const Target& target = targets_[done];
  const std::optional<FileState> now = state_of(target.path);
  session_.messages().complain(
      target.shown, now && *now == target.before
                        ? "could not be written; it is unchanged"
                        : "may be truncated; there is no safe copy of it");
}

void ChangeRun::put_back_last() {
  if (!record_) return;
  using enum ChangeRecord::PutBack::Result;
  const ChangeRecord::PutBack last = record_->put_back_last();
  if (last.result == kUntouched) {
    session_.messages().complain(shown(last.path),
                                 "could not be written; it is unchanged");
  } else if (last.result == kRestored) {
    session_.messages().complain(shown(last.path),
                                 "was not finished and has been restored");
  } else if (last.result == kCutOff) {
    session_.messages().complain(shown(last.path),
                                 "is truncated; its safe copy is kept");
  }
}

const std::string& ChangeRun::shown(const std::string& path) const {
  const auto known = by_path_.find(path);
  return known == by_path_.end() ? path : known->second->shown;
}

// Names files that have no safe copy or could not be loaded again.
void ChangeRun::name_unchanged() {
  const uint32_t count = Session::records_in(ZENFO_LIST_ERROR);
  if (count == 0) return;
  session_.new_errors();  // drops them: the loop below explains them
  uint64_t without_room = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const std::string path(session_.full_name(ZENFO_LIST_ERROR, i));
    const std::string reason = why_unchanged(path);
    // When the disk is full, this can apply to every remaining file.
    if (reason != kNoRoom || without_room++ == 0) {
      skipped_.complain_of(shown(path), reason);
    }
  }
  if (without_room > 1) skipped_.complain_of_more(without_room - 1, kNoRoom);
}

std::string ChangeRun::why_unchanged(const std::string& path) const {
  std::string reason = system::why_not_loaded(path);
  if (!reason.empty()) return reason;
  if (was_changed(path)) return "it was changed meanwhile";
  reason = why_not_written(path);
  if (!reason.empty()) return reason;
  return record_ && !record_->has_room_for(path)
             ? kNoRoom
             : "it could not be kept safe or written";
}

// Whether somebody else changed the file after the search.
bool ChangeRun::was_changed(const std::string& path) const {
  const auto target = by_path_.find(path);
  const std::optional<FileState> now = state_of(path);
  if (target == by_path_.end() || !now) return false;
  const FileState& before = target->second->before;
  return now->identity != before.identity || now->size != before.size ||
         now->modified != before.modified;
}

void ChangeRun::restore_dates() {
  if (!plan_.keep_date) return;
  for (const Target& target : targets_) {
    const std::optional<FileState> state = state_of(target.path);
    if (!state || state->modified == target.before.modified) continue;
    if (!record_ || record_->is_as_left(target.path)) restore_date(target);
  }
}

void ChangeRun::restore_date(const Target& target) {
  const WriteAccess access(target.path);
  const int64_t date = target.before.modified;
  const bool restored = record_ ? record_->set_date(target.path, date)
                                : set_modified(target.path, date);
  if (restored) return;
  session_.messages().complain(target.shown, "its date could not be restored");
}

void ChangeRun::end_record() {
  if (!record_) return;
  switch (record_->end()) {
    case ChangeRecord::End::kNotSaved:
      session_.messages().complain(record_->name(),
                                   "its record cannot be finished");
      break;
    case ChangeRecord::End::kInDoubt:
      session_.messages().complain(
          record_->name(),
          "the list of its safe copies cannot be read now; all of them "
          "are kept");
      break;
    default:
      break;
  }
}

}  // namespace zenfo::host
