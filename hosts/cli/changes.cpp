#include "changes.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "asking.h"
#include "binary.h"
#include "file_state.h"
#include "found_text.h"
#include "messages.h"
#include "paths.h"
#include "preview.h"
#include "run_store.h"
#include "system.h"
#include "temporary_folder.h"

namespace zenfo::cli {
namespace {

// A file with matches that may be changed.
struct Target {
  std::string shown;  // as the user names it
  std::string path;   // complete, as the run is undone from anywhere
  uint32_t matches = 0;
  int64_t modified = 0;
};

std::string counted(uint64_t number, const std::string& one,
                    const std::string& many) {
  return std::to_string(number) + ' ' + (number == 1 ? one : many);
}

uint32_t records_in(int32_t list) {
  return static_cast<uint32_t>(std::max(GetCount(list, -1), 0));
}

std::string why_not_read(const std::string& path) {
  const std::string reason = system::why_not_loaded(path);
  return reason.empty() ? "cannot be read" : reason;
}

// Files that hold the text and stay as they are, by reason.
class Skipped {
 public:
  void complain_of(std::string_view path, const std::string& reason) {
    complain(path, "skipped: " + reason);
    ++reasons_[reason];
    ++count_;
  }
  uint64_t count() const { return count_; }
  std::string summary() const {
    std::string text = counted(count_, "file", "files") + " skipped";
    const char* separator = " (";
    for (const auto& [reason, number] : reasons_) {
      text += separator + std::to_string(number) + ": " + reason;
      separator = "; ";
    }
    return count_ == 0 ? text : text + ')';
  }

 private:
  std::map<std::string, uint64_t> reasons_;
  uint64_t count_ = 0;
};

// The search that comes first, and what it leaves to change.
class Targets {
 public:
  Targets(Session& session, Search& search, const ChangeOptions& options,
          Skipped& skipped)
      : session_(session), options_(options), skipped_(skipped) {
    FileList files(session, options.paths, options.choice, FactOptions{});
    choose(files);
    Session::Question question;
    if (options.stays) question = [&] { return leave_unchanged(files); };
    if (search.run(question) > 0) take_found(files);
    name_rejected(files);
  }

  const std::vector<Target>& all() const { return targets_; }
  uint64_t matches() const {
    uint64_t sum = 0;
    for (const Target& target : targets_) sum += target.matches;
    return sum;
  }

 private:
  void choose(FileList& files) {
    session_.select_all(true);
    for (uint32_t i = 0; i < files.count(); ++i) {
      const std::string path(files.path(i));
      if (files.is_repeat(i) ||
          !options_.filter.takes(path, files.is_named(i))) {
        session_.select(i, false);
      }
    }
  }

  // Of the file in hand, the selected one behind those that are done.
  Session::Answer leave_unchanged(const FileList& files) {
    for (; next_ < files.count(); ++next_) {
      if (!session_.selected(next_)) continue;
      if (passed_ == Session::files_done()) break;
      ++passed_;
    }
    deselect_unchanged(std::string(session_.full_name(next_)), options_.stays);
    return Session::Answer::kTake;
  }

  void take_found(const FileList& files) {
    const uint32_t count = records_in(ZENFO_LIST_RESULT);
    for (uint32_t i = 0; i < count; ++i) {
      const std::string path(session_.full_name(ZENFO_LIST_RESULT, i));
      Target target;
      target.shown = files.shown(path);
      target.path = complete_path(path);
      target.matches = static_cast<uint32_t>(GetFlag(ZENFO_LIST_RESULT, i));
      take(std::move(target));
    }
  }

  void take(Target target) {
    const std::optional<FileState> state = state_of(target.path);
    if (!state) {
      skipped_.complain_of(target.shown, "it is gone");
      return;
    }
    // A file may have several names, or be named several times.
    if (!identities_.insert(state->identity).second) return;
    target.modified = state->modified;
    if (!options_.read_only && is_read_only(target.path, *state)) {
      skipped_.complain_of(target.shown, "read-only");
    } else if (!options_.no_backup &&
               target.path.find_first_of("\t\r\n") != std::string::npos) {
      skipped_.complain_of(target.shown,
                           "with such a name it could not be undone");
    } else if (const std::string reason = why_not_text(target.path);
               !reason.empty()) {
      skipped_.complain_of(target.shown, reason);
    } else {
      targets_.push_back(std::move(target));
    }
  }

