// The records of the string-pair list and of the replace list.
//
// An empty text is stored as missing, never as an empty string.
//
// Tested by tests/unit/containers/string_pair_test.cpp
#pragma once

#include <optional>
#include <string_view>

#include "containers/pool.h"
#include "containers/record.h"
#include "text/shared_text.h"

namespace zenfo {

inline SharedText text_or_missing(std::string_view text) {
  return text.empty() ? SharedText() : SharedText(text);
}

class StringPair final : public Record, public Pooled<StringPair> {
 public:
  static constexpr RecordKind kKind = RecordKind::kStringPair;

  StringPair(std::string_view find_text, std::string_view replace_text) {
    set(find_text, replace_text);
  }

  RecordKind kind() const override { return kKind; }
  // Find string, replace string.
  std::optional<std::string_view> text(TextSlot slot) const override {
    if (slot == TextSlot::kFirst) return find.text();
    if (slot == TextSlot::kSecond) return replace.text();
    return std::nullopt;
  }

  void set(std::string_view find_text, std::string_view replace_text) {
    find = text_or_missing(find_text);
    replace = text_or_missing(replace_text);
  }

  SharedText find;
  SharedText replace;
};

class ReplaceValue final : public Record, public Pooled<ReplaceValue> {
 public:
  static constexpr RecordKind kKind = RecordKind::kReplaceValue;

  explicit ReplaceValue(std::string_view text) : value(text_or_missing(text)) {}

  RecordKind kind() const override { return kKind; }
  std::optional<std::string_view> text(TextSlot slot) const override {
    return slot == TextSlot::kFirst ? value.text() : std::nullopt;
  }

  SharedText value;
};

}  // namespace zenfo
