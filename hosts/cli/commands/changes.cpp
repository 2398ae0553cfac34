#include "cli/commands/changes.h"

#include <memory>
#include <new>
#include <optional>

#include "cli/printing/preview.h"
#include "cli/system/terminal.h"
#include "cli/terminal/asking.h"
#include "cli/terminal/messages.h"
#include "shared/frame/counted.h"
#include "shared/runs/change_run.h"
#include "shared/runs/rehearsal.h"
#include "shared/runs/run_store.h"
#include "shared/runs/skipped.h"
#include "shared/runs/targets.h"
#include "shared/system/stop.h"

namespace zenfo::host::cli {
namespace {

std::string matches_in_words(uint64_t matches) {
  return counted(matches, "match", "matches");
}

std::string files_in_words(uint64_t files) {
  return counted(files, "file", "files");
}

int preview(Session& session, const std::vector<Target>& targets,
            const ChangeOptions& options, const Change& change,
            Output& output) {
  Rehearsal rehearsal(session, targets);
  const uint32_t matches = rehearsal.run(options, change);
  const uint64_t files =
      rehearsal.compare([&](const Target& target, std::string_view before,
                            std::string_view after) {
        put_changes(output, target.shown, before, after);
      });
  output.flush();
  remark("", files_in_words(files) + " would change, " +
                 matches_in_words(matches) + " would be " + options.done +
                 "; nothing was touched");
  return matches > 0 ? kFound : kNothingFound;
}

// Whether the user sees the number of matches before anything is changed.
bool names_matches_first(const ChangeOptions& options) {
  return !options.yes && !options.ask && !options.dry_run;
}

// Throws Failure when nobody can be asked or the answer is no, Stopped for a
// stop.
void confirm(const Targets& targets, const ChangeOptions& options) {
  if (options.yes) return;
  if (!terminal::is_terminal(terminal::Stream::kInput)) {
    throw Failure{
        "", options.ask
                ? "--ask needs a terminal"
                : "nothing was changed: see the changes with --dry-run, make "
                  "them with --yes"};
  }
  if (options.ask) return;
  say(matches_in_words(targets.matches()) + " in " +
      files_in_words(targets.all().size()) + " would be " + options.done +
      ". Go on? [y/N] ");
  const std::optional<std::string> answer = terminal::read_line();
  if (system::stop_status() != 0) throw Stopped{};
  if (!answer || answer->empty() || (answer->front() | 0x20) != 'y') {
    throw Failure{"", "nothing was changed"};
  }
}

void tell_way_back(const ChangeRun& run, Output& output) {
  const std::string name = run.name();
  if (!name.empty()) output.put("undo with: zenfo undo " + name + '\n');
}

void write_summary(const ChangeRun& run, const Skipped& skipped,
                   const ChangeOptions& options, Output& output) {
  const ChangeSummary& summary = run.summary();
  output.put(files_in_words(summary.changed) + " changed, " +
             matches_in_words(summary.replaced) + ' ' + options.done + '\n');
  if (skipped.count() > 0) output.put(skipped.summary() + '\n');
  if (summary.not_done > 0) {
    output.put(files_in_words(summary.not_done) + " not done\n");
  }
  tell_way_back(run, output);
}

void end(ChangeRun& run, Output& output, std::unique_ptr<char[]>& reserve) {
  try {
    run.end();
  } catch (const std::bad_alloc&) {
    // The reserve is enough memory to say how to undo the run.
    reserve.reset();
    tell_way_back(run, output);
    throw;
  }
}

void remove_old_runs(const ChangeRun& run) {
  const uint64_t too_much = run.remove_old_runs();
  if (too_much == 0) return;
  remark("", "safe copies take " + megabytes(too_much) +
                 "; 'zenfo undo --list' lists the runs, 'zenfo undo --forget "
                 "RUN' removes the copies of one");
}

int make_changes(Session& session, const std::vector<Target>& targets,
                 const ChangeOptions& options, Skipped& skipped,
                 const Change& change, Output& output) {
  // Memory for the message after the changes.
  auto reserve = std::make_unique<char[]>(1 << 20);
  Asking asking;
  ChangeRun run(session, targets, options, skipped,
                options.ask ? &asking : nullptr);
  run.make(change);
  end(run, output, reserve);
  write_summary(run, skipped, options, output);
  remove_old_runs(run);
  if (system::stop_status() != 0) throw Stopped{};
  return run.summary().replaced > 0 ? kFound : kNothingFound;
}

}  // namespace

int run_change(Session& session, Search& search, const ChangeOptions& options,
               const Change& change, Output& output) {
  Skipped skipped(session.messages());
  session.leave_at_stop(true);
  SearchOptions first = options.search;
  const bool one_match_will_do = !names_matches_first(options) &&
                                 !search.several_texts() && !options.stays &&
                                 search_once_a_file(first);
  std::optional<Search> first_search;
  if (one_match_will_do) first_search.emplace(session, first).compile();
  Targets targets(session, options, skipped);
  targets.find(first_search ? *first_search : search);
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
  return make_changes(session, targets.all(), options, skipped, change, output);
}

}  // namespace zenfo::host::cli