  // The library ends a text that it rewrites at its first zero byte, but for
  // changes of case.
  std::string why_not_text(const std::string& path) const {
    if (options_.binary && !options_.cuts_at_zero_byte) return "";
    const std::optional<bool> zero = has_zero_byte(path);
    if (!zero) return why_not_read(path);
    if (!*zero) return "";
    return options_.binary ? "what follows its first zero byte would be lost"
                           : "binary";
  }

  void name_rejected(const FileList& files) {
    const uint32_t count = records_in(ZENFO_LIST_ERROR);
    for (uint32_t i = 0; i < count; ++i) {
      const std::string path(session_.full_name(ZENFO_LIST_ERROR, i));
      skipped_.complain_of(files.shown(path), why_not_read(path));
    }
    session_.new_errors();  // said in the user's words
  }

  Session& session_;
  const ChangeOptions& options_;
  Skipped& skipped_;
  std::vector<Target> targets_;
  std::unordered_set<std::string> identities_;
  uint32_t next_ = 0;    // place of the file in hand in the list of files
  uint32_t passed_ = 0;  // selected files before it
};

void enter(Session& session, const std::vector<std::string>& paths) {
  Clear(ZENFO_LIST_FILES);
  for (const std::string& path : paths) session.expect_paths_of(path.size());
  session.append_paths(paths);
  session.select_all(true);
}

// A file's bytes, without its rights: the copy can be written.
void copy_bytes(const std::string& from, const std::string& to) {
  FileBytes bytes;
  std::ofstream file(to_path(to), std::ios::binary);
  if (!bytes.load(from)) throw Failure{from, why_not_read(from)};
  file.write(bytes.view().data(),
             static_cast<std::streamsize>(bytes.view().size()));
  file.close();
  if (!file) throw Failure{to, "cannot be written"};
}

int preview(Session& session, const std::vector<Target>& targets,
            const ChangeOptions& options, const Change& change,
            Output& output) {
  std::vector<std::string> copies;
  for (const Target& target : targets) {
    copies.push_back(temporary_folder::make_file());
    copy_bytes(target.path, copies.back());
    if (system::stop_status() != 0) throw Stopped{};
  }
  enter(session, copies);
  Session::Question question;
  if (options.stays) {
    question = [&] {
      deselect_unchanged(copies[Session::files_done()], options.stays);
      return Session::Answer::kTake;
    };
  }
  const int32_t result = session.run_changes(
      [&] { return change(question != nullptr, false); }, question);
  if (system::stop_status() != 0) throw Stopped{};
  if (result < 0) {
    session.complain_about_errors();
    throw Failure{"", "the changes cannot be made"};
  }
  FileBytes before, after;
  uint64_t files = 0;
  for (size_t i = 0; i < targets.size(); ++i) {
    if (!before.load(targets[i].path) || !after.load(copies[i])) {
      throw Failure{targets[i].shown, why_not_read(targets[i].path)};
    }
    files += before.view() != after.view();
    put_changes(output, targets[i].shown, before.view(), after.view());
  }
  output.flush();
  remark("", counted(files, "file", "files") + " would change, " +
                 counted(static_cast<uint64_t>(result), "match", "matches") +
                 " would be " + options.done + "; nothing was touched");
  return result > 0 ? kFound : kNothingFound;
}

// Whether the user is told of the number of matches before anything is done.
bool names_matches_first(const ChangeOptions& options) {
  return !options.yes && !options.ask && !options.dry_run;
}

// Throws Failure where nobody can be asked, Stopped for a no.
void confirm(const Targets& targets, const ChangeOptions& options) {
  if (options.yes) return;
  if (!system::is_terminal(system::Stream::kInput)) {
    throw Failure{
        "", options.ask
                ? "--ask needs a terminal"
                : "nothing was changed: see the changes with --dry-run, make "
                  "them with --yes"};
  }
  if (options.ask) return;
  say(counted(targets.matches(), "match", "matches") + " in " +
      counted(targets.all().size(), "file", "files") + " would be " +
      options.done + ". Go on? [y/N] ");
  const std::optional<std::string> answer = system::read_line();
  if (system::stop_status() != 0) throw Stopped{};
  if (!answer || answer->empty() || (answer->front() | 0x20) != 'y') {
    throw Failure{"", "nothing was changed"};
  }
}

// The run itself.
class ChangeRun {
 public:
  ChangeRun(Session& session, const std::vector<Target>& targets,
            const ChangeOptions& options, Skipped& skipped)
      : session_(session),
        targets_(targets),
        options_(options),
        skipped_(skipped) {
    for (const Target& target : targets) by_path_.emplace(target.path, &target);
  }

