#include "shared/session/session.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <new>
#include <utility>

#include "shared/frame/failure.h"
#include "shared/system/paths.h"
#include "shared/system/stop.h"
#include "shared/system/system.h"
#include "shared/system/temporary_folder.h"

namespace zenfo::host {
namespace {

constexpr int32_t kSeeds = ZENFO_LIST_OTHER_FILES;
constexpr int32_t kFiles = ZENFO_LIST_RUN_FILES;

// The names of phases are plain ASCII.
bool starts_with(const ZenfoWideChar* text, std::string_view phase) {
  return std::all_of(phase.begin(), phase.end(), [&](char c) {
    return *text++ == static_cast<ZenfoWideChar>(c);
  });
}

// Longer than any path the library finds below a folder, and than any other
// text.
constexpr size_t kTextRoom = 64 * 1024;

// Answers to the file question.
constexpr int32_t kAdd = 1;
constexpr int32_t kSkipAll = 2;

// Without the file, messages lack the library's own explanation, but the work
// can continue.
std::string make_error_file() {
  try {
    return temporary_folder::make_file();
  } catch (const Failure&) {
    return "";
  }
}

}  // namespace

bool is_sayable(std::string_view path) {
  return path.find_first_of(";|") == std::string_view::npos;
}

Session* Session::current_ = nullptr;

Session::Session(Messages& messages, ProgressView& progress)
    : messages_(messages), progress_(progress), error_file_(make_error_file()) {
  current_ = this;
  expect_paths_of(0);
  set_callbacks();
  if (Initialize() != 1) throw Failure{"", "the library cannot be started"};
  SetErrorFile(error_file_.c_str());
}

Session::~Session() {
  Terminate();
  const CallbackTable none{};
  SetCallBacks(&none);
  current_ = nullptr;
  temporary_folder::remove();
}

// Sets only the callbacks that are needed, because each one costs time.
void Session::set_callbacks() {
  CallbackTable table{};
  if (!leaves_at_stop_) table.interrupt = on_interrupt;
  table.file_question = on_file_question;
  if (question_) table.option_question = on_option_question;
  if (changing_ || progress_.wanted()) table.status = on_status;
  if (on_step_ != nullptr || progress_.wanted()) table.report = on_report;
  SetCallBacks(&table);
}

int32_t Session::on_report(ProgressRecord* record) {
  try {
    if (current_->on_step_ != nullptr) {
      (*current_->on_step_)(record->position, record->total);
    }
    if (current_->progress_.wanted()) current_->progress_.show_step(*record);
  } catch (const std::bad_alloc&) {
  }
  return 0;
}

int32_t Session::on_interrupt() {
  const int32_t status = system::stop_status();
  return status != 0 && current_->may_stop() ? status : 0;
}

// A rewritten file is finished once it is on one of the result lists.
bool Session::may_stop() const {
  return !hold_stop_ || (rewritten_ && files_done() > done_before_);
}

void Session::leave_at_stop(bool on) {
  leaves_at_stop_ = on;
  system::obey_stop(on);
  set_callbacks();
  if (system::stop_status() != 0) throw Stopped{};
}

void Session::leave(int status) {
  progress_.erase();
  temporary_folder::remove();
  system::leave(status);
}

// Running out of memory for the progress bar or a journal line must not end the
// run in the middle of a file.
int32_t Session::on_status(const ZenfoWideChar* text) {
  try {
    if (current_->changing_) current_->note_phase(text);
    if (current_->progress_.wanted()) current_->progress_.show_status(text);
  } catch (const std::bad_alloc&) {
  }
  return 0;
}

// A rewritten file stays in hand until the next one has been loaded, because
// its other string pairs may follow.
void Session::note_phase(const ZenfoWideChar* status) {
  const auto is = [&](std::string_view phase) {
    return starts_with(status, phase);
  };
  if (is("Now loading file")) {
    hold_stop_ = true;
    rewritten_ = false;
    if (watcher_) watcher_(false);
  } else if (is("Now replacing") || is("Now inserting") || is("Now changing")) {
    hold_stop_ = rewritten_ = true;
    done_before_ = files_done();
    if (watcher_) watcher_(true);
  } else if (!rewritten_) {
    hold_stop_ = false;
  }
}

int32_t Session::on_file_question(const ZenfoWideChar*) {
  if (current_->copies_wanted_ == 0) return kSkipAll;
  --current_->copies_wanted_;
  return kAdd;
}

int32_t Session::on_option_question(const ZenfoWideChar*, int32_t) {
  Session& session = *current_;
  Answer answer = Answer::kStop;
  // No exception may pass through the library.
  try {
    session.progress_.erase();
    if (system::stop_status() == 0) answer = session.question_();
  } catch (...) {
    session.thrown_ = std::current_exception();
  }
  return static_cast<int32_t>(answer);
}

int32_t Session::ask_while(const std::function<int32_t()>& operation,
                           Question question) {
  question_ = std::move(question);
  set_callbacks();
  if (progress_.wanted()) {
    constexpr int32_t kSelected = 1;
    progress_.begin_run(
        static_cast<uint32_t>(std::max(GetCount(kFiles, kSelected), 0)),
        files_done);
  }
  const int32_t result = operation();
  progress_.end_run();
  question_ = nullptr;
  set_callbacks();
  progress_.erase();
  if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
  return result;
}

int32_t Session::run_changes(const std::function<int32_t()>& operation,
                             Question question) {
  changing_ = true;
  const int32_t changed = ask_while(operation, std::move(question));
  changing_ = hold_stop_ = rewritten_ = false;
  watcher_ = nullptr;
  set_callbacks();
  return changed;
}

int32_t Session::run_undo(const StepHandler& on_step) {
  on_step_ = &on_step;
  set_callbacks();
  const int32_t left = Undo();
  on_step_ = nullptr;
  set_callbacks();
  return left;
}

uint32_t Session::run(const std::function<int32_t()>& operation,
                      Question question) {
  const int32_t found = ask_while(operation, std::move(question));
  finish(found, "search in files");
  return static_cast<uint32_t>(found);
}

uint32_t Session::files_done() {
  uint32_t files = 0;
  for (int32_t list :
       {ZENFO_LIST_RESULT, ZENFO_LIST_NO_MATCH, ZENFO_LIST_ERROR}) {
    files += records_in(list);
  }
  return files;
}

uint32_t Session::records_in(int32_t list) {
  return static_cast<uint32_t>(std::max(GetCount(list, -1), 0));
}

void Session::finish(int32_t result, const char* what) {
  progress_.erase();
  if (system::stop_status() != 0) throw Stopped{};
  if (result < 0) fail(what);
}

void Session::fail(const char* what) {
  complain_about_errors();
  throw Failure{what, "the library reports a failure"};
}

void Session::expect_paths_of(size_t bytes) {
  if (buffer_.size() < bytes + kTextRoom) buffer_.resize(bytes + kTextRoom);
}

uint32_t Session::find(int32_t list, const std::string& specification,
                       const FactOptions& facts) {
  const int32_t found =
      FindFiles(list, specification.c_str(), facts.bytes.data(), "");
  finish(found, "search for files");
  return static_cast<uint32_t>(found);
}

uint32_t Session::find_files(const std::string& specification,
                             const FactOptions& facts) {
  return find(kFiles, specification, facts);
}

void Session::copy(int32_t source, int32_t target, size_t count,
                   const FactOptions& facts) {
  if (count == 0) return;
  copies_wanted_ = count;
  const int32_t copied = AddFileToList(source, target, facts.bytes.data());
  finish(copied == static_cast<int32_t>(count) ? copied : -1, "list of files");
}

// Uses one of the paths if the system knows no file of its own.
void Session::make_seed(const std::vector<std::string>& paths) {
  auto try_file = [&](const std::string& path) {
    const bool named = path.find(system::kSeparator) != std::string::npos;
    const std::string full =
        named ? path : std::string(".") + system::kSeparator + path;
    if (is_sayable(full)) seeds_ = find(kSeeds, '0' + full, FactOptions{});
    return seeds_ > 0;
  };
  if (try_file(system::known_file())) return;
  if (std::any_of(paths.begin(), paths.end(), try_file)) return;
  throw Failure{paths.front(), "cannot be entered into the list of files"};
}

// Doubles the number of entries each time, so that many paths take few calls.
void Session::grow_seeds(size_t count) {
  for (; seeds_ < count; seeds_ *= 2) copy(kSeeds, kSeeds, seeds_, {});
}

void Session::append_paths(const std::vector<std::string>& paths) {
  if (paths.empty()) return;
  if (seeds_ == 0) make_seed(paths);
  grow_seeds(paths.size());
  uint32_t index = count();
  copy(kSeeds, kFiles, paths.size(), {});
  for (const std::string& path : paths) {
    rename(index++, path);
  }
}

void Session::replace_files(const std::vector<std::string>& paths) {
  Clear(kFiles);
  for (const std::string& path : paths) expect_paths_of(path.size());
  append_paths(paths);
  select_all(true);
}

void Session::rename(uint32_t index, const std::string& path) {
  finish(SetFullName(kFiles, index, path.c_str()), path.c_str());
}

uint32_t Session::count(int32_t list) {
  const int32_t records = GetCount(list, -1);
  finish(records, "list of files");
  return static_cast<uint32_t>(records);
}

bool Session::selected(int32_t list, uint32_t index) {
  return GetState(list, index) == 1;
}

void Session::select(int32_t list, uint32_t index, bool on) {
  finish(SetState(list, static_cast<int32_t>(index), on), "list of files");
}

void Session::select_all(bool on) {
  finish(SetState(kFiles, -1, on), "list of files");
}

bool Session::complete(int32_t list, uint32_t index) {
  return GetFlag(list, index) == 0;
}

bool Session::trashed(uint32_t index) { return IsTrashed(kFiles, index) == 1; }

void Session::remove_selected(int32_t list) {
  finish(RemoveSelection(list), "list of files");
}

void Session::load_list(const std::string& file, const FactOptions& facts) {
  finish(LoadFileList(file.c_str(), facts.bytes.data()), file.c_str());
}

void Session::move_files_to(int32_t list, const FactOptions& facts) {
  copy(kFiles, list, count(), facts);
  finish(Clear(kFiles), "list of files");
}

void Session::sort(uint32_t option, bool descending) {
  if (count() > 1) finish(Sort(kFiles, option, descending), "sort");
}

void Session::select_duplicates(uint32_t option) {
  if (count() > 1) finish(SelectDuplicates(kFiles, option), "duplicates");
}

void Session::compare(uint32_t option, bool common) {
  finish(CompareLists(option, common), "comparison");
}

bool Session::all_common() {
  return GetFileFlagCount(kFiles, 0) == 0 &&
         GetFileFlagCount(ZENFO_LIST_PAIRS, 0) == 0;
}

bool Session::save_list(const std::string& file) {
  const int32_t lines = SaveFileList(file.c_str());
  finish(0, "list of files");
  return lines >= 0;
}

bool Session::save_columns(const std::string& file,
                           const std::string& separator,
                           const SavedColumns& columns) {
  const int32_t lines =
      SaveSelection(kFiles, file.c_str(), separator.c_str(), columns.data());
  finish(0, "list of files");
  return lines >= 0;
}

std::optional<std::string_view> Session::text(TextAccessor accessor,
                                              uint32_t index) {
  const auto size = static_cast<uint32_t>(buffer_.size());
  if (accessor(kFiles, index, buffer_.data(), size) != 1) return std::nullopt;
  return buffer_.data();
}

std::string_view Session::full_name(int32_t list, uint32_t index) {
  const auto size = static_cast<uint32_t>(buffer_.size());
  if (GetFullName(list, index, buffer_.data(), size) != 1) return "";
  return buffer_.data();
}

SizeTotal Session::size_of_selection() {
  char short_text[64];
  char long_text[64];
  finish(GetSizeSelection(kFiles, short_text, long_text), "sizes");
  return {short_text, long_text};
}

void Session::begin_counting(uint32_t files) {
  counted_ = 0;
  progress_.begin_run(files, [this] { return counted_; });
}

std::optional<TextCounts> Session::count_words(const std::string& path) {
  TextCounts counts{};
  const int32_t answer = get_word_count(path.c_str(), &counts);
  ++counted_;
  finish(0, "count");
  if (answer != 1) return std::nullopt;
  return counts;
}

std::vector<ErrorRecord> Session::new_errors() {
  std::ifstream file(to_path(error_file_), std::ios::binary);
  file.seekg(static_cast<std::streamoff>(error_bytes_read_));
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  error_bytes_read_ += bytes.size();
  return parse_error_records(bytes);
}

void Session::complain_about_errors() {
  for (const ErrorRecord& record : new_errors()) {
    messages_.complain(record.routine,
                       record.message + " (" + record.context + ")");
  }
}

}  // namespace zenfo::host
