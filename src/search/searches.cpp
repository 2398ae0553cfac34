#include "search/searches.h"

#include <algorithm>
#include <utility>

#include "containers/string_pair.h"
#include "frame/callbacks.h"
#include "text/byte_tables.h"

namespace zenfo {

NextSearch CompiledSearch::next() {
  if (done_) return NextSearch::kNone;
  done_ = true;
  return NextSearch::kReady;
}

void PairSearches::rewind() {
  position_ = 0;
  scanned_ = {};
  if (kept_.empty()) kept_.resize(std::min(pairs_.count(), kMostKept));
}

NextSearch PairSearches::next() {
  pass_over_absent();
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
    if (!compiled) return NextSearch::kFailed;
    take_from_scan(position);
    return NextSearch::kReady;
  }
  return NextSearch::kNone;
}

// Whether the scan is that of the pairs as they are.
bool PairSearches::scan_is_current() const {
  return scan_prepared_ && scan_changes_ == pairs_.changes() &&
         scan_fold_version_ == byte_tables().fold_version;
}

void PairSearches::searched(std::string_view text) {
  if (!scan_case_flag_ || is_pattern_ || scanned_.data() != nullptr) return;
  if (!scan_is_current()) prepare_scan();
  if (scan_ && scan_->look_through(text)) scanned_ = text;
}

void PairSearches::prepare_scan() {
  scan_prepared_ = true;
  scan_changes_ = pairs_.changes();
  scan_fold_version_ = byte_tables().fold_version;
  scan_.reset();
  const std::vector<StringScan::Placed> strings = plain_strings();
  if (strings.size() >= kLeastScanned) scan_.emplace(strings, *scan_case_flag_);
}

// None when one of them would end the run.
std::vector<StringScan::Placed> PairSearches::plain_strings() const {
  std::vector<StringScan::Placed> strings;
  for (uint32_t i = 0; i < pairs_.count(); ++i) {
    const Record* record = pairs_.get(i);
    if (record == nullptr) return {};
    if (record->state == 0) continue;
    const auto* pair = record_cast<StringPair>(record);
    if (pair == nullptr) return {};
    std::string text =
        literal_bytes(context_, {pair->find.c_str(), false, convert_});
    if (text.empty()) return {};
    strings.push_back({i, std::move(text)});
  }
  return strings;
}

void PairSearches::pass_over_absent() {
  if (scanned_.data() == nullptr || host_listens() || !scan_is_current()) {
    return;
  }
  position_ = std::min(scan_->next_due(position_), pairs_.count());
}

void PairSearches::take_from_scan(uint32_t position) {
  context_.pattern.found_before = {};
  if (scanned_.data() == nullptr || !scan_is_current()) return;
  const auto offsets = scan_->offsets(position);
  if (!offsets) return;
  context_.pattern.found_before = {scanned_.data(), scanned_.size(),
                                   *scan_case_flag_, scan_fold_version_,
                                   *offsets};
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
