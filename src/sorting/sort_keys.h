// The table of sort keys: one for all lists, which each operation indexes from
// a row of its own.
//
// A key is defined by what it reads from a record, a number or a text, and by
// how two such values compare; the comparator of a row and the fast sort
// (keyed_sort) are both made from that.
//
// A record that lacks what a key reads (string pairs have no size) gives the
// number 0 or a missing text.
//
// Tested by tests/unit/sorting/sort_keys_test.cpp
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "containers/item_list.h"

namespace zenfo {

// How the values of a key compare.
enum class KeyKind : uint8_t {
  kNumber,        // a true order
  kText,          // Intended: a missing text sorts before every text, another
                  // missing one included
  kTextOrNone,    // all missing texts are equal and before every text
  kTime,          // Intended: by subtraction, wrong from 2^31 on
  kFileNameFull,  // file name, size, write time, attributes
};

// Maps signed numbers so that they compare as unsigned ones.
constexpr uint64_t as_unsigned_order(int64_t number) {
  return static_cast<uint64_t>(number) ^ (uint64_t{1} << 63);
}

using NumberOf = uint64_t (*)(const Record* record);
// Texts end at their first NUL.
using TextOf = std::optional<std::string_view> (*)(const Record* record);

struct SortKey {
  uint32_t row;
  KeyKind kind;
  Comparator compare;
  NumberOf number;  // of kNumber and kTime, else null
  TextOf text;      // of kText and kTextOrNone, else null
};

// What comp_file_full compares besides the file name.
struct FullFacts {
  uint64_t size;  // as as_unsigned_order() gives it
  uint64_t write_time;
  uint64_t attributes;
};
FullFacts facts_of(const Record* record);
std::optional<std::string_view> file_name_of(const Record* record);

// The difference of the high halves, or of the low ones where the high ones
// are equal, as 32-bit numbers that wrap.
int32_t compare_times(uint64_t a, uint64_t b);

// File name, size, write time, attributes: the first that differs. A null
// record sorts before any other and equals a null one.
int32_t comp_file_full(const Record* a, const Record* b);

inline constexpr size_t kSortKeys = 25;
// Row n is at index n; use at(), because one operation accepts an option for
// which there is no row.
extern const std::array<SortKey, kSortKeys> kSortTable;

}  // namespace zenfo
