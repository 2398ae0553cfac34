#include "search/file_run.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "display/layout.h"
#include "frame/callbacks.h"
#include "search/search_ahead.h"
#include "text/byte_tables.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

constexpr char kLoadingContext[] = "loading file";

std::string non_printable_message(const FileContent& content,
                                  int32_t position) {
  char numbers[48];
  std::snprintf(numbers, sizeof numbers, "%d (0x%x) ",
                static_cast<int>(position),
                static_cast<unsigned>(
                    static_cast<unsigned char>(content.data()[position])));
  return content.path() + " contains a non printable character at position " +
         numbers;
}

}  // namespace

// For a file that does not exist yet the folder is identified, and the name
// compared.
bool lead_to_one_file(const char* a, const char* b) {
  if (is_empty(a) || is_empty(b)) return false;
  if (platform::names_same_file(a, b)) return true;
  const std::string x = platform::absolute_path(a);
  const std::string y = platform::absolute_path(b);
  const size_t x_name = x.rfind(platform::kPathSeparator) + 1;
  const size_t y_name = y.rfind(platform::kPathSeparator) + 1;
  return platform::same_path(x.substr(x_name), y.substr(y_name)) &&
         platform::names_same_file(x.substr(0, x_name).c_str(),
                                   y.substr(0, y_name).c_str());
}

FileRun::FileRun(Library& library, const RunOptions& options,
                 const RunKind& kind, Searches& searches,
                 FileOperation& operation)
    : library_(library),
      options_(options),
      kind_(kind),
      searches_(searches),
      operation_(operation),
      ask_(options.ask_user != 0) {
  content_.set_interrupt_hook(interr);
  content_.set_progress_hook(report);
  if (kind.rewrites) {
    content_.note_versions();
  } else {
    content_.allow_views();
  }
  if (kind.refuses_links) content_.refuse_links();
  refresh_byte_tables();
}

// The display and the match records point into the content, which is released
// now.
FileRun::~FileRun() {
  if (library_.display != nullptr) library_.display->reset();
  empty_matches();
}

void FileRun::empty_matches() {
  for (PatternContext* context :
       {library_.find_context.get(), library_.exclusion_context.get(),
        library_.replace_context.get()}) {
    if (context != nullptr) context->clear_matches();
  }
}

void FileRun::empty_lists() {
  library_.results->clear();
  library_.no_matches->clear();
  library_.errors->clear();
  empty_matches();
}

// Without one of these objects, for lack of memory, every run fails.
int32_t FileRun::over_list() {
  if (!library_.complete()) return -1;
  empty_lists();
  traits_ = operation_.begin();
  ListSource source(*library_.run_files);
  ListResults results(*library_.results, *library_.no_matches,
                      *library_.errors);
  return run(source, results);
}

int32_t FileRun::over_lines(const LineFiles& files, SummaryFile& summary) {
  if (is_empty(files.list) || is_empty(files.summary) || !library_.complete()) {
    return -1;
  }
  // Otherwise the summary would empty the list before it is read, or every
  // error would make the list longer while it is read.
  const std::string& error_file = library_.error_log->file_name();
  if (lead_to_one_file(files.list, files.summary) ||
      lead_to_one_file(files.list, error_file.c_str())) {
    return -1;
  }
  empty_lists();
  LineSource source(content_);
  if (!source.open(files.list) || !summary.open(files.summary)) return -1;
  ahead_.add_output(files.summary);
  traits_ = operation_.begin();
  return run(source, summary);
}

int32_t FileRun::run(FileSource& source, RunResults& results) {
  results_ = &results;
  source_ = &source;
  note_outputs();
  if (nobody_looks()) count_ahead();
  const RunEnd end = go_over_files(source);
  // Both are ended, even if the first could not be written.
  const bool results_written = results.finish();
  const bool operation_finished = operation_.finish();
  if (end == RunEnd::kFailed || !results_written || !operation_finished) {
    return -1;
  }
  if (end == RunEnd::kInterrupted) return 0;
  return static_cast<int32_t>(std::min<int64_t>(total_, INT32_MAX));
}

void FileRun::note_outputs() {
  ahead_.add_output(traits_.report);
  if (library_.error_log != nullptr) {
    ahead_.add_output(library_.error_log->file_name().c_str());
  }
}

