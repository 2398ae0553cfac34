#include "sorting/text_ranks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <new>

#include "platform/memory.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

constexpr uint32_t kStep = 8;  // bytes compared as one number

// A text while it is sorted: the bytes that it is sorted by now, and where in
// the arena the next ones are.
struct Item {
  uint64_t bytes;
  uint32_t rest;
  uint32_t text;
};

// Instead of `rest`, once sorted: equals the item before.
constexpr uint32_t kSameAsBefore = UINT32_MAX;

// A text contains no NUL and is followed by NULs.
bool ended(uint64_t bytes) { return (bytes & 0xff) == 0; }

uint64_t load(const char* from) {
  std::array<uint8_t, kStep> bytes;
  std::memcpy(bytes.data(), from, kStep);
  uint64_t number = 0;
  for (const uint8_t byte : bytes) number = number << 8 | byte;
  return number;
}

class MultikeySort {
 public:
  explicit MultikeySort(const char* arena) : arena_(arena) {}

  void sort(Item* first, Item* last) const {
    sort(Range{first, last, turns(first, last)});
  }

 private:
  static constexpr ptrdiff_t kSmall = 16;
  static constexpr ptrdiff_t kLarge = 200;

  struct Range {
    Item* first;
    Item* last;
    int turns;  // at a pivot left before the range counts as hostile
    ptrdiff_t size() const { return last - first; }
  };

  static int turns(const Item* first, const Item* last) {
    return 2 * std::bit_width(static_cast<size_t>(last - first)) + 16;
  }

  // Recursion takes the two smaller parts, the loop the largest.
  void sort(Range range) const {
    while (range.size() > kSmall && range.turns > 0) {
      std::array<Range, 3> parts = split(range);
      std::ranges::sort(parts, {}, &Range::size);
      sort(parts[0]);
      sort(parts[1]);
      range = parts[2];
    }
    finish(range.first, range.last);
  }

  // Smaller than, equal to and greater than a pivot; the equal ones have their
  // next bytes loaded, and there are none when they are sorted.
  std::array<Range, 3> split(const Range& range) const {
    const uint64_t pivot = choose_pivot(range.first, range.last);
    Item* equal = range.first;
    Item* greater = range.last;
    for (Item* item = range.first; item < greater;) {
      if (item->bytes < pivot) {
        std::swap(*equal++, *item++);
      } else if (item->bytes > pivot) {
        std::swap(*--greater, *item);
      } else {
        ++item;
      }
    }
    Range same = next_bytes(equal, greater, pivot);
    return {Range{range.first, equal, range.turns - 1}, same,
            Range{greater, range.last, range.turns - 1}};
  }

  Range next_bytes(Item* first, Item* last, uint64_t bytes) const {
    if (ended(bytes)) {
      for (Item* item = first + 1; item < last; ++item) {
        item->rest = kSameAsBefore;
      }
      return {last, last, 0};
    }
    for (Item* item = first; item < last; ++item) {
      item->bytes = load(arena_ + item->rest);
      item->rest += kStep;
    }
    return {first, last, turns(first, last)};
  }

  static uint64_t median(uint64_t a, uint64_t b, uint64_t c) {
    return std::max(std::min(a, b), std::min(std::max(a, b), c));
  }

  static uint64_t choose_pivot(const Item* first, const Item* last) {
    const ptrdiff_t size = last - first;
    auto median_at = [&](ptrdiff_t at, ptrdiff_t apart) {
      return median(first[at - apart].bytes, first[at].bytes,
                    first[at + apart].bytes);
    };
    const ptrdiff_t eighth = size / 8;
    if (size < kLarge) return median_at(size / 2, 3 * eighth);
    return median(median_at(eighth, eighth), median_at(size / 2, eighth),
                  median_at(size - 1 - eighth, eighth));
  }

