#include "library.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "error_records.h"
#include "messages.h"
#include "system.h"

namespace zenfo::cli {
namespace {

constexpr int32_t kSeeds = ZENFO_LIST_FILES_1;
constexpr int32_t kFiles = ZENFO_LIST_FILES;

// More than any path the library finds below a folder, and than any other text.
constexpr size_t kTextRoom = 64 * 1024;

// Answers to the file question.
constexpr int32_t kAdd = 1;
constexpr int32_t kSkipAll = 2;

bool is_sayable(std::string_view path) {
  return path.find_first_of(";|") == std::string_view::npos;
}

}  // namespace

Session* Session::current_ = nullptr;

Session::Session() : error_file_(system::error_file_name()) {
  current_ = this;
  expect_paths_of(0);
  set_callbacks(false);
  if (Initialize() != 1) throw Failure{"", "the library cannot be started"};
  SetErrorFile(error_file_.c_str());
}

Session::~Session() {
  Terminate();
  const CallbackTable none{};
  SetCallBacks(&none);
  current_ = nullptr;
  system::remove_error_file();
}

void Session::set_callbacks(bool report_always) {
  CallbackTable table{};
  table.interrupt = on_interrupt;
  table.file_question = on_file_question;
  if (progress_.wanted()) table.status = on_status;
  if (progress_.wanted() || report_always) table.report = on_report;
  SetCallBacks(&table);
}

int32_t Session::on_report(ProgressRecord* record) {
  if (current_->leave_when_found_) current_->leave_when_found(record->position);
  if (current_->progress_.wanted()) current_->progress_.show_step(*record);
  return 0;
}

int32_t Session::on_interrupt() {
  const int status = system::stop_status();
  if (status != 0 && current_->leave_when_stopped_) {
    current_->progress_.erase();
    complain("", "stopped");
    current_->leave(status);
  }
  return status;
}

void Session::leave(int status) {
  progress_.erase();
  system::remove_error_file();
  system::leave(status);
}

// Called from inside the search, which is done with the entries up to here.
void Session::leave_when_found(uint32_t position) {
  for (; states_seen_ <= position; ++states_seen_) {
    if (selected(states_seen_)) leave(kFound);
  }
}

int32_t Session::on_status(const ZenfoWideChar* text) {
  current_->progress_.show_status(text);
  return 0;
}

int32_t Session::on_file_question(const ZenfoWideChar*) {
  if (current_->copies_wanted_ == 0) return kSkipAll;
  --current_->copies_wanted_;
  return kAdd;
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

void Session::copy_seeds(int32_t target, size_t count) {
  copies_wanted_ = count;
  const int32_t copied =
      AddFileToList(kSeeds, target, FactOptions{}.bytes.data());
  finish(copied == static_cast<int32_t>(count) ? copied : -1, "list of files");
}

// One of the paths will do where the system cannot show a file that is known.
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

// Doubles the entries, so that many paths cost few calls.
void Session::grow_seeds(size_t count) {
  for (; seeds_ < count; seeds_ *= 2) copy_seeds(kSeeds, seeds_);
}

void Session::append_paths(const std::vector<std::string>& paths) {
  if (paths.empty()) return;
  if (seeds_ == 0) make_seed(paths);
  grow_seeds(paths.size());
  uint32_t index = count();
  copy_seeds(kFiles, paths.size());
  for (const std::string& path : paths) {
    finish(SetFullName(kFiles, index++, path.c_str()), path.c_str());
  }
}

uint32_t Session::count() {
  const int32_t files = GetCount(kFiles, -1);
  finish(files, "list of files");
  return static_cast<uint32_t>(files);
}

bool Session::selected(uint32_t index) { return GetState(kFiles, index) == 1; }

void Session::select(uint32_t index, bool on) {
  finish(SetState(kFiles, static_cast<int32_t>(index), on), "list of files");
}

void Session::select_all(bool on) {
  finish(SetState(kFiles, -1, on), "list of files");
}

bool Session::complete(uint32_t index) { return GetFlag(kFiles, index) == 0; }

std::optional<std::string_view> Session::text(TextAccessor accessor,
                                              uint32_t index) {
  const auto size = static_cast<uint32_t>(buffer_.size());
  if (accessor(kFiles, index, buffer_.data(), size) != 1) return std::nullopt;
  return buffer_.data();
}

std::string_view Session::full_name(uint32_t index) {
  return text(GetFullName, index).value_or("");
}

SizeTotal Session::size_of_selection() {
  char short_text[64];
  char long_text[64];
  finish(GetSizeSelection(kFiles, short_text, long_text), "sizes");
  return {short_text, long_text};
}

uint32_t Session::find_in_files(const TextSearch& search) {
  leave_when_stopped_ = true;
  leave_when_found_ = search.first_only;
  states_seen_ = 0;
  set_callbacks(search.first_only);
  const int32_t found = FindInFiles(kFiles, search.text.c_str(), 1,
                                    search.whole_word, search.case_sensitive);
  leave_when_stopped_ = leave_when_found_ = false;
  set_callbacks(false);
  finish(found, "search in files");
  if (found > 0 && search.first_only) leave(kFound);
  return static_cast<uint32_t>(found);
}

std::optional<TextCounts> Session::count_words(const std::string& path) {
  TextCounts counts{};
  const int32_t answer = get_word_count(path.c_str(), &counts);
  finish(0, "count");
  if (answer != 1) return std::nullopt;
  return counts;
}

void Session::complain_about_errors() {
  std::ifstream file(error_file_, std::ios::binary);
  file.seekg(static_cast<std::streamoff>(error_bytes_read_));
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  error_bytes_read_ += bytes.size();
  for (const ErrorRecord& record : parse_error_records(bytes)) {
    complain(record.routine, record.message + " (" + record.context + ")");
  }
}

}  // namespace zenfo::cli
