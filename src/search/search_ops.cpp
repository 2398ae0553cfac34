#include "search/search_ops.h"

#include "frame/callbacks.h"
#include "search/file_run.h"
#include "search/report_file.h"

namespace zenfo {
namespace {

// A run that counts and reports.
class SearchRun : public FileRun {
 public:
  SearchRun(Library& library, const RunOptions& options,
            const char* report_path)
      : FileRun(library, options), report_path_(report_path) {}

  using FileRun::run_over_list;
  int32_t run_over_lines(Searches& searches, const char* list_path,
                         const char* summary_path, SummaryFile& summary);

 protected:
  void begin() override { report_.open(report_path_); }
  Step take(FileInHand& file) override;
  Step end_file(FileInHand& file) override;
  int32_t question_number() const override { return report_.is_open(); }
  // From other callbacks than the question the host could see them too.
  bool only_counts() const override {
    return !asks() && !report_.is_open() && !host_listens();
  }
  bool finish() override { return report_.close(); }

 private:
  bool write_report(const FileInHand& file, uint32_t selected);

  const char* report_path_;
  ReportFile report_;
  bool block_begun_ = false;  // in the report, for the file in hand
};

// The report would empty the list before it is read, and write over the
// summary.
int32_t SearchRun::run_over_lines(Searches& searches, const char* list_path,
                                  const char* summary_path,
                                  SummaryFile& summary) {
  if (lead_to_one_file(report_path_, list_path) ||
      lead_to_one_file(report_path_, summary_path)) {
    return -1;
  }
  return FileRun::run_over_lines(searches, list_path, summary_path, summary);
}

Step SearchRun::take(FileInHand& file) {
  const uint32_t selected = count_selected();
  file.found += selected;
  if (searches_->single()) record(file);
  if (report_.is_open() && !write_report(file, selected)) return Step::kFailed;
  total_ += selected;
  return Step::kGoOn;
}

bool SearchRun::write_report(const FileInHand& file, uint32_t selected) {
  if (selected > 0) send_status(phase_text(Phase::kReporting), report_.path());
  if (!block_begun_ && !report_.begin_file(file.path.view())) return false;
  block_begun_ = true;
  return report_.write_matches(context().matches, selected);
}

Step SearchRun::end_file(FileInHand&) {
  const bool begun = block_begun_;
  block_begun_ = false;
  return !begun || report_.end_file() ? Step::kGoOn : Step::kFailed;
}

// A run over the exclusion pattern alone.
class AreaRun final : public SearchRun {
 public:
  using SearchRun::SearchRun;

 protected:
  int32_t find_matches() override {
    FindOptions options = find_options();
    options.store = keep_matches();
    return find_all(context(), content_.data(), content_.length(), options);
  }
  PatternContext& context() override { return *library_.exclusion_context; }
};

}  // namespace

int32_t find_block(Library& library, int32_t case_flag, int32_t whole_words,
                   int32_t binary_check, const char* report_path,
                   int32_t ask_user, int32_t display) {
  CompiledSearch searches;
  return SearchRun(library,
                   {row::FindBlock, case_flag, whole_words, binary_check,
                    ask_user, display},
                   report_path)
      .run_over_list(searches);
}

int32_t find_block_f(Library& library, int32_t case_flag, int32_t whole_words,
                     int32_t binary_check, const char* report_path,
                     int32_t ask_user, const char* list_path,
                     const char* summary_path, int32_t display) {
  CompiledSearch searches;
  SearchSummary summary;
  return SearchRun(library,
                   {row::FindBlock_f, case_flag, whole_words, binary_check,
                    ask_user, display},
                   report_path)
      .run_over_lines(searches, list_path, summary_path, summary);
}

int32_t find_string(Library& library, int32_t case_flag, int32_t whole_words,
                    int32_t binary_check, const char* report_path,
                    int32_t is_pattern, int32_t convert, int32_t ask_user,
                    int32_t display) {
  if (!library.complete()) return -1;
  PairSearches searches(*library.pairs, *library.find_context, is_pattern,
                        convert);
  return SearchRun(library,
                   {row::FindString, case_flag, whole_words, binary_check,
                    ask_user, display},
                   report_path)
      .run_over_list(searches);
}

// Intended: the display option is not handed on; 0 takes its place.
int32_t find_string_f(Library& library, int32_t case_flag, int32_t whole_words,
                      int32_t binary_check, const char* report_path,
                      int32_t is_pattern, int32_t convert, int32_t ask_user,
                      const char* list_path, const char* summary_path,
                      int32_t /*display*/) {
  if (!library.complete()) return -1;
  PairSearches searches(*library.pairs, *library.find_context, is_pattern,
                        convert);
  SearchSummary summary;
  return SearchRun(library,
                   {row::FindString_f, case_flag, whole_words, binary_check,
                    ask_user, 0},
                   report_path)
      .run_over_lines(searches, list_path, summary_path, summary);
}

int32_t find_excluded_area(Library& library, int32_t case_flag,
                           int32_t whole_words, int32_t binary_check,
                           const char* report_path) {
  CompiledSearch searches;
  return AreaRun(library,
                 {row::FindExcludedArea, case_flag, whole_words, binary_check,
                  0, 0},
                 report_path)
      .run_over_list(searches);
}

}  // namespace zenfo
