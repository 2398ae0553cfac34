#include "replace/block_run.h"

#include <string_view>

#include "frame/guard.h"
#include "replace/replace_engine.h"
#include "replace/replace_run.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

class BlockEdit final : public Edit {
 public:
  BlockEdit(Library& library, const BlockReplacement& replacement)
      : library_(library),
        replacement_(replacement),
        mode_(edit_mode(replacement.edit_mode)) {
    if (replacement.numbering) numbers_.emplace(*replacement.numbering);
  }

  bool search_done(FileRun& run) override;
  Phase phase() const override;
  int32_t rewrite(PatternContext& context, const Destination& file) override;

 private:
  bool take_list_values(FileRun& run);
  bool take_pattern_matches(FileRun& run);

  Library& library_;
  BlockReplacement replacement_;
  EditMode mode_;
  std::optional<NumberSource> numbers_;
};

// With both sources the pattern is applied last, so it decides.
bool BlockEdit::search_done(FileRun& run) {
  if (replacement_.use_list != 0 && !take_list_values(run)) return false;
  return replacement_.use_pattern == 0 || take_pattern_matches(run);
}

bool BlockEdit::take_list_values(FileRun& run) {
  const int32_t set = unlogged(-1, [&] {
    return set_replacements_from_list(run.context(), *library_.values,
                                      replacement_.expand != 0);
  });
  return set == 1;
}

bool BlockEdit::take_pattern_matches(FileRun& run) {
  PatternContext& sources = *library_.replace_context;
  const FileContent& content = run.content();
  if (find_all(sources, content.data(), content.length(), run.find_options()) <
      0) {
    return false;
  }
  const int32_t set = unlogged(-1, [&] {
    return set_replacements_from_matches(
        run.context(), sources, static_cast<uint32_t>(replacement_.match_index),
        replacement_.expand != 0);
  });
  return set == 1;
}

int32_t BlockEdit::rewrite(PatternContext& context, const Destination& file) {
  if (replacement_.use_list != 0 || replacement_.use_pattern != 0) {
    return replace_with_records(context, file, mode_);
  }
  const std::string_view text = or_empty(replacement_.text);
  const bool expand = replacement_.expand != 0;
  if (!numbers_) return replace_with_text(context, file, text, mode_, expand);
  return replace_with_numbers(context, file, text, numbers_->placeholder(),
                              numbers_->for_next_file(), mode_, expand);
}

Phase BlockEdit::phase() const {
  switch (mode_) {
    case EditMode::kInsertBefore:
      return Phase::kInsertingBefore;
    case EditMode::kInsertAfter:
      return Phase::kInsertingAfter;
    case EditMode::kReplace:
      break;
  }
  return Phase::kReplacing;
}

}  // namespace

int32_t run_block_replacement(Library& library, const RunOptions& options,
                              const BlockReplacement& replacement,
                              const std::optional<LineFiles>& files) {
  if (!library.complete()) return -1;
  CompiledSearch searches;
  BlockEdit edit(library, replacement);
  return run_edit(library, options, searches, edit, files);
}

}  // namespace zenfo
