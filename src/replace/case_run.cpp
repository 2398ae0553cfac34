#include "replace/case_run.h"

#include "replace/case_engine.h"
#include "replace/replace_run.h"

namespace zenfo {
namespace {

class CaseEdit : public Edit {
 public:
  explicit CaseEdit(bool upper) : upper_(upper) {}

  Phase phase() const override { return Phase::kChangingCase; }
  int32_t rewrite(PatternContext& context, const Destination& file) override {
    return change_case(context, file, upper_);
  }
  // The flag of the copy says how many matches were changed.
  After rewritten(FileInHand& file) override {
    file.found = file.changed;
    return After::kNextSearch;
  }

 private:
  bool upper_;
};

// Intended: ends after the first file that it changed, whose summary line gets
// no line end.
class OneFileCaseEdit final : public CaseEdit {
 public:
  using CaseEdit::CaseEdit;

  After rewritten(FileInHand& file) override {
    file.recorded = true;
    return After::kStop;
  }
};

}  // namespace

int32_t run_case_change(Library& library, const RunOptions& options,
                        bool upper) {
  if (!library.complete()) return -1;
  CompiledSearch searches;
  CaseEdit edit(upper);
  return run_edit(library, options, searches, edit, std::nullopt);
}

// Intended: answers 0, not the number of matches.
int32_t run_case_change_of_one(Library& library, const RunOptions& options,
                               bool upper, const LineFiles& files) {
  if (!library.complete()) return -1;
  CompiledSearch searches;
  OneFileCaseEdit edit(upper);
  return run_edit(library, options, searches, edit, files) < 0 ? -1 : 0;
}

}  // namespace zenfo
