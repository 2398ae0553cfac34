#include "replace/replace_run.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include "frame/guard.h"
#include "platform/files.h"
#include "undo/safety.h"

namespace zenfo {
namespace {

// The result summary of a run that changes files:
//   path, found 3, replaced 3
//   path, found 0
//   path, found 3 ERROR, refer to error log file for details
//   , ERROR : refer to error log file for details
// Intended: the last two exactly as they are here, the third without a line
// end.
class ReplaceSummary final : public SummaryFile {
 public:
  void rejected(FileInHand& file) override;
  void counted(FileInHand& file) override;
  void unsaved(FileInHand& file) override;
  void taken(FileInHand& file) override;
  void empty(FileInHand& file) override { rejected(file); }

 private:
  void begin_line(const FileInHand& file);

  bool begun_ = false;  // the line of the current file
};

class ReplaceOperation final : public FileOperation {
 public:
  ReplaceOperation(Library& library, const RunOptions& options,
                   const Safety& safety, Edit& edit,
                   const std::optional<LineFiles>& files);

  Traits begin() override;
  bool search_done(FileRun& run) override { return edit_.search_done(run); }
  After take(FileRun& run, FileInHand& file) override;
  bool finish() override;

 private:
  enum class Stored { kNow, kBefore, kNotWanted, kFailed, kChanged };

  Stored store(FileRun& run, const FileInHand& file);
  bool copy_ahead(FileRun& run, const SharedText& path);
  void take_back();
  After leave_unstored(FileRun& run, FileInHand& file);
  After leave_changed(FileRun& run, FileInHand& file);
  After leave_unopened(FileRun& run, FileInHand& file);
  After leave(FileRun& run, FileInHand& file);

