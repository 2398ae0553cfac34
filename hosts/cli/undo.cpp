// zenfo undo: brings back the files of a run as they were before it.
//
// Tested by tests/cli/posix_replace_test.cpp
#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "command_line.h"
#include "commands.h"
#include "file_state.h"
#include "library.h"
#include "messages.h"
#include "output.h"
#include "run_store.h"
#include "system.h"

namespace zenfo::cli {
namespace {

const HelpTexts kHelpTexts = {
    "zenfo undo [OPTIONS] [RUN] [FILE...]\n"
    "       zenfo undo --list",
    "Brings back the files that a run of 'zenfo replace' or 'zenfo case'\n"
    "changed, as they were before: all of them or the FILEs. Without RUN the\n"
    "last run is meant. A file that was changed after the run stays unless\n"
    "--force is given. Safe copies are kept for 30 days, and less when all\n"
    "take more than 1 GB.",
    "The exit status is 0 when all was brought back, 1 when there is nothing "
    "to\n"
    "undo, and 2 after an error or when a file stays as it is.\n"};

struct UndoOptions {
  bool list = false;
  bool force = false;
  std::vector<std::string> arguments;
};

bool parse(const Arguments& arguments, UndoOptions& options, Output& output) {
  CommandLine line("undo", kHelpTexts);
  line.arguments(options.arguments);
  line.flag("-l,--list", options.list,
            "List the runs that can be undone, the oldest first:\n"
            "name, time, number of files, command");
  line.flag("--force", options.force,
            "Bring back files that were changed after the run\ntoo");
  if (!line.parse(arguments, output)) return false;
  if (options.list && !options.arguments.empty()) {
    throw line.wrong("--list", "takes no arguments");
  }
  return true;
}

int list_runs(const RunStore& store, Output& output) {
  const std::vector<Run> runs = store.runs();
  for (const Run& run : runs) {
    const size_t files = run.files.size();
    const std::string count =
        files == 0 ? "unfinished"
                   : std::to_string(files) + (files == 1 ? " file" : " files");
    output.put_name(run.name + "  " + run.time + "  " + count + "  " +
                    run.command);
    output.put('\n');
  }
  return runs.empty() ? kNothingFound : kDone;
}

// One run on its way back.
class Undoing {
 public:
  Undoing(Session& session, const RunStore& store, Run run, bool force)
      : session_(session), store_(store), run_(std::move(run)), force_(force) {}

  int undo(const std::vector<std::string>& files, Output& output) {
    const std::string undo_file = store_.undo_file(run_.name);
    session_.hold_stop(true);
    // The library would make the file anew.
    const bool listed =
        state_of(undo_file).has_value() && SetUndoFile(undo_file.c_str()) == 1;
    const int32_t records = listed ? GetUndoList() : 0;
    if (records <= 0) refuse_without_records();
    // No path can be longer than the file of all.
    const auto state = state_of(undo_file);
    buffer_.resize((state ? state->size : 0) + 1);
    for (int32_t i = 0; i < records; ++i) paths_.push_back(path_of(i));
    listed_.insert(paths_.begin(), paths_.end());
    for (const RunFile& file : run_.files) known_.emplace(file.path, file);
    const std::vector<std::string> unlisted = unlisted_files();
    const int32_t restored = choose(files) == 0 ? 0 : restore(records);
    output.put(std::to_string(restored) + (restored == 1 ? " file" : " files") +
               " restored\n");
    end_record(unlisted);
    if (system::stop_status() != 0) throw Stopped{};
    return kDone;
  }

 private:
  using Accessor = decltype(&GetOrigFile);

  std::string text(Accessor accessor, int32_t record) {
    buffer_.front() = '\0';
    accessor(static_cast<uint32_t>(record), buffer_.data(),
             static_cast<uint32_t>(buffer_.size()));
    return buffer_.data();
  }
  std::string path_of(int32_t record) { return text(GetOrigFile, record); }
  std::optional<FileState> state_of_copy(int32_t record) {
    return state_of(text(GetSafeFile, record));
  }
  static int32_t records_left() {
    return std::max(GetCount(ZENFO_LIST_UNDO, -1), 0);
  }

  // A run without records that did not come to its end may still be going on.
  [[noreturn]] void refuse_without_records() {
    if (run_.files.empty()) {
      throw Failure{run_.name, "it has no safe copies on record"};
    }
    if (store_.has_copies(run_.name)) {
      throw Failure{run_.name,
                    "the list of its safe copies is damaged; they "
                    "are beside " +
                        store_.undo_file(run_.name)};
    }
    store_.remove(run_.name);
    throw Failure{run_.name, "its safe copies are gone"};
  }

  // Files of the run that the list of its copies ought to name, but does not.
  std::vector<std::string> unlisted_files() const {
    std::vector<std::string> unlisted;
    for (const RunFile& file : run_.files) {
      if (!listed_.contains(file.path)) unlisted.push_back(file.path);
    }
    return unlisted;
  }