// Whether no call of the host can see anything of a file before its search has
// ended.
bool FileRun::searched_unseen() const {
  return !kind_.rewrites && !kind_.takes_areas && !host_listens() &&
         searches_.single();
}

// Whether the matches of a file are only counted, and no call of the host could
// see anything else of them.
bool FileRun::nobody_looks() const {
  return searched_unseen() && !ask_ && !traits_.wants_matches &&
         !library_.find_context->pattern.empty() &&
         library_.exclusion_context->pattern.empty();
}

void FileRun::count_ahead() {
  ahead_.count_ahead([this](size_t threads) {
    return std::make_unique<SearchAhead>(
        library_.find_context->pattern,
        SearchAhead::Options{find_options(), options_.binary_check != 0},
        threads);
  });
}

RunEnd FileRun::go_over_files(FileSource& source) {
  FileInHand file;
  for (;;) {
    const FileSource::Next next = source.next(file);
    if (next == FileSource::Next::kEnd) return RunEnd::kNormal;
    if (source.interrupted()) return RunEnd::kInterrupted;
    if (next == FileSource::Next::kFailed) {
      empty_lists();
      return RunEnd::kFailed;
    }
    if (const std::optional<RunEnd> end = handle(file)) return *end;
  }
}

// No value when the run continues with the next file.
std::optional<RunEnd> FileRun::handle(FileInHand& file) {
  const Loaded loaded = load(file);
  if (loaded == Loaded::kInterrupted) return RunEnd::kInterrupted;
  if (loaded == Loaded::kNo || !has_text(file)) return std::nullopt;
  const std::optional<RunEnd> end = search(file);
  // When a later search of the file ends the run, what an earlier one did is
  // still recorded.
  if (end == RunEnd::kFailed || !file.handled) return end;
  if (!file.recorded) record(file);
  return operation_.end_file() ? end : RunEnd::kFailed;
}

// Intended: a run that rewrites rejects an empty file as one that could not be
// loaded.
FileRun::Loaded FileRun::load(FileInHand& file) {
  announce(Phase::kLoading, file);
  const int32_t length = load_content(file);
  if (length < 0 || (length == 0 && kind_.rewrites)) {
    reject_unread(file);
    return Loaded::kNo;
  }
  return loaded_to_its_end();
}

// The next string, for a file that was rewritten for the one before.
FileRun::Loaded FileRun::load_again(FileInHand& file) {
  file.stale = false;
  const int32_t length = load_content(file);
  if (length < 0) log_unopened(file);
  return length > 0 ? loaded_to_its_end() : Loaded::kNo;
}

// A file must not be rewritten from the part that was loaded before an
// interrupt.
FileRun::Loaded FileRun::loaded_to_its_end() const {
  const bool cut_short = content_.length() != content_.file_size();
  return kind_.rewrites && cut_short ? Loaded::kInterrupted : Loaded::kYes;
}

int32_t FileRun::load_content(const FileInHand& file) {
  empty_matches();
  content_.read_when_used(searched_unseen());
  // A file that will be rewritten is opened by its own path both times.
  return kind_.rewrites ? content_.load_file_content(file.path.c_str())
                        : ahead_.load(file.path, *source_);
}

// A file that was counted ahead has text, and has passed the check.
bool FileRun::has_text(FileInHand& file) {
  if (ahead_.counted()) return true;
  if (!passes_check(file)) return false;
  if (!content_.loaded()) results_->empty(file);
  return content_.loaded();
}

bool FileRun::passes_check(FileInHand& file) {
  if (options_.binary_check == 0) return true;
  announce(Phase::kChecking, file);
  const int32_t position = content_.find_non_printable();
  if (!content_.intact()) {
    reject_unread(file);
    return false;
  }
  if (position <= 0) return true;
  log(non_printable_message(content_, position).c_str(), kLoadingContext);
  results_->rejected(file);
  return false;
}

// Of what could not be read, whether that shows while the file is loaded or
// only when its bytes are used.
void FileRun::reject_unread(FileInHand& file) {
  log_unopened(file);
  results_->rejected(file);
}

void FileRun::log_unopened(const FileInHand& file) {
  const std::string message =
      std::string(file.path.view()) + " could not be opened";
  log(message.c_str(), kLoadingContext);
}