  int run(const Change& change, Output& output) {
    enter_targets();
    if (!options_.no_backup) begin_record();
    const int32_t result = make_changes(change);
    session_.hold_stop(true);
    not_done_ = targets_.size() -
                std::min<size_t>(Session::files_done(), targets_.size());
    count(result);
    if (result < 0 || stopped()) put_back_last();
    name_unchanged();
    restore_dates();
    end_record();
    write_summary(output);
    if (stopped()) throw Stopped{};
    return replaced_ > 0 ? kFound : kNothingFound;
  }

 private:
  static bool stopped() { return system::stop_status() != 0; }

  void begin_record() {
    store_.emplace();
    run_ = store_->begin(options_.command);
    const std::string file = store_->undo_file(run_.name);
    if (SetUndoFile(file.c_str()) != 1) {
      store_->remove(run_.name);
      throw Failure{file, "safe copies cannot be kept there"};
    }
  }

  void enter_targets() {
    std::vector<std::string> paths;
    for (const Target& target : targets_) paths.push_back(target.path);
    enter(session_, paths);
  }

  int32_t make_changes(const Change& change) {
    std::vector<std::unique_ptr<WriteAccess>> access;
    if (options_.read_only) {
      for (const Target& target : targets_) {
        access.push_back(std::make_unique<WriteAccess>(target.path));
      }
    }
    Session::Question question;
    if (options_.ask || options_.stays) question = [this] { return ask(); };
    return session_.run_changes(
        [&] { return change(question != nullptr, !options_.no_backup); },
        question);
  }

  // Deselects the matches that are to stay.
  Session::Answer ask() {
    if (asking_.stopped()) return Session::Answer::kStop;
    const Target& target = targets_[Session::files_done()];
    if (options_.stays) deselect_unchanged(target.path, options_.stays);
    if (!options_.ask) return Session::Answer::kTake;
    FileBytes bytes;
    bytes.load(target.path);
    const uint32_t matches = matches_in_hand();
    for (uint32_t i = 0; i < matches; ++i) {
      const Match match = match_in_hand(i);
      if (GetState(ZENFO_LIST_MATCHES, i) != 1) continue;
      if (!asking_.take(target.shown, bytes.view(), match)) {
        SetState(ZENFO_LIST_MATCHES, static_cast<int32_t>(i), 0);
      }
    }
    return Session::Answer::kTake;
  }

  void count(int32_t result) {
    const uint32_t files = records_in(ZENFO_LIST_RESULT);
    uint64_t matches = 0;
    for (uint32_t i = 0; i < files; ++i) {
      const auto found = static_cast<uint64_t>(GetFlag(ZENFO_LIST_RESULT, i));
      if (store_) done_.emplace(session_.full_name(ZENFO_LIST_RESULT, i));
      matches += found;
      changed_ += found > 0;
    }
    replaced_ = result > 0 ? static_cast<uint64_t>(result) : matches;
    if (result == 0 && !stopped()) replaced_ = 0;
    if (result < 0 && !stopped()) {
      session_.complain_about_errors();
      complain("", "the run failed before its end");
      tell_of_file_in_hand();
    }
  }

  // Without a safe copy there is no way back.
  void tell_of_file_in_hand() {
    const uint32_t done = Session::files_done();
    if (!options_.no_backup || done >= targets_.size()) return;
    complain(targets_[done].shown,
             "may have lost its end; there is no safe copy of it");
  }

  // The file whose rewriting was cut off is the last one with a safe copy that
  // is not among those that the run is done with.
  void put_back_last() {
    if (options_.no_backup) return;
    const int32_t copies = load_undo_list();
    if (copies <= 0) return;
    const auto last = static_cast<uint32_t>(copies - 1);
    const std::string path = undo_path(last);
    if (done_.contains(path)) return;
    SetState(ZENFO_LIST_UNDO, -1, 0);
    SetState(ZENFO_LIST_UNDO, static_cast<int32_t>(last), 1);
    const WriteAccess access(path);
    Undo();
    if (records_in(ZENFO_LIST_UNDO) == last) {
      complain(shown(path), "was not finished and is again as it was before");
    } else {
      complain(shown(path), "was cut off; its safe copy is kept");
    }
  }

  using UndoAccessor = decltype(&GetOrigFile);

  // Answers the records of the undo list.
  int32_t load_undo_list() {
    // No path in the list is longer than its file.
    const auto file = state_of(store_->undo_file(run_.name));
    buffer_.resize((file ? file->size : 0) + 1);
    return GetUndoList();
  }
  std::string undo_text(UndoAccessor accessor, uint32_t index) {
    buffer_.front() = '\0';
    accessor(index, buffer_.data(), static_cast<uint32_t>(buffer_.size()));
    return buffer_.data();
  }
  std::string undo_path(uint32_t index) {
    return undo_text(GetOrigFile, index);
  }

