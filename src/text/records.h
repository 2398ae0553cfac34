// Cuts a text into records at a separator.
//
// Tested by tests/unit/text/records_test.cpp
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace zenfo {

// A walk over the records of a text; refers to both texts. Two separators side
// by side have an empty record between them. The last record ends with the
// text; a separator that ends the text has no record after it. With an empty
// separator the whole text is one record.
class RecordReader {
 public:
  RecordReader(std::string_view text, std::string_view separator)
      : cursor_(text.data()),
        end_(text.data() + text.size()),
        separator_(separator) {}

  // The next record, or none at the end of the text.
  std::optional<std::string_view> next() {
    if (cursor_ == end_) return std::nullopt;
    const char* const start = cursor_;
    const char* const found = find_separator(start, end_, separator_);
    separated_ = found != nullptr;
    cursor_ = separated_ ? found + separator_.size() : end_;
    return std::string_view(
        start, static_cast<size_t>((separated_ ? found : end_) - start));
  }
  std::string_view next_or_empty() { return next().value_or(""); }

  // Whether the last record ended at a separator, not with the text.
  bool separated() const { return separated_; }
  // What follows the last record and its separator.
  std::string_view rest() const {
    return {cursor_, static_cast<size_t>(end_ - cursor_)};
  }

 private:
  // The first separator, or null.
  static const char* find_separator(const char* from, const char* end,
                                    std::string_view separator);

  const char* cursor_;
  const char* end_;
  std::string_view separator_;
  bool separated_ = false;
};

}  // namespace zenfo
