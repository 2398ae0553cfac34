#include "replace/rewriter.h"

namespace zenfo {

void Rewriter::report(uint32_t position) {
  context_.ReportProgress(position, context_.matches.Count());
  next_report_ = PatternContext::next_report(context_.matches.Count());
}

const MatchRecord* Rewriter::next_match() {
  ItemList& matches = context_.matches;
  while (position_ < matches.Count()) {
    const uint32_t position = position_++;
    if (position >= next_report_ && context_.reports()) report(position);
    failed_ = context_.PollCancel() != 0;
    const auto* match = record_cast<MatchRecord>(matches.Get(position));
    if (match == nullptr) failed_ = true;
    if (failed_) return nullptr;
    // A match behind the text's end is neither written nor counted.
    if (match->state != 0 && match->offset < text_.size()) return match;
  }
  return nullptr;
}

void Rewriter::write_gap(size_t offset) {
  if (offset > cursor_) file_.write(text_.substr(cursor_, offset - cursor_));
}

}  // namespace zenfo
