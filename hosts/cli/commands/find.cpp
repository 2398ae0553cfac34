// zenfo find: shows the lines that contain a text.
//
// Output that needs the matches themselves is written inside the library's
// question, file by file; names and counts are read from its lists after the
// run.
//
// Tested by tests/cli/find_test.cpp, tests/cli/posix_find_test.cpp; compared
// with grep by tests/cli/compare_with_grep
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/commands/found_files.h"
#include "cli/options/find_options.h"
#include "cli/system/terminal.h"
#include "cli/terminal/asking.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/output.h"
#include "cli/terminal/progress.h"
#include "shared/frame/counted.h"
#include "shared/session/file_arguments.h"
#include "shared/session/file_selection.h"
#include "shared/session/search.h"
#include "shared/session/session.h"
#include "shared/system/stop.h"
#include "shared/system/system.h"
#include "shared/system/work_thread.h"
#include "shared/text/found_text.h"
#include "shared/text/text_file.h"

namespace zenfo::host::cli {
namespace {

using Answer = Session::Answer;

// Takes the matches of each file in which a run finds any and has them written,
// if it pays on a thread beside the run.
class Shown {
 public:
  Shown(const FindOptions& options, Session& session, FileList& files,
        const Search& search, Output& output)
      : options_(options),
        session_(session),
        files_(files),
        search_(search),
        output_(output),
        found_(options, files, search.several_texts(), output) {
    if (writes_beside_the_run()) {
      writer_.emplace([this](FoundFile& file) { found_.write(file); });
    }
  }

  // Whether anything must be done during the run.
  bool asks_back() const {
    switch (options_.show) {
      case Show::kPaths:
      case Show::kOtherPaths:
        return options_.ask;
      case Show::kMatchCounts:
        return options_.ask || search_.several_texts();
      case Show::kLineCounts:
        return !options_.matches_are_lines;
      default:
        return true;
    }
  }

  Answer question() {
    if (options_.show == Show::kNothing) {
      // A report must be completed.
      if (options_.search.report.empty()) session_.leave(kFound);
      return Answer::kTake;
    }
    if (asking_.stopped()) return Answer::kStop;
    turn_to(Session::files_done());
    const bool any = take_matches();
    if (system::stop_status() != 0) return Answer::kStop;
    if (!search_.several_texts()) finish_file();
    if (asking_.stopped() && !any) return Answer::kStop;
    const bool failed = output_.failed() || (writer_ && writer_->failed());
    return failed ? Answer::kStop : Answer::kTake;
  }

  // To be called when the run has ended.
  void finish() {
    finish_file();
    if (writer_) writer_->finish();
    switch (options_.show) {
      case Show::kPaths:
        write_paths(ZENFO_LIST_RESULT);
        return;
      case Show::kOtherPaths:
        write_paths(ZENFO_LIST_NO_MATCH);
        return;
      case Show::kMatchCounts:
      case Show::kLineCounts:
        if (!asks_back()) read_counts();
        write_counts();
        return;
      case Show::kJson:
        found_.json().put_summary(session_.count(ZENFO_LIST_RESULT) +
                                  session_.count(ZENFO_LIST_NO_MATCH));
        return;
      default:
        return;
    }
  }

 private:
  // A terminal also shows questions and progress, which must not mix with
  // lines. A stop must not leave files unwritten that the report names.
  bool writes_beside_the_run() const {
    return found_.read_text() && !options_.ask &&
           leaves_nothing_half_done(options_) && !output_.on_terminal() &&
           files_.count() > 1 && may_use_threads();
  }

  // Makes the file after the first `done` of the run the current one.
  void turn_to(uint32_t done) {
    if (in_file_ && done == done_) return;
    finish_file();
    for (; index_ < files_.count(); ++index_) {
      if (!session_.selected(index_)) continue;
      if (done_ == done) break;
      ++done_;
    }
    in_file_ = true;
    file_ = {index_, std::string(session_.full_name(index_)), {}};
  }

  // Whether any of the matches in hand is taken.
  bool take_matches() {
    std::vector<Match>& taken = file_.matches;
    const size_t before = taken.size();
    search_.append_matches(taken);
    if (!options_.ask) return taken.size() > before;
    auto kept = taken.begin() + static_cast<ptrdiff_t>(before);
    int32_t index = 0;
    for (auto match = kept; match != taken.end(); ++match, ++index) {
      if (asking_.take(files_.shown(file_.path), found_.text(file_), *match)) {
        *kept++ = *match;
      } else {
        SetState(ZENFO_LIST_MATCHES, index, 0);
      }
    }
    taken.erase(kept, taken.end());
    return taken.size() > before;
  }

  void finish_file() {
    if (!in_file_) return;
    in_file_ = false;
    if (writer_) {
      const size_t bytes = file_.matches.size() * sizeof(Match);
      writer_->give(std::move(file_), bytes);
    } else {
      found_.write(file_);
    }
  }

  // Visits the entries of a result list together with their indices in the list
  // of files, which is in the same order.
  template <class Visit>
  void for_each_result(int32_t list, Visit visit) {
    const uint32_t results = session_.count(list);
    uint32_t index = 0;
    for (uint32_t i = 0; i < results; ++i, ++index) {
      if (system::stop_status() != 0) throw Stopped{};
      const std::string name(session_.full_name(list, i));
      while (index < files_.count() &&
             (!session_.selected(index) || session_.full_name(index) != name)) {
        ++index;
      }
      if (index == files_.count()) return;
      visit(index, i);
    }
  }

