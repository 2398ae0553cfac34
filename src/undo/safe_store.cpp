#include "undo/safe_store.h"

#include <algorithm>
#include <memory>

#include "files/file_content.h"
#include "platform/files.h"
#include "text/c_text.h"
#include "text/out_file.h"
#include "text/records.h"
#include "text/time_stamp.h"
#include "undo/safety.h"

namespace zenfo {
namespace {

using platform::kPathSeparator;

// A missing text is written as "(null)".
std::string_view shown(const SharedText& text) {
  return text.missing() ? "(null)" : text.view();
}

void write_line(OutFile& file, const UndoRecord& record,
                std::string_view line_end) {
  file.write(shown(record.original));
  file.write('\t');
  file.write(shown(record.safe_copy));
  file.write('\t');
  file.write(shown(record.time));
  file.write(line_end);
}

std::string with_own_separators(std::string path) {
  if constexpr (kPathSeparator == '\\') {
    std::replace(path.begin(), path.end(), '/', '\\');
  }
  return path;
}

// Where the names of folders to create begin: after "X:" or "\\server\share",
// which exist or cannot be created.
size_t creatable_from(std::string_view path) {
  if constexpr (kPathSeparator == '\\') {
    if (path.substr(0, 2) == "\\\\") {
      const size_t share = path.find('\\', 2);
      return share == std::string_view::npos ? share
                                             : path.find('\\', share + 1);
    }
    if (path.size() > 1 && path[1] == ':') return 2;
  }
  return 0;
}

// Outermost first; those that exist are skipped.
void create_folders_above(const std::string& path) {
  size_t end = creatable_from(path);
  while (end != std::string::npos) {
    end = path.find(kPathSeparator, end + 1);
    if (end == std::string::npos) return;
    const std::string folder = path.substr(0, end);
    if (!platform::is_folder(folder.c_str())) {
      platform::create_folder(folder.c_str());
    }
  }
}

// A copy is read-only when its file is, and the system may refuse to delete or
// to replace such a file.
bool delete_copy(const char* path) {
  return platform::delete_file(path) ||
         (platform::clear_read_only(path) && platform::delete_file(path));
}

bool make_copy(const char* path, const char* copy,
               platform::FileVersion* version) {
  return platform::copy_file(path, copy, version) ||
         (platform::clear_read_only(copy) &&
          platform::copy_file(path, copy, version));
}

// Creates the file when it is missing, and changes nothing else.
bool can_be_written(const std::string& path) {
  platform::OutputFile file;
  return file.open(path.c_str(), platform::OutputMode::kAppend) && file.close();
}

bool open_records(OutFile& file, const std::string& undo_file) {
  return file.open(undo_file.c_str(), platform::OutputMode::kTruncate,
                   OutFile::LineEnds::kExpand);
}

// Empty for a file that cannot be read.
std::string text_of(const std::string& path) {
  FileContent content;
  content.load_file_content(path.c_str());
  return std::string(content.bytes());
}

// The record of a line of three fields, or null.
std::unique_ptr<UndoRecord> parse_line(std::string_view line) {
  RecordReader fields(line, "\t");
  const auto original = fields.next();
  const auto copy = fields.next();
  const auto time = fields.next();
  if (!time) return nullptr;
  return std::make_unique<UndoRecord>(SharedText(*original), SharedText(*copy),
                                      SharedText(*time));
}

// Appends the records that the lines of an undo list file contain, until the
// host stops it or a line is not a record. `read` is always the number of bytes
// whose lines are in the list, also when memory runs out.
void append_records(std::string_view text, ItemList& records, size_t& read) {
  RecordReader lines(text, "\r\n");
  while (const auto line = lines.next()) {
    std::unique_ptr<UndoRecord> record = parse_line(*line);
    if (record == nullptr) return;
    records.append(std::move(record));
    read = text.size() - lines.rest().size();
    if (!records.goes_on()) return;
  }
}

}  // namespace

int32_t SafeStore::set_undo_file(const char* given) {
  if (users_ > 0) return -1;
  undo_file_.clear();
  if (is_empty(given)) return -1;
  std::string path = with_own_separators(given);
  const size_t last = path.rfind(kPathSeparator);
  if (last == path.size() - 1 || platform::is_folder(path.c_str())) return -1;
  // Made absolute now: the working folder may change before a run empties the
  // folder.
  if (last != std::string::npos && path[0] != kPathSeparator) {
    path = platform::absolute_path(path.c_str());
  }
  if (!platform::is_file(path.c_str())) {
    create_folders_above(path);
    if (!can_be_written(path)) return -1;
  }
  undo_file_ = std::move(path);
  return 1;
}

// Empty for an undo file without a folder part, which cannot have a store.
std::string SafeStore::folder() const {
  const size_t last = undo_file_.rfind(kPathSeparator);
  return last == std::string::npos ? std::string() : undo_file_.substr(0, last);
}

bool SafeStore::is_own_file(std::string_view path) const {
  return platform::same_path(path, undo_file_) ||
         platform::same_path(path, error_file_of(undo_file_));
}

// A path may lead to an open file under another name.
bool SafeStore::is_open(const std::string& path) const {
  return std::any_of(
      open_files_.begin(), open_files_.end(), [&](const std::string& open) {
        return platform::names_same_file(open.c_str(), path.c_str());
      });
}

int32_t SafeStore::start_safe_store_run(std::vector<std::string> open_files,
                                        bool sync) {
  open_files_ = std::move(open_files);
  sync_ = sync;
  ahead_.clear();
  unwanted_.clear();
  undo_list.clear();
  unread_ = {};
  copies_ = 0;
  const std::string store = folder();
  if (store.empty()) return 1;
  if (platform::is_root_folder(store)) {
    delete_own_files();
    return 1;
  }
  platform::delete_files_in(store.c_str(), [&](std::string_view name) {
    std::string path = store + kPathSeparator;
    path += name;
    return !is_open(path);
  });
  return 1;
}

// Other files in a drive's root must not be deleted.
void SafeStore::delete_own_files() {
  ItemList records;
  size_t read = 0;
  append_records(text_of(undo_file_), records, read);
  for (uint32_t i = 0; i < records.count(); ++i) {
    const auto* record = record_cast<UndoRecord>(records.get(i));
    if (record != nullptr) delete_unless_open(record->safe_copy.c_str());
  }
  delete_unless_open(error_file_of(undo_file_));
  delete_unless_open(undo_file_);
}

void SafeStore::delete_unless_open(const std::string& path) const {
  if (!is_open(path)) delete_copy(path.c_str());
}

// Never the name of the undo list file, of its error file or of an open file.
std::string SafeStore::next_copy_path(std::string_view name) {
  for (;;) {
    std::string path = folder() + kPathSeparator;
    path += name;
    path += '_' + std::to_string(copies_);
    if (!is_own_file(path) && !is_open(path)) return path;
    ++copies_;
  }
}

int32_t SafeStore::store_safe_copy(const char* path,
                                   const platform::FileVersion* loaded) {
  if (is_empty(path) || folder().empty()) return -1;
  if (auto found = ahead_.extract(path)) {
    Ahead& ahead = found.mapped();
    if (loaded == nullptr || ahead.version == *loaded) {
      undo_list.append(std::move(ahead.record));
      return 1;
    }
    unwanted_.push_back(std::move(ahead.record));
  }
  Records records;
  platform::FileVersion version;
  records.push_back(copy(path, version));
  if (records[0] == nullptr) return -1;
  if (loaded != nullptr && version != *loaded) {
    delete_copy(records[0]->safe_copy.c_str());
    return 0;
  }
  // The line is on disk before the file is touched.
  if (!add_lines(records)) return -1;
  undo_list.append(std::move(records[0]));
  return 1;
}

// Null when the file does not exist or has no complete copy.
std::unique_ptr<UndoRecord> SafeStore::copy(const char* path,
                                            platform::FileVersion& version) {
  if (!platform::is_file(path)) return nullptr;
  const std::string_view original(path);
  const size_t last = original.rfind(kPathSeparator);
  const std::string copy = next_copy_path(
      original.substr(last == std::string_view::npos ? 0 : last + 1));
  if (!make_copy(path, copy.c_str(), &version)) return nullptr;
  ++copies_;
  if (sync_) to_flush_.add(copy.c_str());
  return std::make_unique<UndoRecord>(
      SharedText(original), SharedText(copy),
      SharedText(time_stamp(platform::local_time_now())));
}

// The order matters: if the process is killed in between, every record still
// has its copy.
void SafeStore::take_back_safe_copy() {
  const uint32_t count = undo_list.count();
  if (count == 0) return;
  const auto* record = record_cast<UndoRecord>(undo_list.get(count - 1));
  if (record == nullptr) return;
  if (sync_) {
    // Its line may be followed by others.
    unwanted_.push_back(std::make_unique<UndoRecord>(
        record->original, record->safe_copy, record->time));
  } else {
    const std::string copy(record->safe_copy.view());
    if (!platform::cut_file(undo_file_.c_str(), lines_before_)) return;
    delete_copy(copy.c_str());
  }
  undo_list.remove_at(count - 1);
}

// When the disk fails, lines and copies are removed again.
bool SafeStore::add_lines(const Records& records) {
  if (append_lines(records)) {
    if (!sync_) return true;
    to_flush_.add(undo_file_.c_str());
    if (to_flush_.flush()) return true;
    platform::cut_file(undo_file_.c_str(), lines_before_);
  }
  if (sync_) {
    for (const auto& record : records) {
      delete_copy(record->safe_copy.c_str());
    }
  }
  return false;
}

// Lines that cannot be written completely are removed, because they would spoil
// the next one.
bool SafeStore::append_lines(const Records& records) {
  platform::FileFacts before;
  platform::read_file_facts(undo_file_.c_str(), before);
  lines_before_ = before.size;
  OutFile file;
  if (!file.open(undo_file_.c_str(), platform::OutputMode::kAppend,
                 OutFile::LineEnds::kExpand)) {
    return false;
  }
  for (const auto& record : records) write_line(file, *record, "\n");
  if (file.close()) return true;
  platform::cut_file(undo_file_.c_str(), lines_before_);
  return false;
}

void SafeStore::forget_ahead() {
  for (auto& [path, ahead] : ahead_) {
    unwanted_.push_back(std::move(ahead.record));
  }
  ahead_.clear();
}

bool SafeStore::copy_ahead(const std::vector<std::string>& paths) {
  // Limits the disk space of unused copies.
  constexpr uint64_t kMostBytes = uint64_t{256} << 20;
  forget_ahead();
  if (folder().empty()) return true;
  Records records;
  std::vector<platform::FileVersion> versions;
  uint64_t bytes = 0;
  for (size_t i = 0; i < paths.size() && bytes < kMostBytes; ++i) {
    platform::FileVersion version;
    auto record = copy(paths[i].c_str(), version);
    if (record == nullptr) continue;
    records.push_back(std::move(record));
    versions.push_back(version);
    bytes += version.size;
  }
  if (records.empty()) return true;
  if (!add_lines(records)) return false;
  for (size_t i = 0; i < records.size(); ++i) {
    const std::string path(records[i]->original.view());
    ahead_[path] = {std::move(records[i]), versions[i]};
  }
  return true;
}

bool SafeStore::end_safe_store_run() {
  forget_ahead();
  if (unwanted_.empty()) return true;
  const bool written = replace_list("\n", {});
  // A copy without a line is harmless, a line without a copy is not.
  if (written) {
    for (const auto& record : unwanted_) {
      delete_copy(record->safe_copy.c_str());
    }
  }
  unwanted_.clear();
  return written;
}

int32_t SafeStore::load_undo_list() {
  if (undo_file_.empty()) return -1;
  std::string text = text_of(undo_file_);
  if (text.empty()) return 0;
  unread_ = {undo_file_, std::move(text)};
  undo_list.clear();
  read_records();
  undo_list.build_index();
  return static_cast<int32_t>(undo_list.count());
}

void SafeStore::read_records() {
  append_records(unread_.text, undo_list, unread_.at);
  // Usually everything was read and nothing has to be kept.
  unread_.text = unread_.text.substr(unread_.at);
  unread_.at = 0;
}

// Lines of another undo list file are not carried over.
std::string_view SafeStore::unread_lines() const {
  if (!platform::names_same_file(unread_.file.c_str(), undo_file_.c_str())) {
    return {};
  }
  return std::string_view(unread_.text).substr(unread_.at);
}

int32_t SafeStore::undo() {
  if (undo_file_.empty()) return -1;
  const InUse in_use(this);
  const std::string error_file = error_file_of(undo_file_);
  if (!platform::is_file(undo_file_.c_str()) || undo_list.count() == 0) {
    return 0;
  }
  // Otherwise restored records could not be removed from it.
  if (!can_be_written(undo_file_)) return -1;
  if (platform::exists(error_file.c_str()) &&
      !platform::delete_file(error_file.c_str())) {
    return -1;
  }
  // Read while the file still exists.
  const std::string_view unread = unread_lines();
  sync_ = chosen_safety().sync;
  restored_copies_.clear();
  const bool reported = restore_records(error_file);
  undo_list.build_index();
  if (!finish_undo(unread) || !reported) return -1;
  return static_cast<int32_t>(undo_list.count());
}

// With sync a copy is deleted only when its file and the list that no longer
// names it are on their disks. If that fails, the list file still names all
// copies.
bool SafeStore::finish_undo(std::string_view unread) {
  if (sync_ && !to_flush_.flush()) return false;
  if (!replace_list("\r\n", unread)) return false;
  if (!sync_) return true;
  to_flush_.add(undo_file_.c_str());
  if (!to_flush_.flush()) return false;
  for (const std::string& copy : restored_copies_) {
    delete_copy(copy.c_str());
  }
  return true;
}

// In the order in which the copies were made, however the list is sorted.
// False when a record could not be written to the error file.
bool SafeStore::restore_records(const std::string& error_file) {
  undo_list.drop_index();
  const uint32_t count = undo_list.count();
  uint32_t step = 0;
  uint32_t kept = 0;  // records passed that stay in the list
  bool reported = true;
  Record* record = undo_list.first();
  while (record != nullptr && undo_list.poll_interrupt() == 0) {
    undo_list.report_position_of(step++, count);
    // A host that reads the list meanwhile moves its cursor.
    if (undo_list.current() != record) undo_list.get(kept);
    const auto* stored = record_cast<UndoRecord>(record);
    const bool wanted = stored != nullptr && stored->state == 1;
    if (wanted && restore(*stored)) {
      undo_list.remove_current();
      record = undo_list.current();
      continue;
    }
    if (wanted) reported &= report_unrestored(error_file, *stored);
    ++kept;
    record = undo_list.next();
  }
  return reported;
}

bool SafeStore::restore(const UndoRecord& record) {
  if (record.original.missing() || record.safe_copy.missing()) return false;
  const char* original = record.original.c_str();
  const char* copy = record.safe_copy.c_str();
  if (platform::is_folder(original) || !platform::is_file(copy)) return false;
  if (!platform::copy_file(copy, original)) return false;
  if (sync_) {
    to_flush_.add(original);
    restored_copies_.emplace_back(copy);
    return true;
  }
  // The file is restored even if the copy cannot be deleted.
  delete_copy(copy);
  return true;
}

bool SafeStore::report_unrestored(const std::string& error_file,
                                  const UndoRecord& record) {
  OutFile file;
  if (!file.open(error_file.c_str(), platform::OutputMode::kAppend,
                 OutFile::LineEnds::kRaw)) {
    return false;
  }
  write_line(file, record, "\r\n");
  return file.close();
}

// In one step where a second file can be created in the folder, because a file
// whose record is lost cannot be restored. A full disk leaves the records as
// they were.
bool SafeStore::replace_list(std::string_view line_end,
                             std::string_view unread) {
  const std::string fresh = undo_file_ + ".new";
  OutFile file;
  if (!platform::exists(fresh.c_str()) && open_records(file, fresh)) {
    platform::copy_rights(undo_file_.c_str(), fresh.c_str());
    bool complete = put_records(file, line_end, unread);
    if (complete && sync_) {
      to_flush_.add(fresh.c_str());
      complete = to_flush_.flush();
    }
    if (complete && platform::replace_file(fresh.c_str(), undo_file_.c_str())) {
      return true;
    }
    platform::delete_file(fresh.c_str());
    if (!complete) return false;
  }
  return open_records(file, undo_file_) && put_records(file, line_end, unread);
}

// Intended: Undo ends its lines with CR LF through a text-mode file, so that
// they end in CR CR LF and the CR stays with the time when they are read back.
bool SafeStore::put_records(OutFile& file, std::string_view line_end,
                            std::string_view unread) {
  for (Record* record = undo_list.first(); record != nullptr;
       record = undo_list.next()) {
    if (const auto* stored = record_cast<UndoRecord>(record)) {
      write_line(file, *stored, line_end);
    }
  }
  file.write_unchanged(unread);
  return file.close();
}

}  // namespace zenfo
