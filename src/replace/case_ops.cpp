#include "replace/case_ops.h"

#include "replace/case_engine.h"
#include "replace/replace_run.h"

namespace zenfo {
namespace {

class CaseRun : public ReplaceRun {
 public:
  CaseRun(Library& library, const RunOptions& options, bool safe_store,
          bool upper)
      : ReplaceRun(library, options, safe_store), upper_(upper) {}

 protected:
  int32_t rewrite(const Destination& file) override {
    return change_case(context(), file, upper_);
  }
  Phase phase() const override { return Phase::kChangingCase; }
  // The flag of the copy tells how many matches were changed.
  Step rewritten(FileInHand& file) override {
    file.found = file.changed;
    return Step::kGoOn;
  }

 private:
  bool upper_;
};

// Intended: ends after the first file that it changed, whose summary line gets
// no line end, and answers 0.
class OneFileCaseRun final : public CaseRun {
 public:
  using CaseRun::CaseRun;

 protected:
  Step rewritten(FileInHand& file) override {
    file.recorded = true;
    return Step::kStop;
  }
  int32_t answer() const override { return 0; }
};

}  // namespace

int32_t change_case_i(Library& library, int32_t case_flag, int32_t whole_words,
                      int32_t binary_check, int32_t ask_user,
                      int32_t safe_store, int32_t upper, int32_t display) {
  if (!library.complete()) return -1;
  CompiledSearch searches;
  CaseRun run(library,
              {row::change_case_i, case_flag, whole_words, binary_check,
               ask_user, display, true},
              safe_store != 0, upper != 0);
  return run.run_over_list(searches);
}

int32_t change_case_f(Library& library, int32_t case_flag, int32_t whole_words,
                      int32_t binary_check, int32_t ask_user,
                      int32_t safe_store, const char* list_path,
                      const char* summary_path, int32_t upper,
                      int32_t display) {
  if (!library.complete()) return -1;
  CompiledSearch searches;
  OneFileCaseRun run(library,
                     {row::change_case_f, case_flag, whole_words, binary_check,
                      ask_user, display, true},
                     safe_store != 0, upper != 0);
  return run.run_over_lines(searches, list_path, summary_path);
}

}  // namespace zenfo