  void write_paths(int32_t list) {
    for_each_result(list, [&](uint32_t index, uint32_t) {
      found_.lines().print_path(files_.path(index));
    });
  }

  void read_counts() {
    for_each_result(ZENFO_LIST_RESULT, [&](uint32_t index, uint32_t result) {
      uint64_t& count = found_.counts()[index];
      count = static_cast<uint32_t>(GetFlag(ZENFO_LIST_RESULT, result));
      if (options_.show == Show::kLineCounts) {
        count = std::min(count, options_.form.most_lines);
      }
    });
  }

  void write_counts() {
    std::vector<bool> searched(files_.count());
    for (const int32_t list : {ZENFO_LIST_RESULT, ZENFO_LIST_NO_MATCH}) {
      for_each_result(
          list, [&](uint32_t index, uint32_t) { searched[index] = true; });
    }
    for (uint32_t i = 0; i < files_.count(); ++i) {
      if (searched[i]) {
        found_.lines().print_count(files_.path(i), found_.counts()[i]);
      }
    }
  }

  const FindOptions& options_;
  Session& session_;
  FileList& files_;
  const Search& search_;
  Output& output_;
  FoundFiles found_;
  Asking asking_;

  // The current file.
  bool in_file_ = false;
  uint32_t index_ = 0;
  uint32_t done_ = 0;  // files of the run before it
  FoundFile file_;

  // Last, so that it ends before what it uses.
  std::optional<WorkThread<FoundFile>> writer_;
};

void report_binary(uint32_t files) {
  if (files == 0) return;
  remark("",
         counted(files, "binary file was", "binary files were") + " skipped");
}

// The system knows better why a file could not be opened.
void tell_rejected_file(const std::string& path, std::string_view shown_path) {
  complain(shown_path, system::why_not_loaded(path, "could not be opened"));
}

// Returns the files that new errors say could not be loaded and complains about
// all other errors.
std::vector<std::string> unloaded_files(Session& session) {
  std::vector<std::string> paths;
  for (const ErrorRecord& record : session.new_errors()) {
    if (std::optional<std::string> path = unloaded_file(record)) {
      paths.push_back(std::move(*path));
    } else {
      complain(record.routine, record.message + " (" + record.context + ")");
    }
  }
  return paths;
}

void tell_rejected(Session& session, FileList& files) {
  unloaded_files(session);  // list 7 names them
  const uint32_t rejected = session.count(ZENFO_LIST_ERROR);
  uint32_t index = 0;
  for (uint32_t i = 0; i < rejected; ++i, ++index) {
    const std::string path(session.full_name(ZENFO_LIST_ERROR, i));
    while (index + 1 < files.count() &&
           (!session.selected(index) || session.full_name(index) != path)) {
      ++index;
    }
    tell_rejected_file(path, files.path(index));
  }
}

int status_of(uint32_t found) { return found > 0 ? kFound : kNothingFound; }

int run_over_lines(const FindOptions& options, Session& session,
                   Search& search) {
  check_crlf_lines(options.files_from);
  const uint32_t found =
      search.run_over_lines(options.files_from, options.summary);
  for (const std::string& path : unloaded_files(session)) {
    tell_rejected_file(path, path);
  }
  return status_of(found);
}

int run_over_files(FindOptions& options, Session& session, Search& search,
                   Output& output) {
  if (!options.files_from.empty()) {
    for (std::string& path : read_text_lines(options.files_from)) {
      if (!path.empty()) options.paths.push_back(std::move(path));
    }
  }
  FileList files(session);
  files.fill(options.paths, options.choice, FactOptions{});
  select_files(session, files, options.filter);
  uint32_t binary = 0;
  if (options.skip_binary) {
    deselect_binary(session, files, [&](const std::string&) { ++binary; });
  }
  Shown shown(options, session, files, search, output);
  Session::Question question;
  if (shown.asks_back()) question = [&] { return shown.question(); };
  const uint32_t found = search.run(question);
  shown.finish();
  const bool quiet = options.show == Show::kNothing;
  tell_rejected(session, files);
  if (!quiet) report_binary(binary);
  if (quiet && found > 0) session.leave(kFound);
  return status_of(found);
}

// Matches cost time, so for names and counts of lines the search finds as few
// as possible. False, without a change, if there is no such search.
bool find_no_more_than_shown(FindOptions& options) {
  switch (options.show) {
    case Show::kPaths:
    case Show::kOtherPaths:
      return search_once_a_file(options.search);
    case Show::kLineCounts:
      options.matches_are_lines = search_once_a_line(options.search);
      return options.matches_are_lines;
    default:
      return false;
  }
}

}  // namespace

int run_find(const Arguments& arguments) {
  FindOptions options;
  Output output;
  if (!parse_find(arguments, options, output)) return kDone;
  if (options.form.most_lines == 0 && options.show != Show::kOtherPaths) {
    return kNothingFound;
  }
  MappedFile::prepare(terminal::leave_without_file);
  Progress progress;
  Session session(terminal_messages(), progress);
  if (leaves_nothing_half_done(options)) session.leave_at_stop(true);
  const SearchOptions given = options.search;
  if (!options.ask && find_no_more_than_shown(options)) {
    // Checks the search as given: a text that compiles to nothing is refused,
    // but it would compile with the addition.
    Search(session, given).compile();
  }
  Search search(session, options.search);
  search.compile();
  return options.summary.empty()
             ? run_over_files(options, session, search, output)
             : run_over_lines(options, session, search);
}

}  // namespace zenfo::host::cli
