// A set of plain texts, all of whose occurrences are found in one pass.
//
// The pass looks at four bytes of every position. A table of bits tells whether
// any text may begin with them. Where one may, a second table is asked with as
// many bytes as the texts have, up to eight. Where it agrees, a hash table
// leads to the sorted texts that begin with the four bytes. A search by halves
// finds the last text that does not come after the bytes at the position; that
// text, or a shorter one that it begins with, is the longest that occurs there,
// and all others that occur there are beginnings of it. Texts shorter than four
// bytes have tables of their own; a few of three bytes are in the first table
// with every byte that may follow them.
//
// Cost. One to two nanoseconds a byte, whatever the number of texts, plus some
// tens at positions that begin like a text. For less than a dozen texts, one
// SubstringSearcher after the other is faster.
//
// Tested by tests/unit/text/text_set_test.cpp
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zenfo {

class TextSet {
 public:
  // An occurrence of a text, by its number in the set.
  struct Hit {
    size_t offset;
    uint32_t number;
  };

  static constexpr uint32_t kNoNumber = UINT32_MAX;
  // A position is compared with whole texts, so their length is limited.
  static constexpr size_t kLongest = 256;

  TextSet() = default;  // contains nothing
  // Copies the texts. Ignoring case it uses the fold table of the time it is
  // made.
  TextSet(const std::vector<std::string_view>& texts, bool case_sensitive);

  // How many different texts it contains; their numbers are below.
  size_t size() const { return lengths_.size(); }
  // The number of a given text; equal texts have the same. kNoNumber when the
  // set cannot contain it: it is empty, too long, or has a zero byte.
  uint32_t number_of(size_t given) const { return numbers_[given]; }
  size_t length(uint32_t number) const { return lengths_[number]; }

  // Appends the occurrences that begin in [from, starts_end) and end in the
  // first `end` bytes of the text, by rising offset. Stops after a position
  // with which there are `most` hits (not 0) or more. Returns where to go on,
  // which is starts_end when all is searched. Reads nothing at or after `end`.
  size_t find(const char* text, size_t from, size_t starts_end, size_t end,
              std::vector<Hit>& hits, size_t most) const;

 private:
  static constexpr size_t kHead = 4;  // bytes that lead to the long texts
  static constexpr size_t kNext = 8;  // bytes after them that are kept in line

  // A text of kHead bytes or more.
  struct Entry {
    uint64_t next;    // the bytes after the head, the first one highest
    uint32_t begin;   // of the whole text in bytes_
    uint32_t parent;  // the longest other text that it begins with, or none
  };

  // From four bytes to a range of entries, or to the number of a short text.
  class Table {
   public:
    struct Range {
      uint32_t begin = kNoNumber;
      uint32_t end = 0;
    };
    void make(size_t keys);
    void add(uint32_t key, const Range& range);
    Range find(uint32_t key) const {
      if (slots_.empty()) return {};
      for (size_t i = slot_of(key);; i = (i + 1) & (slots_.size() - 1)) {
        if (slots_[i].range.begin == kNoNumber || slots_[i].key == key) {
          return slots_[i].range;
        }
      }
    }

   private:
    struct Slot {
      uint32_t key = 0;
      Range range;
    };
    size_t slot_of(uint32_t key) const { return hash(key) >> shift_; }
    std::vector<Slot> slots_;
    int shift_ = 31;
  };

  struct Given;

  static uint32_t hash(uint32_t key) { return key * 0x9E3779B1u; }
  uint32_t filter_place(uint32_t head) const {
    return hash(head | static_cast<uint32_t>(fold_bits_)) >> filter_shift_;
  }
  uint8_t folded(char byte) const { return fold_[static_cast<uint8_t>(byte)]; }
  std::string_view text_at(uint32_t number) const;

  std::vector<Given> sorted(const std::vector<std::string_view>& texts);
  void number_texts(const std::vector<Given>& order);
  void add_short(uint32_t number);
  void admit_short(std::string_view text);
  void enter_long(uint32_t first_short);
  void fill_filter(uint32_t first_short);
  void fill_second_filter();
  void link_parents(uint32_t begin, uint32_t end);

  bool may_begin(const char* at) const;
  bool may_go_on_long(const char* at) const;
  uint32_t second_place(uint64_t bytes) const {
    return static_cast<uint32_t>(bytes * 0x9E3779B97F4A7C15u >> second_shift_);
  }
  bool may_begin_short(const char* at) const;
  size_t find_inside(const char* text, size_t from, size_t stop, size_t end,
                     std::vector<Hit>& hits, size_t most) const;
  template <class Passes>
  size_t find_in_turns(const char* text, size_t from, size_t stop, size_t end,
                       std::vector<Hit>& hits, size_t most,
                       Passes passes) const;
  void take(const char* text, size_t offset, size_t end,
            std::vector<Hit>& hits) const;
  void take_long(const char* text, size_t offset, size_t end,
                 std::vector<Hit>& hits) const;
  void take_short(const char* text, size_t offset, size_t end,
                  std::vector<Hit>& hits) const;
  uint32_t longest_at(const char* at, size_t room) const;
  bool comes_after(const Entry& entry, size_t length, uint64_t next,
                   const char* at, size_t room) const;
  size_t common(uint32_t number, const char* at, size_t room) const;
  uint64_t bytes_after_head(const char* at, size_t room) const;

  std::array<uint8_t, 256> fold_{};
  uint64_t fold_bits_ = 0;         // set in all bytes before they are hashed
  std::string bytes_;              // of all different texts, folded
  std::vector<uint32_t> numbers_;  // by given text
  std::vector<uint16_t> lengths_;  // by number; the long texts come first
  std::vector<uint32_t> begins_;   // in bytes_, by number
  std::vector<Entry> entries_;     // long texts, sorted
  Table heads_;
  Table short_texts_;
  std::vector<uint32_t> filter_;  // of heads, and of texts of three bytes
  int filter_shift_ = 31;
  std::vector<uint32_t> second_filter_;  // of 4, 6 or 8 bytes
  int second_shift_ = 63;
  std::vector<uint32_t> short_filter_;  // of two bytes; empty: no short text
  bool filter_has_all_ = true;          // none but it is asked then
};

}  // namespace zenfo