  const std::string& shown(const std::string& path) const {
    const auto known = by_path_.find(path);
    return known == by_path_.end() ? path : known->second->shown;
  }

  // Files of which no safe copy could be made, or that cannot be loaded any
  // more.
  void name_unchanged() {
    const uint32_t count = records_in(ZENFO_LIST_ERROR);
    if (count == 0) return;
    const std::vector<ErrorRecord> errors = session_.new_errors();
    for (uint32_t i = 0; i < count; ++i) {
      const std::string path(session_.full_name(ZENFO_LIST_ERROR, i));
      skipped_.complain_of(shown(path), why_unchanged(path, errors));
    }
  }

  static std::string why_unchanged(const std::string& path,
                                   const std::vector<ErrorRecord>& errors) {
    const bool changed =
        std::any_of(errors.begin(), errors.end(), [&](const auto& error) {
          return error.message.starts_with(path + " was changed meanwhile");
        });
    if (changed) return "it was changed meanwhile";
    const std::string reason = system::why_not_loaded(path);
    return reason.empty() ? "it could not be loaded or kept safe" : reason;
  }

  void restore_dates() {
    if (!options_.keep_date) return;
    for (const Target& target : targets_) {
      const std::optional<FileState> state = state_of(target.path);
      if (!state || state->modified == target.modified) continue;
      const WriteAccess access(target.path);
      if (!set_modified(target.path, target.modified)) {
        complain(target.shown, "its date could not be restored");
      }
    }
  }

  void end_record() {
    if (!store_) return;
    const int32_t copies = load_undo_list();
    if (copies <= 0) {
      store_->remove(run_.name);
      return;
    }
    for (uint32_t i = 0; i < static_cast<uint32_t>(copies); ++i) note_file(i);
    if (!store_->save(run_)) {
      complain(run_.name, "its record cannot be finished");
    }
    store_->remove_old(&run_);
    undo_command_ = "zenfo undo " + run_.name;
  }

  void note_file(uint32_t index) {
    const std::string path = undo_path(index);
    const auto state = state_of(path);
    const auto copy = state_of(undo_text(GetSafeFile, index));
    if (!done_.contains(path) || !state || !copy) return;
    run_.files.push_back({path, state->size, state->modified, copy->size});
  }

  void write_summary(Output& output) {
    output.put(counted(changed_, "file", "files") + " changed, " +
               counted(replaced_, "match", "matches") + ' ' + options_.done +
               '\n');
    if (skipped_.count() > 0) output.put(skipped_.summary() + '\n');
    if (not_done_ > 0) {
      output.put(counted(not_done_, "file", "files") + " not done\n");
    }
    if (!undo_command_.empty()) {
      output.put("undo with: " + undo_command_ + '\n');
    }
  }

  Session& session_;
  const std::vector<Target>& targets_;
  const ChangeOptions& options_;
  Skipped& skipped_;
  std::unordered_map<std::string_view, const Target*> by_path_;
  std::unordered_set<std::string> done_;  // where there are safe copies
  std::optional<RunStore> store_;
  Run run_;
  Asking asking_;
  std::vector<char> buffer_;
  uint64_t changed_ = 0;
  uint64_t replaced_ = 0;
  uint64_t not_done_ = 0;
  std::string undo_command_;
};

}  // namespace

int run_change(Session& session, Search& search, const ChangeOptions& options,
               const Change& change, Output& output) {
  Skipped skipped;
  session.leave_at_stop(true);
  SearchOptions first = options.search;
  const bool one_match_will_do = !names_matches_first(options) &&
                                 !search.several_texts() && !options.stays &&
                                 search_once_a_file(first);
  std::optional<Search> first_search;
  if (one_match_will_do) first_search.emplace(session, first);
  const Targets targets(session, first_search ? *first_search : search, options,
                        skipped);
  if (one_match_will_do) search.compile_again();
  session.leave_at_stop(false);
  if (targets.all().empty()) {
    if (skipped.count() > 0 && !options.dry_run) {
      output.put("0 files changed\n" + skipped.summary() + '\n');
    }
    return kNothingFound;
  }
  if (options.dry_run) {
    return preview(session, targets.all(), options, change, output);
  }
  confirm(targets, options);
  return ChangeRun(session, targets.all(), options, skipped)
      .run(change, output);
}

}  // namespace zenfo::cli
