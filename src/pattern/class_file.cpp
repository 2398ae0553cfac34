#include "pattern/class_file.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frame/guard.h"
#include "text/records.h"

namespace zenfo {
namespace {

// The classes that the lines define, one in each context; the contexts own
// them.
using CurrentClasses = std::vector<CharClass*>;

bool is_white(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Decimal, after white space and a sign, up to the first other character; 0
// without digits. Stays within 32 bits.
int32_t decimal(std::string_view text) {
  size_t at = 0;
  while (at < text.size() && is_white(text[at])) ++at;
  bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  int64_t value = 0;
  constexpr int64_t kMost = std::numeric_limits<int32_t>::max();
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    value = std::min(value * 10 + (text[at] - '0'), kMost + 1);
  }
  return static_cast<int32_t>(negative ? -value : std::min(value, kMost));
}

std::string chars_of(std::string_view value) {
  std::string chars;
  RecordReader items(value, ",");
  while (auto item = items.next()) {
    if (item->empty()) continue;
    chars += static_cast<char>(static_cast<uint8_t>(decimal(*item)));
  }
  return chars;
}

std::vector<CharRange> ranges_of(std::string_view value) {
  std::vector<CharRange> ranges;
  RecordReader items(value, ",");
  while (auto item = items.next()) {
    RecordReader bounds(*item, "-");
    std::string_view low = bounds.next_or_empty();
    std::string_view high = bounds.next_or_empty();
    if (low.empty() || high.empty()) continue;
    ranges.push_back({static_cast<uint32_t>(decimal(low)),
                      static_cast<uint32_t>(decimal(high))});
  }
  return ranges;
}

void set_include_chars(CharClass& one, std::string_view value) {
  one.set_include_chars(chars_of(value));
}

void set_exclude_chars(CharClass& one, std::string_view value) {
  one.set_exclude_chars(chars_of(value));
}

void add_include_ranges(CharClass& one, std::string_view value) {
  for (CharRange range : ranges_of(value)) {
    one.add_include_range(range.low, range.high);
  }
}

void add_exclude_ranges(CharClass& one, std::string_view value) {
  for (CharRange range : ranges_of(value)) {
    one.add_exclude_range(range.low, range.high);
  }
}

struct Key {
  std::string_view name;
  void (*apply)(CharClass& one, std::string_view value);
};

// "name" begins a class; every other key, "comment" among them, is ignored.
constexpr Key kKeys[] = {
    {"inc_chars", set_include_chars},
    {"exc_chars", set_exclude_chars},
    {"inc_ranges", add_include_ranges},
    {"exc_ranges", add_exclude_ranges},
};

CurrentClasses begin_class(std::string_view name,
                           std::span<PatternContext* const> contexts) {
  CurrentClasses current;
  for (PatternContext* context : contexts) {
    auto one = std::make_unique<CharClass>(name);
    current.push_back(one.get());
    context->add_user_class(std::move(one));
  }
  return current;
}

void apply_line(std::string_view line, CurrentClasses& current,
                std::span<PatternContext* const> contexts) {
  RecordReader parts(line, "=");
  std::string_view key = parts.next_or_empty();
  std::string_view value = parts.next_or_empty();
  if (key.empty() || value.empty() || key.starts_with("//")) return;
  if (key == "name") {
    current = begin_class(value, contexts);
    return;
  }
  for (const Key& known : kKeys) {
    if (known.name != key) continue;
    for (CharClass* one : current) {
      // When memory runs out, the class does not get this setting.
      unlogged(0, [&] {
        known.apply(*one, value);
        return 1;
      });
    }
  }
}

}  // namespace

int32_t apply_class_definitions(std::string_view bytes,
                                std::span<PatternContext* const> contexts) {
  if (bytes.empty()) return -1;
  for (PatternContext* context : contexts) context->clear_user_classes();
  CurrentClasses current;
  RecordReader lines(bytes, "\r\n");
  while (auto line = lines.next()) apply_line(*line, current, contexts);
  return 1;
}

}  // namespace zenfo
