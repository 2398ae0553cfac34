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
#include "cli/options/find_options.h"
#include "cli/printing/hex_printer.h"
#include "cli/printing/json_printer.h"
#include "cli/printing/line_printer.h"
#include "cli/system/terminal.h"
#include "cli/terminal/asking.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/output.h"
#include "cli/terminal/progress.h"
#include "shared/frame/counted.h"
#include "shared/session/file_arguments.h"
#include "shared/session/search.h"
#include "shared/session/session.h"
#include "shared/system/stop.h"
#include "shared/system/system.h"
#include "shared/text/binary.h"
#include "shared/text/found_text.h"
#include "shared/text/text_file.h"

namespace zenfo::host::cli {
namespace {

using Answer = Session::Answer;

// A stop may interrupt the command unless it writes a report or a summary.
bool leaves_nothing_half_done(const FindOptions& options) {
  return options.search.report.empty() && options.summary.empty();
}

// Writes the results of each file in which a run finds matches.
class Shown {
 public:
  Shown(const FindOptions& options, Session& session, FileList& files,
        bool several_texts, Output& output)
      : options_(options),
        session_(session),
        files_(files),
        several_texts_(several_texts),
        output_(output),
        lines_(options.form, output),
        json_(options.form.before, options.form.after, output),
        hex_(options.form.paths, options.form.colours, output),
        counts_(options.show == Show::kLineCounts ||
                        options.show == Show::kMatchCounts
                    ? files.count()
                    : 0) {}

  // Whether anything must be done during the run.
  bool asks_back() const {
    switch (options_.show) {
      case Show::kPaths:
      case Show::kOtherPaths:
        return options_.ask;
      case Show::kMatchCounts:
        return options_.ask || several_texts_;
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
    if (!several_texts_) finish_file();
    if (asking_.stopped() && !any) return Answer::kStop;
    return output_.failed() ? Answer::kStop : Answer::kTake;
  }

  // To be called when the run has ended.
  void finish() {
    finish_file();
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
        json_.print_summary(session_.count(ZENFO_LIST_RESULT) +
                            session_.count(ZENFO_LIST_NO_MATCH));
        return;
      default:
        return;
    }
  }

 private:
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
    matches_.clear();
    path_ = session_.full_name(index_);
    loaded_ = false;
  }

  bool needs_text() const {
    return options_.ask || options_.show == Show::kLines ||
           options_.show == Show::kLineCounts || options_.show == Show::kJson ||
           options_.show == Show::kHex;
  }

  std::string_view text() {
    if (!loaded_ && !load_text()) {
      const std::string reason = system::why_not_loaded(path_);
      complain(files_.path(index_),
               "cannot be read again" + (reason.empty() ? "" : ": " + reason));
    }
    loaded_ = true;
    return bytes_.view();
  }

  bool load_text() {
    return leaves_nothing_half_done(options_) ? bytes_.load_or_map(path_)
                                              : bytes_.load(path_);
  }

  // Whether any of the matches in hand is taken.
  bool take_matches() {
    const size_t before = matches_.size();
    const uint32_t count = matches_in_hand();
    for (uint32_t i = 0; i < count; ++i) {
      const Match match = match_in_hand(i);
      if (options_.ask && !asking_.take(files_.path(index_), text(), match)) {
        SetState(ZENFO_LIST_MATCHES, static_cast<int32_t>(i), 0);
      } else {
        matches_.push_back(match);
      }
    }
    return matches_.size() > before;
  }

  void finish_file() {
    if (!in_file_) return;
    in_file_ = false;
    if (several_texts_) unite(matches_);
    if (!needs_text()) {
      if (!counts_.empty()) counts_[index_] = matches_.size();
      return;
    }
    if (options_.show == Show::kLineCounts) {
      counts_[index_] = std::min(count_matching_lines(text(), matches_),
                                 options_.form.most_lines);
      return;
    }
    write_file();
  }

  void write_file() {
    switch (options_.show) {
      case Show::kLines:
        lines_.print_file(files_.path(index_), text(), matches_);
        break;
      case Show::kJson:
        json_.print_file(
            files_.path(index_), text(),
            find_blocks(text(), matches_, options_.form.most_lines));
        break;
      case Show::kHex:
        hex_.print_file(files_.path(index_), text(), matches_);
        break;
      case Show::kMatchCounts:
        counts_[index_] = matches_.size();
        break;
      default:
        break;
    }
    if (output_.on_terminal()) output_.flush();
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
      lines_.print_path(files_.path(index));
    });
  }

  void read_counts() {
    for_each_result(ZENFO_LIST_RESULT, [&](uint32_t index, uint32_t result) {
      counts_[index] =
          static_cast<uint32_t>(GetFlag(ZENFO_LIST_RESULT, result));
      if (options_.show == Show::kLineCounts) {
        counts_[index] = std::min(counts_[index], options_.form.most_lines);
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
      if (searched[i]) lines_.print_count(files_.path(i), counts_[i]);
    }
  }

  const FindOptions& options_;
  Session& session_;
  FileList& files_;
  const bool several_texts_;
  Output& output_;
  LinePrinter lines_;
  JsonPrinter json_;
  HexPrinter hex_;
  Asking asking_;
  std::vector<uint64_t> counts_;

  // The current file.
  bool in_file_ = false;
  bool loaded_ = false;
  uint32_t index_ = 0;
  uint32_t done_ = 0;  // files of the run before it
  std::string path_;
  FileBytes bytes_;
  std::vector<Match> matches_;
};

void select_files(Session& session, FileList& files, const NameFilter& filter) {
  session.select_all(true);
  for (uint32_t i = 0; i < files.count(); ++i) {
    if (files.is_repeat(i) ||
        (!filter.empty() && !files.is_stream(i) &&
         !filter.takes(files.path(i), files.is_named(i)))) {
      session.select(i, false);
    }
  }
}

// Deselects binary files and returns their number.
uint32_t deselect_binary(Session& session, const FileList& files) {
  uint32_t binary = 0;
  for (uint32_t i = 0; i < files.count(); ++i) {
    if (system::stop_status() != 0) throw Stopped{};
    if (!session.selected(i) ||
        !begins_as_binary(std::string(session.full_name(i)))) {
      continue;
    }
    session.select(i, false);
    ++binary;
  }
  return binary;
}

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
  const uint32_t binary =
      options.skip_binary ? deselect_binary(session, files) : 0;
  Shown shown(options, session, files, search.several_texts(), output);
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