  int compare_rest(const Item& a, const Item& b) const {
    for (uint32_t at = 0;; at += kStep) {
      const uint64_t x = load(arena_ + a.rest + at);
      const uint64_t y = load(arena_ + b.rest + at);
      if (x != y) return x < y ? -1 : 1;
      if (ended(x)) return 0;
    }
  }

  bool less(const Item& a, const Item& b) const {
    if (a.bytes != b.bytes) return a.bytes < b.bytes;
    return !ended(a.bytes) && compare_rest(a, b) < 0;
  }

  bool equal(const Item& a, const Item& b) const {
    return a.bytes == b.bytes && (ended(a.bytes) || compare_rest(a, b) == 0);
  }

  // Small ranges, and hostile ones. The marks are set from the end because they
  // overwrite what is compared.
  void finish(Item* first, Item* last) const {
    std::sort(first, last,
              [this](const Item& a, const Item& b) { return less(a, b); });
    for (ptrdiff_t i = last - first - 1; i > 0; --i) {
      if (equal(first[i - 1], first[i])) first[i].rest = kSameAsBefore;
    }
  }

  const char* arena_;
};

}  // namespace

struct TextRanks::State {
  // Offsets into the arena take 32 bits, and stay below the mark.
  static constexpr size_t kMostBytes = UINT32_MAX - 2 * kStep;

  static constexpr size_t kMostForeseen = 128;

  char* room(size_t size) {
    if (size > kMostBytes - used || !arena.reserve(used + size, used)) {
      throw std::bad_alloc();
    }
    return arena.data() + used;
  }

  // Room for texts about as long as the first, so that the arena hardly ever
  // moves; without it, it grows as it is filled.
  void foresee(size_t length) {
    const size_t each = std::min(length + 2 * kStep, kMostForeseen);
    if (items.capacity() < kMostBytes / each) {
      arena.reserve(items.capacity() * each, 0);
    }
  }

  // Shortens the common start to the part that the text at `text` shares.
  void shorten_common(const char* text, size_t length) {
    const size_t most = std::min(common, length);
    const char* first = arena.data();
    common = static_cast<size_t>(
        std::mismatch(first, first + most, text).first - first);
  }

  platform::KeptBuffer arena;  // folded texts, each followed by NULs
  size_t used = 0;
  size_t common = SIZE_MAX;
  uint32_t texts = 0;
  std::vector<Item> items;
};

TextRanks::TextRanks(uint32_t count) : state_(std::make_unique<State>()) {
  state_->items.reserve(count);
}

TextRanks::~TextRanks() = default;

void TextRanks::add(const std::optional<std::string_view>& text) {
  State& state = *state_;
  const uint32_t number = state.texts++;
  if (!text) return;
  const auto& fold = byte_tables().fold;
  const size_t length = text->size();
  if (state.used == 0) state.foresee(length);
  char* const to = state.room(length + kStep);
  for (size_t i = 0; i < length; ++i) {
    to[i] = static_cast<char>(fold[static_cast<uint8_t>((*text)[i])]);
  }
  std::memset(to + length, 0, kStep);
  state.shorten_common(to, length);
  state.items.push_back({0, static_cast<uint32_t>(state.used), number});
  state.used += length + kStep;
}

std::vector<uint32_t> TextRanks::rank() {
  State& state = *state_;
  std::vector<uint32_t> ranks(state.texts, 0);
  if (state.items.empty()) return ranks;
  const char* const arena = state.arena.data();
  const auto common = static_cast<uint32_t>(state.common);
  for (Item& item : state.items) {
    item.bytes = load(arena + item.rest + common);
    item.rest += common + kStep;
  }
  Item* const first = state.items.data();
  MultikeySort(arena).sort(first, first + state.items.size());
  uint32_t rank = 0;
  for (const Item& item : state.items) {
    if (item.rest != kSameAsBefore) ++rank;
    ranks[item.text] = rank;
  }
  return ranks;
}

}  // namespace zenfo
