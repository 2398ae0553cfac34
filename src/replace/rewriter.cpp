#include "replace/rewriter.h"

#include <cstring>

namespace zenfo {

bool Rewriter::open(const Destination& destination) {
  using platform::Opened;
  Opened opened;
  if (destination.loaded != nullptr) {
    opened = open_loaded(destination);
  } else {
    opened = file_.open(destination.path, platform::OutputMode::kOverwrite,
                        OutFile::LineEnds::kRaw)
                 ? Opened::kOpen
                 : Opened::kFailed;
  }
  if (destination.opened != nullptr) *destination.opened = opened;
  return opened == Opened::kOpen;
}

platform::Opened Rewriter::open_loaded(const Destination& destination) {
  using platform::Opened;
  const Opened begun = destination.beside
                           ? next_.begin(destination.path, *destination.loaded)
                           : Opened::kFailed;
  if (begun == Opened::kChanged) return begun;
  if (begun == Opened::kFailed) {
    return file_.open_unchanged(destination.path, *destination.loaded);
  }
  return file_.open(next_.path(), platform::OutputMode::kTruncate,
                    OutFile::LineEnds::kRaw)
             ? Opened::kOpen
             : Opened::kFailed;
}

bool Rewriter::close(const Destination& destination) {
  if (!file_.close()) return false;
  if (!next_.begun()) return true;
  *destination.opened = next_.take_place();
  return *destination.opened == platform::Opened::kOpen;
}

void Rewriter::report(uint32_t position) {
  context_.report_progress(position, context_.matches.count());
  next_report_ = PatternContext::next_report(context_.matches.count());
}

const MatchRecord* Rewriter::next_match() {
  ItemList& matches = context_.matches;
  while (position_ < matches.count()) {
    const uint32_t position = position_++;
    if (position >= next_report_ && context_.reports()) report(position);
    failed_ = context_.poll_cancel() != 0;
    const auto* match = record_cast<MatchRecord>(matches.get(position));
    if (match == nullptr) failed_ = true;
    if (failed_) return nullptr;
    if (match->state == 0) continue;
    // A match after the text's end is neither written nor counted.
    find_end(size_t{match->offset} + 1);
    if (match->offset < text_.size()) return match;
  }
  return nullptr;
}

void Rewriter::find_end(size_t offset) {
  constexpr size_t kPiece = size_t{128} * 1024;
  if (offset <= searched_ || searched_ == text_.size()) return;
  const size_t end =
      std::min(std::max(offset, searched_ + kPiece), text_.size());
  const void* nul =
      std::memchr(text_.data() + searched_, '\0', end - searched_);
  searched_ = end;
  if (nul == nullptr) return;
  searched_ = static_cast<size_t>(static_cast<const char*>(nul) - text_.data());
  text_ = text_.substr(0, searched_);
}

void Rewriter::write_gap(size_t offset) {
  if (offset > cursor_) file_.write(text_.substr(cursor_, offset - cursor_));
}

}  // namespace zenfo
