// Character classes: ranges and single characters that a class includes or
// excludes.
//
// `contains` is the definition of membership, step by step; compiled elements
// fold it into a ByteSet once and never call it per byte.
//
// Tested by tests/unit/pattern/char_class_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pattern/byte_set.h"

namespace zenfo {

// Both bounds belong to the range. A bound above 255 matches no byte.
struct CharRange {
  uint32_t low;
  uint32_t high;
};

class CharClass {
 public:
  CharClass() = default;
  explicit CharClass(std::string_view class_name) { set_name(class_name); }

  // Copies up to the first NUL; an empty name is an absent one.
  void set_name(std::string_view new_name);
  void set_include_chars(std::string_view bytes) { include_chars_ = bytes; }
  void set_exclude_chars(std::string_view bytes) { exclude_chars_ = bytes; }
  void add_include_range(uint32_t low, uint32_t high) {
    include_ranges_.push_back({low, high});
  }
  void add_exclude_range(uint32_t low, uint32_t high) {
    exclude_ranges_.push_back({low, high});
  }

  // Empty when absent.
  const std::string& name() const { return name_; }

  // Excluded by a range, excluded as a character, included by a range, included
  // as a character: the first that applies decides; if none does, it is no
  // member.
  bool contains(uint8_t byte) const;
  // All members; with `negated` all other bytes.
  ByteSet members(bool negated) const;

 private:
  std::string name_;
  std::string include_chars_;
  std::string exclude_chars_;
  std::vector<CharRange> include_ranges_;
  std::vector<CharRange> exclude_ranges_;
};

// The class-name comparator: by length of name alone; a null class sorts before
// any other. Intended: names of equal length are equal, whatever their bytes.
int32_t compare_class_names(const CharClass* a, const CharClass* b);

// Classes in the order of their comparator. Every addition sorts the order of
// adding again with the steps of the item list's sort; these steps decide the
// order of classes with names of equal length.
class ClassList {
 public:
  // 1; -1 for a null class.
  int32_t add(std::unique_ptr<CharClass> new_class);
  // Destroys all classes; always 1.
  int32_t clear();

  size_t count() const { return added_.size(); }
  const CharClass& at(size_t position) const { return *sorted().at(position); }

 private:
  const std::vector<const CharClass*>& sorted() const;

  std::vector<std::unique_ptr<CharClass>> added_;
  // Sorted when first asked for: a definition file may add very many.
  mutable std::vector<const CharClass*> sorted_;
};

}  // namespace zenfo
