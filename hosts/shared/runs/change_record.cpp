#include "shared/runs/change_record.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "shared/frame/failure.h"
#include "shared/session/session.h"
#include "shared/system/file_state.h"
#include "shared/system/paths.h"
#include "zenfofr130.h"

namespace zenfo::host {
namespace {

uint32_t rewritten_files() { return Session::records_in(ZENFO_LIST_RESULT); }

}  // namespace

ChangeRecord::ChangeRecord(const std::string& command,
                           std::vector<std::string> paths, bool durable)
    : paths_(std::move(paths)), durable_(durable) {
  run_ = store_.begin(command, lock_);
  const std::string file = store_.undo_file(run_.name);
  if (SetUndoFile(file.c_str()) != 1) {
    store_.remove(run_.name, lock_);
    throw Failure{file, "safe copies cannot be kept there"};
  }
  journal_.open(store_.journal_file(run_.name));
  undo_name_ = run_.name;
}

bool ChangeRecord::has_room_for(const std::string& path) const {
  std::error_code error;
  const auto folder = to_path(store_.undo_file(run_.name)).parent_path();
  const auto space = std::filesystem::space(folder, error);
  const auto state = state_of(path);
  return error || !state || state->size <= space.available;
}

// A file is finished once it is on one of the result lists.
void ChangeRecord::note_phase(bool rewriting) {
  const uint32_t done = Session::files_done();
  if (in_hand_ && done > in_hand_->index) finish_file();
  if (!rewriting || in_hand_ || done >= paths_.size()) return;
  in_hand_ = InHand{done, rewritten_files()};
  journal_.begin(paths_[done]);
}

// The library may leave a file unchanged at the last moment, because another
// program changed it.
void ChangeRecord::finish_file() {
  const std::string& path = paths_[in_hand_->index];
  const std::optional<FileState> state = state_of(path);
  if (rewritten_files() == in_hand_->results_before) {
    journal_.leave(path);
  } else {
    any_rewritten_ = true;
    if (state) note_state(path, *state);
  }
  in_hand_.reset();
}

ChangeRecord::PutBack ChangeRecord::put_back_last() {
  PutBack answer;
  if (!in_hand_) return answer;
  if (!list_.load(store_.undo_file(run_.name))) {
    any_rewritten_ = true;  // nothing says otherwise
    return answer;
  }
  answer.path = paths_[in_hand_->index];
  uint32_t index = UndoList::count();
  while (index > 0 && list_.path(index - 1) != answer.path) --index;
  if (index == 0) return answer;
  --index;
  const bool untouched = have_same_bytes(answer.path, list_.copy(index));
  const uint32_t records = UndoList::count();
  SetState(ZENFO_LIST_UNDO, -1, 0);
  SetState(ZENFO_LIST_UNDO, static_cast<int32_t>(index), 1);
  {
    const WriteAccess access(answer.path);
    Undo();
  }
  using enum PutBack::Result;
  answer.result = untouched                     ? kUntouched
                  : UndoList::count() < records ? kRestored
                                                : kCutOff;
  any_rewritten_ |= answer.result == kCutOff;
  return answer;
}

void ChangeRecord::note_state(const std::string& path, const FileState& state) {
  journal_.done(path, state);
  states_[path] = state;
}

bool ChangeRecord::is_as_left(const std::string& path) const {
  const auto known = states_.find(path);
  const auto now = state_of(path);
  return now && known != states_.end() &&
         now->identity == known->second.identity &&
         now->size == known->second.size &&
         now->modified == known->second.modified;
}

// The new date is journaled before it is set, so that a run killed in between
// still recognises the file.
bool ChangeRecord::set_date(const std::string& path, int64_t modified) {
  const FileState left = states_[path];
  FileState expected = left;
  expected.modified = modified;
  note_state(path, expected);
  const bool set = set_modified(path, modified);
  if (!set) note_state(path, left);
  return set;
}

ChangeRecord::End ChangeRecord::end() {
  const bool read = list_.load(store_.undo_file(run_.name));
  const uint32_t copies = UndoList::count();
  // When the disk is full, a copy can exist without its line in the list.
  const bool in_doubt = !read || (copies == 0 && any_rewritten_);
  if (in_doubt && !store_.is_known_empty(run_.name)) return End::kInDoubt;
  if (copies == 0) {
    store_.remove(run_.name, lock_);
    undo_name_.clear();
    return End::kNothingChanged;
  }
  for (uint32_t i = 0; i < copies; ++i) {
    const std::string path = list_.path(i);
    const auto known = states_.find(path);
    const auto copy = state_of(list_.copy(i));
    if (!copy) continue;
    const auto state = known == states_.end() ? state_of(path) : known->second;
    if (!state) continue;
    run_.files.push_back({path, state->size, state->modified, copy->size});
  }
  if (!store_.save(run_, durable_)) return End::kNotSaved;
  journal_.remove();
  return End::kKept;
}

}  // namespace zenfo::host
