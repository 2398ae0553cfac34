#include "gui/core/match_store.h"

#include <algorithm>

namespace zenfo::host::gui {

void MatchStore::append(std::span<const Match> matches) {
  chosen_.append(matches.size(), true);
  size_ += static_cast<uint32_t>(matches.size());
  while (!matches.empty()) {
    if (blocks_.empty() || blocks_.back().size() == kBlock) {
      blocks_.emplace_back();
      // Only the first block may stay small.
      if (blocks_.size() > 1) blocks_.back().reserve(kBlock);
    }
    std::vector<Match>& block = blocks_.back();
    const size_t fits = std::min(matches.size(), kBlock - block.size());
    block.insert(block.end(), matches.begin(),
                 matches.begin() + static_cast<ptrdiff_t>(fits));
    matches = matches.subspan(fits);
  }
}

size_t MatchStore::bytes() const {
  constexpr size_t kBlockRecord = sizeof(std::vector<Match>);
  size_t bytes = blocks_.capacity() * kBlockRecord + chosen_.bytes();
  for (const auto& block : blocks_) bytes += block.capacity() * sizeof(Match);
  return bytes;
}

}  // namespace zenfo::host::gui
