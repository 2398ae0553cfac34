// zenfo undo: restores the files that a run changed.
//
// Tested by tests/cli/posix_replace_test.cpp
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/options/command_line.h"
#include "cli/system/terminal.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/output.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/visible.h"
#include "shared/frame/counted.h"
#include "shared/runs/run_journal.h"
#include "shared/runs/run_store.h"
#include "shared/runs/undoing.h"
#include "shared/session/session.h"
#include "shared/system/paths.h"
#include "shared/system/run_lock.h"
#include "shared/system/stop.h"

namespace zenfo::host::cli {
namespace {

const HelpTexts kUndoHelp = {
    "zenfo undo [OPTIONS] [RUN] [FILE...]\n"
    "       zenfo undo --list\n"
    "       zenfo undo --forget RUN",
    "Brings back the files that a run of 'zenfo replace' or 'zenfo case'\n"
    "changed: all of them, or the FILEs. Without RUN it undoes the last run:\n"
    "on a terminal it asks first, elsewhere --yes is needed when that run was\n"
    "started in another folder. A file that was changed after the run stays\n"
    "as it is unless --force is given.\n"
    "\n"
    "Safe copies are kept for 30 days, or less when all of them take more\n"
    "than 1 GB, or than the megabytes in the variable ZENFO_UNDO_MEGABYTES.\n"
    "Those of the last day are always kept.",
    "The exit status is 0 when all files were brought back, 1 when there is\n"
    "nothing to undo, and 2 after an error or when a file stays as it is.\n"};

struct UndoOptions {
  bool list = false;
  bool force = false;
  bool yes = false;
  bool no_sync = false;
  std::string forget;  // name of a run; empty: none
  std::vector<std::string> arguments;
};

bool parse(const Arguments& arguments, UndoOptions& options, Output& output) {
  CommandLine line("undo", kUndoHelp);
  line.arguments(options.arguments);
  line.flag("-l,--list", options.list,
            "List the runs that can be undone, the oldest first:\n"
            "name, time, number of files, size of the safe\n"
            "copies, command");
  line.flag("--force", options.force,
            "Bring back files that were changed after the run\ntoo");
  line.flag("-y,--yes", options.yes, "Undo the last run without asking");
  line.value("--forget", options.forget, "RUN",
             "Remove the safe copies of RUN: it cannot be undone\n"
             "any more");
  line.flag("--no-sync", options.no_sync,
            "Do not wait until the disk has the files that are\n"
            "brought back: faster, but after a power cut those of\n"
            "the last minute may be torn, without a way back");
  if (!line.parse(arguments, output)) return false;
  const bool other = options.list || !options.forget.empty();
  if (other && !options.arguments.empty()) {
    throw line.wrong(options.list ? "--list" : "--forget",
                     "takes no further arguments");
  }
  return true;
}

std::string files_in(const Run& run) {
  const size_t files = run.files.size();
  if (files == 0) return "unfinished";
  return counted(files, "file", "files");
}

std::string state_in_list(const RunStore& store, const Run& run) {
  RunLock lock;
  return store.take(run.name, lock) ? files_in(run) : "going on";
}

int list_runs(const RunStore& store, Output& output) {
  const std::vector<Run> runs = store.runs();
  for (const Run& run : runs) {
    output.put_name(run.name + "  " + run.time + "  " +
                    state_in_list(store, run) + "  " +
                    megabytes(store.size_of(run.name)) + "  " + run.command);
    output.put('\n');
  }
  return runs.empty() ? kNothingFound : kDone;
}

// Throws Failure when the answer is no.
void ask(const std::string& question) {
  say(visible_name(question));
  const std::optional<std::string> answer = terminal::read_line();
  if (system::stop_status() != 0) throw Stopped{};
  if (!answer || answer->empty() || (answer->front() | 0x20) != 'y') {
    throw Failure{"", "nothing was undone"};
  }
}

// The known facts about a run, such as "run of 2026-11-14 09:42:56 in /home/me:
// 3 files, zenfo replace a b".
std::string description(const Run& run) {
  std::string text = "run";
  if (!run.time.empty()) text += " of " + run.time;
  if (!run.folder.empty()) text += " in " + run.folder;
  text += ": " + files_in(run);
  return run.command.empty() ? text : text + ", " + run.command;
}

bool is_of_this_folder(const Run& run) {
  std::error_code error;
  return narrow(std::filesystem::current_path(error)) == run.folder && !error;
}

// Whether a run certainly changed nothing. The caller holds its lock, so it has
// ended.
bool changed_nothing(const RunStore& store, const Run& run) {
  if (!run.files.empty()) return false;
  if (store.is_known_empty(run.name)) return true;
  const JournalReader journal(store.journal_file(run.name));
  return journal.exists() && journal.is_complete() && !journal.any_begun();
}

struct Chosen {
  Run run;
  RunLock lock;
};

Chosen take(const RunStore& store, Run run) {
  Chosen chosen{std::move(run), {}};
  if (!store.take(chosen.run.name, chosen.lock)) {
    throw Failure{chosen.run.name, chosen.lock.why_not()};
  }
  return chosen;
}

// Returns the last run that changed something, and removes later ones that did
// not.
std::optional<Chosen> take_last(const RunStore& store) {
  std::vector<Run> runs = store.runs();
  for (; !runs.empty(); runs.pop_back()) {
    Chosen chosen = take(store, std::move(runs.back()));
    // The run may have ended, or been undone, after it was read.
    auto run = store.find(chosen.run.name);
    if (!run) continue;
    chosen.run = std::move(*run);
    if (!changed_nothing(store, chosen.run)) return chosen;
    store.remove(chosen.run.name, chosen.lock);
  }
  return std::nullopt;
}

// Returns the run that the first argument names and removes the argument.
std::optional<Chosen> take_named(const RunStore& store,
                                 std::vector<std::string>& arguments) {
  if (arguments.empty()) return std::nullopt;
  auto run = store.find(arguments.front());
  if (!run) return std::nullopt;
  Chosen chosen = take(store, std::move(*run));
  if (auto now = store.find(chosen.run.name)) chosen.run = std::move(*now);
  arguments.erase(arguments.begin());
  return chosen;
}

// Names the run to be undone, because the user did not, and makes sure that it
// is the intended one. Throws Failure when it is not.
void confirm(const Run& run, const UndoOptions& options) {
  const std::string text = description(run);
  if (!options.yes && options.arguments.empty()) {
    if (terminal::is_terminal(terminal::Stream::kInput)) {
      return ask(run.name + ": undo the " + text + "? [y/N] ");
    }
    if (!is_of_this_folder(run)) {
      throw Failure{run.name, "nothing was undone: the " + text +
                                  ", was not started here; name it, or give "
                                  "--yes"};
    }
  }
  remark(run.name, "undoing the " + text);
}

int forget(const RunStore& store, const UndoOptions& options, Output& output) {
  const std::string& name = options.forget;
  std::optional<Run> run = store.find(name);
  if (!run) throw Failure{name, "there is no such run"};
  Chosen chosen = take(store, std::move(*run));
  const std::string size = megabytes(store.size_of(name));
  if (!options.yes && terminal::is_terminal(terminal::Stream::kInput)) {
    ask(name + ": remove the safe copies (" + size + ") of the " +
        description(chosen.run) + "? [y/N] ");
  }
  store.remove(name, chosen.lock);
  output.put(size + " of safe copies removed\n");
  return kDone;
}

}  // namespace

int run_undo(const Arguments& arguments) {
  UndoOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  const RunStore store;
  if (options.list) return list_runs(store, output);
  if (!options.forget.empty()) return forget(store, options, output);
  std::optional<Chosen> chosen = take_named(store, options.arguments);
  const bool named = chosen.has_value();
  if (!named) chosen = take_last(store);
  if (!chosen) {
    remark("", "there is no run to undo");
    return kNothingFound;
  }
  if (!named) confirm(chosen->run, options);
  set_environment(kSafetyVariable, options.no_sync ? "" : "sync");
  Progress progress;
  Session session(terminal_messages(), progress);
  Undoing undoing(session, store, std::move(chosen->run),
                  std::move(chosen->lock),
                  {.force = options.force, .durable = !options.no_sync});
  const uint32_t restored = undoing.bring_back(options.arguments);
  output.put(counted(restored, "file", "files") + " restored\n");
  undoing.end();
  if (system::stop_status() != 0) throw Stopped{};
  return kDone;
}

}  // namespace zenfo::host::cli
