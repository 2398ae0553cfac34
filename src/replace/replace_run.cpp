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
  if (safe_store_ && !store(file)) return leave_unsaved(file);
  announce(phase(), file);
  // A fault while writing ends the run without a record of its own.
  const int32_t count =
      unlogged(-1, [&] { return rewrite(file.path.c_str()); });
  if (count < 0) return Step::kFailed;
  content_stale_ = true;
  file.changed += static_cast<uint32_t>(count);
  total_ += count;
  return rewritten(file);
}

bool ReplaceRun::store(const FileInHand& file) {
  const std::string key = platform::file_key(file.path.c_str());
  if (stored_.contains(key)) return true;
  if (library_.safe_store->store_safe_copy(file.path.c_str()) != 1) {
    return false;
  }
  stored_.insert(key);
  return true;
}

Step ReplaceRun::leave_unsaved(FileInHand& file) {
  log(("Error safe storing file " + std::string(file.path.view()) +
       ". File has been skipped")
          .c_str(),
      "Error saving file for undo purpose");
  results_->unsaved(file);
  file.recorded = true;
  skip_rest_ = true;
  return Step::kGoOn;
}

}  // namespace zenfo
