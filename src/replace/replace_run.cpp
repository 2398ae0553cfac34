#include "replace/replace_run.h"

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
  library_.safe_store->start_safe_store_run(open_files_);
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
  const Destination destination(file.path.c_str(), content_.version(), &opened);
  // A fault while writing ends the run without a record of its own.
  const int32_t count = unlogged(-1, [&] { return rewrite(destination); });
  if (opened == platform::Opened::kChanged) {
    if (stored == Stored::kNow) take_back();
    return leave_changed(file);
  }
  if (count < 0) return Step::kFailed;
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
  platform::FileVersion copied;
  if (store.store_safe_copy(path, &copied) != 1) return Stored::kFailed;
  if (content_.version() != nullptr && copied != *content_.version()) {
    store.take_back_safe_copy();
    return Stored::kChanged;
  }
  stored_.insert(key);
  last_stored_ = key;
  return Stored::kNow;
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