  // The run stays as long as there may be a copy of a file to bring back.
  void end_record(const std::vector<std::string>& unlisted) {
    const bool any_unlisted = !unlisted.empty() && store_.has_copies(run_.name);
    if (any_unlisted) {
      for (const std::string& path : unlisted) {
        complain(path,
                 "is not in the list of safe copies; what is left of them is "
                 "beside " +
                     store_.undo_file(run_.name));
      }
    }
    if (!any_unlisted && !has_listed_copies()) {
      store_.remove(run_.name);
    } else {
      forget_restored();
    }
  }

  void forget_restored() {
    std::unordered_set<std::string> left;
    for (int32_t i = 0; i < records_left(); ++i) left.insert(path_of(i));
    const size_t restored = std::erase_if(run_.files, [&](const RunFile& file) {
      return listed_.contains(file.path) && !left.contains(file.path);
    });
    if (restored > 0) store_.save(run_);
  }

  bool has_listed_copies() {
    for (int32_t i = 0; i < records_left(); ++i) {
      if (state_of_copy(i)) return true;
    }
    return false;
  }

  uint32_t choose(const std::vector<std::string>& files) {
    SetState(ZENFO_LIST_UNDO, -1, 0);
    std::vector<size_t> wanted;
    if (files.empty()) {
      for (size_t i = 0; i < paths_.size(); ++i) wanted.push_back(i);
    }
    for (const std::string& file : files) find_wanted(file, wanted);
    uint32_t chosen = 0;
    for (const size_t i : wanted) {
      const auto record = static_cast<int32_t>(i);
      const std::string reason = why_not(record);
      if (!reason.empty()) {
        complain(paths_[i], reason);
        continue;
      }
      SetState(ZENFO_LIST_UNDO, record, 1);
      access_.push_back(std::make_unique<WriteAccess>(paths_[i]));
      ++chosen;
    }
    return chosen;
  }

  // The same file may be named in another way than it was in the run.
  void find_wanted(const std::string& file, std::vector<size_t>& wanted) {
    const std::string path = complete_path(file);
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
    complain(file, "was not changed by " + run_.name + ", or is back already");
  }

  // Why a file is not to be restored; empty when it is. Nothing is known of the
  // files of a run that did not come to its end.
  std::string why_not(int32_t record) {
    const std::string& path = paths_[static_cast<size_t>(record)];
    const auto copy = state_of_copy(record);
    // An undo that was cut off leaves such records.
    if (!copy) return "has no safe copy any more; it may be back already";
    const auto known = known_.find(path);
    if (force_ || known == known_.end()) return "";
    const RunFile& file = known->second;
    if (copy->size != file.copy_size) {
      return "its safe copy is damaged; --force brings it back anyhow";
    }
    const auto now = state_of(path);
    const bool untouched =
        !now || (now->size == file.size && now->modified == file.modified);
    return untouched
               ? ""
               : "was changed after the run; --force brings it back anyhow";
  }

  // Answers the number of files restored.
  int32_t restore(int32_t records) {
    session_.hold_stop(false);
    const int32_t result = Undo();
    session_.hold_stop(true);
    if (result < 0) {
      complain(run_.name, "its list of safe copies cannot be written");
    }
    const int32_t left = records_left();
    for (int32_t i = 0; i < left && system::stop_status() == 0; ++i) {
      if (GetState(ZENFO_LIST_UNDO, static_cast<uint32_t>(i)) != 1) continue;
      complain(path_of(i), "cannot be restored; its safe copy is kept");
    }
    return records - left;
  }

  Session& session_;
  const RunStore& store_;
  Run run_;
  bool force_;
  std::vector<std::string> paths_;  // of the records
  std::unordered_set<std::string> listed_;
  std::unordered_map<std::string, RunFile> known_;
  std::vector<char> buffer_;
  std::vector<std::unique_ptr<WriteAccess>> access_;
};

// The run that the first argument names, which is then taken away, or the last.
std::optional<Run> take_run(const RunStore& store,
                            std::vector<std::string>& arguments) {
  if (!arguments.empty()) {
    if (auto run = store.find(arguments.front())) {
      arguments.erase(arguments.begin());
      return run;
    }
  }
  std::vector<Run> runs = store.runs();
  if (runs.empty()) return std::nullopt;
  return std::move(runs.back());
}

}  // namespace

int run_undo(const Arguments& arguments) {
  UndoOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  const RunStore store;
  if (options.list) return list_runs(store, output);
  std::optional<Run> run = take_run(store, options.arguments);
  if (!run) {
    remark("", "there is no run to undo");
    return kNothingFound;
  }
  Session session;
  return Undoing(session, store, std::move(*run), options.force)
      .undo(options.arguments, output);
}

}  // namespace zenfo::cli
