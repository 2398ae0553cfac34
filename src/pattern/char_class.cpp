#include "pattern/char_class.h"

#include "containers/list_sort.h"

namespace zenfo {
namespace {

bool in_ranges(const std::vector<CharRange>& ranges, uint32_t byte) {
  for (const CharRange& range : ranges) {
    // Intended: a range 0-0 ends the walk, it and all after it are not seen.
    if (range.low == 0 && range.high == 0) return false;
    if (range.low <= byte && byte <= range.high) return true;
  }
  return false;
}

bool in_chars(const std::string& chars, uint8_t byte) {
  return chars.find(static_cast<char>(byte)) != std::string::npos;
}

}  // namespace

void CharClass::set_name(std::string_view new_name) {
  name_ = new_name.substr(0, new_name.find('\0'));
}

bool CharClass::contains(uint8_t byte) const {
  if (in_ranges(exclude_ranges_, byte)) return false;
  if (in_chars(exclude_chars_, byte)) return false;
  if (in_ranges(include_ranges_, byte)) return true;
  return in_chars(include_chars_, byte);
}

ByteSet CharClass::members(bool negated) const {
  std::array<bool, 256> flags;
  for (size_t byte = 0; byte < flags.size(); ++byte) {
    flags[byte] = contains(static_cast<uint8_t>(byte)) != negated;
  }
  return ByteSet(flags);
}

int32_t compare_class_names(const CharClass* a, const CharClass* b) {
  if (a == nullptr || b == nullptr) {
    return static_cast<int32_t>(a != nullptr) -
           static_cast<int32_t>(b != nullptr);
  }
  size_t left = a->name().size();
  size_t right = b->name().size();
  return left < right ? -1 : left > right ? 1 : 0;
}

int32_t ClassList::add(std::unique_ptr<CharClass> new_class) {
  if (new_class == nullptr) return -1;
  added_.push_back(std::move(new_class));
  sorted_.clear();
  return 1;
}

int32_t ClassList::clear() {
  added_.clear();
  sorted_.clear();
  return 1;
}

const std::vector<const CharClass*>& ClassList::sorted() const {
  if (sorted_.size() != added_.size()) {
    sorted_.clear();
    for (const auto& one : added_) sorted_.push_back(one.get());
    list_sort(sorted_.data(), sorted_.size(), compare_class_names);
  }
  return sorted_;
}

}  // namespace zenfo
