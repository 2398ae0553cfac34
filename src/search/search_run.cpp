#include "search/search_run.h"

#include "frame/callbacks.h"
#include "search/report_file.h"

namespace zenfo {
namespace {

// Counts matches and reports them.
class SearchOperation final : public FileOperation {
 public:
  SearchOperation(const char* report_path, Searches& searches)
      : report_path_(report_path), searches_(searches) {}

  Traits begin() override;
  bool search_done(FileRun& run) override;
  After take(FileRun& run, FileInHand& file) override;
  bool end_file() override;
  bool finish() override { return report_.close(); }

 private:
  bool write_report(FileRun& run, const FileInHand& file, uint32_t selected);

  const char* report_path_;
  Searches& searches_;
  ReportFile report_;
  bool block_begun_ = false;  // in the report, for the current file
};

FileOperation::Traits SearchOperation::begin() {
  report_.open(report_path_);
  const bool reports = report_.is_open();
  return {.question_number = reports ? 1 : 0,
          .wants_matches = reports,
          .report = report_path_};
}

bool SearchOperation::search_done(FileRun& run) {
  searches_.searched({run.content().data(), run.content().length()});
  return true;
}

After SearchOperation::take(FileRun& run, FileInHand& file) {
  const uint32_t selected = run.count_selected();
  file.found += selected;
  if (run.searches_once()) run.record(file);
  if (report_.is_open() && !write_report(run, file, selected)) {
    return After::kFail;
  }
  run.add(selected);
  return After::kNextSearch;
}

bool SearchOperation::write_report(FileRun& run, const FileInHand& file,
                                   uint32_t selected) {
  if (selected > 0) send_status(phase_text(Phase::kReporting), report_.path());
  if (!block_begun_ && !report_.begin_file(file.path.view())) return false;
  block_begun_ = true;
  return report_.write_matches(run.context().matches, selected);
}

bool SearchOperation::end_file() {
  const bool begun = block_begun_;
  block_begun_ = false;
  return !begun || report_.end_file();
}

int32_t run_over(Library& library, const RunOptions& options,
                 Searches& searches, const char* report,
                 const std::optional<LineFiles>& files) {
  SearchOperation operation(report, searches);
  FileRun run(library, options, {}, searches, operation);
  if (!files) return run.over_list();
  // Otherwise the report would empty the list before it is read, or overwrite
  // the summary.
  if (lead_to_one_file(report, files->list) ||
      lead_to_one_file(report, files->summary)) {
    return -1;
  }
  SearchSummary summary;
  return run.over_lines(*files, summary);
}

}  // namespace

int32_t run_search(Library& library, const RunOptions& options,
                   const char* report, const std::optional<LineFiles>& files) {
  CompiledSearch searches;
  return run_over(library, options, searches, report, files);
}

int32_t run_string_search(Library& library, const RunOptions& options,
                          const StringCompilation& compilation,
                          const char* report,
                          const std::optional<LineFiles>& files) {
  if (!library.complete()) return -1;
  PairSearches searches(*library.pairs, *library.find_context, compilation);
  searches.scan_files(options.case_flag != 0);
  return run_over(library, options, searches, report, files);
}

int32_t run_area_search(Library& library, const RunOptions& options,
                        const char* report) {
  CompiledSearch searches;
  SearchOperation operation(report, searches);
  return FileRun(library, options, {.takes_areas = true}, searches, operation)
      .over_list();
}

}  // namespace zenfo
