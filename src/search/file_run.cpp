#include "search/file_run.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "display/layout.h"
#include "frame/callbacks.h"
#include "listops/string_pair.h"
#include "pattern/compiler.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

constexpr char kLoadingContext[] = "loading file";

bool missing(const char* text) { return text == nullptr || *text == '\0'; }

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

Step CompiledSearch::next() {
  if (done_) return Step::kStop;
  done_ = true;
  return Step::kGoOn;
}

void PairSearches::rewind() {
  position_ = 0;
  if (kept_.empty()) kept_.resize(std::min(pairs_.Count(), kMostKept));
}

Step PairSearches::next() {
  while (position_ < pairs_.Count()) {
    const Record* record = pairs_.Get(position_++);
    if (record == nullptr) return Step::kFailed;
    if (record->state == 0) continue;
    const auto* pair = record_cast<StringPair>(record);
    if (pair == nullptr || pair->find.missing()) return Step::kFailed;
    replacement_ = pair->replace;
    const uint32_t position = position_ - 1;
    const bool compiled = position < kept_.size()
                              ? compile_kept(kept_[position], pair->find)
                              : compile(pair->find);
    return compiled ? Step::kGoOn : Step::kFailed;
  }
  return Step::kStop;
}

bool PairSearches::compile(const SharedText& text) {
  put_aside();
  return compile_search(context_, {}, {text.c_str(), is_pattern_, convert_},
                        {}) == 1;
}

// The host may change a pair's text while a file is in hand.
bool PairSearches::compile_kept(Kept& kept, const SharedText& text) {
  if (kept.text.missing() || kept.text.view() != text.view()) {
    if (!compile(text)) return false;
    kept.text = text;
  } else if (in_context_ != &kept) {
    put_aside();
    std::swap(context_.pattern, kept.pattern);
  }
  in_context_ = &kept;
  return true;
}

// The pattern in the context goes back to where it is kept.
void PairSearches::put_aside() {
  if (in_context_ == nullptr) return;
  in_context_->pattern = std::move(context_.pattern);
  in_context_ = nullptr;
}

FileRun::FileRun(Library& library, const RunOptions& options)
    : library_(library), options_(options), ask_(options.ask_user != 0) {
  content_.set_interrupt_hook(interr);
  content_.set_progress_hook(report);
  if (options.rewrites) {
    content_.note_versions();
  } else {
    content_.allow_views();
  }
  refresh_byte_tables();
}

// The display and the match records point into the content, which goes now.
FileRun::~FileRun() {
  if (library_.display != nullptr) library_.display->reset();
  empty_matches();
}

void FileRun::empty_matches() {
  for (PatternContext* context :
       {library_.find_context.get(), library_.exclusion_context.get(),
        library_.replace_context.get()}) {
    if (context != nullptr) context->ClearMatches();
  }
}

// An object for which there was no memory fails every run.
bool FileRun::can_run() const { return library_.complete(); }

int32_t FileRun::run_over_list(Searches& searches) {
  if (!can_run()) return -1;
  empty_lists();
  begin();
  ListSource source(*library_.second_files);
  ListResults results(*library_.results, *library_.no_matches,
                      *library_.errors);
  return run(source, searches, results);
}

// A file that is yet to be made has the name of its folder's file to be.
bool FileRun::lead_to_one_file(const char* a, const char* b) {
  if (missing(a) || missing(b)) return false;
  if (platform::names_same_file(a, b)) return true;
  const std::string x = platform::absolute_path(a);
  const std::string y = platform::absolute_path(b);
  const size_t x_name = x.rfind(platform::kPathSeparator) + 1;
  const size_t y_name = y.rfind(platform::kPathSeparator) + 1;
  return platform::same_path(x.substr(x_name), y.substr(y_name)) &&
         platform::names_same_file(x.substr(0, x_name).c_str(),
                                   y.substr(0, y_name).c_str());
}

int32_t FileRun::run_over_lines(Searches& searches, const char* list_path,
                                const char* summary_path,
                                SummaryFile& summary) {
  if (missing(list_path) || missing(summary_path) || !can_run()) return -1;
  // The summary would empty the list before it is read, and every error would
  // make the list longer while it is read.
  const std::string& error_file = library_.error_log->file_name();
  if (lead_to_one_file(list_path, summary_path) ||
      lead_to_one_file(list_path, error_file.c_str())) {
    return -1;
  }
  empty_lists();
  LineSource source(content_);
  if (!source.open(list_path) || !summary.open(summary_path)) return -1;
  begin();
  return run(source, searches, summary);
}

void FileRun::empty_lists() {
  library_.results->Clear();
  library_.no_matches->Clear();
  library_.errors->Clear();
  empty_matches();
}

int32_t FileRun::run(FileSource& source, Searches& searches,
                     RunResults& results) {
  searches_ = &searches;
  results_ = &results;
  source_ = &source;
  Step step = Step::kGoOn;
  FileInHand file;
  while (step == Step::kGoOn) {
    const FileSource::Next next = source.next(file);
    if (next == FileSource::Next::kEnd) break;
    if (source.interrupted()) {
      step = Step::kInterrupted;
    } else if (next == FileSource::Next::kFailed) {
      empty_lists();
      step = Step::kFailed;
    } else {
      step = handle(file);
    }
  }
  const bool written = results.finish() & finish();
  if (step == Step::kFailed || !written) return -1;
  return step == Step::kInterrupted ? 0 : answer();
}

