// Record splitter: cuts a text at a separator, one record a call.
//
// Tested by tests/unit/text/records_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace zenfo {

// Takes the record at *cursor and moves the cursor behind its separator, or to
// null when the record was the rest of the text. An empty separator gives the
// rest of the text. Answers 1 with a record, -1 when there is none (null
// cursor, text end or separator, or a cursor not below the text end); the out
// start is then the cursor and the out length 0.
int32_t get_next_record(const char** cursor, const char* text_end,
                        const char* separator, size_t separator_length,
                        const char** record, size_t* record_length);

// A walk over the records of a text; refers to both texts.
class RecordReader {
 public:
  RecordReader(std::string_view text, std::string_view separator)
      : cursor_(text.data()),
        end_(text.data() + text.size()),
        separator_(separator) {}

  // The next record, or none at the text's end.
  std::optional<std::string_view> next() {
    const char* record;
    size_t length;
    if (get_next_record(&cursor_, end_, separator_.data(), separator_.size(),
                        &record, &length) != 1) {
      return std::nullopt;
    }
    return std::string_view(record, length);
  }
  std::string_view next_or_empty() { return next().value_or(""); }

 private:
  const char* cursor_;
  const char* end_;
  std::string_view separator_;
};

}  // namespace zenfo