// No value when all searches are done.
std::optional<RunEnd> FileRun::search(FileInHand& file) {
  searches_.rewind();
  After after = After::kNextSearch;
  for (;;) {
    const NextSearch next = searches_.next();
    if (next == NextSearch::kFailed) return RunEnd::kFailed;
    // A pair without a find string fails the run, even if the file is left
    // before that pair.
    if (next == NextSearch::kNone || after == After::kNextFile) {
      return std::nullopt;
    }
    if (file.stale) {
      const Loaded loaded = load_again(file);
      if (loaded == Loaded::kInterrupted) return RunEnd::kInterrupted;
      if (loaded == Loaded::kNo) return std::nullopt;
    }
    after = search_once(file);
    if (after == After::kStop) return RunEnd::kNormal;
    if (after == After::kFail) return RunEnd::kFailed;
  }
}

After FileRun::search_once(FileInHand& file) {
  announce(Phase::kParsing, file);
  const int32_t found = find();
  if (!content_.intact()) {
    empty_matches();
    reject_unread(file);
    return After::kNextFile;
  }
  if (found < 0) return After::kFail;
  counted_ = static_cast<uint32_t>(found);
  if (!operation_.search_done(*this)) return After::kFail;
  switch (found > 0 && ask_ ? ask(file) : Answer::kTake) {
    case Answer::kSkip:  // neither counted nor reported
      return After::kNextSearch;
    case Answer::kStop:
      return After::kStop;
    case Answer::kInvalid:
      log("Invalid option", "Prompting user option");
      return After::kFail;
    case Answer::kTakeAll:
      ask_ = false;
      break;
    case Answer::kTake:
      break;
  }
  file.handled = true;
  return operation_.take(*this, file);
}

int32_t FileRun::find() {
  if (!ahead_.counted()) {
    return kind_.takes_areas ? find_areas() : find_matches();
  }
  matches_kept_ = false;
  return *ahead_.counted();
}

// Searches outside or inside the areas of the exclusion pattern. When there are
// no areas because the pattern is empty, the whole text is searched. A
// cancellation ends the search, because otherwise matches inside the areas
// would be taken.
int32_t FileRun::find_matches() {
  FindOptions options = find_options();
  PatternContext& areas = *library_.exclusion_context;
  areas_found_ =
      find_all(areas, content_.data(), content_.length(), options) >= 0;
  if (areas.cancelled) return -1;
  options.store = keep_matches();
  return find_all_by_areas(
      *library_.find_context, content_.data(), content_.length(), options,
      areas_found_ ? &areas : nullptr, options_.inside_areas != 0);
}

int32_t FileRun::find_areas() {
  FindOptions options = find_options();
  options.store = keep_matches();
  return find_all(context(), content_.data(), content_.length(), options);
}

// Decided once for each search, because an answer to its question may change
// the rest. The host can see the matches from its callbacks too, not only from
// the question.
bool FileRun::keep_matches() {
  matches_kept_ = ask_ || traits_.wants_matches || host_listens();
  return matches_kept_;
}

// Only from inside the question can the matches be read and the display
// painted.
FileRun::Answer FileRun::ask(const FileInHand& file) {
  announce(Phase::kDisplay, file);
  DisplayState& display = *library_.display;
  display.reset();
  display.show(content_.bytes(), &library_.find_context->matches,
               areas_found_ ? &library_.exclusion_context->matches : nullptr);
  prepare_display(display, {}, options_.inside_areas);
  const int32_t answer = ask_option(file.path.view(), traits_.question_number);
  display.reset();
  const bool valid = answer >= 0 && answer <= 3;
  return valid ? static_cast<Answer>(answer) : Answer::kInvalid;
}

PatternContext& FileRun::context() {
  return kind_.takes_areas ? *library_.exclusion_context
                           : *library_.find_context;
}

FindOptions FileRun::find_options() const {
  FindOptions options;
  options.case_flag = options_.case_flag != 0;
  options.whole_words = options_.whole_words != 0;
  return options;
}

uint32_t FileRun::count_selected() {
  if (!matches_kept_) return counted_;
  return static_cast<uint32_t>(std::max(context().matches.count_state(1), 0));
}

void FileRun::record(FileInHand& file) {
  results_->taken(file);
  file.recorded = true;
}

void FileRun::announce(Phase phase, const FileInHand& file) const {
  send_status(phase_text(phase), file.path.view());
}

// The first record creates the error file, which may be a file of the run.
void FileRun::log(const char* message, const char* context) {
  report_error(message, context, options_.row.routine);
  ahead_.look_at_outputs();
}

}  // namespace zenfo