int32_t FileRun::answer() const {
  return static_cast<int32_t>(std::min<int64_t>(total_, INT32_MAX));
}

Step FileRun::handle(FileInHand& file) {
  Step step = load(file);
  if (step != Step::kGoOn) return step == Step::kStop ? Step::kGoOn : step;
  if (!passes_check(file)) return Step::kGoOn;
  if (!content_.loaded()) {
    results_->empty(file);
    return Step::kGoOn;
  }
  step = search(file);
  // What an earlier search of the file did is recorded when a later one ends
  // the run.
  if (step == Step::kFailed || !file.handled) return step;
  if (!file.recorded) record(file);
  const Step ended = end_file(file);
  return ended == Step::kGoOn ? step : ended;
}

int32_t FileRun::load_content(const FileInHand& file) {
  empty_matches();
  // What is rewritten is opened by its own path both times.
  return content_.load_file_content(file.path.c_str(),
                                    options_.rewrites ? nullptr : &nearby_);
}

// kStop when the file is rejected.
Step FileRun::load(FileInHand& file) {
  announce(Phase::kLoading, file);
  if (!can_search(load_content(file))) {
    log_unopened(file);
    results_->rejected(file);
    return Step::kStop;
  }
  // A file must not be rewritten from what an interrupt left of it.
  const bool cut_short = content_.length() != content_.file_size();
  return options_.rewrites && cut_short ? Step::kInterrupted : Step::kGoOn;
}

bool FileRun::passes_check(FileInHand& file) {
  if (options_.binary_check == 0) return true;
  announce(Phase::kChecking, file);
  const int32_t position = content_.find_non_printable();
  if (position <= 0) return true;
  log(non_printable_message(content_, position).c_str(), kLoadingContext);
  results_->rejected(file);
  return false;
}

void FileRun::log_unopened(const FileInHand& file) const {
  const std::string message =
      std::string(file.path.view()) + " could not be opened";
  log(message.c_str(), kLoadingContext);
}

Step FileRun::search(FileInHand& file) {
  searches_->rewind();
  for (;;) {
    Step step = searches_->next();
    if (step == Step::kGoOn) step = begin_search(file);
    if (step == Step::kStop) return Step::kGoOn;  // no more searches
    if (step == Step::kGoOn) step = search_once(file);
    if (step != Step::kGoOn) return step;
  }
}

Step FileRun::search_once(FileInHand& file) {
  announce(Phase::kParsing, file);
  const int32_t found = find_matches();
  if (found < 0) return Step::kFailed;
  counted_ = static_cast<uint32_t>(found);
  const Step prepared = prepare_matches();
  if (prepared != Step::kGoOn) return prepared;
  switch (found > 0 && ask_ ? ask(file) : Answer::kTake) {
    case Answer::kSkip:  // neither counted nor reported
      return Step::kGoOn;
    case Answer::kStop:
      return Step::kStop;
    case Answer::kInvalid:
      log("Invalid option", "Prompting user option");
      return Step::kFailed;
    case Answer::kTakeAll:
      ask_ = false;
      break;
    case Answer::kTake:
      break;
  }
  file.handled = true;
  return take(file);
}

// Searches outside or inside the areas of the exclusion pattern. When it finds
// none because it is empty the whole text is searched; a cancellation ends the
// search too, since matches inside the areas would be taken.
int32_t FileRun::find_matches() {
  FindOptions options = find_options();
  PatternContext& areas = *library_.exclusion_context;
  areas_found_ =
      find_all(areas, content_.data(), content_.length(), options) >= 0;
  if (areas.cancelled) return -1;
  options.store = keep_matches();
  return find_all_by_areas(
      *library_.find_context, content_.data(), content_.length(), options,
      areas_found_ ? &areas : nullptr, options_.display != 0);
}

// The matches can be read and the display be painted from inside the question
// only.
FileRun::Answer FileRun::ask(const FileInHand& file) {
  announce(Phase::kDisplay, file);
  DisplayState& display = *library_.display;
  display.reset();
  display.show(content_.bytes(), &library_.find_context->matches,
               areas_found_ ? &library_.exclusion_context->matches : nullptr);
  prepare_display(display, {}, options_.display);
  const int32_t answer = ask_option(file.path.view(), question_number());
  display.reset();
  const bool valid = answer >= 0 && answer <= 3;
  return valid ? static_cast<Answer>(answer) : Answer::kInvalid;
}

Step FileRun::end_file(FileInHand&) { return Step::kGoOn; }

void FileRun::record(FileInHand& file) {
  results_->taken(file);
  file.recorded = true;
}

uint32_t FileRun::count_selected() {
  if (!matches_kept_) return counted_;
  return static_cast<uint32_t>(std::max(context().matches.CountState(1), 0));
}

// Decided once a search: an answer to its question may change the rest.
bool FileRun::keep_matches() {
  matches_kept_ = !only_counts();
  return matches_kept_;
}

FindOptions FileRun::find_options() const {
  FindOptions options;
  options.case_flag = options_.case_flag != 0;
  options.whole_words = options_.whole_words != 0;
  return options;
}

void FileRun::announce(Phase phase, const FileInHand& file) const {
  send_status(phase_text(phase), file.path.view());
}

void FileRun::log(const char* message, const char* context) const {
  ReportError(message, context, options_.row.routine);
}

}  // namespace zenfo
