#include "replace/string_run.h"

#include <string_view>

#include "replace/replace_engine.h"
#include "replace/replace_run.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

class StringEdit final : public Edit {
 public:
  StringEdit(const PairSearches& pairs, bool expand,
             const std::optional<Numbering>& numbering)
      : pairs_(pairs), expand_(expand) {
    if (numbering) numbers_.emplace(*numbering);
  }

  Phase phase() const override { return Phase::kReplacing; }
  int32_t rewrite(PatternContext& context, const Destination& file) override {
    const std::string_view text = up_to_nul(pairs_.replacement().view());
    if (!numbers_) {
      return replace_with_text(context, file, text, EditMode::kReplace,
                               expand_);
    }
    return replace_with_numbers(context, file, text, numbers_->placeholder(),
                                numbers_->for_next_file(), EditMode::kReplace,
                                expand_);
  }

 private:
  const PairSearches& pairs_;
  bool expand_;
  std::optional<NumberSource> numbers_;
};

}  // namespace

int32_t run_string_replacement(Library& library, const RunOptions& options,
                               const StringCompilation& compilation,
                               const std::optional<Numbering>& numbering,
                               const std::optional<LineFiles>& files) {
  if (!library.complete()) return -1;
  PairSearches searches(*library.pairs, *library.find_context, compilation);
  StringEdit edit(searches, compilation.convert != 0, numbering);
  return run_edit(library, options, searches, edit, files);
}

}  // namespace zenfo
