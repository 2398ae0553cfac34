#include "replace/replace_ops.h"

#include <optional>
#include <string_view>

#include "frame/guard.h"
#include "replace/replace_engine.h"
#include "replace/replace_run.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

std::string_view view(const char* text) {
  return text != nullptr ? std::string_view(text) : std::string_view();
}

// The running number of a run, which may start again with every file.
class NumberSource {
 public:
  explicit NumberSource(const Numbering& numbering)
      : numbering_(numbering), number_(start()) {}

  std::string_view placeholder() const { return view(numbering_.placeholder); }
  RunningNumber& for_next_file() {
    if (numbering_.run_on == 0) number_ = start();
    return number_;
  }

 private:
  RunningNumber start() const { return {numbering_.first, numbering_.step}; }

  Numbering numbering_;
  RunningNumber number_;
};

RunOptions run_options(const ExportRow& row, const ReplaceArguments& a) {
  return {row,        a.case_flag, a.whole_words, a.binary_check,
          a.ask_user, a.display,   true};
}

// Replaces the matches of the compiled pattern.
class BlockRun final : public ReplaceRun {
 public:
  BlockRun(Library& library, const ExportRow& row,
           const ReplaceArguments& arguments,
           const BlockReplacement& replacement, const Numbering* numbering)
      : ReplaceRun(library, run_options(row, arguments),
                   arguments.safe_store != 0),
        replacement_(replacement),
        mode_(edit_mode(replacement.edit_mode)) {
    if (numbering != nullptr) numbers_.emplace(*numbering);
  }

 protected:
  Step prepare_matches() override;
  int32_t rewrite(const Destination& file) override;
  Phase phase() const override;

 private:
  Step take_pattern_matches();

  BlockReplacement replacement_;
  EditMode mode_;
  std::optional<NumberSource> numbers_;
};

// With both sources the pattern comes last and decides.
Step BlockRun::prepare_matches() {
  if (replacement_.use_list != 0) {
    const int32_t set = unlogged(-1, [&] {
      return set_replacements_from_list(context(), *library_.values,
                                        replacement_.expand != 0);
    });
    if (set != 1) return Step::kFailed;
  }
  return replacement_.use_pattern != 0 ? take_pattern_matches() : Step::kGoOn;
}

Step BlockRun::take_pattern_matches() {
  PatternContext& sources = *library_.replace_context;
  if (find_all(sources, content_.data(), content_.length(), find_options()) <
      0) {
    return Step::kFailed;
  }
  const int32_t set = unlogged(-1, [&] {
    return set_replacements_from_matches(
        context(), sources, static_cast<uint32_t>(replacement_.match_index),
        replacement_.expand != 0);
  });
  return set == 1 ? Step::kGoOn : Step::kFailed;
}

int32_t BlockRun::rewrite(const Destination& file) {
  if (replacement_.use_list != 0 || replacement_.use_pattern != 0) {
    return replace_with_records(context(), file, mode_);
  }
  const std::string_view text = view(replacement_.text);
  const bool expand = replacement_.expand != 0;
  if (!numbers_) return replace_with_text(context(), file, text, mode_, expand);
  return replace_with_numbers(context(), file, text, numbers_->placeholder(),
                              numbers_->for_next_file(), mode_, expand);
}

Phase BlockRun::phase() const {
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

// Replaces the find string of each pair by its replace string.
class StringRun final : public ReplaceRun {
 public:
  StringRun(Library& library, const ExportRow& row,
            const ReplaceArguments& arguments,
            const StringCompilation& compilation, const Numbering* numbering)
      : ReplaceRun(library, run_options(row, arguments),
                   arguments.safe_store != 0),
        searches_of_pairs_(*library.pairs, *library.find_context,
                           compilation.is_pattern, compilation.convert),
        expand_(compilation.convert != 0) {
    if (numbering != nullptr) numbers_.emplace(*numbering);
  }

  Searches& searches() { return searches_of_pairs_; }

 protected:
  int32_t rewrite(const Destination& file) override {
    const std::string_view text =
        up_to_nul(searches_of_pairs_.replacement().view());
    if (!numbers_) {
      return replace_with_text(context(), file, text, EditMode::kReplace,
                               expand_);
    }
    return replace_with_numbers(context(), file, text, numbers_->placeholder(),
                                numbers_->for_next_file(), EditMode::kReplace,
                                expand_);
  }
  Phase phase() const override { return Phase::kReplacing; }

 private:
  PairSearches searches_of_pairs_;
  bool expand_;
  std::optional<NumberSource> numbers_;
};

int32_t run_block(Library& library, const ExportRow& row,
                  const ReplaceArguments& arguments,
                  const BlockReplacement& replacement,
                  const Numbering* numbering, const LineFiles* files) {
  if (!library.complete()) return -1;
  CompiledSearch searches;
  BlockRun run(library, row, arguments, replacement, numbering);
  return files != nullptr
             ? run.run_over_lines(searches, files->list, files->summary)
             : run.run_over_list(searches);
}

int32_t run_string(Library& library, const ExportRow& row,
                   const ReplaceArguments& arguments,
                   const StringCompilation& compilation,
                   const Numbering* numbering, const LineFiles* files) {
  if (!library.complete()) return -1;
  StringRun run(library, row, arguments, compilation, numbering);
  return files != nullptr
             ? run.run_over_lines(run.searches(), files->list, files->summary)
             : run.run_over_list(run.searches());
}

}  // namespace

int32_t replace_block(Library& library, const ReplaceArguments& arguments,
                      const BlockReplacement& replacement) {
  return run_block(library, row::ReplaceBlock, arguments, replacement, nullptr,
                   nullptr);
}

int32_t replace_block_f(Library& library, const ReplaceArguments& arguments,
                        const BlockReplacement& replacement,
                        const LineFiles& files) {
  return run_block(library, row::ReplaceBlock_f, arguments, replacement,
                   nullptr, &files);
}

int32_t replace_block_nbr(Library& library, const ReplaceArguments& arguments,
                          const BlockReplacement& replacement,
                          const Numbering& numbering) {
  return run_block(library, row::ReplaceBlockNbr, arguments, replacement,
                   &numbering, nullptr);
}

int32_t replace_block_nbr_f(Library& library, const ReplaceArguments& arguments,
                            const BlockReplacement& replacement,
                            const Numbering& numbering,
                            const LineFiles& files) {
  return run_block(library, row::ReplaceBlockNbr_f, arguments, replacement,
                   &numbering, &files);
}

int32_t replace_string(Library& library, const ReplaceArguments& arguments,
                       const StringCompilation& compilation) {
  return run_string(library, row::ReplaceString, arguments, compilation,
                    nullptr, nullptr);
}

int32_t replace_string_f(Library& library, const ReplaceArguments& arguments,
                         const StringCompilation& compilation,
                         const LineFiles& files) {
  return run_string(library, row::ReplaceString_f, arguments, compilation,
                    nullptr, &files);
}

int32_t replace_string_nbr(Library& library, const ReplaceArguments& arguments,
                           const StringCompilation& compilation,
                           const Numbering& numbering) {
  return run_string(library, row::ReplaceStringNbr, arguments, compilation,
                    &numbering, nullptr);
}

int32_t replace_string_nbr_f(Library& library,
                             const ReplaceArguments& arguments,
                             const StringCompilation& compilation,
                             const Numbering& numbering,
                             const LineFiles& files) {
  return run_string(library, row::ReplaceStringNbr_f, arguments, compilation,
                    &numbering, &files);
}

}  // namespace zenfo
