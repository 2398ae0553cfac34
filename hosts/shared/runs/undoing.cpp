#include "shared/runs/undoing.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "shared/frame/failure.h"
#include "shared/system/paths.h"
#include "shared/system/stop.h"

namespace zenfo::host {
namespace {

std::optional<int64_t> last_write(const std::string& file) {
  const auto state = state_of(file);
  return state ? std::optional(state->modified) : std::nullopt;
}

}  // namespace

Undoing::Undoing(Session& session, const RunStore& store, Run run, RunLock lock,
                 const UndoChoice& choice)
    : session_(session),
      store_(store),
      run_(std::move(run)),
      lock_(std::move(lock)),
      choice_(choice),
      known_steps_(store.journal_file(run_.name)),
      last_step_(last_write(store.journal_file(run_.name))) {}

uint32_t Undoing::bring_back(const std::vector<std::string>& files) {
  session_.hold_stop(true);
  if (!load()) return 0;
  for (const RunFile& file : run_.files) known_.emplace(file.path, file);
  unlisted_ = unlisted_files();
  return choose(files) == 0 ? 0 : restore();
}

// False when an earlier undo restored everything but ended while it deleted the
// copies.
bool Undoing::load() {
  const std::string undo_file = store_.undo_file(run_.name);
  // SetUndoFile() would create a missing file.
  if (!state_of(undo_file) || SetUndoFile(undo_file.c_str()) != 1) {
    refuse_without_records();
  }
  const bool read = list_.load(undo_file);
  const uint32_t records = UndoList::count();
  if (read && records == 0 && drop_spare_copies() > 0 &&
      store_.is_known_empty(run_.name)) {
    return false;
  }
  if (records == 0) refuse_without_records();
  for (uint32_t i = 0; i < records; ++i) {
    paths_.push_back(list_.path(i));
    copies_.push_back(list_.copy(i));
  }
  chosen_.resize(records);
  listed_.insert(paths_.begin(), paths_.end());
  return true;
}

// An undo deletes the copies last, after removing them from the list. If it was
// interrupted there, the remaining copies equal their files. Returns the number
// of copies removed.
size_t Undoing::drop_spare_copies() {
  std::unordered_set<std::string> listed;
  for (uint32_t i = 0; i < UndoList::count(); ++i) listed.insert(list_.copy(i));
  std::unordered_multimap<std::string, std::string> originals;
  const auto add = [&](const std::string& path) {
    originals.emplace(narrow(to_path(path).filename()), path);
  };
  for (const RunFile& file : run_.files) add(file.path);
  if (run_.files.empty()) {
    for (const std::string& path : known_steps_.paths()) add(path);
  }
  size_t dropped = 0;
  for (const std::string& copy : store_.copies(run_.name)) {
    if (listed.contains(copy)) continue;
    // "notes.txt_17" is a copy of a "notes.txt".
    const std::string name = narrow(to_path(copy).filename());
    const auto [first, last] =
        originals.equal_range(name.substr(0, name.rfind('_')));
    const bool spare = std::any_of(first, last, [&](const auto& original) {
      return have_same_bytes(original.second, copy);
    });
    std::error_code ignored;
    dropped += spare && std::filesystem::remove(to_path(copy), ignored);
  }
  return dropped;
}

void Undoing::refuse_without_records() {
  if (!store_.is_known_empty(run_.name)) {
    throw Failure{run_.name,
                  "the list of its safe copies is damaged; they are beside " +
                      store_.undo_file(run_.name)};
  }
  const bool had_files = !run_.files.empty();
  store_.remove(run_.name, lock_);
  throw Failure{run_.name, had_files ? "its safe copies are gone"
                                     : "no safe copies of it are recorded"};
}

// Files of the run that are missing from the list of its copies.
std::vector<std::string> Undoing::unlisted_files() const {
  std::vector<std::string> unlisted;
  for (const RunFile& file : run_.files) {
    if (!listed_.contains(file.path)) unlisted.push_back(file.path);
  }
  return unlisted;
}

// Keeps the run as long as it may contain a copy to restore.
void Undoing::end() {
  if (!unlisted_.empty()) drop_spare_copies();
  const bool any_unlisted =
      !unlisted_.empty() && store_.may_have_copies(run_.name);
  if (any_unlisted) {
    for (const std::string& path : unlisted_) {
      session_.messages().complain(
          path,
          "is not in the list of safe copies; what is left of them is "
          "beside " +
              store_.undo_file(run_.name));
    }
  }
  if (!any_unlisted && !has_listed_copies()) {
    store_.remove(run_.name, lock_);
  } else {
    forget_restored();
  }
}

void Undoing::forget_restored() {
  std::unordered_set<std::string> left;
  for (uint32_t i = 0; i < UndoList::count(); ++i) left.insert(list_.path(i));
  const size_t restored = std::erase_if(run_.files, [&](const RunFile& file) {
    return listed_.contains(file.path) && !left.contains(file.path);
  });
  if (restored > 0) store_.save(run_);
}

bool Undoing::has_listed_copies() {
  for (uint32_t i = 0; i < UndoList::count(); ++i) {
    std::error_code error;
    const auto copy = to_path(list_.copy(i));
    if (std::filesystem::exists(copy, error) || error) return true;
  }
  return false;
}

uint32_t Undoing::choose(const std::vector<std::string>& files) {
  SetState(ZENFO_LIST_UNDO, -1, 0);
  std::vector<size_t> wanted;
  if (files.empty()) {
    for (size_t i = 0; i < paths_.size(); ++i) wanted.push_back(i);
  }
  for (const std::string& file : files) find_wanted(file, wanted);
  for (const size_t i : wanted) choose(static_cast<uint32_t>(i));
  return static_cast<uint32_t>(
      std::count(chosen_.begin(), chosen_.end(), true));
}

void Undoing::choose(uint32_t record) {
  if (drop_unneeded(record)) return;
  const std::string& path = paths_[record];
  const std::string reason = why_not(record);
  if (!reason.empty()) {
    session_.messages().complain(path, reason);
    return;
  }
  SetState(ZENFO_LIST_UNDO, static_cast<int32_t>(record), 1);
  access_.push_back(std::make_unique<WriteAccess>(path));
  chosen_[record] = true;
}

// The user may name a file by another path than the run did.
void Undoing::find_wanted(const std::string& file,
                          std::vector<size_t>& wanted) {
  const std::string path = resolved_path(file, is_link(file));
  const auto state = state_of(file);
  for (size_t i = 0; i < paths_.size(); ++i) {
    const auto other = state ? state_of(paths_[i]) : std::nullopt;
    if (paths_[i] == path || (other && other->identity == state->identity)) {
      if (std::find(wanted.begin(), wanted.end(), i) == wanted.end()) {
        wanted.push_back(i);
      }
      return;
    }
  }
  session_.messages().complain(
      file, "was not changed by " + run_.name + ", or is back already");
}

// Copies are made ahead, so a killed run leaves copies of files that it never
// began to change.
bool Undoing::drop_unneeded(uint32_t record) {
  if (!run_.files.empty() || !known_steps_.exists() ||
      known_steps_.entry(paths_[record]).begun) {
    return false;
  }
  const std::string copy = copies_[record];
  if (!state_of(copy)) return true;
  const bool in_store = to_path(copy).parent_path() ==
                        to_path(store_.undo_file(run_.name)).parent_path();
  if (!in_store || !have_same_bytes(paths_[record], copy)) return false;
  std::error_code ignored;
  std::filesystem::remove(to_path(copy), ignored);
  return true;
}

// Why a file must not be restored; empty when it may be.
std::string Undoing::why_not(uint32_t record) {
  const auto copy = state_of_copy(record);
  // An interrupted undo leaves such records.
  if (!copy) return "has no safe copy any more; it may be back already";
  if (choice_.force || !state_of(paths_[record])) return "";
  const std::string reason = why_not(record, *copy);
  // An undo that could not rewrite the list leaves records of restored files.
  return !reason.empty() && have_same_bytes(paths_[record], copies_[record])
             ? ""
             : reason;
}

std::string Undoing::why_not(uint32_t record, const FileState& copy) {
  if (run_.files.empty()) return why_not_unfinished(record);
  const auto known = known_.find(paths_[record]);
  if (known == known_.end()) return "";
  if (copy.size != known->second.copy_size) {
    return "its safe copy is damaged; --force brings it back anyhow";
  }
  return why_not_finished(record, known->second);
}

std::string Undoing::why_not_finished(uint32_t record, const RunFile& file) {
  const auto now = state_of(paths_[record]);
  const bool untouched =
      !now || (now->size == file.size && now->modified == file.modified) ||
      known_steps_.entry(file.path).was_left_like(*now);
  return untouched || is_half_restored(record)
             ? ""
             : "was changed after the run; --force brings it back anyhow";
}

// Without a journal there is nothing to compare a file with, so it is restored.
std::string Undoing::why_not_unfinished(uint32_t record) {
  const JournalEntry& steps = known_steps_.entry(paths_[record]);
  const auto now = state_of(paths_[record]);
  if (!known_steps_.exists() || !now || is_half_restored(record) ||
      is_torn(*now)) {
    return "";
  }
  if (!steps.begun) {
    return "was changed, but not by the run; --force brings its copy back "
           "anyhow";
  }
  return steps.states.empty() || steps.was_left_like(*now)
             ? ""
             : "was changed after the run; --force brings it back anyhow";
}

// Whether an undo ended while it restored the file.
bool Undoing::is_half_restored(uint32_t record) {
  const std::string& path = paths_[record];
  const JournalEntry& steps = known_steps_.entry(path);
  if (steps.restored && known_steps_.was_being_restored(path)) return true;
  const auto now = state_of(path);
  return steps.intended && now && is_torn(*now);
}

// Whether a power cut may have damaged the file: not if it was written more
// than a minute after the last line of the journal.
bool Undoing::is_torn(const FileState& state) const {
  constexpr int64_t kSlack = 60 * kModifiedPerSecond;
  return known_steps_.exists() && !known_steps_.is_complete() && last_step_ &&
         state.modified <= *last_step_ + kSlack;
}

// Notes the state of files that could not be restored, so that the next undo
// recognises them.
void Undoing::note_failed(size_t end) {
  for (; looked_at_ < end; ++looked_at_) {
    const auto record = static_cast<uint32_t>(looked_at_);
    if (GetState(ZENFO_LIST_UNDO, record) != 1) continue;
    const std::string path = list_.path(record);
    if (const auto state = state_of(path)) {
      journal_.done(path, *state);
    } else {
      unknown_.push_back(path);
    }
  }
}

// Leaves out files that somebody changed since they were chosen.
void Undoing::note_step(size_t from, size_t to) {
  const size_t restored = paths_.size() - UndoList::count();
  note_failed(from - restored);
  journal_.begin_restoring();
  for (size_t i = from; i < to; ++i) {
    if (!chosen_[i]) continue;
    const std::string reason = why_not(static_cast<uint32_t>(i));
    if (reason.empty()) {
      journal_.restore(paths_[i]);
    } else {
      session_.messages().complain(paths_[i], reason);
      SetState(ZENFO_LIST_UNDO, static_cast<int32_t>(i - restored), 0);
    }
  }
}

// Returns the number of files restored. The journal names them first, because a
// half restored file looks like one that somebody else changed.
uint32_t Undoing::restore() {
  const uint32_t records = UndoList::count();
  const std::string journal = store_.journal_file(run_.name);
  journal_.open(journal);
  for (size_t i = 0; i < paths_.size(); ++i) {
    if (chosen_[i]) journal_.intend(paths_[i]);
  }
  // After a power cut the journal explains half restored files.
  if (choice_.durable) flush_file(journal);
  size_t noted = 0;
  session_.hold_stop(false);
  const int32_t result = session_.run_undo([&](uint32_t from, uint32_t all) {
    if (all != paths_.size() || from < noted) return;
    noted = std::min<size_t>(from + std::max(all / 100, 1U), all);
    note_step(from, noted);
  });
  session_.hold_stop(true);
  if (system::stop_status() == 0) note_failed(UndoList::count());
  journal_.begin_restoring();
  for (const std::string& path : unknown_) journal_.restore(path);
  if (result < 0) {
    session_.messages().complain(run_.name,
                                 "its list of safe copies cannot be written");
  }
  const uint32_t left = UndoList::count();
  for (uint32_t i = 0; i < left && system::stop_status() == 0; ++i) {
    if (GetState(ZENFO_LIST_UNDO, i) != 1) continue;
    session_.messages().complain(list_.path(i),
                                 "cannot be restored; its safe copy is kept");
  }
  return records - left;
}

}  // namespace zenfo::host
