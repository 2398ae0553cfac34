#include "replace/replace_engine.h"

#include <algorithm>

#include "containers/string_pair.h"
#include "pattern/match_record.h"
#include "replace/rewriter.h"
#include "text/c_text.h"
#include "text/records.h"

namespace zenfo {
namespace {

std::string expanded(const PatternContext& context, std::string_view text,
                     bool expand) {
  return expand ? context.expand_control_names(text) : std::string(text);
}

// Writes the file with the answer of `replacement(match)` for each match.
template <class Replacement>
int32_t rewrite(PatternContext& context, const Destination& destination,
                EditMode mode, Replacement replacement) {
  if (is_empty(destination.path) || context.text_length() == 0 ||
      is_empty(context.text())) {
    return -1;
  }
  return Rewriter(context, {context.text(), context.text_length()},
                  Rewriter::Until::kNul)
      .write(destination, [&](OutFile& file, const MatchRecord& match,
                              std::string_view matched) {
        const std::string_view inserted = replacement(match);
        if (mode == EditMode::kInsertAfter) file.write(matched);
        file.write(inserted);
        if (mode == EditMode::kInsertBefore) file.write(matched);
      });
}

// Deselects a match that gets no replacement.
void leave_without(MatchRecord& match) {
  match.state = 0;
  match.flag = 0;
}

}  // namespace

EditMode edit_mode(int32_t number) {
  if (number == 1) return EditMode::kInsertBefore;
  return number == 2 ? EditMode::kInsertAfter : EditMode::kReplace;
}

int32_t replace_with_text(PatternContext& context,
                          const Destination& destination,
                          std::string_view replacement, EditMode mode,
                          bool expand) {
  const std::string text = expanded(context, replacement, expand);
  return rewrite(context, destination, mode,
                 [&](const MatchRecord&) { return std::string_view(text); });
}

int32_t replace_with_numbers(PatternContext& context,
                             const Destination& destination,
                             std::string_view replacement,
                             std::string_view placeholder,
                             RunningNumber& number, EditMode mode,
                             bool expand) {
  if (replacement.empty() || placeholder.empty()) return -1;
  const std::string text = expanded(context, replacement, expand);
  std::string numbered;
  return rewrite(context, destination, mode, [&](const MatchRecord&) {
    insert_number(text, placeholder, std::to_string(number.take()), numbered);
    return std::string_view(numbered);
  });
}

int32_t replace_with_records(PatternContext& context,
                             const Destination& destination, EditMode mode) {
  return rewrite(context, destination, mode, [&](const MatchRecord& match) {
    return std::string_view(
        match.replacement() != nullptr ? match.replacement() : "",
        match.replacement_length());
  });
}

int32_t set_replacements_from_list(PatternContext& context, ItemList& values,
                                   bool expand) {
  const uint32_t paired = std::min(context.matches.count(), values.count());
  for (uint32_t i = 0; i < context.matches.count(); ++i) {
    auto* match = record_cast<MatchRecord>(context.matches.get(i));
    if (match == nullptr) return -1;
    if (i >= paired) {
      leave_without(*match);
      continue;
    }
    const auto* value = record_cast<ReplaceValue>(values.get(i));
    if (value == nullptr) return -1;
    match->set_replacement(
        expanded(context, value->value.view(), expand).c_str());
  }
  return 1;
}

int32_t set_replacements_from_matches(PatternContext& context,
                                      PatternContext& other, uint32_t index,
                                      bool expand) {
  if (context.text_length() == 0) return -1;
  ItemList& matches = context.matches;
  const uint32_t sources = other.matches.count();
  uint32_t served = matches.count();
  if (index == 0) served = std::min(served, sources);
  if (index > sources) served = 0;
  for (uint32_t i = 0; i < matches.count(); ++i) {
    context.report_progress(i, matches.count());
    if (context.poll_cancel() != 0) return -1;
    auto* match = record_cast<MatchRecord>(matches.get(i));
    if (match == nullptr) return -1;
    if (i >= served) {
      leave_without(*match);
      continue;
    }
    const auto* source =
        record_cast<MatchRecord>(other.matches.get(index == 0 ? i : index - 1));
    if (source == nullptr) return -1;
    match->set_replacement_bytes(expanded(context, source->matched(), expand));
  }
  return 1;
}

bool insert_number(std::string_view text, std::string_view placeholder,
                   std::string_view number, std::string& out) {
  if (text.empty() || placeholder.empty()) return false;
  out.clear();
  RecordReader pieces(text, placeholder);
  while (const auto piece = pieces.next()) {
    out.append(*piece);
    if (pieces.separated()) out.append(number);
  }
  return true;
}

}  // namespace zenfo
