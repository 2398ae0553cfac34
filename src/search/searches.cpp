#include "search/searches.h"

#include <algorithm>
#include <utility>

#include "containers/string_pair.h"

namespace zenfo {

NextSearch CompiledSearch::next() {
  if (done_) return NextSearch::kNone;
  done_ = true;
  return NextSearch::kReady;
}

void PairSearches::rewind() {
  position_ = 0;
  if (kept_.empty()) kept_.resize(std::min(pairs_.count(), kMostKept));
}

NextSearch PairSearches::next() {
  while (position_ < pairs_.count()) {
    const Record* record = pairs_.get(position_++);
    if (record == nullptr) return NextSearch::kFailed;
    if (record->state == 0) continue;
    const auto* pair = record_cast<StringPair>(record);
    if (pair == nullptr || pair->find.missing()) return NextSearch::kFailed;
    replacement_ = pair->replace;
    const uint32_t position = position_ - 1;
    const bool compiled = position < kept_.size()
                              ? compile_kept(kept_[position], pair->find)
                              : compile(pair->find);
    return compiled ? NextSearch::kReady : NextSearch::kFailed;
  }
  return NextSearch::kNone;
}

bool PairSearches::compile(const SharedText& text) {
  put_aside();
  return compile_search(context_, {}, {text.c_str(), is_pattern_, convert_},
                        {}) == 1;
}

// The host may change a pair's text while a file is searched.
bool PairSearches::compile_kept(Kept& kept, const SharedText& text) {
  if (kept.text.missing() || kept.text.view() != text.view()) {
    if (!compile(text)) return false;
    kept.text = text;
  } else if (in_context_ != &kept) {
    put_aside();
    std::swap(context_.pattern, kept.pattern);
  }
  in_context_ = &kept;
  return true;
}

// Moves the pattern in the context back to where it is kept.
void PairSearches::put_aside() {
  if (in_context_ == nullptr) return;
  in_context_->pattern = std::move(context_.pattern);
  in_context_ = nullptr;
}

}  // namespace zenfo
