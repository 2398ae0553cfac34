// One match in the loaded text, and the text that is to replace it.
//
// Tested by tests/unit/pattern/match_record_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "containers/pool.h"
#include "containers/record.h"

namespace zenfo {

// A match list can contain ten million of these, so the size matters.
class MatchRecord : public Record, public Pooled<MatchRecord> {
 public:
  static constexpr RecordKind kKind = RecordKind::kMatch;
  // Zero bytes after every replacement, so that copying a few bytes more than
  // the length stays within the buffer.
  static constexpr size_t kReplacementSlack = 5;

  MatchRecord() { state = 1; }
  MatchRecord(const char* match, uint32_t match_length, uint32_t match_offset)
      : text_(match), length(match_length), offset(match_offset) {
    state = 1;
  }

  RecordKind kind() const override { return kKind; }
  // A match has none of the record texts.
  using Record::text;

  // The matched bytes inside the loaded content: not owned, valid while it
  // stays loaded; null for a record that the matcher did not make.
  const char* begin() const { return text_; }
  const char* end() const { return text_ + length; }
  std::string_view matched() const { return {text_, length}; }

  // Copies the text up to its first NUL; null or empty leaves no replacement.
  void set_replacement(const char* replacement);
  // Copies all bytes, NUL included; empty leaves no replacement.
  void set_replacement_bytes(std::string_view replacement);
  // Null when there is none; otherwise readable for replacement_length plus
  // kReplacementSlack bytes.
  const char* replacement() const { return replacement_.get(); }
  uint32_t replacement_length() const { return replacement_length_; }

  // What get_match_flag returns: 0 once a match is left without a value.
  int32_t flag = 1;

 private:
  const char* text_ = nullptr;

 public:
  uint32_t length = 0;  // bytes
  uint32_t offset = 0;  // bytes from the start of the content

 private:
  std::unique_ptr<char[]> replacement_;
  uint32_t replacement_length_ = 0;
};

}  // namespace zenfo
