#include "text/text_set.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>

#include "text/byte_tables.h"

namespace zenfo {
namespace {

uint32_t load_four(const char* at) {
  uint32_t four;
  std::memcpy(&four, at, sizeof four);
  return four;
}

uint64_t load_eight(const char* at) {
  uint64_t eight;
  std::memcpy(&eight, at, sizeof eight);
  return eight;
}

// The bytes that the first ones of a text become when it is loaded.
constexpr uint64_t kFirstFour =
    std::endian::native == std::endian::little ? 0xFFFFFFFF : ~0ull << 32;
constexpr uint64_t kFirstSix =
    std::endian::native == std::endian::little ? 0xFFFFFFFFFFFF : ~0ull << 16;

// The key of a short text: its bytes below its length.
uint32_t short_key(uint32_t bytes, size_t length) {
  return bytes | static_cast<uint32_t>(length) << 24;
}

bool bit(const std::vector<uint32_t>& bits, uint32_t index) {
  return (bits[index >> 5] >> (index & 31) & 1) != 0;
}

void set_bit(std::vector<uint32_t>& bits, uint32_t index) {
  bits[index >> 5] |= 1u << (index & 31);
}

// More of them would make the table of heads too full, as each adds 256 bits.
constexpr size_t kMostShortInFilter = 64;

// Positions that are looked at together.
constexpr size_t kTurn = 8;

}  // namespace

// A text with the bytes that decide most comparisons.
struct TextSet::Given {
  uint64_t first;  // its first 8 bytes, folded, the first one highest
  uint32_t index;  // among those given
  std::string_view text;
};

void TextSet::Table::make(size_t keys) {
  const size_t slots = std::bit_ceil(std::max<size_t>(2 * keys, 2));
  slots_.assign(slots, {});
  shift_ = 32 - std::countr_zero(slots);
}

void TextSet::Table::add(uint32_t key, const Range& range) {
  size_t i = slot_of(key);
  while (slots_[i].range.begin != kNoNumber) i = (i + 1) & (slots_.size() - 1);
  slots_[i] = {key, range};
}

TextSet::TextSet(const std::vector<std::string_view>& texts,
                 bool case_sensitive) {
  if (case_sensitive) {
    std::iota(fold_.begin(), fold_.end(), uint8_t{0});
  } else {
    const ByteTables& tables = byte_tables();
    fold_ = tables.fold;
    uint8_t bits = 0;
    for (const uint8_t one : tables.fold_bits) bits |= one;
    fold_bits_ = bits * 0x0101010101010101u;
  }
  numbers_.assign(texts.size(), kNoNumber);
  number_texts(sorted(texts));
}

// The texts that the set can contain; those of kHead bytes and more come first.
std::vector<TextSet::Given> TextSet::sorted(
    const std::vector<std::string_view>& texts) {
  std::vector<Given> order;
  order.reserve(texts.size());
  for (uint32_t i = 0; i < texts.size(); ++i) {
    const std::string_view text = texts[i];
    if (text.empty() || text.size() > kLongest) continue;
    if (std::any_of(text.begin(), text.end(),
                    [&](char c) { return folded(c) == 0; })) {
      continue;
    }
    uint64_t first = 0;
    for (size_t k = 0; k < sizeof first; ++k) {
      first = first << 8 | (k < text.size() ? folded(text[k]) : 0u);
    }
    order.push_back({first, i, text});
  }
  const auto less = [&](const Given& a, const Given& b) {
    const bool a_short = a.text.size() < kHead;
    const bool b_short = b.text.size() < kHead;
    if (a_short != b_short) return b_short;
    if (a.first != b.first) return a.first < b.first;
    return std::lexicographical_compare(
        a.text.begin(), a.text.end(), b.text.begin(), b.text.end(),
        [&](char x, char y) { return folded(x) < folded(y); });
  };
  std::sort(order.begin(), order.end(), less);
  return order;
}

void TextSet::number_texts(const std::vector<Given>& order) {
  uint32_t first_short = 0;
  std::string last;
  std::string text;
  for (const Given& given : order) {
    text.clear();
    for (const char c : given.text) text += static_cast<char>(folded(c));
    if (text != last) {
      begins_.push_back(static_cast<uint32_t>(bytes_.size()));
      lengths_.push_back(static_cast<uint16_t>(text.size()));
      bytes_ += text;
      if (text.size() >= kHead) ++first_short;
      last.swap(text);
    }
    numbers_[given.index] = static_cast<uint32_t>(lengths_.size() - 1);
  }
  enter_long(first_short);
  fill_filter(first_short);
  if (first_short == size()) return;
  short_filter_.assign(65536 / 32, 0);
  short_texts_.make(size() - first_short);
  for (auto i = first_short; i < size(); ++i) add_short(i);
}

std::string_view TextSet::text_at(uint32_t number) const {
  return std::string_view(bytes_).substr(begins_[number], lengths_[number]);
}

void TextSet::add_short(uint32_t number) {
  const std::string_view text = text_at(number);
  uint32_t bytes = 0;
  for (size_t k = text.size(); k-- > 0;) {
    bytes = bytes << 8 | static_cast<uint8_t>(text[k]);
  }
  short_texts_.add(short_key(bytes, text.size()), {number, number + 1});
  admit_short(text);
}

// Lets the filter pass every pair of bytes that a text may begin with.
void TextSet::admit_short(std::string_view text) {
  for (uint32_t a = 0; a < 256; ++a) {
    if (fold_[a] != static_cast<uint8_t>(text[0])) continue;
    for (uint32_t b = 0; b < 256; ++b) {
      if (text.size() > 1 && fold_[b] != static_cast<uint8_t>(text[1])) {
        continue;
      }
      const char pair[] = {static_cast<char>(a), static_cast<char>(b)};
      uint16_t index;
      std::memcpy(&index, pair, sizeof index);
      set_bit(short_filter_, index);
    }
  }
}

void TextSet::enter_long(uint32_t first_short) {
  entries_.resize(first_short);
  std::vector<uint32_t> begins;  // of each head's entries
  for (uint32_t i = 0; i < first_short; ++i) {
    const std::string_view text = text_at(i);
    entries_[i] = {0, begins_[i], kNoNumber};
    for (size_t k = 0; k < kNext; ++k) {
      const size_t at = kHead + k;
      entries_[i].next =
          entries_[i].next << 8 |
          (at < text.size() ? static_cast<uint8_t>(text[at]) : uint8_t{0});
    }
    if (i == 0 ||
        load_four(text.data()) != load_four(bytes_.data() + begins_[i - 1])) {
      begins.push_back(i);
    }
  }
  heads_.make(begins.size());
  fill_second_filter();
  begins.push_back(first_short);
  for (size_t i = 0; i + 1 < begins.size(); ++i) {
    const uint32_t head = load_four(bytes_.data() + begins_[begins[i]]);
    heads_.add(head, {begins[i], begins[i + 1]});
    link_parents(begins[i], begins[i + 1]);
  }
}

// Few bits are set, so that few positions pass, as far as the tables fit in the
// nearer caches.
void TextSet::fill_filter(uint32_t first_short) {
  const size_t short_texts = size() - first_short;
  filter_has_all_ =
      short_texts <= kMostShortInFilter &&
      std::all_of(lengths_.begin() + first_short, lengths_.end(),
                  [](uint16_t length) { return length == kHead - 1; });
  const size_t heads =
      entries_.size() + (filter_has_all_ ? 256 * short_texts : 0);
  const size_t bits =
      std::clamp(std::bit_ceil(32 * heads), size_t{1} << 16, size_t{1} << 19);
  filter_.assign(bits / 32, 0);
  filter_shift_ = 32 - std::countr_zero(bits);
  for (const Entry& entry : entries_) {
    set_bit(filter_, filter_place(load_four(bytes_.data() + entry.begin)));
  }
  if (!filter_has_all_) return;
  for (uint32_t i = first_short; i < size(); ++i) {
    char head[kHead] = {};
    text_at(i).copy(head, kHead - 1);
    for (int byte = 0; byte < 256; ++byte) {
      head[kHead - 1] = static_cast<char>(byte);
      set_bit(filter_, filter_place(load_four(head)));
    }
  }
}

void TextSet::fill_second_filter() {
  const size_t bits = std::clamp(std::bit_ceil(32 * entries_.size()),
                                 size_t{1} << 16, size_t{1} << 22);
  second_filter_.assign(bits / 32, 0);
  second_shift_ = 64 - std::countr_zero(bits);
  for (uint32_t i = 0; i < entries_.size(); ++i) {
    char first[8] = {};
    text_at(i).copy(first, sizeof first);
    uint64_t bytes = load_eight(first) | fold_bits_;
    if (lengths_[i] < 8) bytes &= lengths_[i] < 6 ? kFirstFour : kFirstSix;
    set_bit(second_filter_, second_place(bytes));
  }
}

// In sorted order, the texts that a text begins with are among the one before
// it and those that this one begins with.
void TextSet::link_parents(uint32_t begin, uint32_t end) {
  for (uint32_t i = begin + 1; i < end; ++i) {
    uint32_t parent = i - 1;
    while (parent != kNoNumber && !text_at(i).starts_with(text_at(parent))) {
      parent = entries_[parent].parent;
    }
    entries_[i].parent = parent;
  }
}

inline bool TextSet::may_begin(const char* at) const {
  return bit(filter_, filter_place(load_four(at)));
}

// The second question, for which eight bytes must be there.
inline bool TextSet::may_go_on_long(const char* at) const {
  const uint64_t bytes = load_eight(at) | fold_bits_;
  return bit(second_filter_, second_place(bytes)) ||
         bit(second_filter_, second_place(bytes & kFirstSix)) ||
         bit(second_filter_, second_place(bytes & kFirstFour));
}

inline bool TextSet::may_begin_short(const char* at) const {
  uint16_t pair;
  std::memcpy(&pair, at, sizeof pair);
  return bit(short_filter_, pair);
}

size_t TextSet::find(const char* text, size_t from, size_t starts_end,
                     size_t end, std::vector<Hit>& hits, size_t most) const {
  starts_end = std::min(starts_end, end);
  if (from >= starts_end || size() == 0) return starts_end;
  // Up to the last position after which the filters can look at eight bytes.
  const size_t stop = std::min(starts_end, end - std::min<size_t>(end, 7));
  size_t at = from;
  if (at < stop) {
    at = find_inside(text, from, stop, end, hits, most);
    if (hits.size() >= most) return at;
  }
  for (; at < starts_end; ++at) {
    take_long(text, at, end, hits);
    take_short(text, at, end, hits);
    if (hits.size() >= most) return at + 1;
  }
  return starts_end;
}

size_t TextSet::find_inside(const char* text, size_t from, size_t stop,
                            size_t end, std::vector<Hit>& hits,
                            size_t most) const {
  if (filter_has_all_) {
    return find_in_turns(text, from, stop, end, hits, most,
                         [this](const char* here) { return may_begin(here); });
  }
  if (entries_.empty()) {
    return find_in_turns(
        text, from, stop, end, hits, most,
        [this](const char* here) { return may_begin_short(here); });
  }
  return find_in_turns(text, from, stop, end, hits, most,
                       [this](const char* here) {
                         return may_begin(here) || may_begin_short(here);
                       });
}

template <class Passes>
size_t TextSet::find_in_turns(const char* text, size_t from, size_t stop,
                              size_t end, std::vector<Hit>& hits, size_t most,
                              Passes passes) const {
  size_t at = from;
  for (; stop - at >= kTurn; at += kTurn) {
    uint32_t mask = 0;
    for (size_t k = 0; k < kTurn; ++k) {
      mask |= static_cast<uint32_t>(passes(text + at + k)) << k;
    }
    for (; mask != 0; mask &= mask - 1) {
      const size_t offset = at + static_cast<size_t>(std::countr_zero(mask));
      take(text, offset, end, hits);
      if (hits.size() >= most) return offset + 1;
    }
  }
  for (; at < stop; ++at) {
    if (!passes(text + at)) continue;
    take(text, at, end, hits);
    if (hits.size() >= most) return at + 1;
  }
  return stop;
}

// Eight bytes are there.
void TextSet::take(const char* text, size_t offset, size_t end,
                   std::vector<Hit>& hits) const {
  const char* at = text + offset;
  if (!entries_.empty() && may_go_on_long(at)) {
    take_long(text, offset, end, hits);
  }
  if (!short_filter_.empty() && may_begin_short(at)) {
    take_short(text, offset, end, hits);
  }
}

// Appends the long texts that occur at the offset.
void TextSet::take_long(const char* text, size_t offset, size_t end,
                        std::vector<Hit>& hits) const {
  for (uint32_t number = longest_at(text + offset, end - offset);
       number != kNoNumber; number = entries_[number].parent) {
    hits.push_back({offset, number});
  }
}

void TextSet::take_short(const char* text, size_t offset, size_t end,
                         std::vector<Hit>& hits) const {
  const char* at = text + offset;
  const size_t most = std::min(end - offset, kHead - 1);
  uint32_t bytes = 0;
  for (size_t k = 0; k < most; ++k) {
    bytes |= uint32_t{folded(at[k])} << 8 * k;
    const uint32_t number = short_texts_.find(short_key(bytes, k + 1)).begin;
    if (number != kNoNumber) hits.push_back({offset, number});
  }
}

// The longest of the long texts that occurs here, or kNoNumber.
uint32_t TextSet::longest_at(const char* at, size_t room) const {
  if (room < kHead) return kNoNumber;
  char head[kHead];
  for (size_t k = 0; k < kHead; ++k) head[k] = static_cast<char>(folded(at[k]));
  auto [low, high] = heads_.find(load_four(head));
  if (low == kNoNumber) return kNoNumber;
  const uint32_t first = low;
  const uint64_t next = bytes_after_head(at, room);
  while (low < high) {
    const uint32_t middle = low + (high - low) / 2;
    if (comes_after(entries_[middle], lengths_[middle], next, at, room)) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  if (low == first) return kNoNumber;
  uint32_t number = low - 1;
  const size_t alike = common(number, at, room);
  while (number != kNoNumber && lengths_[number] > alike) {
    number = entries_[number].parent;
  }
  return number;
}

// Whether a text comes after the bytes here in the order of the texts; a text
// that they begin with does not.
inline bool TextSet::comes_after(const Entry& entry, size_t length,
                                 uint64_t next, const char* at,
                                 size_t room) const {
  if (entry.next != next) return entry.next > next;
  const char* text = bytes_.data() + entry.begin;
  for (size_t k = kHead + kNext; k < length; ++k) {
    if (k >= room) return true;
    const auto a = static_cast<uint8_t>(text[k]);
    const uint8_t b = folded(at[k]);
    if (a != b) return a > b;
  }
  return false;
}

// How many bytes the text and those here have in common at their start.
size_t TextSet::common(uint32_t number, const char* at, size_t room) const {
  const std::string_view text = text_at(number);
  const size_t most = std::min(text.size(), room);
  size_t k = kHead;
  while (k < most && static_cast<uint8_t>(text[k]) == folded(at[k])) ++k;
  return k;
}

// Zeros stand for bytes after the room; no text contains one.
uint64_t TextSet::bytes_after_head(const char* at, size_t room) const {
  uint64_t next = 0;
  const size_t stop = std::min(room, kHead + kNext);
  for (size_t k = kHead; k < kHead + kNext; ++k) {
    next = next << 8 | (k < stop ? folded(at[k]) : uint8_t{0});
  }
  return next;
}

}  // namespace zenfo
