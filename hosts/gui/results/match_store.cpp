#include "gui/results/match_store.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zenfo::host::gui {

// Whoever has a copy may be reading the last block, so it must not move.
MatchStore::Block& MatchStore::block_with_room() {
  if (blocks_.empty() || blocks_.back()->size() == kBlock) {
    blocks_.push_back(std::make_shared<Block>());
    // Only the first block may stay small.
    if (blocks_.size() > 1) blocks_.back()->reserve(kBlock);
  } else if (blocks_.back().use_count() > 1) {
    auto own = std::make_shared<Block>();
    own->reserve(kBlock);
    own->assign(blocks_.back()->begin(), blocks_.back()->end());
    blocks_.back() = std::move(own);
  }
  return *blocks_.back();
}

void MatchStore::append(std::span<const Match> matches) {
  chosen_.append(matches.size(), true);
  size_ += static_cast<uint32_t>(matches.size());
  while (!matches.empty()) {
    Block& block = block_with_room();
    const size_t fits = std::min(matches.size(), kBlock - block.size());
    block.insert(block.end(), matches.begin(),
                 matches.begin() + static_cast<ptrdiff_t>(fits));
    matches = matches.subspan(fits);
  }
}

std::vector<Match> MatchStore::range(uint32_t first, uint32_t count) const {
  std::vector<Match> matches;
  matches.reserve(count);
  for (uint32_t at = first; at < first + count;) {
    const Block& block = *blocks_[at / kBlock];
    const uint32_t length = std::min(first + count - at, kBlock - at % kBlock);
    const auto begin = block.begin() + at % kBlock;
    matches.insert(matches.end(), begin, begin + length);
    at += length;
  }
  return matches;
}

size_t MatchStore::bytes() const {
  constexpr size_t kBlockRecord =
      sizeof(Block) + sizeof(std::shared_ptr<Block>);
  size_t bytes = blocks_.capacity() * kBlockRecord + chosen_.bytes();
  for (const auto& block : blocks_) bytes += block->capacity() * sizeof(Match);
  return bytes;
}

}  // namespace zenfo::host::gui
