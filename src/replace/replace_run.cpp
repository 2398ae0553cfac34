#include "replace/replace_run.h"

#include <algorithm>

#include "frame/guard.h"
#include "platform/files.h"

namespace zenfo {

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

ReplaceRun::ReplaceRun(Library& library, const RunOptions& options,
                       bool safe_store)
    : FileRun(library, options),
      safety_(chosen_safety()),
      safe_store_(safe_store),
      store_in_use_(library.safe_store.get()) {
  if (safety_.no_links) content_.refuse_links();
}

int32_t ReplaceRun::run_over_list(Searches& searches) {
  open_files_.clear();
  return FileRun::run_over_list(searches);
}

int32_t ReplaceRun::run_over_lines(Searches& searches, const char* list_path,
                                   const char* summary_path) {
  open_files_.clear();
  for (const char* path : {list_path, summary_path}) {
    if (path != nullptr) open_files_.emplace_back(path);
  }
  ReplaceSummary summary;
  return FileRun::run_over_lines(searches, list_path, summary_path, summary);
}

void ReplaceRun::begin() {
  library_.safe_store->start_safe_store_run(open_files_, safety_.sync);
}

Step ReplaceRun::begin_search(FileInHand& file) {
  if (!file.handled) content_stale_ = skip_rest_ = false;
  if (skip_rest_) return Step::kStop;
  if (!content_stale_) return Step::kGoOn;
  // Another string of a file that was rewritten for the one before.
  content_stale_ = false;
  const int32_t loaded = load_content(file);
  if (loaded < 0) {
    log_unopened(file);
    skip_rest_ = true;
  }
  if (loaded <= 0) return Step::kStop;
  return content_.length() == content_.file_size() ? Step::kGoOn
                                                   : Step::kInterrupted;
}

Step ReplaceRun::take(FileInHand& file) {
  const uint32_t selected = count_selected();
  file.found += selected;
  if (searches_->single()) results_->counted(file);
  if (selected == 0) return Step::kGoOn;
  const Stored stored = store(file);
  if (stored == Stored::kFailed) return leave_unstored(file);
  if (stored == Stored::kChanged) return leave_changed(file);
  announce(phase(), file);
  platform::Opened opened = platform::Opened::kFailed;
  const Destination destination(file.path.c_str(), content_.version(), &opened,
                                safety_.beside && !safe_store_);
  // A fault while writing ends the run without a record of its own.
  const int32_t count = unlogged(-1, [&] { return rewrite(destination); });
  if (opened == platform::Opened::kChanged) {
    if (stored == Stored::kNow) take_back();
    return leave_changed(file);
  }
  if (count < 0) return Step::kFailed;
  if (safety_.sync) rewritten_.add(file.path.c_str());
  content_stale_ = true;
  file.changed += static_cast<uint32_t>(count);
  total_ += count;
  return rewritten(file);
}

ReplaceRun::Stored ReplaceRun::store(const FileInHand& file) {
  if (!safe_store_) return Stored::kNotWanted;
  const char* path = file.path.c_str();
  const std::string key = platform::file_key(path);
  if (stored_.contains(key)) return Stored::kBefore;
  SafeStore& store = *library_.safe_store;
  if (safety_.sync && !store.is_ahead(path) && !copy_ahead(file.path)) {
    return Stored::kFailed;
  }
  const int32_t stored = store.store_safe_copy(path, content_.version());
  if (stored < 1) return stored < 0 ? Stored::kFailed : Stored::kChanged;
  stored_.insert(key);
  last_stored_ = key;
  return Stored::kNow;
}

// The files that come next will need copies as well, if those of the last batch
// did. Never of a file that was rewritten: its copy would be the changed text.
bool ReplaceRun::copy_ahead(const SharedText& path) {
  constexpr size_t kMost = 1024;
  SafeStore& store = *library_.safe_store;
  const size_t in_vain = std::min(store.ahead(), batch_ - 1);
  batch_ = in_vain == 0 ? std::min(2 * batch_, kMost) : batch_ - in_vain;
  std::vector<std::string> paths = {std::string(path.view())};
  std::unordered_set<std::string> keys = {platform::file_key(path.c_str())};
  for (const SharedText& next : source_->upcoming(batch_ - 1)) {
    std::string key = platform::file_key(next.c_str());
    if (stored_.contains(key) || !keys.insert(std::move(key)).second) continue;
    paths.emplace_back(next.view());
  }
  return store.copy_ahead(paths);
}

bool ReplaceRun::finish() {
  if (!safety_.sync) return true;
  const bool ended = library_.safe_store->end_safe_store_run();
  return rewritten_.flush() && ended;
}

void ReplaceRun::take_back() {
  library_.safe_store->take_back_safe_copy();
  stored_.erase(last_stored_);
}

Step ReplaceRun::leave_unstored(FileInHand& file) {
  log(("Error safe storing file " + std::string(file.path.view()) +
       ". File has been skipped")
          .c_str(),
      "Error saving file for undo purpose");
  return leave(file);
}

Step ReplaceRun::leave_changed(FileInHand& file) {
  log((std::string(file.path.view()) +
       " was changed meanwhile. File has been skipped")
          .c_str(),
      "Error writing file");
  return leave(file);
}

Step ReplaceRun::leave(FileInHand& file) {
  results_->unsaved(file);
  file.recorded = true;
  skip_rest_ = true;
  return Step::kGoOn;
}

}  // namespace zenfo
