// The strings of a run, looked for all together in each file.
//
// The searches of a file can then leave out the strings that do not occur in it
// and take the occurrences of the others from here. Strings that the scan does
// not cover, because they are too long or occur too often to be kept, are
// searched for one by one.
//
// Tested by tests/unit/search/string_scan_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "text/text_set.h"

namespace zenfo {

class StringScan {
 public:
  static constexpr uint32_t kNoPlace = UINT32_MAX;
  // What is kept of one file takes 12 bytes each.
  static constexpr size_t kMostHits = size_t{4} << 20;

  // A string and its place in the list of strings.
  struct Placed {
    uint32_t place;
    std::string text;
  };

  // By rising place.
  StringScan(const std::vector<Placed>& strings, bool case_flag,
             size_t most_hits = kMostHits);

  // Forgets the last text and looks through this one. False when it is too
  // long.
  bool look_through(std::string_view text);

  // The first place from this one on whose string must be searched for, because
  // it may occur or because it is the last; kNoPlace when there is none.
  uint32_t next_due(uint32_t place) const;
  // All occurrences of the string at a place, by rising offset, also those that
  // overlap. No value when they are not known.
  std::optional<std::span<const uint32_t>> offsets(uint32_t place) const;

 private:
  struct Hit {
    uint32_t offset;
    uint32_t number;
  };
  // The occurrences of one text of the set.
  struct Found {
    uint32_t count = 0;
    uint32_t begin = 0;  // in offsets_
    bool alone = false;  // too many to be kept
  };

  void forget();
  void keep(const std::vector<TextSet::Hit>& hits);
  void drop_frequent();
  void order_by_text();
  void list_due();

  TextSet set_;
  size_t most_hits_;
  uint32_t last_place_ = kNoPlace;
  std::vector<uint32_t> number_at_;     // in the set, by place
  std::vector<uint32_t> always_due_;    // places that the set does not cover
  std::vector<uint32_t> places_;        // of each number in turn
  std::vector<uint32_t> places_begin_;  // by number, and the end

  // Of the text in hand.
  std::vector<Hit> hits_;
  std::vector<Found> found_;       // by number
  std::vector<uint32_t> present_;  // numbers found
  std::vector<uint32_t> offsets_;
  std::vector<uint32_t> due_;
};

}  // namespace zenfo