  Library& library_;
  const bool safe_store_;
  const Safety safety_;
  Edit& edit_;
  const SafeStore::InUse store_in_use_;
  std::vector<std::string> open_files_;     // of the run itself
  std::unordered_set<std::string> stored_;  // keys of the files
  std::string last_stored_;                 // the key of the last one
  size_t batch_ = 16;                       // files copied ahead last
  platform::FlushSet rewritten_;
};

ReplaceOperation::ReplaceOperation(Library& library, const RunOptions& options,
                                   const Safety& safety, Edit& edit,
                                   const std::optional<LineFiles>& files)
    : library_(library),
      safe_store_(options.safe_store != 0),
      safety_(safety),
      edit_(edit),
      store_in_use_(library.safe_store.get()) {
  if (!files) return;
  for (const char* path : {files->list, files->summary}) {
    if (path != nullptr) open_files_.emplace_back(path);
  }
}

FileOperation::Traits ReplaceOperation::begin() {
  library_.safe_store->start_safe_store_run(open_files_, safety_.sync);
  return {.question_number = 2, .wants_matches = true};
}

After ReplaceOperation::take(FileRun& run, FileInHand& file) {
  const uint32_t selected = run.count_selected();
  file.found += selected;
  if (run.searches_once()) run.results().counted(file);
  if (selected == 0) return After::kNextSearch;
  const Stored stored = store(run, file);
  if (stored == Stored::kFailed) return leave_unstored(run, file);
  if (stored == Stored::kChanged) return leave_changed(run, file);
  run.announce(edit_.phase(), file);
  // Unless an attempt to open it fails, the file may be changed: it keeps its
  // copy.
  platform::Opened opened = platform::Opened::kOpen;
  const Destination destination(file.path.c_str(), run.content().version(),
                                &opened, safety_.beside && !safe_store_);
  // A fault while writing ends the run without a record of its own.
  const int32_t count =
      unlogged(-1, [&] { return edit_.rewrite(run.context(), destination); });
  const bool changed = opened == platform::Opened::kChanged;
  if (changed || (opened == platform::Opened::kFailed && safety_.skip)) {
    if (stored == Stored::kNow) take_back();
    return changed ? leave_changed(run, file) : leave_unopened(run, file);
  }
  if (count < 0) return After::kFail;
  if (safety_.sync) rewritten_.add(file.path.c_str());
  file.stale = true;
  file.changed += static_cast<uint32_t>(count);
  run.add(count);
  return edit_.rewritten(file);
}

ReplaceOperation::Stored ReplaceOperation::store(FileRun& run,
                                                 const FileInHand& file) {
  if (!safe_store_) return Stored::kNotWanted;
  const char* path = file.path.c_str();
  const std::string key = platform::file_key(path);
  if (stored_.contains(key)) return Stored::kBefore;
  SafeStore& store = *library_.safe_store;
  if (safety_.sync && !store.is_ahead(path) && !copy_ahead(run, file.path)) {
    return Stored::kFailed;
  }
  const int32_t stored = store.store_safe_copy(path, run.content().version());
  if (stored < 1) return stored < 0 ? Stored::kFailed : Stored::kChanged;
  stored_.insert(key);
  last_stored_ = key;
  return Stored::kNow;
}

// The next files will probably need copies if those of the last batch did. Each
// batch costs a flush, so batches grow quickly: 64, 256, 1024 files. A
// file that was rewritten is never copied: its copy would be the changed text.
bool ReplaceOperation::copy_ahead(FileRun& run, const SharedText& path) {
  constexpr size_t kMost = 1024;
  SafeStore& store = *library_.safe_store;
  const size_t in_vain = std::min(store.ahead(), batch_ - 1);
  batch_ = in_vain == 0 ? std::min(4 * batch_, kMost) : batch_ - in_vain;
  std::vector<std::string> paths = {std::string(path.view())};
  std::unordered_set<std::string> keys = {platform::file_key(path.c_str())};
  for (const SharedText& next : run.upcoming(batch_ - 1)) {
    std::string key = platform::file_key(next.c_str());
    if (stored_.contains(key) || !keys.insert(std::move(key)).second) continue;
    paths.emplace_back(next.view());
  }
  return store.copy_ahead(paths);
}

bool ReplaceOperation::finish() {
  if (!safety_.sync) return true;
  const bool ended = library_.safe_store->end_safe_store_run();
  return rewritten_.flush() && ended;
}

void ReplaceOperation::take_back() {
  library_.safe_store->take_back_safe_copy();
  stored_.erase(last_stored_);
}

After ReplaceOperation::leave_unstored(FileRun& run, FileInHand& file) {
  run.log(("Error safe storing file " + std::string(file.path.view()) +
           ". File has been skipped")
              .c_str(),
          "Error saving file for undo purpose");
  return leave(run, file);
}

After ReplaceOperation::leave_changed(FileRun& run, FileInHand& file) {
  run.log((std::string(file.path.view()) +
           " was changed meanwhile. File has been skipped")
              .c_str(),
          "Error writing file");
  return leave(run, file);
}

After ReplaceOperation::leave_unopened(FileRun& run, FileInHand& file) {
  run.log((std::string(file.path.view()) +
           " could not be opened for writing. File has been skipped")
              .c_str(),
          "Error writing file");
  return leave(run, file);
}

After ReplaceOperation::leave(FileRun& run, FileInHand& file) {
  run.results().unsaved(file);
  file.recorded = true;
  return After::kNextFile;
}

void ReplaceSummary::rejected(FileInHand&) {
  file_.write(", ERROR : refer to error log file for details\r\n");
}

void ReplaceSummary::begin_line(const FileInHand& file) {
  if (begun_) return;
  begun_ = true;
  file_.write(file.path.view());
  file_.write(", found ");
  file_.write_number(file.found);
}

void ReplaceSummary::counted(FileInHand& file) { begin_line(file); }

void ReplaceSummary::unsaved(FileInHand& file) {
  begin_line(file);
  begun_ = false;
  file_.write(" ERROR, refer to error log file for details");
}

void ReplaceSummary::taken(FileInHand& file) {
  begin_line(file);
  begun_ = false;
  if (file.found > 0) {
    file_.write(", replaced ");
    file_.write_number(file.changed);
  }
  file_.write("\r\n");
}

}  // namespace

int32_t run_edit(Library& library, const RunOptions& options,
                 Searches& searches, Edit& edit,
                 const std::optional<LineFiles>& files) {
  const Safety safety = chosen_safety();
  ReplaceOperation operation(library, options, safety, edit, files);
  FileRun run(library, options,
              {.rewrites = true, .refuses_links = safety.no_links}, searches,
              operation);
  if (!files) return run.over_list();
  ReplaceSummary summary;
  return run.over_lines(*files, summary);
}

}  // namespace zenfo
