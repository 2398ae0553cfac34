// A display to lay out and paint in tests: a text, matches and areas by offset
// and length, and the layout shown as a readable text.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "containers/item_list.h"
#include "display/layout.h"
#include "display/model.h"
#include "pattern/match_record.h"

namespace zenfo::testing {

using Marks = std::vector<std::pair<uint32_t, uint32_t>>;

struct DisplayFixture {
  ItemList matches;
  ItemList areas;
  std::string text;  // what the state refers to
  DisplayState state;

  void fill(ItemList& list, const Marks& marks) {
    list.clear();
    for (const auto& [offset, length] : marks) {
      // The text may be shorter than a mark; layouts use only offsets.
      list.append(std::make_unique<MatchRecord>(text.data(), length, offset));
    }
  }

  void show(std::string_view shown, const Marks& match_marks) {
    text = shown;
    fill(matches, match_marks);
    state.show(text, &matches, nullptr);
  }

  void show(std::string_view shown, const Marks& match_marks,
            const Marks& area_marks) {
    show(shown, match_marks);
    fill(areas, area_marks);
    state.show(text, &matches, &areas);
  }
};

// The spans of a line separated by bars; marked ones begin with their kind and
// group, as in "ab|M0:cd|A1:".
inline std::string line_picture(const DisplayState& state, uint32_t line) {
  std::string picture;
  LineSpans spans(state, line);
  Span span;
  while (spans.next(&span)) {
    if (!picture.empty()) picture += '|';
    if (span.kind != SpanKind::kPlain) {
      picture += span.kind == SpanKind::kMatch ? 'M' : 'A';
      picture += std::to_string(span.group) + ':';
    }
    picture += span.bytes;
  }
  return picture;
}

inline std::vector<std::string> picture(const DisplayState& state) {
  std::vector<std::string> lines;
  for (uint32_t i = 0; i < state.line_count(); ++i) {
    lines.push_back(line_picture(state, i));
  }
  return lines;
}

}  // namespace zenfo::testing
