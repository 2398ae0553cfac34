// zenfo undo: brings back the files of a run as they were before it.
//
// Tested by tests/cli/posix_replace_test.cpp
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
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
    output.put(run.name + "  " + run.time + "  " + count + "  " + run.command +
               '\n');
  }
  return runs.empty() ? kNothingFound : kDone;
}

// One run on its way back.
class Undoing {
 public:
  Undoing(const RunStore& store, Run run, bool force)
      : store_(store), run_(std::move(run)), force_(force) {}

  int undo(const std::vector<std::string>& files, Output& output) {
    const std::string undo_file = store_.undo_file(run_.name);
    // The library would make the file anew.
    if (!std::filesystem::exists(undo_file) ||
        SetUndoFile(undo_file.c_str()) != 1) {
      throw Failure{run_.name, "its safe copies are gone"};
    }
    const int32_t records = GetUndoList();
    if (records <= 0) throw Failure{run_.name, "it has no safe copies"};
    read_paths(static_cast<uint32_t>(records));
    const uint32_t chosen = choose(files);
    const int32_t left = chosen == 0 ? records : restore(records);
    const auto restored = static_cast<uint32_t>(records - left);
    output.put(std::to_string(restored) + (restored == 1 ? " file" : " files") +
               " restored\n");
    if (left == 0) store_.remove(run_.name);
    return kDone;
  }

 private:
  void read_paths(uint32_t records) {
    // No path can be longer than the file of all.
    const auto state = state_of(store_.undo_file(run_.name));
    std::vector<char> buffer((state ? state->size : 0) + 1);
    for (uint32_t i = 0; i < records; ++i) {
      GetOrigFile(i, buffer.data(), static_cast<uint32_t>(buffer.size()));
      paths_.emplace_back(buffer.data());
    }
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
      if (!may_restore(paths_[i])) continue;
      SetState(ZENFO_LIST_UNDO, static_cast<int32_t>(i), 1);
      access_.push_back(std::make_unique<WriteAccess>(paths_[i]));
      ++chosen;
    }
    return chosen;
  }

  // The same file may be named in another way than it was in the run.
  void find_wanted(const std::string& file, std::vector<size_t>& wanted) {
    const std::string path = std::filesystem::absolute(file).string();
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

  // Nothing is known of the files of a run that did not come to its end.
  bool may_restore(const std::string& path) {
    const auto known =
        std::find_if(run_.files.begin(), run_.files.end(),
                     [&](const RunFile& file) { return file.path == path; });
    const auto now = state_of(path);
    if (force_ || !now || known == run_.files.end()) return true;
    if (now->size == known->size && now->modified == known->modified) {
      return true;
    }
    complain(path, "was changed after the run; --force brings it back anyhow");
    return false;
  }

  int32_t restore(int32_t records) {
    const int32_t left = Undo();
    if (left < 0) throw Failure{run_.name, "the files cannot be restored"};
    for (int32_t i = 0; i < left; ++i) {
      if (GetState(ZENFO_LIST_UNDO, static_cast<uint32_t>(i)) != 1) continue;
      std::vector<char> buffer(longest() + 1);
      GetOrigFile(static_cast<uint32_t>(i), buffer.data(),
                  static_cast<uint32_t>(buffer.size()));
      complain(buffer.data(), "cannot be restored; its safe copy is kept");
    }
    return std::min(left, records);
  }

  size_t longest() const {
    size_t size = 0;
    for (const std::string& path : paths_) size = std::max(size, path.size());
    return size;
  }

  const RunStore& store_;
  Run run_;
  bool force_;
  std::vector<std::string> paths_;
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
  return Undoing(store, std::move(*run), options.force)
      .undo(options.arguments, output);
}

}  // namespace zenfo::cli
